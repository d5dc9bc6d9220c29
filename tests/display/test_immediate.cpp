#include "display/dis_immediate.h"

#include "gl_assets.h"
#include "support/allocation_counter.h"

#include <cmath>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

namespace zavex::display {
namespace {

using mathbase::Vector3f;
using mathbase::Vector4f;

constexpr int WIDTH = 64;
constexpr int HEIGHT = 48;

/** A window in which one unit is one pixel, y growing upwards, z = 0 in the middle. */
class ImmediateTest : public DisplayTest {
protected:
    ImmediateTest() { start(); }

    /** Empties the window and puts every state back. */
    void start()
    {
        mDisplay.resetStates();
        Draw::setProject(0.0f, WIDTH, 0.0f, HEIGHT);
        Draw().setModelView();
        Draw::setColor(1.0f, 0.4f, 0.2f, 1.0f); // whole steps of 1/255: no rounding at stake
        Draw::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
    }

    template <typename Action>
    Picture pictureOf(Action action)
    {
        start();
        action();
        return mWindow.screenshot();
    }

    /** How many arrays the driver gets for what `action` draws. */
    template <typename Action>
    unsigned long arraysOf(Action action)
    {
        const unsigned long before = Immediate::live().drawnArrays();
        action();
        Draw::flush();
        return Immediate::live().drawnArrays() - before;
    }
};

/** Hands vertices to the driver one by one, after the state that was asked for. */
void drawPlainly(GLenum primitive, const std::vector<Vector3f>& points)
{
    Immediate::live().flushWithColor();
    glBegin(primitive);
    for (const Vector3f& point : points)
        glVertex3fv(point);
    glEnd();
}

void drawPlainly(GLenum primitive, std::span<const Draw::Vertex> vertices)
{
    Draw::flush();
    glBegin(primitive);
    for (const Draw::Vertex& vertex : vertices) {
        glColor4fv(vertex.color);
        glVertex3fv(vertex.position);
    }
    glEnd();
}

/** The same shape through the batch and vertex by vertex. */
struct ShapeCase {
    const char* name;
    void (*batched)();
    void (*plain)();
    void (*prepare)() = [] {};
};

std::vector<Vector3f> rectangle(float x0, float y0, float x1, float y1)
{
    return {Vector3f(x0, y0, 0), Vector3f(x1, y0, 0), Vector3f(x1, y1, 0), Vector3f(x0, y1, 0)};
}

/** Points of a circle of radius 18 around (20, 22), the first one again at the end. */
std::vector<Vector3f> circle(std::vector<Vector3f> found = {})
{
    for (int k = 0; k < 33; ++k) {
        const float angle = static_cast<float>(k) * 0.19634955f;
        found.emplace_back(20.0f + 18.0f * std::cos(angle), 22.0f + 18.0f * std::sin(angle), 0);
    }
    return found;
}

/** A camera that sees a box from a corner. */
void lookFromAbove()
{
    Draw::MatrixGL projection;
    projection.setProject(1.0f, 4.0f / 3.0f, 0.1f, 100.0f);
    Draw::setProject(projection);
    Draw camera;
    camera.setCamera({3.0f, 4.0f, 5.0f}, {0.0f, 0.0f, 0.0f}, 0.0f);
}

/** The same; every side shows through the others. */
void lookThrough()
{
    lookFromAbove();
    Draw::setBlending(true);
    Draw::setColor(0.6f, 0.4f, 0.2f, 0.4f);
}

/** The six sides of the box (-1, -1, -1) to (1, 1.5, 1), counter-clockwise from outside. */
void plainBox()
{
    std::vector<Vector3f> points;
    for (const char* side : {"1023", "4576", "0154", "6732", "0462", "5137"})
        for (; *side != 0; ++side) {
            const int corner = *side - '0';
            points.emplace_back((corner & 1) != 0 ? 1 : -1, (corner & 2) != 0 ? 1.5f : -1,
                                (corner & 4) != 0 ? 1 : -1);
        }
    drawPlainly(GL_QUADS, points);
}

Draw::Vertex colouredAt(float x, float y, float red, float green, float blue)
{
    return {Vector3f(x, y, 0), {}, Vector4f(red, green, blue, 1)};
}

/** A path of five vertices, each of its own colour. */
const std::vector<Draw::Vertex> PATH = {
    colouredAt(4.5f, 4.5f, 1, 0, 0), colouredAt(50.5f, 8.5f, 0, 1, 0),
    colouredAt(60.5f, 30.5f, 0, 0, 1), colouredAt(30.5f, 44.5f, 1, 1, 0),
    colouredAt(8.5f, 33.5f, 1, 1, 1)};

template <GLenum PRIMITIVE, std::size_t COUNT>
void plainPath()
{
    drawPlainly(PRIMITIVE, std::span(PATH).first(COUNT));
}

// clang-format off
constexpr ShapeCase SHAPES[] = {
    {"Line", [] { Draw::drawLine(3.5f, 4.5f, 50.5f, 40.5f); },
     [] { drawPlainly(GL_LINES, {{3.5f, 4.5f, 0}, {50.5f, 40.5f, 0}}); }},
    {"WideLineOfItsOwnColour",
     [] {
         Draw::drawLine({3.5f, 4.5f, 0.0f}, {50.5f, 40.5f, 0.0f}, {0, 1, 0, 1}, 5.0f, false, 0);
         Draw::drawLine(3.5f, 40.5f, 50.5f, 4.5f);
     },
     [] {
         Draw::setLineWidth(5.0f);
         Draw::setColor(0, 1, 0, 1);
         drawPlainly(GL_LINES, {{3.5f, 4.5f, 0}, {50.5f, 40.5f, 0}});
         Draw::setLineWidth(1.0f);
         Draw::setColor(1.0f, 0.4f, 0.2f, 1.0f);
         drawPlainly(GL_LINES, {{3.5f, 40.5f, 0}, {50.5f, 4.5f, 0}});
     }},
    {"DashesBeginAndEndTheLine",
     [] { Draw::drawLine({2, 4.5f, 0}, {52, 4.5f, 0}, {1, 1, 1, 1}, 1.0f, true, 3); },
     [] {
         Draw::setColor(1.0f);
         drawPlainly(GL_LINES, {{2, 4.5f, 0}, {12, 4.5f, 0}, {22, 4.5f, 0}, {32, 4.5f, 0},
                                {42, 4.5f, 0}, {52, 4.5f, 0}});
     }},
    {"SolidRectangle", [] { Draw::drawBox(3.0f, 4.0f, 30.0f, 20.0f, Draw::SOLID); },
     [] { drawPlainly(GL_QUADS, rectangle(3, 4, 30, 20)); }},
    {"WireRectangle", [] { Draw::drawBox(3.5f, 4.5f, 30.5f, 20.5f, Draw::WIRE); },
     [] { drawPlainly(GL_LINE_LOOP, rectangle(3.5f, 4.5f, 30.5f, 20.5f)); }},
    {"SolidCircle", [] { Draw::drawCircle(20.0f, 22.0f, 18.0f, Draw::SOLID); },
     [] { drawPlainly(GL_TRIANGLE_FAN, circle({{20, 22, 0}})); }},
    {"WireCircle", [] { Draw::drawCircle(20.0f, 22.0f, 18.0f, Draw::WIRE); },
     [] { drawPlainly(GL_LINE_STRIP, circle()); }},
    {"SolidBox", [] { Draw::drawBox({-1.0f, -1.0f, -1.0f}, {1.0f, 1.5f, 1.0f}); }, plainBox,
     lookThrough},
    {"BoxAroundItsCentreFacesOutwards",
     [] { Draw::drawBoxAround({0.0f, 0.25f, 0.0f}, {1.0f, 1.25f, 1.0f}); }, plainBox,
     [] {
         lookFromAbove();
         Draw::setFaceCulling(true);
         Draw::setBlending(true);
     }},
    {"BoxOfTransformedCorners",
     [] {
         Draw::MatrixGL transform;
         transform.setScale(Vector3f(1, 1.25f, -1)); // the last corner in the outline
         Draw::drawBox(Draw::boxCorners(transform, {0, 0.2f, 0}, {1, 1, 1}));
     },
     plainBox, lookThrough},
    {"BoxOfSixFloatsHidesItsFarSides",
     [] { Draw::drawBox(-1.0f, -1.0f, -1.0f, 1.0f, 1.5f, 1.0f); }, plainBox,
     [] {
         lookFromAbove();
         Draw::setFaceCulling(true);
         Draw::setFrontFace(Winding::CLOCKWISE);
     }},
    {"Points", [] { Draw::drawPoints(PATH.data(), 5); }, plainPath<GL_POINTS, 5>,
     [] { Draw::setPointSize(5.0f); }},
    {"LinesLeaveOutAHalfOne", [] { Draw::drawLines(PATH.data(), 5); }, plainPath<GL_LINES, 4>},
    {"TrianglesLeaveOutAPart", [] { Draw::drawTriangles(PATH.data(), 5); },
     plainPath<GL_TRIANGLES, 3>},
    {"QuadWithGradient", [] { Draw::drawQuads(PATH.data(), 5); }, plainPath<GL_QUADS, 4>},
    {"LineStrip", [] { Draw::drawLineStrip(PATH.data(), 5); }, plainPath<GL_LINE_STRIP, 5>},
    {"LineLoop", [] { Draw::drawLineLoop(PATH.data(), 5); }, plainPath<GL_LINE_LOOP, 5>},
    {"TriangleFan", [] { Draw::drawTriangleFan(PATH.data(), 5); }, plainPath<GL_TRIANGLE_FAN, 5>},
};

// clang-format on

TEST_F(ImmediateTest, SamePixelsAsVertexByVertex)
{
    for (const ShapeCase& row : SHAPES) {
        SCOPED_TRACE(row.name);
        const auto prepared = [&](void (*draw)()) {
            return pictureOf([&] {
                row.prepare();
                draw();
            });
        };
        const Picture plain = prepared(row.plain);
        EXPECT_FALSE(test::isBlack(plain));
        EXPECT_TRUE(isSamePicture(prepared(row.batched), plain, {}));
    }
}

TEST_F(ImmediateTest, StatesHoldForWhatFollowsThem)
{
    const Picture picture = pictureOf([] {
        Draw::drawBox(0, 0, 64, 24, Draw::SOLID);
        Draw::setBlending(true);
        Draw::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
        Draw::setColor(64 / 255.0f);
        Draw::drawBox(8, 8, 40, 40, Draw::SOLID);
        Draw::setBlendEquation(BlendEquation::REVERSE_SUBTRACT);
        Draw::drawBox(30, 10, 60, 30, Draw::SOLID);
        Draw::setBlending(false);
        Draw::setScissor(10, 12, 5, 6);
        Draw::setScissorTest(true);
        Draw::setColor(Vector3f{0, 0, 1});
        Draw::drawBox(0, 0, 64, 48, Draw::SOLID);
    });
    // clang-format off
    const std::tuple<const char*, int, int, unsigned> rows[] = {
        {"Plain", 2, 2, 0xff6633}, {"Added", 9, 9, 0xffa673}, {"AddedToBlack", 9, 30, 0x404040},
        {"Subtracted", 50, 12, 0xbf2600}, {"AddedAndSubtracted", 35, 12, 0xbf6633},
        {"ScissorsFirst", 10, 12, 0xff}, {"ScissorsLast", 14, 17, 0xff},
        {"RightOfThem", 15, 17, 0xffa673}, {"AboveThem", 14, 18, 0xffa673},
    };
    // clang-format on
    for (const auto& [name, x, y, expected] : rows)
        EXPECT_EQ(pixelAt(picture, x, HEIGHT - 1 - y), expected) << name;
}

TEST_F(ImmediateTest, ArraysAreAsFewAsTheStatesAllow)
{
    // What comes between two rectangles, and how many arrays the driver gets for it all.
    // clang-format off
    const std::tuple<const char*, void (*)(), unsigned long> rows[] = {
        {"ColourIsPartOfTheVertices", [] { Draw::setColor(0.5f); }, 1},
        {"StateSetToWhatItIs", [] { Draw::setBlending(false); }, 1},
        {"StateSetAndSetBack", [] { Draw::setLineWidth(4.0f), Draw::setLineWidth(1.0f); }, 1},
        {"OtherState", [] { Draw::setBlending(true); }, 2},
        {"OtherMatrix", [] { Draw::setProject(0, 10, 0, 10); }, 2},
        {"SameMatrix", [] { Draw::setProject(0, WIDTH, 0, HEIGHT); }, 1},
        {"OtherPrimitive", [] { Draw::drawLine(0, 0, 1, 1); }, 3},
        {"NothingIsDrawnWithoutARadius", [] { Draw::drawCircle(9, 9, 0.0f, Draw::SOLID); }, 1},
        {"Flush", [] { Draw::flush(); }, 2},
        {"Clear", [] { Draw::clear({0, 0, 0, 0}, 1.0f); }, 2},
        {"MoreThanAnArrayHolds",
         [] { for (int i = 0; i < 10000; ++i) Draw::drawBox({1, 1, 0}, {2, 2, 0}); }, 2},
    };
    // clang-format on
    for (const auto& [name, between, expected] : rows) {
        start();
        const unsigned long drawn = arraysOf([&, act = between] {
            Draw::drawBox(1, 1, 5, 5, Draw::SOLID);
            act();
            Draw::drawBox(2, 2, 6, 6, Draw::SOLID);
        });
        EXPECT_EQ(drawn, expected) << name;
    }
}

/** Shapes of more vertices than an array holds: every third vertex is far from the others. */
TEST_F(ImmediateTest, SplitsShapesThatAreLongerThanAnArray)
{
    std::vector<Draw::Vertex> many;
    for (int i = 0; i < 120001; ++i) {
        const float angle = static_cast<float>(i) * 0.00005f;
        const float radius = i % 3 == 0 ? 5.0f : 20.0f;
        Draw::Vertex& vertex = many.emplace_back();
        vertex.position = Vector3f(32 + radius * std::cos(angle), 24 + radius * std::sin(angle), 0);
        vertex.color = Vector4f(angle / 6.0f, 1, 1, 1);
    }
    const auto plain = [&](GLenum primitive) {
        return pictureOf([&] { drawPlainly(primitive, std::span(std::as_const(many))); });
    };
    const auto batched = [&](void (*draw)(const Draw::Vertex*, std::size_t)) {
        return pictureOf([&] { draw(many.data(), many.size()); });
    };

    EXPECT_TRUE(isSamePicture(batched(Draw::drawTriangleFan), plain(GL_TRIANGLE_FAN), {}));
    EXPECT_TRUE(isSamePicture(batched(Draw::drawLineLoop), plain(GL_LINE_LOOP), {}));
    EXPECT_TRUE(isSamePicture(batched(Draw::drawQuads), plain(GL_QUADS), {}));
}

TEST_F(ImmediateTest, DropsWhatTheDriverRefusesAndGoesOn)
{
    Draw::setLineWidth(-1.0f);
    Draw::drawLine(0.5f, 0.5f, 20.5f, 0.5f);
    const std::string message = thrownMessage([] { Draw::flush(); });
    EXPECT_NE(message.find("Line: glLineWidth(to.lineWidth)\nError: 'GL_INVALID_VALUE'"),
              std::string::npos)
        << message;

    Draw::setLineWidth(1.0f);
    Draw::drawBox(1, 1, 5, 5, Draw::SOLID);
    Draw::flush();
    Draw::drawBox(1, 1, 5, 5, Draw::SOLID);
    glEnable(GL_NONE); // leaves an error
    EXPECT_NE(thrownMessage([] { Draw::flush(); }).find("Line: glPushClientAttrib("),
              std::string::npos);
    GLint pushed = -1;
    glGetIntegerv(GL_CLIENT_ATTRIB_STACK_DEPTH, &pushed);
    EXPECT_EQ(pushed, 0);
    EXPECT_EQ(arraysOf([] { Draw::drawBox(1, 1, 5, 5, Draw::SOLID); }), 1u);
}

TEST_F(ImmediateTest, CombinesCameraAndTransform)
{
    Draw drawing;
    Draw::MatrixGL move;
    move.setTranslation(Vector3f{10, 0, 0});
    Draw::MatrixGL scale;
    scale.setScale(2.0f);
    drawing.setCamera(move);
    drawing.setTransform(scale);
    EXPECT_EQ(Immediate::live().state().modelView.multiply(Vector3f{1, 1, 1}), Vector3f(12, 2, 2));

    drawing.setCamera();
    EXPECT_EQ(Immediate::live().state().modelView, scale);
    drawing.setTransform();
    EXPECT_EQ(Immediate::live().state().modelView, Draw::MatrixGL());
}

TEST_F(ImmediateTest, AllocatesNothingInASteadyFrame)
{
    const auto frame = [&] {
        mDisplay.resetStates();
        Draw::setBlending(true);
        for (int i = 0; i < 20000; ++i) {
            Draw::setColor(static_cast<float>(i % 100) / 100.0f);
            Draw::drawBoxAround({0, 0, 0}, {1, 1, 1});
        }
        for (int i = 0; i < 100; ++i) {
            Draw::drawBoxWireAround({0, 0, 0}, {1, 1, 1});
            Draw::drawCircle(1, 1, 1, Draw::SOLID);
            Draw::drawLine({0, 0, 0}, {1, 1, 1}, {1, 1, 1, 1}, 2.0f, true, 4);
        }
        Draw::flush();
    };
    frame();
    const test::AllocationCounter counter;
    frame();
    EXPECT_EQ(counter.count(), 0u);
}

TEST_F(ImmediateTest, TexturedBoxShowsTheWholePictureUprightOnEachSide)
{
    constexpr int SIDE = 32; // pixels, in four quarters
    constexpr std::uint32_t QUARTERS[] = {0xffff0000, 0xff00ff00, 0xff0000ff, 0xffffffff};
    std::vector<std::uint32_t> pixels;
    for (int i = 0; i < SIDE * SIDE; ++i)
        pixels.push_back(QUARTERS[i / (SIDE * SIDE / 2) * 2 + i % SIDE / (SIDE / 2)]);
    am::Image image = imageOf(SIDE, SIDE, pixels);
    Texture* const texture = mDisplay.createTexture(image, Texture::TextureDeclaration{});
    for (const Vector3f& eye :
         {Vector3f(0, 0, 5), Vector3f(0, 0, -5), Vector3f(-5, 0, 0), Vector3f(5, 0, 0)}) {
        SCOPED_TRACE(testing::Message() << eye.x << " " << eye.z);
        const Picture picture = pictureOf([&] {
            lookFromAbove();
            Draw camera;
            camera.setCamera(eye, {0, 0, 0}, 0.0f);
            mDisplay.setTexture(texture, 0);
            Draw::setTexturing(true);
            Draw::setFaceCulling(true);
            Draw::setColor(1.0f);
            Draw::drawBoxTex({-1, -1, -1}, {1, 1, 1});
        });
        for (const int quarter : {0, 1, 2, 3})
            EXPECT_EQ(pixelAt(picture, WIDTH / 2 + (quarter % 2 == 0 ? -6 : 6),
                              HEIGHT / 2 + (quarter < 2 ? -6 : 6)),
                      QUARTERS[quarter] & 0xffffff);
    }
}

TEST(ImmediateWithoutDisplay, IsAnError)
{
    EXPECT_FALSE(Immediate::isLive());
    EXPECT_EQ(thrownMessage([] { Draw::drawLine(0, 0, 1, 1); }), "display");
}

TEST(HexColor, IsReadDigitByDigit)
{
    // clang-format off
    const std::pair<const char*, Vector4f> cases[] = {
        {"", {0, 0, 0, 1}}, {"00ff00", {0, 1, 0, 1}}, {"Ff8000", {1, 0.50196f, 0, 1}},
        {"ff800080", {1, 0.50196f, 0, 0.50196f}}, {"f", {0.94118f, 0, 0, 1}},
        {"fff", {1, 0.94118f, 0, 1}}, {"#ff8000", {0.05882f, 0.97255f, 0, 0}},
        {"g1/a:F@1", {0.00392f, 0.03922f, 0.05882f, 0.00392f}}, {"0000000012", {0, 0, 0, 0}},
    };
    // clang-format on
    for (const auto& [text, expected] : cases) {
        const Vector4f color = Draw::hex2vec(text);
        for (int i = 0; i < 4; ++i)
            EXPECT_NEAR(color[i], expected[i], 5e-6f) << text << " " << i;
    }
}

} // namespace
} // namespace zavex::display
