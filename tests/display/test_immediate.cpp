#include "am/am_image.h"
#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"
#include "display/dis_immediate.h"
#include "support/case_name.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"
#include "support/log_capture.h"
#include "support/picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace zavex::display {
namespace {

using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;
using test::Picture;
using Draw = DisplayObsolete;

constexpr int WIDTH = 64;
constexpr int HEIGHT = 48;

/** A window in which one unit is one pixel, y growing upwards, z = 0 in the middle. */
class ImmediateTest : public testing::Test {
protected:
    void SetUp() override { start(); }

    /** Empties the window and puts every state back. */
    void start()
    {
        mDisplay->resetStates();
        Draw::setProject(0.0f, WIDTH, 0.0f, HEIGHT);
        DisplayObsolete().setModelView();
        Draw::setColor(1.0f, 0.4f, 0.2f, 1.0f); // whole steps of 1/255: no rounding at stake
        Draw::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
    }

    template <typename Action>
    Picture pictureOf(Action action)
    {
        start();
        action();
        return mDisplay.screenshot();
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

    test::GlDisplay mDisplay{WIDTH, HEIGHT};
};

bool isBlank(const Picture& picture)
{
    return std::ranges::all_of(picture.rgb, [](std::uint8_t value) { return value == 0; });
}

/** Hands vertices to the driver one by one, after the state that was asked for. */
template <typename Vertices>
void drawPlainly(GLenum primitive, Vertices vertices)
{
    Draw::flush();
    const auto color = Immediate::live().color();
    glColor4f(color[0], color[1], color[2], color[3]);
    glBegin(primitive);
    vertices();
    glEnd();
}

/** The same shape through the batch and vertex by vertex. */
struct ShapeCase {
    const char* name;
    void (*batched)();
    void (*plain)();

