#include "vellum/vel_render.h"

#include "am/am.h"
#include "am/am_image.h"
#include "display/dis_font.h"
#include "support/gl_display.h"

#include <gtest/gtest.h>

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
    Picture pictureOf(void (*drawing)(Render&), Vector2f pan)
    {
        return GlDisplayTest::pictureOf([&] {
            mRender->setupDraw(Vector2f(WIDTH, HEIGHT), pan, 0.0f);
            mRender->setColor(RED, RED);
            drawing(*mRender);
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
    const Picture picture = pictureOf(GetParam().draw, GetParam().pan);
    for (const Sample& sample : GetParam().samples)
        EXPECT_EQ(colorAt(picture, sample), sample.color) << "at " << sample.x << ", " << sample.y;
}

INSTANTIATE_TEST_SUITE_P(Cases, RenderDraw, testing::ValuesIn(DRAW_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

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
