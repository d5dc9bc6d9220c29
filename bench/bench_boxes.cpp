// Drawing the boxes of plasma: batched, against one glBegin and glEnd for each of them.

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"
#include "figure.h"
#include "pictures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

using zavex::bench::Bound;
using zavex::bench::Figures;
using zavex::display::BlendFactor;
using zavex::display::DisplayGL;
using zavex::display::DisplayObsolete;
using zavex::display::WindowMode;
using zavex::mathbase::Vector3f;
using zavex::mathbase::Vector4f;

constexpr int SIDE = 25; // boxes along an axis
constexpr int RUNS = 15;
constexpr double RATIO_BOUND = 0.6;

struct Box {
    Vector3f centre;
    Vector3f halfSize;
    Vector4f color;
};

/** What is drawn where: a window, and how large the boxes in it are. */
struct Scene {
    const char* name;
    int width;      // pixels
    int height;     // pixels
    float smallest; // half of a box's side
    float largest;
};

/** In the small window hardly a pixel is drawn: what is compared is getting boxes to the driver. */
constexpr Scene SCENES[] = {
    {"128x96, small",          128,  96,  0.02f, 0.02f},
    {"1024x768, as in plasma", 1024, 768, 0.02f, 0.5f },
};

/** Sizes that change across the cube and a brightness that changes with the distance, so that
 * hardly two boxes in a row are of one colour. */
std::vector<Box> makeBoxes(const Scene& scene)
{
    std::vector<Box> boxes;
    for (int i = 0; i < SIDE * SIDE * SIDE; ++i) {
        const int column = i % SIDE;
        const int row = i / SIDE % SIDE;
        const int layer = i / (SIDE * SIDE);
        const Vector3f place(static_cast<float>(layer) - 12.5f, static_cast<float>(row) - 12.5f,
                             static_cast<float>(column) - 12.5f);
        const float wave = 0.5f + 0.5f * std::sin(place.x * 0.3f) * std::cos(place.y * 0.2f);
        const float size = scene.smallest + (scene.largest - scene.smallest) * wave;
        const float brightness = std::sin(place.length() / 2.5f) + 0.5f;
        boxes.push_back({
            place,
            {size,                size,                       size},
            { 0.05f * brightness, 0.03f * brightness, 0.02f * brightness + 0.02f,    1}
        });
    }
    return boxes;
}

void setUpDrawing(DisplayGL& display, const Scene& scene)
{
    display.resetStates();
    DisplayObsolete::MatrixGL projection;
    projection.setProject(1.3962634f,
                          static_cast<float>(scene.width) / static_cast<float>(scene.height), 0.1f,
                          10000.0f);
    DisplayObsolete::setProject(projection);
    DisplayObsolete camera;
    camera.setCamera({0.0f, 0.0f, 40.0f}, {0.0f, 0.0f, 0.0f}, 0.0f);
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
    DisplayObsolete::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
    glFinish();
}

void drawBatched(const std::vector<Box>& boxes)
{
    for (const Box& box : boxes) {
        DisplayObsolete::setColor(box.color);
        DisplayObsolete::drawBoxAround(box.centre, box.halfSize);
    }
    DisplayObsolete::flush();
    glFinish();
}

/** Six sides with their corners in the same order, as a program without batching writes them. */
void drawOneByOne(const std::vector<Box>& boxes)
{
    for (const Box& box : boxes) {
        const Vector3f low = box.centre - box.halfSize;
        const Vector3f high = box.centre + box.halfSize;
        glColor4f(box.color.x, box.color.y, box.color.z, box.color.w);
        glBegin(GL_QUADS);
        glVertex3f(high.x, low.y, low.z);
        glVertex3f(low.x, low.y, low.z);
        glVertex3f(low.x, high.y, low.z);
        glVertex3f(high.x, high.y, low.z);
        glVertex3f(low.x, low.y, high.z);
        glVertex3f(high.x, low.y, high.z);
        glVertex3f(high.x, high.y, high.z);
        glVertex3f(low.x, high.y, high.z);
        glVertex3f(low.x, low.y, low.z);
        glVertex3f(high.x, low.y, low.z);
        glVertex3f(high.x, low.y, high.z);
        glVertex3f(low.x, low.y, high.z);
        glVertex3f(low.x, high.y, high.z);
        glVertex3f(high.x, high.y, high.z);
        glVertex3f(high.x, high.y, low.z);
        glVertex3f(low.x, high.y, low.z);
        glVertex3f(low.x, low.y, low.z);
        glVertex3f(low.x, low.y, high.z);
        glVertex3f(low.x, high.y, high.z);
        glVertex3f(low.x, high.y, low.z);
        glVertex3f(high.x, low.y, high.z);
        glVertex3f(high.x, low.y, low.z);
        glVertex3f(high.x, high.y, low.z);
        glVertex3f(high.x, high.y, high.z);
        glEnd();
    }
    glFinish();
}

void measure(DisplayGL& display, const Scene& scene, Figures& figures)
{
    display.open(WindowMode("boxes", scene.width, scene.height, false));
    const std::vector<Box> boxes = makeBoxes(scene);

    setUpDrawing(display, scene);
    drawOneByOne(boxes);
    const auto expected = zavex::bench::screenshot(display);
    setUpDrawing(display, scene);
    drawBatched(boxes);
    const auto actual = zavex::bench::screenshot(display);
    figures.report(std::string("boxes ") + scene.name + ", difference of the pictures",
                   zavex::bench::differenceOf(expected, actual), 0.0, Bound::AT_MOST);

    const double ratio = zavex::bench::medianRatio(
        RUNS, [&] { drawBatched(boxes); }, [&] { drawOneByOne(boxes); });
    figures.report(std::string("boxes ") + scene.name + ", batched / glBegin each", ratio,
                   RATIO_BOUND, Bound::AT_MOST);
    display.close();
}

} // namespace

void zavex::bench::run(Figures& figures)
{
    const std::unique_ptr<DisplayGL> display(DisplayGL::create());
    for (const Scene& scene : SCENES)
        measure(*display, scene, figures);
}