    friend void PrintTo(const ShapeCase& shape, std::ostream* out) { *out << shape.name; }
};

void plainCircle(GLenum primitive, int points, float radiusX, float radiusY)
{
    drawPlainly(primitive, [&] {
        if (primitive == GL_TRIANGLE_FAN)
            glVertex2f(20.0f, 22.0f);
        for (int k = 0; k < points; ++k) {
            const float angle = static_cast<float>(k) * 0.19634955f;
            glVertex2f(20.0f + radiusX * std::cos(angle), 22.0f + radiusY * std::sin(angle));
        }
    });
}

/** A camera that sees a box from a corner. */
void lookFromAbove()
{
    DisplayObsolete::MatrixGL projection;
    projection.setProject(1.0f, 4.0f / 3.0f, 0.1f, 100.0f);
    Draw::setProject(projection);
    DisplayObsolete camera;
    camera.setCamera({3.0f, 4.0f, 5.0f}, {0.0f, 0.0f, 0.0f}, 0.0f);
}

/** The six sides of the box (-1, -1, -1) to (1, 1.5, 1), counter-clockwise from outside. */
void plainBox()
{
    const float x = 1.0f;
    const float y = 1.5f;
    const float z = 1.0f;
    drawPlainly(GL_QUADS, [&] {
        // clang-format off
        const float sides[6][4][3] = {
            {{x, -1, -z}, {-x, -1, -z}, {-x, y, -z}, {x, y, -z}},
            {{-x, -1, z}, {x, -1, z}, {x, y, z}, {-x, y, z}},
            {{-x, -1, -z}, {x, -1, -z}, {x, -1, z}, {-x, -1, z}},
            {{-x, y, z}, {x, y, z}, {x, y, -z}, {-x, y, -z}},
            {{-x, -1, -z}, {-x, -1, z}, {-x, y, z}, {-x, y, -z}},
            {{x, -1, z}, {x, -1, -z}, {x, y, -z}, {x, y, z}},
        };
        // clang-format on
        for (const auto& side : sides)
            for (const auto& corner : side)
                glVertex3fv(corner);
    });
}

void plainBoxEdges()
{
    drawPlainly(GL_LINES, [] {
        for (const float a : {-1.0f, 1.0f})
            for (const float b : {-1.0f, 1.0f}) {
                glVertex3f(-1, a, b), glVertex3f(1, a, b);
                glVertex3f(a, -1, b), glVertex3f(a, 1, b);
                glVertex3f(a, b, -1), glVertex3f(a, b, 1);
            }
    });
}

/** A path of five vertices, each of its own colour. */
const std::vector<Draw::Vertex>& path()
{
    static const std::vector<Draw::Vertex> vertices = {
        {{4.5f, 4.5f, 0.0f},   {}, {1.0f, 0.0f, 0.0f, 1.0f}},
        {{50.5f, 8.5f, 0.0f},  {}, {0.0f, 1.0f, 0.0f, 1.0f}},
        {{60.5f, 30.5f, 0.0f}, {}, {0.0f, 0.0f, 1.0f, 1.0f}},
        {{30.5f, 44.5f, 0.0f}, {}, {1.0f, 1.0f, 0.0f, 1.0f}},
        {{8.5f, 33.5f, 0.0f},  {}, {1.0f, 1.0f, 1.0f, 1.0f}},
    };
    return vertices;
}

void plainPath(GLenum primitive, std::size_t count)
{
    drawPlainly(primitive, [&] {
        for (std::size_t i = 0; i < count; ++i) {
            glColor4fv(path()[i].color);
            glVertex3fv(path()[i].position);
        }
    });
}

// clang-format off
constexpr ShapeCase SHAPES[] = {
    {"Line", [] { Draw::drawLine(3.5f, 4.5f, 50.5f, 40.5f); },
     [] {
         drawPlainly(GL_LINES, [] {
             glVertex2f(3.5f, 4.5f);
             glVertex2f(50.5f, 40.5f);
         });
     }},
    {"WideLineOfItsOwnColour",
     [] {
         Draw::drawLine({3.5f, 4.5f, 0.0f}, {50.5f, 40.5f, 0.0f}, {0, 1, 0, 1}, 5.0f, false, 0);
         Draw::drawLine(3.5f, 40.5f, 50.5f, 4.5f);
     },
     [] {
         Draw::setLineWidth(5.0f);
         drawPlainly(GL_LINES, [] {
             glColor3f(0, 1, 0);
             glVertex2f(3.5f, 4.5f);
             glVertex2f(50.5f, 40.5f);
         });
         Draw::setLineWidth(1.0f);
         drawPlainly(GL_LINES, [] {
             glVertex2f(3.5f, 40.5f);
             glVertex2f(50.5f, 4.5f);
         });
     }},
    {"DashesBeginAndEndTheLine",
     [] { Draw::drawLine({2, 4.5f, 0}, {52, 4.5f, 0}, {1, 1, 1, 1}, 1.0f, true, 3); },
     [] {
         drawPlainly(GL_LINES, [] {
             glColor3f(1, 1, 1);
             for (const float x : {2.0f, 22.0f, 42.0f}) {
                 glVertex2f(x, 4.5f);
                 glVertex2f(x + 10.0f, 4.5f);
             }
         });
     }},
    {"SolidRectangle", [] { Draw::drawBox(3.0f, 4.0f, 30.0f, 20.0f, Draw::SOLID); },
     [] {
         drawPlainly(GL_QUADS, [] {
             glVertex2f(3, 4), glVertex2f(30, 4), glVertex2f(30, 20), glVertex2f(3, 20);
         });
     }},
    {"WireRectangle", [] { Draw::drawBox(3.5f, 4.5f, 30.5f, 20.5f, Draw::WIRE); },
     [] {
         drawPlainly(GL_LINE_LOOP, [] {
             glVertex2f(3.5f, 4.5f), glVertex2f(30.5f, 4.5f);
             glVertex2f(30.5f, 20.5f), glVertex2f(3.5f, 20.5f);
         });
     }},
    {"SolidCircle", [] { Draw::drawCircle(20.0f, 22.0f, 18.0f, Draw::SOLID); },
     [] { plainCircle(GL_TRIANGLE_FAN, 33, 18.0f, 18.0f); }},
    {"WireCircle", [] { Draw::drawCircle(20.0f, 22.0f, 18.0f, Draw::WIRE); },
     [] { plainCircle(GL_LINE_LOOP, 32, 18.0f, 18.0f); }},
    {"Ellipse", [] { Draw::drawCircle(20.0f, 22.0f, 18.0f, 7.0f, Draw::SOLID); },
     [] { plainCircle(GL_TRIANGLE_FAN, 33, 18.0f, 7.0f); }},
    {"SolidBox",
     [] {
         lookFromAbove();
         Draw::setBlending(true); // every side shows through the others
         Draw::setColor(0.6f, 0.4f, 0.2f, 0.4f);
         Draw::drawBox({-1.0f, -1.0f, -1.0f}, {1.0f, 1.5f, 1.0f});
     },
     [] {
         lookFromAbove();
         Draw::setBlending(true);
         Draw::setColor(0.6f, 0.4f, 0.2f, 0.4f);
         plainBox();
     }},
    {"BoxAroundItsCentreFacesOutwards",
     [] {
         lookFromAbove();
         Draw::setFaceCulling(true);
         Draw::setBlending(true);
         Draw::drawBoxAround({0.0f, 0.25f, 0.0f}, {1.0f, 1.25f, 1.0f});
     },
     [] {
         lookFromAbove();
         Draw::setFaceCulling(true);
         Draw::setBlending(true);
         plainBox();
     }},
    {"BoxOfSixFloatsHidesItsFarSides",
     [] {
         lookFromAbove();
         Draw::setFaceCulling(true);
         Draw::setFrontFace(Winding::CLOCKWISE);
         Draw::drawBox(-1.0f, -1.0f, -1.0f, 1.0f, 1.5f, 1.0f);
     },
     [] {
         lookFromAbove();
         Draw::setFaceCulling(true);
         Draw::setFrontFace(Winding::CLOCKWISE);
         plainBox();
     }},
    {"WireBox",
     [] {
         lookFromAbove();
         Draw::drawBoxWireAround({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f});
     },
     [] {
         lookFromAbove();
         plainBoxEdges();
     }},
    {"Points",
     [] {
         Draw::setPointSize(5.0f);
         Draw::drawPoints(path().data(), 5);
     },
     [] {
         Draw::setPointSize(5.0f);
         plainPath(GL_POINTS, 5);
     }},
    {"LinesLeaveOutAHalfOne", [] { Draw::drawLines(path().data(), 5); },
     [] { plainPath(GL_LINES, 4); }},
    {"TrianglesLeaveOutAPart", [] { Draw::drawTriangles(path().data(), 5); },
     [] { plainPath(GL_TRIANGLES, 3); }},
    {"QuadWithGradient", [] { Draw::drawQuads(path().data(), 5); },
     [] { plainPath(GL_QUADS, 4); }},
    {"LineStrip", [] { Draw::drawLineStrip(path().data(), 5); },
     [] { plainPath(GL_LINE_STRIP, 5); }},
    {"LineLoop", [] { Draw::drawLineLoop(path().data(), 5); },
     [] { plainPath(GL_LINE_LOOP, 5); }},
    {"TriangleFan", [] { Draw::drawTriangleFan(path().data(), 5); },
     [] { plainPath(GL_TRIANGLE_FAN, 5); }},
    {"StatesHoldForWhatFollowsThem",
     [] {
         Draw::drawBox(0, 0, 64, 24, Draw::SOLID);
         Draw::setBlending(true);
         Draw::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
         Draw::setColor(0.25f);
         Draw::drawBox(8, 8, 40, 40, Draw::SOLID);
         Draw::setBlendEquation(BlendEquation::REVERSE_SUBTRACT);
         Draw::drawBox(30, 10, 60, 30, Draw::SOLID);
         Draw::setBlending(false);
         Draw::setScissor(10, 12, 5, 6);
         Draw::setScissorTest(true);
         Draw::setColor(Vector3f{0, 0, 1});
         Draw::drawBox(0, 0, 64, 48, Draw::SOLID);
     },
     [] {
         const auto rectangle = [](float x0, float y0, float x1, float y1) {
             glBegin(GL_QUADS);
             glVertex2f(x0, y0), glVertex2f(x1, y0), glVertex2f(x1, y1), glVertex2f(x0, y1);
             glEnd();
         };
         Draw::flush();
         glPushAttrib(GL_ALL_ATTRIB_BITS);
         glColor4f(1.0f, 0.4f, 0.2f, 1.0f);
         rectangle(0, 0, 64, 24);
         glEnable(GL_BLEND);
         glBlendFunc(GL_ONE, GL_ONE);
         glColor4f(0.25f, 0.25f, 0.25f, 1.0f);
         rectangle(8, 8, 40, 40);
         glBlendEquation(GL_FUNC_REVERSE_SUBTRACT);
         rectangle(30, 10, 60, 30);
         glDisable(GL_BLEND);
         glScissor(10, 12, 5, 6);
         glEnable(GL_SCISSOR_TEST);
         glColor3f(0, 0, 1);
         rectangle(0, 0, 64, 48);
         glPopAttrib();
     }},
    {"DepthTestAndDepthWriting",
     [] {
         Draw::setDepthTest(true);
         Draw::drawBox({0, 0, 0.5f}, {20, 20, 0.5f});
         Draw::setDepthWriting(false);
         Draw::setColor(0.5f);
         Draw::drawBox({10, 10, 0.0f}, {30, 30, 0.0f});
         Draw::setColor(1.0f);
         Draw::drawBox({15, 5, 0.7f}, {40, 25, 0.7f});
     },
     [] {
         Draw::flush();
         const auto rectangle = [](float x0, float y0, float x1, float y1) {
             drawPlainly(GL_QUADS, [&] {
                 glVertex2f(x0, y0), glVertex2f(x1, y0), glVertex2f(x1, y1), glVertex2f(x0, y1);
             });
         };
         // z grows towards the far plane: the later ones only show where nothing nearer was kept.
         rectangle(0, 0, 20, 20);
         Draw::setColor(0.5f);
         rectangle(10, 10, 30, 30);
         Draw::setColor(1.0f);
         rectangle(20, 5, 40, 25);
         rectangle(15, 20, 20, 25);
     }},
};

// clang-format on

class SamePixels : public ImmediateTest, public testing::WithParamInterface<ShapeCase> {};

TEST_P(SamePixels, AsVertexByVertex)
{
    const Picture plain = pictureOf(GetParam().plain);
    ASSERT_FALSE(isBlank(plain));
    EXPECT_TRUE(test::isSamePicture(pictureOf(GetParam().batched), plain, {}));
}

INSTANTIATE_TEST_SUITE_P(Shapes, SamePixels, testing::ValuesIn(SHAPES), test::caseName);

/** What comes between two rectangles, and how many arrays the driver gets for it all. */
struct ArrayCase {
    const char* name;
    void (*between)();
    unsigned long expected;

