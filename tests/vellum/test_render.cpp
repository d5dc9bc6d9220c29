#include "vellum/vel_render.h"

#include "am/am.h"
#include "am/am_image.h"
#include "display/dis_font.h"
#include "display/dis_immediate.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

namespace zavex::vellum::test {

using Area = Render::Area;
using mathbase::Vector2f;
using mathbase::Vector4f;
using zavex::test::GlDisplayTest;
using zavex::test::Picture;
using zavex::test::pixelAt;
using zavex::test::thrownMessage;

namespace {

constexpr int WIDTH = 64;  // pixels
constexpr int HEIGHT = 48; // pixels
constexpr int SHEET_SIZE = 256;
constexpr int CELL_SIZE = SHEET_SIZE / 16;
constexpr int GLYPH_WIDTH = 6; // of the letter A, the only one on the sheet

const Vector4f RED(1.0f, 0.0f, 0.0f, 1.0f);
const Vector4f BLUE(0.0f, 0.0f, 1.0f, 1.0f);

/** Writes a font sheet whose letter A is a block at the left of its cell. */
void writeSheet(const std::string& folder)
{
    auto pixels =
        std::make_unique<unsigned char[]>(am::ImageObject::byteCount(SHEET_SIZE, SHEET_SIZE));
    const int left = 'A' % 16 * CELL_SIZE;
    const int top = 'A' / 16 * CELL_SIZE;
    for (int y = top; y < top + CELL_SIZE; ++y)
        std::memset(&pixels[static_cast<std::size_t>((y * SHEET_SIZE + left) * 4)], 255,
                    GLYPH_WIDTH * 4);
    am::Image sheet(new am::ImageObject(SHEET_SIZE, SHEET_SIZE, std::move(pixels), nullptr, ""));
    am::ArchiveManager archive;
    archive.addArchive(folder);
    ASSERT_TRUE(archive.writeImage("sheet.png", sheet));
}

/** A small window with a render that shows one drawing on black. */
class RenderTest : public GlDisplayTest {
public:
    RenderTest()
    {
        std::filesystem::create_directories(mFolder);
        writeSheet(mFolder);
        mArchive.addArchive(mFolder);
        mDisplay.setArchive(&mArchive);
        mRender->setup(&mDisplay, "sheet.png");
    }

    ~RenderTest() override
    {
        mRender.reset();
        std::filesystem::remove_all(mFolder);
    }

protected:
    /** What `draw` draws with `render` on black. */
    template <typename Draw>
    Picture pictureOf(Render& render, Draw draw, Vector2f pan = Vector2f(0.0f, 0.0f))
    {
        return GlDisplayTest::pictureOf([&] {
            render.setupDraw(Vector2f(WIDTH, HEIGHT), pan, 0.0f);
            display::DisplayObsolete::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
            render.setColor(RED, RED);
            draw(render);
        });
    }

    std::unique_ptr<Render> mRender = std::make_unique<Render>();

private:
    const std::string mFolder = testing::TempDir() + "render_" + std::to_string(getpid()) + "/";
    am::ArchiveManager mArchive;
};

struct Sample {
    int x;
    int y;
    char color; // 'r'ed, 'b'lue, '.' black
};

struct DrawCase {
    const char* name;
    void (*draw)(Render& render);
    std::vector<Sample> samples;
    Vector2f pan{0.0f, 0.0f};

