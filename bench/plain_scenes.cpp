#include "plain_scenes.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"
#include "display/dis_shader.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_quat.h"
#include "mathbase/mb_vector2.h"

#include <algorithm>
#include <cmath>

namespace zavex::bench {

namespace {

using display::Shader;
using display::Texture;
using effects::Star;
using mathbase::Euler;
using mathbase::Matrix4x4Col;
using mathbase::Quatf;
using mathbase::RotationOrder;
using mathbase::Vector2f;
using mathbase::Vector3f;

constexpr float PI = 3.14159265f;
const Vector3f ORIGIN(0.0f, 0.0f, 0.0f);
const Vector3f ONES(1.0f, 1.0f, 1.0f);

/** Everything set within its life is as before at its end. */
class Plainly {
public:
    Plainly()
    {
        display::DisplayObsolete::flush();
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
    }
    ~Plainly()
    {
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
        glPopAttrib();
    }
    Plainly(const Plainly&) = delete;
    Plainly& operator=(const Plainly&) = delete;

    void setProjection(const Matrix4x4Col& projection)
    {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.mData);
        glMatrixMode(GL_MODELVIEW);
    }
    void setCamera(const Matrix4x4Col& camera)
    {
        mCamera = camera;
        glLoadMatrixf(mCamera.mData);
    }
    void setTransform(const Vector3f& position, const Euler& rotation, const Vector3f& scale)
    {
        Quatf turn;
        turn.setEuler(rotation);
        Matrix4x4Col transform;
        transform.buildPRS(position, turn, scale);
        glLoadMatrixf(mCamera.multiply(transform).mData);
    }

private:
    Matrix4x4Col mCamera;
};

/** Pixels. */
Vector2f sizeOf(const display::DisplayGL& display)
{
    const display::WindowMode& mode = display.getWindowMode();
    return {static_cast<float>(mode.width), static_cast<float>(mode.height)};
}

/** Texels. */
Vector2f sizeOf(const Texture& picture)
{
    const Texture::TextureDeclaration& declaration = picture.getDeclaration();
    return {static_cast<float>(declaration.width), static_cast<float>(declaration.height)};
}

Matrix4x4Col perspective(const display::DisplayGL& display, float far)
{
    const Vector2f window = sizeOf(display);
    Matrix4x4Col projection;
    projection.setProject(1.3962634f, window.x / window.y, 0.1f, far);
    return projection;
}

Matrix4x4Col camera(const Vector3f& from, const Vector3f& to, float roll)
{
    Matrix4x4Col matrix;
    matrix.setCamera(from, to, roll);
    return matrix;
}

void addLight()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
}

template <typename Value>
void setUniform(Shader& shader, const char* name, Value value)
{
    shader.set(shader.getUniformLocation(name), &value, 1);
}

void setupVolumetric(const SceneParts& parts, float intensity)
{
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glEnable(GL_CULL_FACE);
    addLight();
    parts.display.setShader(parts.volume);
    setUniform(*parts.volume, "intensity", intensity);
    glBlendEquation(GL_FUNC_ADD);
    glFrontFace(GL_CW);
}

void changeVolumetric()
{
    glBlendEquation(GL_FUNC_REVERSE_SUBTRACT);
    glFrontFace(GL_CCW);
}

void endVolumetric(const SceneParts& parts)
{
    parts.display.setShader(nullptr);
    glBlendEquation(GL_FUNC_ADD);
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDisable(GL_BLEND);
}

Vector3f boxCorner(const Vector3f& centre, const Vector3f& half, int corner)
{
    return centre + Vector3f((corner & 1) != 0 ? half.x : -half.x,
                             (corner & 2) != 0 ? half.y : -half.y,
                             (corner & 4) != 0 ? half.z : -half.z);
}

void drawBox(const Vector3f& centre, const Vector3f& half)
{
    constexpr int sides[6][4] = {
        {1, 0, 2, 3},
        {4, 5, 7, 6},
        {0, 1, 5, 4},
        {6, 7, 3, 2},
        {0, 4, 6, 2},
        {5, 1, 3, 7},
    };
    constexpr float texcoords[4][2] = {
        {0, 1},
        {1, 1},
        {1, 0},
        {0, 0}
    };
    glBegin(GL_QUADS);
    for (const auto& side : sides) {
        for (int i = 0; i < 4; ++i) {
            glTexCoord2fv(texcoords[i]);
            const Vector3f corner = boxCorner(centre, half, side[i]);
            glVertex3f(corner.x, corner.y, corner.z);
        }
    }
    glEnd();
}