    friend void PrintTo(const ArrayCase& row, std::ostream* out) { *out << row.name; }
};

// clang-format off
constexpr ArrayCase ARRAYS[] = {
    {"NothingBetween", [] {}, 1},
    {"ColourIsPartOfTheVertices", [] { Draw::setColor(0.5f); }, 1},
    {"StateSetToWhatItIs", [] { Draw::setBlending(false); }, 1},
    {"StateSetAndSetBack",
     [] {
         Draw::setLineWidth(4.0f);
         Draw::setLineWidth(1.0f);
     },
     1},
    {"OtherState", [] { Draw::setBlending(true); }, 2},
    {"OtherMatrix", [] { Draw::setProject(0, 10, 0, 10); }, 2},
    {"SameMatrix", [] { Draw::setProject(0, WIDTH, 0, HEIGHT); }, 1},
    {"OtherPrimitive", [] { Draw::drawLine(0, 0, 1, 1); }, 3},
    {"NothingIsDrawnWithoutARadius", [] { Draw::drawCircle(9, 9, 0.0f, Draw::SOLID); }, 1},
    {"Flush", [] { Draw::flush(); }, 2},
    {"Clear", [] { Draw::clear({0, 0, 0, 0}, 1.0f); }, 2},
    {"MoreThanAnArrayHolds",
     [] {
         for (int i = 0; i < 10000; ++i)
             Draw::drawBox({1, 1, 0}, {2, 2, 0});
     },
     2},
};

// clang-format on

class Arrays : public ImmediateTest, public testing::WithParamInterface<ArrayCase> {};

TEST_P(Arrays, AreAsFewAsTheStatesAllow)
{
    EXPECT_EQ(arraysOf([] {
                  Draw::drawBox(1, 1, 5, 5, Draw::SOLID);
                  GetParam().between();
                  Draw::drawBox(2, 2, 6, 6, Draw::SOLID);
              }),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Arrays, testing::ValuesIn(ARRAYS), test::caseName);

TEST_F(ImmediateTest, FlushesBeforeTheWindowIsRead)
{
    EXPECT_FALSE(isBlank(pictureOf([] { Draw::drawBox(1, 1, 5, 5, Draw::SOLID); })));
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
        return pictureOf([&] {
            drawPlainly(primitive, [&] {
                for (const Draw::Vertex& vertex : many) {
                    glColor4fv(vertex.color);
                    glVertex3fv(vertex.position);
                }
            });
        });
    };
    const auto batched = [&](void (*draw)(const Draw::Vertex*, std::size_t)) {
        return pictureOf([&] { draw(many.data(), many.size()); });
    };

    EXPECT_TRUE(test::isSamePicture(batched(Draw::drawTriangleFan), plain(GL_TRIANGLE_FAN), {}));
    EXPECT_TRUE(test::isSamePicture(batched(Draw::drawLineLoop), plain(GL_LINE_LOOP), {}));
    EXPECT_TRUE(test::isSamePicture(batched(Draw::drawQuads), plain(GL_QUADS), {}));
}

TEST_F(ImmediateTest, DropsWhatTheDriverRefusesAndGoesOn)
{
    Draw::setLineWidth(-1.0f);
    Draw::drawLine(0.5f, 0.5f, 20.5f, 0.5f);
    const std::string message = test::thrownMessage([] { Draw::flush(); });
    EXPECT_NE(message.find("Line: glLineWidth(to.lineWidth)\nError: 'GL_INVALID_VALUE'"),
              std::string::npos)
        << message;

    Draw::setLineWidth(1.0f);
    EXPECT_EQ(arraysOf([] { Draw::drawBox(1, 1, 5, 5, Draw::SOLID); }), 1u);
}

TEST_F(ImmediateTest, RefusesAShapeThatNoArrayHolds)
{
    EXPECT_EQ(test::thrownMessage([] {
                  Immediate::live().append(Immediate::Primitive::LINES,
                                           Immediate::VERTEX_CAPACITY + 1, 0);
              }),
              "vertices<=VERTEX_CAPACITY && indices<=INDEX_CAPACITY");
}

TEST_F(ImmediateTest, CombinesCameraAndTransform)
{
    DisplayObsolete drawing;
    DisplayObsolete::MatrixGL move;
    move.setTranslation(Vector3f{10, 0, 0});
    DisplayObsolete::MatrixGL scale;
    scale.setScale(2.0f);
    drawing.setCamera(move);
    drawing.setTransform(scale);
    EXPECT_EQ(Immediate::live().state().modelView.multiply(Vector3f{1, 1, 1}), Vector3f(12, 2, 2));

    drawing.setCamera();
    EXPECT_EQ(Immediate::live().state().modelView, scale);
    drawing.setTransform();
    EXPECT_EQ(Immediate::live().state().modelView, DisplayObsolete::MatrixGL());
}

TEST_F(ImmediateTest, AllocatesNothingInASteadyFrame)
{
    const auto frame = [&] {
        mDisplay->resetStates();
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

    // Called by name: a compiler may leave out a new and a delete that it sees to be pointless.
    ::operator delete(::operator new(1));
    EXPECT_EQ(counter.count(), 1u) << "the counter itself";
}

/** A picture of four quarters: red and green above, blue and white below. */
am::Image quarters()
{
    constexpr int SIDE = 32; // pixels
    am::Image image(new am::ImageObject());
    image->resize(SIDE, SIDE);
    unsigned char* pixel = image->getWriteData();
    for (int y = 0; y < SIDE; ++y)
        for (int x = 0; x < SIDE; ++x, pixel += 4) {
            const bool right = x >= SIDE / 2;
            const bool low = y >= SIDE / 2;
            pixel[0] = low ? 255 : 0;
            pixel[1] = right ? 255 : 0;
            pixel[2] = right == low ? 255 : 0;
            pixel[3] = 255;
        }
    return image;
}

struct EyeCase {
    const char* name;
    Vector3f eye;

    friend void PrintTo(const EyeCase& row, std::ostream* out) { *out << row.name; }
};

constexpr EyeCase EYES[] = {
    {"Front", {0, 0, 5} },
    {"Back",  {0, 0, -5}},
    {"Left",  {-5, 0, 0}},
    {"Right", {5, 0, 0} },
};

class TexturedBox : public ImmediateTest, public testing::WithParamInterface<EyeCase> {};

TEST_P(TexturedBox, ShowsTheWholePictureUprightOnEachSide)
{
    am::Image image = quarters();
    Texture* const texture = mDisplay->createTexture(image, Texture::TextureDeclaration{});
    const Picture picture = pictureOf([&] {
        lookFromAbove();
        DisplayObsolete camera;
        camera.setCamera(GetParam().eye, {0, 0, 0}, 0.0f);
        mDisplay->setTexture(texture, 0);
        Draw::setTexturing(true);
        Draw::setFaceCulling(true);
        Draw::setColor(1.0f);
        Draw::drawBoxTex({-1, -1, -1}, {1, 1, 1});
    });
    mDisplay->destroy(texture);

    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 - 6, HEIGHT / 2 - 6), 0xff0000u);
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 + 6, HEIGHT / 2 - 6), 0x00ff00u);
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 - 6, HEIGHT / 2 + 6), 0x0000ffu);
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 + 6, HEIGHT / 2 + 6), 0xffffffu);
}