    friend void PrintTo(const DrawCase& drawing, std::ostream* out) { *out << drawing.name; }
};

const DrawCase DRAW_CASES[] = {
    {"BoxRunsDown",
     [](Render& render) {
         render.setColor(RED, BLUE);
         render.drawBox(Area(10, 10, 30, 30), Render::GRADIENT_VERTICAL);
     },                                                                         {{10, 10, 'r'},
      {29, 10, 'r'},
      {10, 29, 'b'},
      {9, 15, '.'},
      {30, 15, '.'},
      {15, 9, '.'},
      {15, 30, '.'}}                                                                                                                                              },
    {"BoxRunsSideways",
     [](Render& render) {
         render.setColor(RED, BLUE);
         render.drawBox(Area(10, 10, 30, 30), Render::GRADIENT_HORISONTAL);
     },                                                                         {{10, 10, 'r'}, {10, 29, 'r'}, {29, 10, 'b'}, {29, 29, 'b'}}                             },
    {"NegativeAlphaIsFlat",
     [](Render& render) {
         render.setColor(RED, Vector4f(0, 0, 1, -1));
         render.drawBox(Area(10, 10, 30, 30), Render::GRADIENT_VERTICAL);
     },                                                                         {{10, 10, 'r'}, {10, 29, 'r'}}                                                           },
    {"NoAlphaIsTransparent",
     [](Render& render) {
         render.setColor(RED, Vector4f(1, 0, 0, 0));
         render.drawBox(Area(10, 10, 30, 30), Render::GRADIENT_VERTICAL);
     },                                                                         {{10, 10, 'r'}, {10, 29, '.'}}                                                           },
    {"BorderLiesInsideItsBox",
     [](Render& render) {
         render.setLineWidth(4.0f);
         render.setColor(RED, BLUE);
         render.drawBorder(Area(10, 10, 30, 30));
     },                                                                         {{20, 10, 'r'},
      {20, 29, 'b'},
      {10, 12, 'r'},
      {29, 27, 'b'},
      {20, 9, '.'},
      {20, 11, '.'},
      {20, 30, '.'},
      {9, 20, '.'},
      {30, 20, '.'},
      {20, 20, '.'}}                                                                                                                                              },
    {"LineRunsFromFirstToSecond",
     [](Render& render) {
         render.setColor(RED, BLUE);
         render.drawLine(Vector2f(10.5f, 20.5f), Vector2f(40.5f, 20.5f));
     },                                                                         {{11, 20, 'r'}, {39, 20, 'b'}, {9, 20, '.'}, {41, 20, '.'}, {20, 19, '.'}, {20, 21, '.'}}},
    {"CircleIsClosed",
     [](Render& render) { render.drawCircle(Area(10, 10, 30, 40), -1, 0.0f); },
     {{20, 25, 'r'},
      {20, 11, 'r'},
      {20, 38, 'r'},
      {21, 38, 'r'},
      {18, 38, 'r'},
      {11, 25, 'r'},
      {28, 25, 'r'},
      {12, 12, '.'},
      {27, 37, '.'}}                                                                                                                                                     },
    {"TooFewSegmentsMakeATriangle",
     [](Render& render) { render.drawCircle(Area(10, 10, 30, 30), 0, 0.0f); },
     {{20, 27, 'r'}, {26, 16, 'r'}, {14, 16, 'r'}, {20, 12, '.'}, {27, 25, '.'}, {12, 25, '.'}}                                                                          },
    {"CircleStartsAtATurn",
     [](Render& render) { render.drawCircle(Area(10, 10, 30, 30), 3, 0.25f); },
     {{27, 20, 'r'}, {16, 14, 'r'}, {16, 26, 'r'}, {12, 20, '.'}, {25, 12, '.'}}                                                                                         },
    {"ClippedToItsArea",
     [](Render& render) {
         render.setClipArea(Area(10, 10, 20, 25));
         render.drawBox(Area(0, 0, WIDTH, HEIGHT), Render::GRADIENT_VERTICAL);
     },                                                                         {{10, 10, 'r'}, {19, 24, 'r'}, {9, 15, '.'}, {20, 15, '.'}, {15, 9, '.'}, {15, 25, '.'}} },
    {"ClippingTruncates",
     [](Render& render) {
         render.setClipArea(Area(10.9f, 10, 20.5f, 25));
         render.drawBox(Area(0, 0, WIDTH, HEIGHT), Render::GRADIENT_VERTICAL);
     },                                                                         {{10, 10, 'r'}, {18, 24, 'r'}, {9, 15, '.'}, {19, 15, '.'}}                              },
    {"EmptyClipShowsNothing",
     [](Render& render) {
         render.setClipArea(Area(0, 0, 0, 0));
         render.drawBox(Area(0, 0, WIDTH, HEIGHT), Render::GRADIENT_VERTICAL);
     },                                                                         {{0, 0, '.'}, {0, HEIGHT - 1, '.'}}                                                      },
    {"MinusOneLiftsTheClip",
     [](Render& render) {
         render.setClipArea(Area(10, 10, 20, 25));
         render.setClipArea(Area(-1, 10, 20, 25));
         render.drawBox(Area(0, 0, WIDTH, HEIGHT), Render::GRADIENT_VERTICAL);
     },                                                                         {{0, 0, 'r'}, {WIDTH - 1, HEIGHT - 1, 'r'}}                                              },
    {"ClipFollowsThePan",
     [](Render& render) {
         render.setClipArea(Area(10, 10, 20, 20));
         render.drawBox(Area(0, 0, WIDTH, HEIGHT), Render::GRADIENT_VERTICAL);
     },                                                                         {{5, 7, 'r'}, {14, 16, 'r'}, {4, 10, '.'}, {15, 10, '.'}, {10, 6, '.'}, {10, 17, '.'}},
     Vector2f(5.0f, 3.0f)},
    {"TextStandsOnWholePixels",
     [](Render& render) {
         render.setAlign(display::Font::ALIGN_LEFT);
         render.drawText("A", Vector2f(20.9f, 24.9f));
         render.drawBox(Area(40, 0, 50, 10), Render::GRADIENT_VERTICAL);
     },                                                                  {{20, 24, 'r'}, {24, 17, 'r'}, {24, 30, 'r'}, {19, 24, '.'}, {28, 24, '.'}, {40, 0, 'r'}}                                                                                                                                  },
};

class RenderDraw : public RenderTest, public testing::WithParamInterface<DrawCase> {};

/** 'r', 'b' or '.' within a quarter of full brightness; '?' for anything else. */
char colorAt(const Picture& picture, const Sample& at)
{
    const unsigned color = pixelAt(picture, at.x, at.y);
    const unsigned dark = ~color & 0xc0c0c0u;  // channels below a quarter keep both bits
    const unsigned bright = color & 0xc0c0c0u; // channels above three quarters keep both bits
    if (dark == 0xc0c0c0u)
        return '.';
    if (bright == 0xc00000u && dark == 0x00c0c0u)
        return 'r';
    return bright == 0x0000c0u && dark == 0xc0c000u ? 'b' : '?';
}

TEST_P(RenderDraw, ColorsTheRightPixels)
{
    const Picture picture = pictureOf(*mRender, GetParam().draw, GetParam().pan);
    for (const Sample& sample : GetParam().samples)
        EXPECT_EQ(colorAt(picture, sample), sample.color) << "at " << sample.x << ", " << sample.y;
}

INSTANTIATE_TEST_SUITE_P(Cases, RenderDraw, testing::ValuesIn(DRAW_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

constexpr float SIDES[] = {10.0f, 10.25f, 10.5f, 11.75f}; // of shapes near a clip edge at 10

/** Every kind of shape, its left side at `left` and at `left` + 20. */
void drawEveryShape(Render& render, float left)
{
    render.setColor(Vector4f(1, 0, 0, 1), Vector4f(0, 1, 0.5f, 0.25f));
    render.drawBox(Area(left, 4, left + 20, 9), Render::GRADIENT_HORISONTAL);
    render.drawBorder(Area(left, 9, left + 20, 21));
    render.drawCircle(Area(left, 21, left + 20, 33), -1, 0.1f);
    render.drawLine(Vector2f(left, 33), Vector2f(left + 20, 39));
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText("AA", Vector2f(left, 48));
}

/** What of a picture lies in an area, on black. */
Picture cutOut(Picture picture, const Area& area)
{
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const auto left = static_cast<float>(x);
            const auto top = static_cast<float>(y);
            const auto pixel = static_cast<std::size_t>(3 * (y * picture.width + x));
            if (!area.isInside(Area(left, top, left + 1.0f, top + 1.0f)))
                std::fill_n(&picture.rgb[pixel], 3, std::uint8_t{0});
        }
    return picture;
}

TEST_F(RenderTest, ClipsWhateverReachesOutOfTheClipArea)
{
    const Area clip(10, 5, 30, 40);
    for (const float left : SIDES) {
        const auto draw = [left](Render& render) {
            drawEveryShape(render, left);
            drawEveryShape(render, left + 18.0f);
        };
        const Picture clipped = pictureOf(*mRender, [&](Render& render) {
            render.setClipArea(clip);
            draw(render);
        });
        EXPECT_TRUE(
            zavex::test::isSamePicture(clipped, cutOut(pictureOf(*mRender, draw), clip), {}))
            << "shapes at " << left;
    }
}

TEST_F(RenderTest, DrawsThroughTheSheetWhatItDrawsWithoutOne)
{
    Render plain;
    plain.setDisplay(&mDisplay);
    const Area withoutText(0, 0, WIDTH, 40);
    for (const float left : SIDES) {
        const auto draw = [left](Render& render) { drawEveryShape(render, left); };
        EXPECT_TRUE(zavex::test::isSamePicture(cutOut(pictureOf(*mRender, draw), withoutText),
                                               cutOut(pictureOf(plain, draw), withoutText), {}))
            << "shapes at " << left;
    }
}

struct BorderCase {
    const char* name;
    Area box;

    friend void PrintTo(const BorderCase& border, std::ostream* out) { *out << border.name; }
};

const BorderCase BORDER_CASES[] = {
    {"High",       Area(10,    5,    30,    40)   },
    {"Wide",       Area(3,     10,   60,    15)   },
    {"TwoRows",    Area(10,    10,   30,    12)   },
    {"TwoByTwo",   Area(10,    10,   12,    12)   },
    {"ThreeRows",  Area(10,    10,   13,    13)   },
    {"OneRow",     Area(10,    10,   30,    11)   },
    {"NoSize",     Area(10,    10,   10,    10)   },
    {"Reversed",   Area(30,    30,   10,    10)   },
    {"Fractional", Area(10.3f, 5.6f, 30.2f, 40.7f)},
};

class RenderBorder : public RenderTest, public testing::WithParamInterface<BorderCase> {};

TEST_P(RenderBorder, ColorsThePixelsOfALoopOfLines)
{
    const Area& box = GetParam().box;
    const Vector4f top(1, 0.25f, 0, 0.75f);
    const Vector4f bottom(0, 0.75f, 1, 0.5f);
    const Picture actual = pictureOf(*mRender, [&](Render& render) {
        render.setColor(top, bottom);
        render.drawBorder(box);
    });
    const Picture expected = pictureOf(*mRender, [&](Render&) {
        const float left = box.mMin.x + 0.5f;
        const float right = box.mMax.x - 0.5f;
        const display::DisplayObsolete::Vertex loop[] = {
            {{left, box.mMin.y + 0.5f, 0},  {}, top   },
            {{right, box.mMin.y + 0.5f, 0}, {}, top   },
            {{right, box.mMax.y - 0.5f, 0}, {}, bottom},
            {{left, box.mMax.y - 0.5f, 0},  {}, bottom},
        };
        display::DisplayObsolete::drawLineLoop(loop, 4);
    });
    const zavex::test::PictureDifference rounding{0.01, 1}; // of a gradient's colours
    EXPECT_TRUE(zavex::test::isSamePicture(actual, expected, rounding));
}

INSTANTIATE_TEST_SUITE_P(Cases, RenderBorder, testing::ValuesIn(BORDER_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

/** A screen of 400 rows in 40 clip areas: boxes, borders, circles and texts, 2,000 in all. */
void drawScreen(Render& render)
{
    static const std::string caption = "A AA A";
    render.setupDraw(Vector2f(WIDTH, HEIGHT), Vector2f(0, 0), 0.0f);
    for (int window = 0; window < 40; ++window) {
        const auto left = static_cast<float>(window % 8);
        render.setClipArea(Area(left, 0, left + 50, HEIGHT));
        for (int row = 0; row < 10; ++row) {
            const auto top = static_cast<float>(row * 4);
            const Area box(left + 2, top, left + 48, top + 8);
            render.setColor(RED, BLUE);
            render.drawBox(box, Render::GRADIENT_VERTICAL);
            render.setColor(BLUE, RED);
            render.drawBorder(box);
            render.drawCircle(Area(left + 2, top, left + 10, top + 8), -1, 0.0f);
            render.drawText(caption, Vector2f(left + 25, top + 8));
            render.setColor(RED, RED);
            render.drawBorder(box);
        }
    }
    display::DisplayObsolete::flush();
}

/** How many arrays the driver gets for what `draw` draws. */
template <typename Draw>
unsigned long arraysOf(Draw draw)
{
    const unsigned long before = display::Immediate::live().drawnArrays();
    draw();
    display::DisplayObsolete::flush();
    return display::Immediate::live().drawnArrays() - before;
}

TEST_F(RenderTest, DrawsAScreenInOneArrayWithoutAllocating)
{
    drawScreen(*mRender);
    const zavex::test::AllocationCounter counter;
    EXPECT_EQ(arraysOf([&] { drawScreen(*mRender); }), 1u);
    EXPECT_EQ(counter.count(), 0u);
}

struct ArrayCase {
    const char* name;
    void (*between)(Render& render); // two texts
    unsigned long expected;

    friend void PrintTo(const ArrayCase& each, std::ostream* out) { *out << each.name; }
};

// clang-format off
constexpr ArrayCase ARRAY_CASES[] = {
    {"OtherClipArea", [](Render& render) { render.setClipArea(Area(0, 0, 190, 190)); }, 1},
    {"NoClipArea", [](Render& render) { render.setClipArea(Area(-1, 0, 0, 0)); }, 1},
    {"SmallBox", [](Render& render) { render.drawBox(Area(0, 0, 64, 64), 0); }, 1},
    {"LargeBox", [](Render& render) { render.drawBox(Area(0, 0, 65, 64), 0); }, 3},
    {"LargeBoxElsewhere", [](Render& render) { render.drawBox(Area(80, 80, 145, 144), 0); }, 2},
    {"LargeBoxOfWhichLittleIsSeen", [](Render& render) { render.drawBox(Area(-90, 0, 9, 90), 0); }, 1},
    {"CutBox",
     [](Render& render) {
         render.setClipArea(Area(0, 0, 20, 20));
         render.drawBox(Area(0, 0, 21, 20), 0);
         render.setClipArea(Area(0, 0, 200, 200));
     }, 1},
    {"CutGradient",
     [](Render& render) {
         render.setColor(RED, BLUE);
         render.setClipArea(Area(0, 0, 20, 20));
         render.drawBox(Area(0, 0, 21, 20), 0);
         render.setClipArea(Area(0, 0, 200, 200));
     }, 3},
    {"Line", [](Render& render) { render.drawLine(Vector2f(1, 1), Vector2f(9, 9)); }, 3},
};
// clang-format on

TEST_F(RenderTest, SharesOneArrayBetweenTexts)
{
    for (const ArrayCase& row : ARRAY_CASES)
        EXPECT_EQ(arraysOf([&] {
                      mRender->setupDraw(Vector2f(200, 200), Vector2f(0, 0), 0.0f);
                      mRender->setClipArea(Area(0, 0, 200, 200));
                      mRender->drawText("AA", Vector2f(50, 50));
                      row.between(*mRender);
                      mRender->drawText("AA", Vector2f(60, 50));
                  }),
                  row.expected)
            << row.name;
}

struct BlendCase {
    const char* name;
    float alpha; // of a blue box over a red one
    display::BlendFactor source;
    display::BlendFactor destination;
    unsigned expected; // 0xRRGGBB

    friend void PrintTo(const BlendCase& each, std::ostream* out) { *out << each.name; }
};

constexpr BlendCase BLEND_CASES[] = {
    {"Opaque",         1.0f, display::BlendFactor::SRC_ALPHA, display::BlendFactor::ONE_MINUS_SRC_ALPHA,
     0x0000ff                                                                                                    },
    {"Translucent",    0.2f, display::BlendFactor::SRC_ALPHA,
     display::BlendFactor::ONE_MINUS_SRC_ALPHA,                                                          0xcc0033},
    {"OpaqueAndAdded", 1.0f, display::BlendFactor::ONE,       display::BlendFactor::ONE,                 0xff00ff},
};

TEST_F(RenderTest, BlendsLargeBoxes)
{
    const Area all(0, 0, 200, 200);
    for (const BlendCase& row : BLEND_CASES) {
        const Picture picture = GlDisplayTest::pictureOf([&] {
            mRender->setupDraw(Vector2f(200, 200), Vector2f(0, 0), 0.0f);
            mRender->setColor(RED, RED);
            mRender->drawBox(all, Render::GRADIENT_VERTICAL);
            display::DisplayObsolete::setBlendFunction(row.source, row.destination);
            const Vector4f over(0.0f, 0.0f, 1.0f, row.alpha);
            mRender->setColor(over, over);
            mRender->drawBox(all, Render::GRADIENT_VERTICAL);
        });
        EXPECT_EQ(pixelAt(picture, 30, 30), row.expected) << row.name;
    }
}

/** What is drawn before a large blue box, which covers it. */
struct OrderCase {
    const char* name;
    void (*draw)(Render& render);

    friend void PrintTo(const OrderCase& each, std::ostream* out) { *out << each.name; }
};

// clang-format off
constexpr OrderCase ORDER_CASES[] = {
    {"SmallBox", [](Render& render) { render.drawBox(Area(20, 20, 40, 40), 0); }},
    {"Text", [](Render& render) { render.drawText("AAAA", Vector2f(30, 30)); }},
    {"Border", [](Render& render) { render.drawBorder(Area(29, 20, 90, 90)); }},
    {"WithoutRender", [](Render&) { display::DisplayObsolete::drawBox(20, 20, 40, 40, display::DisplayObsolete::SOLID); }},
    {"WithoutRenderInASharedArray",
     [](Render& render) {
         display::DisplayObsolete::setScissor(0, 0, 0, 0); // as the render has it
         display::DisplayObsolete::drawBox(20, 20, 40, 40, display::DisplayObsolete::SOLID);
         const Vector4f glass(1.0f, 1.0f, 1.0f, 0.5f);
         render.setColor(glass, glass);
         render.drawBox(Area(120, 120, 199, 199), 0);
     }},
};
// clang-format on

TEST_F(RenderTest, KeepsTheOrderOfWhatOverlaps)
{
    for (const OrderCase& row : ORDER_CASES) {
        const Picture picture = GlDisplayTest::pictureOf([&] {
            mRender->setupDraw(Vector2f(200, 200), Vector2f(0, 0), 0.0f);
            mRender->drawText("A", Vector2f(180, 180));
            mRender->setColor(RED, RED);
            row.draw(*mRender);
            mRender->setColor(BLUE, BLUE);
            mRender->drawBox(Area(10, 10, 110, 110), Render::GRADIENT_VERTICAL);
        });
        EXPECT_EQ(pixelAt(picture, 9, 7), 0x0000ffu) << row.name; // (29.7, 31.25)
    }
}

TEST_F(RenderTest, MeasuresTextInPixels)
{
    EXPECT_EQ(mRender->getTextLength("AA"), 14.0f);
    EXPECT_EQ(mRender->getTextLength("A A"), 17.0f) << "a space is three pixels wide";
    EXPECT_EQ(mRender->getFontHeight(), CELL_SIZE);
}

TEST(RenderWithoutDisplay, RefusesToBegin)
{
    Render render;
    EXPECT_EQ(
        thrownMessage([&] { render.setupDraw(Vector2f(WIDTH, HEIGHT), Vector2f(0, 0), 0.0f); }),
        "mDisplay");
}

} // namespace

} // namespace zavex::vellum::test