void drawBoxWire(const Vector3f& centre, const Vector3f& half)
{
    constexpr int edges[12][2] = {
        {0, 1},
        {2, 3},
        {4, 5},
        {6, 7},
        {0, 2},
        {1, 3},
        {4, 6},
        {5, 7},
        {0, 4},
        {1, 5},
        {2, 6},
        {3, 7},
    };
    glBegin(GL_LINES);
    for (const auto& edge : edges) {
        for (const int end : edge) {
            const Vector3f corner = boxCorner(centre, half, end);
            glVertex3f(corner.x, corner.y, corner.z);
        }
    }
    glEnd();
}

/** The whole texture on a rectangle in normalised device coordinates. */
void drawPicture(float left, float top, float right, float bottom)
{
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(left, top);
    glTexCoord2f(1, 0);
    glVertex2f(right, top);
    glTexCoord2f(1, 1);
    glVertex2f(right, bottom);
    glTexCoord2f(0, 1);
    glVertex2f(left, bottom);
    glEnd();
}

} // namespace

SceneParts::SceneParts(display::DisplayGL& theDisplay) : display(theDisplay)
{
    Texture::TextureDeclaration plain;
    plain.useMipmaps = false;
    ascii = display.createTexture("ascii/ascii.png", plain, false);
    greetingsLines = display.createTexture("lightspeed/greets.png", false);
    greetings = display.createTexture("lightspeed/greetings.png", false);
    threads = display.createTexture("volumetric/threads.png", false);
    credits = display.createTexture("creds/code.png", false);
    volume = display.createShader("volumetric/vol.vert", "volumetric/vol.frag", nullptr);
    body = display.createShader("volumetric/tex.vert", "volumetric/tex.frag", nullptr);
}

void drawStarsPlainly(const SceneParts& parts, const Curves& curves, const effects::Stars& stars,
                      const effects::Common& common)
{
    Plainly plainly;
    plainly.setProjection(perspective(parts.display, 100000.0f));
    plainly.setCamera(camera(common.from, common.to, common.roll));
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    addLight();
    glEnable(GL_CULL_FACE);
    glPointSize(2.0f);
    const float k = (curves.brightness + 1.0f) * 0.5f;
    for (int i = 0; i < effects::Stars::COUNT; ++i) {
        const Star& star = stars.stars()[i];
        glBegin(GL_POINTS);
        glColor3f(k * star.mColor.x, k * star.mColor.y, k * star.mColor.z);
        glVertex3f(star.mPos.x, star.mPos.y, star.mPos.z);
        glEnd();
    }
}

namespace {

/** A cell of the end picture; sizes are those of a cell on the screen and in texture coordinates.
 */
void drawCell(int row, int column, float offset, const Vector2f& size, const Vector2f& step)
{
    const float x = size.x * static_cast<float>(column - 47);
    const float y = size.y * static_cast<float>(row - 10) + offset;
    const float u = step.x * static_cast<float>(column);
    const float v = step.y * static_cast<float>(row);
    glBegin(GL_QUADS);
    glTexCoord2f(u, v);
    glVertex2f(x, y);
    glTexCoord2f(u + step.x, v);
    glVertex2f(x + size.x, y);
    glTexCoord2f(u + step.x, v + step.y);
    glVertex2f(x + size.x, y + size.y);
    glTexCoord2f(u, v + step.y);
    glVertex2f(x, y + size.y);
    glEnd();
}

} // namespace

void drawAsciiPlainly(const SceneParts& parts, const effects::Ascii& ascii, float time)
{
    constexpr int rows = effects::Ascii::ROWS;
    constexpr int columns = effects::Ascii::COLUMNS;
    parts.display.setTexture(parts.ascii, 0);
    {
        Plainly plainly;
        plainly.setProjection(Matrix4x4Col());
        glLoadIdentity();
        glScalef(1.0f, -1.0f, 0.0f);
        addLight();
        glEnable(GL_TEXTURE_2D);
        const Vector2f picture = sizeOf(*parts.ascii);
        const Vector2f window = sizeOf(parts.display);
        const Vector2f size(2.0f * picture.x / window.x / static_cast<float>(columns),
                            2.0f * picture.y / window.y / static_cast<float>(rows));
        const Vector2f step(8.0f / picture.x, 8.0f / picture.y);
        glColor3f(1.0f, 1.0f, 1.0f);
        for (int cell = 0; cell < rows * columns; ++cell)
            drawCell(cell / columns, cell % columns,
                     std::max(ascii.chars()[cell].mOffset - 2.0f * time, 0.0f), size, step);
    }
    parts.display.setTexture(nullptr, 0);
}

