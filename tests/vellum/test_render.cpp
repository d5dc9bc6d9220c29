#include "vellum/folder_test.h"
#include "vellum/vel_render.h"

#include "display/dis_font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zavex::vellum::test {

using Area = Render::Area;
using mathbase::Vector2f;
using mathbase::Vector4f;
using zavex::test::isSamePicture;
using zavex::test::Picture;
using zavex::test::pixelAt;

namespace {

constexpr int WIDTH = 64;  // pixels
constexpr int HEIGHT = 48; // pixels
constexpr int SHEET_SIZE = 256;
constexpr int CELL_SIZE = SHEET_SIZE / 16;
constexpr int GLYPH_WIDTH = 6; // of the letter A, a block at the left of its cell

const Vector4f RED(1.0f, 0.0f, 0.0f, 1.0f);
const Vector4f BLUE(0.0f, 0.0f, 1.0f, 1.0f);

bool isInLetterA(int x, int y)
{
    return y / CELL_SIZE * 16 + x / CELL_SIZE == 'A' && x % CELL_SIZE < GLYPH_WIDTH;
}

/** A small window with a render that shows one drawing on black. */
class RenderTest : public FolderTest {
public:
    RenderTest()
    {
        writePicture("sheet.png", SHEET_SIZE, SHEET_SIZE,
                     [](int x, int y) { return isInLetterA(x, y) ? ~0u : 0u; });
        mRender.setup(&mDisplay, "sheet.png");
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

    Render mRender;
};

struct Sample {
    int x;
    int y;
    char color; // 'r'ed, 'b'lue, '.' black
};

const Area WINDOW(0, 0, WIDTH, HEIGHT);
const Area BOX(10, 10, 30, 30);
constexpr int DOWN = Render::GRADIENT_VERTICAL;
constexpr int ALONG = Render::GRADIENT_HORISONTAL;
constexpr Vector4f FLAT(0.0f, 0.0f, 1.0f, -1.0f);
constexpr Vector4f CLEAR(1.0f, 0.0f, 0.0f, 0.0f);

// clang-format off
const struct DrawCase {
    const char* name;
    void (*draw)(Render& to);
    std::vector<Sample> samples;
    Vector2f pan{0.0f, 0.0f};
} DRAW_CASES[] = {
    {"BoxRunsDown", [](Render& to) { to.setColor(RED, BLUE); to.drawBox(BOX, DOWN); },
     {{10, 10, 'r'}, {29, 10, 'r'}, {10, 29, 'b'}, {9, 15, '.'}, {30, 15, '.'}, {15, 9, '.'}, {15, 30, '.'}}},
    {"BoxRunsSideways", [](Render& to) { to.setColor(RED, BLUE); to.drawBox(BOX, ALONG); },
     {{10, 10, 'r'}, {10, 29, 'r'}, {29, 10, 'b'}, {29, 29, 'b'}}},
    {"NegativeAlphaIsFlat", [](Render& to) { to.setColor(RED, FLAT); to.drawBox(BOX, DOWN); }, {{10, 10, 'r'}, {10, 29, 'r'}}},
    {"NoAlphaIsTransparent", [](Render& to) { to.setColor(RED, CLEAR); to.drawBox(BOX, DOWN); }, {{10, 10, 'r'}, {10, 29, '.'}}},
    {"LineRunsFromFirstToSecond", [](Render& to) { to.setColor(RED, BLUE); to.drawLine(Vector2f(10.5f, 20.5f), Vector2f(40.5f, 20.5f)); },
     {{11, 20, 'r'}, {39, 20, 'b'}, {9, 20, '.'}, {41, 20, '.'}, {20, 19, '.'}, {20, 21, '.'}}},
    {"CircleIsClosed", [](Render& to) { to.drawCircle(Area(10, 10, 30, 40), -1, 0.0f); },
     {{20, 25, 'r'}, {20, 11, 'r'}, {20, 38, 'r'}, {21, 38, 'r'}, {18, 38, 'r'}, {11, 25, 'r'}, {28, 25, 'r'}, {12, 12, '.'}, {27, 37, '.'}}},
    {"TooFewSegmentsMakeATriangle", [](Render& to) { to.drawCircle(BOX, 0, 0.0f); },
     {{20, 27, 'r'}, {26, 16, 'r'}, {14, 16, 'r'}, {20, 12, '.'}, {27, 25, '.'}, {12, 25, '.'}}},
    {"CircleStartsAtATurn", [](Render& to) { to.drawCircle(BOX, 3, 0.25f); }, {{27, 20, 'r'}, {16, 14, 'r'}, {16, 26, 'r'}, {12, 20, '.'}, {25, 12, '.'}}},
    {"ClippingTruncates", [](Render& to) { to.setClipArea(Area(10.9f, 10, 20.5f, 25)); to.drawBox(WINDOW, DOWN); },
     {{10, 10, 'r'}, {18, 24, 'r'}, {9, 15, '.'}, {19, 15, '.'}}},
    {"EmptyClipShowsNothing", [](Render& to) { to.setClipArea(Area(0, 0, 0, 0)); to.drawBox(WINDOW, DOWN); }, {{0, 0, '.'}, {0, HEIGHT - 1, '.'}}},
    {"MinusOneLiftsTheClip", [](Render& to) { to.setClipArea(Area(10, 10, 20, 25)); to.setClipArea(Area(-1, 10, 20, 25)); to.drawBox(WINDOW, DOWN); },
     {{0, 0, 'r'}, {WIDTH - 1, HEIGHT - 1, 'r'}}},
    {"ClipFollowsThePan", [](Render& to) { to.setClipArea(Area(10, 10, 20, 20)); to.drawBox(WINDOW, DOWN); },
     {{5, 7, 'r'}, {14, 16, 'r'}, {4, 10, '.'}, {15, 10, '.'}, {10, 6, '.'}, {10, 17, '.'}}, Vector2f(5.0f, 3.0f)},
    {"TextStandsOnWholePixels", [](Render& to) { to.setAlign(display::Font::ALIGN_LEFT); to.drawText("A", Vector2f(20.9f, 24.9f)); to.drawBox(Area(40, 0, 50, 10), DOWN); },
     {{20, 24, 'r'}, {24, 17, 'r'}, {24, 30, 'r'}, {19, 24, '.'}, {28, 24, '.'}, {40, 0, 'r'}}},
    {"BorderLiesInsideItsBox", [](Render& to) { to.setLineWidth(4.0f); to.setColor(RED, BLUE); to.drawBorder(BOX); },
     {{20, 10, 'r'}, {20, 29, 'b'}, {10, 12, 'r'}, {29, 27, 'b'}, {20, 9, '.'}, {20, 11, '.'}, {20, 30, '.'}, {9, 20, '.'}, {30, 20, '.'}, {20, 20, '.'}}},
};
// clang-format on

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

TEST_F(RenderTest, ColorsTheRightPixels)
{
    for (const DrawCase& row : DRAW_CASES) {
        const Picture picture = pictureOf(mRender, row.draw, row.pan);
        for (const Sample& sample : row.samples)
            EXPECT_EQ(colorAt(picture, sample), sample.color)
                << row.name << " at " << sample.x << ", " << sample.y;
    }
}

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
        const Picture clipped = pictureOf(mRender, [&](Render& render) {
            render.setClipArea(clip);
            draw(render);
        });
        EXPECT_TRUE(isSamePicture(clipped, cutOut(pictureOf(mRender, draw), clip), {}))
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
        EXPECT_TRUE(isSamePicture(cutOut(pictureOf(mRender, draw), withoutText),
                                  cutOut(pictureOf(plain, draw), withoutText), {}))
            << "shapes at " << left;
    }
}