INSTANTIATE_TEST_SUITE_P(Sides, TexturedBox, testing::ValuesIn(EYES), test::caseName);

TEST(ImmediateWithoutDisplay, IsAnError)
{
    EXPECT_FALSE(Immediate::isLive());
    EXPECT_EQ(test::thrownMessage([] { Draw::drawLine(0, 0, 1, 1); }), "display");
}

struct ColorCase {
    const char* name;
    const char* text;
    Vector4f expected;

    friend void PrintTo(const ColorCase& row, std::ostream* out) { *out << row.name; }
};

constexpr ColorCase COLORS[] = {
    {"EmptyIsOpaqueBlack",        "",           {0, 0, 0, 1}                            },
    {"Green",                     "00ff00",     {0, 1, 0, 1}                            },
    {"EitherCase",                "Ff8000",     {1, 0.50196f, 0, 1}                     },
    {"WithAlpha",                 "ff800080",   {1, 0.50196f, 0, 0.50196f}              },
    {"MissingLowDigit",           "f",          {0.94118f, 0, 0, 1}                     },
    {"ShortNotationIsNoNotation", "fff",        {1, 0.94118f, 0, 1}                     },
    {"LeadingMarkCountsAsADigit", "#ff8000",    {0.05882f, 0.97255f, 0, 0}              },
    {"CharactersThatAreNoDigits", "g1/a:F@1",   {0.00392f, 0.03922f, 0.05882f, 0.00392f}},
    {"MoreThanFourComponents",    "0000000012", {0, 0, 0, 0}                            },
};

class HexColor : public testing::TestWithParam<ColorCase> {};

TEST_P(HexColor, IsReadDigitByDigit)
{
    const Vector4f color = Draw::hex2vec(GetParam().text);
    EXPECT_NEAR(color.x, GetParam().expected.x, 5e-6f);
    EXPECT_NEAR(color.y, GetParam().expected.y, 5e-6f);
    EXPECT_NEAR(color.z, GetParam().expected.z, 5e-6f);
    EXPECT_NEAR(color.w, GetParam().expected.w, 5e-6f);
}

INSTANTIATE_TEST_SUITE_P(Texts, HexColor, testing::ValuesIn(COLORS), test::caseName);

} // namespace
} // namespace zavex::display