namespace {

void drawStreaks(const SceneParts& parts, const Curves& curves,
                 const effects::Lightspeed& lightspeed)
{
    Plainly plainly;
    plainly.setProjection(perspective(parts.display, 10000.0f));
    plainly.setCamera(camera(ORIGIN, Vector3f(0.0f, 0.0f, 10.0f), 0.0f));
    addLight();
    const float k = (curves.brightness + 1.0f) * 0.5f;
    const float spread = 3.0f + 2.0f * curves.explode;
    for (int i = 0; i < effects::Lightspeed::STREAKS; ++i) {
        const Vector3f& place = lightspeed.streaks()[i].mPos;
        plainly.setTransform(
            Vector3f(spread * place.x, spread * place.y, place.z),
            Euler(curves.rotX, curves.rotY, std::atan2(place.y, place.x), RotationOrder::ZXY),
            ONES);
        const float light = k * (3.0f / place.z);
        glColor3f(light, light, light);
        glBegin(GL_QUADS);
        glVertex3f(0.0f, -0.1f, 1.5f);
        glVertex3f(0.0f, 0.1f, 1.5f);
        glVertex3f(0.0f, 0.1f, -1.5f);
        glVertex3f(0.0f, -0.1f, -1.5f);
        glEnd();
    }
}

/** The top of a plate with its line of the greetings. */
void drawLine(float index)
{
    glBegin(GL_QUADS);
    glTexCoord2f(0.0f, index / 35.0f);
    glVertex3f(-1.0f, 1.0f, -1.0f);
    glTexCoord2f(1.0f, index / 35.0f);
    glVertex3f(1.0f, 1.0f, -1.0f);
    glTexCoord2f(1.0f, (index + 1.0f) / 35.0f);
    glVertex3f(1.0f, 1.0f, 1.0f);
    glTexCoord2f(0.0f, (index + 1.0f) / 35.0f);
    glVertex3f(-1.0f, 1.0f, 1.0f);
    glEnd();
}

/** The plates in one of the passes 0 to 2. */
void drawPlates(Plainly& plainly, const effects::Lightspeed& lightspeed, float time, int pass)
{
    const float eye = 5.0f * time - 10.0f;
    for (int i = 0; i < effects::Lightspeed::PLATES; ++i) {
        const auto index = static_cast<float>(i);
        const Vector3f& place = lightspeed.plates()[i].mPos;
        const float d = std::abs(eye - place.z);
        if (d > 20.0f)
            continue;
        const float a = std::max(4.0f * std::sin(0.5f * d - 1.0f), 0.0f);
        plainly.setTransform(place,
                             Euler(0.5f * PI + a * std::sin(index), a * std::cos(index),
                                   PI + a * std::sin(time), RotationOrder::XYZ),
                             Vector3f(1.0f, 0.1f, 0.1f));
        const float f = 25.0f / (d * d);
        if (pass < 2) {
            glColor3f(0.6f * f, 0.2f * f, 0.1f * f);
            drawBox(ORIGIN, ONES);
        } else {
            addLight();
            glColor3f(0.1f * f, 0.1f * f, 0.1f * f);
            drawLine(index);
        }
    }
}

} // namespace

void drawLightspeedPlainly(const SceneParts& parts, const Curves& curves,
                           const effects::Lightspeed& lightspeed, float time)
{
    drawStreaks(parts, curves, lightspeed);
    parts.display.setTexture(parts.greetingsLines, 0);
    Plainly plainly;
    plainly.setProjection(perspective(parts.display, 10000.0f));
    plainly.setCamera(
        camera(Vector3f(0.0f, 0.0f, 5.0f * time - 10.0f), Vector3f(0.0f, 0.0f, 5.0f * time), 0.0f));
    glEnable(GL_TEXTURE_2D);
    setupVolumetric(parts, 1.4f);
    drawPlates(plainly, lightspeed, time, 0);
    changeVolumetric();
    drawPlates(plainly, lightspeed, time, 1);
    endVolumetric(parts);
    drawPlates(plainly, lightspeed, time, 2);

    parts.display.setTexture(parts.greetings, 0);
    plainly.setProjection(Matrix4x4Col());
    glLoadIdentity();
    glColor3f(curves.greetings, curves.greetings, curves.greetings);
    const Vector2f picture = sizeOf(*parts.greetings);
    const Vector2f window = sizeOf(parts.display);
    drawPicture(-picture.x / window.x, picture.y / window.y, picture.x / window.x,
                -picture.y / window.y);
    parts.display.setTexture(nullptr, 0);
}