TEST_F(RenderTest, ColorsThePixelsOfALoopOfLinesWithABorder)
{
    const Vector4f top(1, 0.25f, 0, 0.75f);
    const Vector4f bottom(0, 0.75f, 1, 0.5f);
    const zavex::test::PictureDifference rounding{0.01, 1}; // of a gradient's colours
    for (const Area& box :
         {Area(10, 5, 30, 40), Area(10, 10, 30, 12), Area(10, 10, 13, 13), Area(10, 10, 30, 11),
          Area(10, 10, 10, 10), Area(30, 30, 10, 10), Area(10.3f, 5.6f, 30.2f, 40.7f)}) {
        const Picture actual = pictureOf(mRender, [&](Render& render) {
            render.setColor(top, bottom);
            render.drawBorder(box);
        });
        const Picture expected = pictureOf(mRender, [&](Render&) {
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
        EXPECT_TRUE(isSamePicture(actual, expected, rounding))
            << box.mMin.x << ", " << box.mMin.y << " to " << box.mMax.x << ", " << box.mMax.y;
    }
}

TEST_F(RenderTest, BlendsLargeBoxes)
{
    using enum display::BlendFactor;
    constexpr struct {
        float alpha; // of a blue box over a red one
        display::BlendFactor source;
        display::BlendFactor destination;
        unsigned expected; // 0xRRGGBB
    } CASES[] = {
        {1.0f, SRC_ALPHA, ONE_MINUS_SRC_ALPHA, 0x0000ff},
        {0.2f, SRC_ALPHA, ONE_MINUS_SRC_ALPHA, 0xcc0033},
        {1.0f, ONE,       ONE,                 0xff00ff},
    };
    const Area all(0, 0, 200, 200);
    for (const auto& [alpha, source, destination, expected] : CASES) {
        const Picture picture = GlDisplayTest::pictureOf([&, over = Vector4f(0, 0, 1, alpha)] {
            mRender.setupDraw(Vector2f(200, 200), Vector2f(0, 0), 0.0f);
            mRender.setColor(RED, RED);
            mRender.drawBox(all, DOWN);
            display::DisplayObsolete::setBlendFunction(source, destination);
            mRender.setColor(over, over);
            mRender.drawBox(all, DOWN);
        });
        EXPECT_EQ(pixelAt(picture, 30, 30), expected);
    }
}

/** What is drawn before a large blue box, which covers it. */
// clang-format off
constexpr struct OrderCase {
    const char* name;
    void (*draw)(Render& render);
} ORDER_CASES[] = {
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
            mRender.setupDraw(Vector2f(200, 200), Vector2f(0, 0), 0.0f);
            mRender.drawText("A", Vector2f(180, 180));
            mRender.setColor(RED, RED);
            row.draw(mRender);
            mRender.setColor(BLUE, BLUE);
            mRender.drawBox(Area(10, 10, 110, 110), DOWN);
        });
        EXPECT_EQ(pixelAt(picture, 9, 7), 0x0000ffu) << row.name; // (29.7, 31.25)
    }
}

TEST_F(RenderTest, MeasuresTextInPixels)
{
    EXPECT_EQ(mRender.getTextLength("AA"), 14.0f);
    EXPECT_EQ(mRender.getTextLength("A A"), 17.0f) << "a space is three pixels wide";
    EXPECT_EQ(mRender.getFontHeight(), CELL_SIZE);
}

} // namespace

} // namespace zavex::vellum::test