namespace {

class PlainRoad {
public:
    PlainRoad(const SceneParts& parts, const Curves& curves, float duration)
        : mParts(parts), mCurves(curves), mDuration(duration)
    {}

    void draw(const effects::Volumetric& volumetric, float time)
    {
        const Vector3f from = pathAt(time) + Vector3f(0.0f, 0.4f, 0.0f);
        const Vector3f to = pathAt(time + 1.0f) + Vector3f(0.0f, 1.8f, 0.0f);
        const float roll = -8.0f * (pathAt(time + 1.0f).x - pathAt(time + 1.5f).x) / 20.0f;
        {
            Plainly plainly;
            plainly.setProjection(perspective(mParts.display, 100000.0f));
            plainly.setCamera(camera(from, to, roll));
            drawRoad(plainly, from);
            drawGrid(plainly);
            drawHouses(plainly, volumetric, time);
        }
        drawCredits();
    }

private:
    Vector3f pathAt(float time) const
    {
        const float u = std::clamp(time / mDuration, 0.0f, 1.0f);
        return (mCurves.pathStart + (mCurves.pathEnd - mCurves.pathStart) * u)
            .multiply(Vector3f(20.0f, 20.0f, 100.0f));
    }

    void drawRoad(Plainly& plainly, const Vector3f& from)
    {
        setupVolumetric(mParts, 0.4f);
        drawScene(plainly, from, false);
        changeVolumetric();
        drawScene(plainly, from, false);
        endVolumetric(mParts);
        drawScene(plainly, from, true);
    }

    void drawScene(Plainly& plainly, const Vector3f& from, bool outline)
    {
        glEnable(GL_BLEND);
        const float step = mDuration / 400.0f;
        for (int i = 0; i < 400; ++i) {
            const float u = static_cast<float>(i) * step;
            const Vector3f place = pathAt(u);
            if (place.z < from.z)
                continue;
            const float turn = 40.0f * (place.x - pathAt(u - step).x) / 20.0f;
            plainly.setTransform(place, Euler(0.0f, turn, 0.0f, RotationOrder::XYZ), ONES);
            const float fade = 1.0f - 0.035f * (from - place).length();
            if (fade < 0.01f)
                break;
            const Vector3f& c = mCurves.road;
            const Vector3f left(-0.5f, 0.0f, 0.0f);
            const Vector3f right(0.5f, 0.0f, 0.0f);
            if (outline) {
                glColor4f(c.x, c.y, c.z, 0.1f * fade);
                glLineWidth(3.0f);
                drawBoxWire(left, Vector3f(0.45f, 0.055f, 0.9f * step));
                drawBoxWire(right, Vector3f(0.45f, 0.055f, 0.9f * step));
            } else {
                glColor4f(c.x * fade, c.y * fade, c.z * fade, 0.2f * fade);
                drawBox(left, Vector3f(0.45f, 0.055f, 1.9f * step));
                drawBox(right, Vector3f(0.45f, 0.055f, 1.9f * step));
            }
        }
    }

    void drawGrid(Plainly& plainly)
    {
        addLight();
        glColor3f(0.0051f, 0.007f, 0.01f);
        glLineWidth(1.0f);
        plainly.setTransform(Vector3f(0.0f, -29.0f, 0.0f), Euler(0.0f, 0.0f, 0.0f),
                             Vector3f(1.0f, 1.4f, 1.0f));
        const auto line = [](float x0, float z0, float x1, float z1) {
            glBegin(GL_LINES);
            glVertex3f(x0, 0.0f, z0);
            glVertex3f(x1, 0.0f, z1);
            glEnd();
        };
        for (int i = -300; i < 300; ++i) {
            const auto k = static_cast<float>(i);
            line(k, -300.0f, k, 300.0f);
            line(-300.0f, k, 300.0f, k);
        }
    }

    void drawHouses(Plainly& plainly, const effects::Volumetric& volumetric, float time)
    {
        const Vector3f camera = pathAt(time) + Vector3f(0.0f, 0.4f, 0.0f);
        for (int h = 0; h < effects::Volumetric::HOUSES; ++h) {
            const Star& house = volumetric.houses()[h];
            const float dz = house.mPos.z - camera.z;
            const float wave = (std::sin(0.2f * time + dz) + 2.0f) * 0.3f;
            const Vector3f place(house.mPos.x, house.mSize.y - 19.2f + wave, house.mPos.z);
            const float f = std::min(1.5f - 0.06f * (place - camera).length() -
                                         std::abs(0.2f * std::sin(static_cast<float>(h))),
                                     1.0f);
            if (f < 0.0f)
                continue;
            plainly.setTransform(
                place, Euler(0.0f, 0.0f, 0.0f),
                Vector3f(house.mSize.x, house.mSize.y + wave + 0.7f, house.mSize.z));
            const effects::Volumetric::Stages stages = effects::Volumetric::stagesAt(f);
            drawVolume(stages.volume);
            drawBody(stages.body, time);
            drawOutline(stages.outline);
        }
    }

    void drawVolume(float p)
    {
        const float s = std::sin(0.5f * PI * p);
        setupVolumetric(mParts, 0.4f);
        glColor3f(0.3f * mCurves.houses.x, 0.3f * mCurves.houses.y, 0.3f * mCurves.houses.z);
        drawBox(ORIGIN, Vector3f(1.15f, 1.15f * s, 1.15f));
        changeVolumetric();
        drawBox(ORIGIN, Vector3f(1.15f, 1.15f * s, 1.15f));
        endVolumetric(mParts);
    }

    void drawBody(float p, float time)
    {
        const float light = 0.08f * std::sin(0.5f * PI * p);
        glEnable(GL_TEXTURE_2D);
        addLight();
        mParts.display.setTexture(mParts.threads, 0);
        mParts.display.setShader(mParts.body);
        setUniform(*mParts.body, "texture", 0);
        setUniform(*mParts.body, "percent", time);
        glColor3f(light, light, light);
        drawBox(ORIGIN, ONES);
        mParts.display.setTexture(nullptr, 0);
        mParts.display.setShader(nullptr);
        glDisable(GL_TEXTURE_2D);
    }

    void drawOutline(float p)
    {
        constexpr int edges[12][2] = {
            {0, 1},
            {5, 4},
            {0, 4},
            {5, 1},
            {2, 3},
            {7, 6},
            {2, 6},
            {7, 3},
            {0, 2},
            {3, 1},
            {5, 7},
            {6, 4},
        };
        glColor3f(0.18f, 0.09f, 0.0f);
        glLineWidth(3.0f);
        glBegin(GL_LINES);
        for (const auto& edge : edges) {
            const Vector3f from = boxCorner(ORIGIN, ONES, edge[0]);
            const Vector3f to = from + (boxCorner(ORIGIN, ONES, edge[1]) - from) * p;
            glVertex3f(from.x, from.y, from.z);
            glVertex3f(to.x, to.y, to.z);
        }
        glEnd();
    }

    void drawCredits()
    {
        mParts.display.setTexture(mParts.credits, 0);
        {
            Plainly plainly;
            plainly.setProjection(Matrix4x4Col());
            glLoadIdentity();
            glEnable(GL_TEXTURE_2D);
            addLight();
            const Vector2f picture = sizeOf(*mParts.credits);
            const Vector2f window = sizeOf(mParts.display);
            glColor3f(mCurves.credits, mCurves.credits, mCurves.credits);
            drawPicture(1.0f - 2.0f * picture.x / window.x, 1.1f, 1.0f,
                        1.1f - 2.0f * picture.y / window.y);
        }
        mParts.display.setTexture(nullptr, 0);
    }

    const SceneParts& mParts;
    const Curves& mCurves;
    float mDuration;
};

} // namespace

void drawVolumetricPlainly(const SceneParts& parts, const Curves& curves,
                           const effects::Volumetric& volumetric, float time, float duration)
{
    PlainRoad(parts, curves, duration).draw(volumetric, time);
}

} // namespace zavex::bench
