#include "display/dis_font.h"
#include "display/dis_immediate.h"
#include "gl_assets.h"
#include "support/allocation_counter.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace zavex::display {
namespace {

using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

constexpr int WIDTH = 96;
constexpr int HEIGHT = 64;
constexpr int CELL = 16; // pixels of the sheet

/** Fills columns first..last, rows top..bottom of a glyph's cell with a grey level. */
void fill(Picture& sheet, unsigned char glyph, const std::array<int, 4>& columnsAndRows, int level)
{
    const auto [first, last, top, bottom] = columnsAndRows;
    for (int y = top; y <= bottom; ++y)
        for (int x = first; x <= last; ++x) {
            const int column = glyph % 16 * CELL + x;
            const int row = glyph / 16 * CELL + y;
            std::uint8_t* const pixel =
                &sheet.rgb[static_cast<std::size_t>(3 * (row * sheet.width + column))];
            pixel[0] = pixel[1] = pixel[2] = static_cast<std::uint8_t>(level);
        }
}

/** The glyphs that the tests draw; the others are empty. */
void writeSheet(const std::string& path)
{
    Picture sheet{16 * CELL, 16 * CELL, {}};
    sheet.rgb.resize(static_cast<std::size_t>(3 * sheet.width * sheet.height));
    fill(sheet, 'I', {2, 3, 2, 13}, 255);  // a bar
    fill(sheet, 'L', {0, 15, 0, 15}, 255); // the whole cell
    fill(sheet, 'Y', {15, 15, 0, 0}, 255); // right below the bar's cell
    fill(sheet, 'g', {1, 5, 4, 5}, 255);
    fill(sheet, 'g', {6, 8, 4, 5}, 200);  // too faint to count
    fill(sheet, 'h', {1, 5, 4, 5}, 201);  // just counts
    fill(sheet, ' ', {0, 15, 0, 0}, 255); // a space is as wide as ever
    fill(sheet, 0xe4, {0, 4, 11, 11}, 255);
    fill(sheet, 255, {0, 0, 0, 0}, 255);
    fill(sheet, 'T', {0, 15, 0, 2}, 255); // a bar at the top and one to the left
    fill(sheet, 'T', {0, 2, 0, 15}, 255);
    test::writePicture(path, sheet);
}

/** A font whose unit is a pixel in a window where y grows upwards from the middle of the left. */
class FontTest : public DisplayTest {
protected:
    FontTest() : DisplayTest(WIDTH, HEIGHT)
    {
        writeSheet(mFolder.path("sheet.png"));
        mFont.load("sheet.png", false, Vector2f(WIDTH, HEIGHT));
        start();
    }

    void start()
    {
        mDisplay.resetStates();
        Draw::setProject(-WIDTH / 2, WIDTH / 2, -HEIGHT / 2, HEIGHT / 2);
        moveTo({0, 0, 0});
        Draw::clear({0, 0, 0, 0}, 1.0f);
    }

    static void moveTo(const Vector3f& origin)
    {
        Draw::MatrixGL transform;
        transform.setTranslation(origin);
        Draw().setTransform(transform);
    }

    template <typename Action>
    Picture pictureOf(Action action)
    {
        start();
        action();
        return mWindow.screenshot();
    }

    /** A white text at the origin. */
    Picture pictureOfText(const char* text, const Vector2f& scale = {1, 1})
    {
        return pictureOf([&] { mFont.draw(text, scale, {1, 1, 1, 1}); });
    }

    /** A pixel that many to the right of the origin and below it. */
    static unsigned pixelFrom(const Picture& picture, int right, int down)
    {
        return pixelAt(picture, WIDTH / 2 + right, HEIGHT / 2 + down);
    }

    Font mFont{&mDisplay};
};

TEST_F(FontTest, MeasuresTextByTheAdvancesOfItsBytes)
{
    // A glyph's rightmost column and two more; a space is a part of the cell, whatever is drawn.
    // clang-format off
    const std::pair<const char*, float> cases[] = {
        {"", 0}, {"I", 5}, {"L", 17}, {"g", 7}, {"h", 7}, {"x", 2}, {" ", 6.8f}, {"\xe4", 6},
        {"\xff", 2}, {"I L\xe4", 34.8f},
    };
    // clang-format on
    for (const auto& [text, expected] : cases) {
        EXPECT_FLOAT_EQ(mFont.getLength(text, 1.0f), expected) << text;
        EXPECT_FLOAT_EQ(mFont.getLength(text, 2.5f), expected * 2.5f) << text;
    }
    EXPECT_FLOAT_EQ(mFont.getHeight(), 16.0f);

    mFont.load("sheet.png", true, Vector2f(2 * WIDTH, HEIGHT / 2)); // in parts of the window
    EXPECT_FLOAT_EQ(mFont.getLength("I", 1.0f), 10.0f);
    EXPECT_FLOAT_EQ(mFont.getHeight(), 8.0f);
    mFont.setSizeOfSpace(9.0f);
    EXPECT_FLOAT_EQ(mFont.getLength(" ", 1.0f), 18.0f);
}

/** Where the text "LI" is drawn: its L fills a cell, its I is a bar 17 units on, and it ends at 22.
 */
constexpr struct PlaceCase {
    const char* name;
    Font::Alignment alignment;
    Vector3f origin;
    float scale;
    float left; // of the L
    float bar;  // left edge of the I's bar
} PLACES[] = {
    {"LeftStartsAtTheOrigin", Font::ALIGN_LEFT,   {0, 0, 0},   1, 0,   19},
    {"RightEndsAtTheOrigin",  Font::ALIGN_RIGHT,  {0, 0, 0},   1, -22, -3},
    {"CentreIsSymmetric",     Font::ALIGN_CENTER, {0, 0, 0},   1, -11, 8 },
    {"MovesWithTheMatrix",    Font::ALIGN_LEFT,   {-20, 9, 0}, 1, -20, -1},
    {"ScalesAboutTheOrigin",  Font::ALIGN_RIGHT,  {10, -3, 0}, 2, -34, 4 },
};

TEST_F(FontTest, PlaceIsWhereTheAlignmentPutsIt)
{
    for (const PlaceCase& row : PLACES) {
        SCOPED_TRACE(row.name);
        const auto& [name, alignment, origin, scale, left, bar] = row;
        const float y = origin.y;
        const Picture expected = pictureOf([&] {
            Draw::setColor({0.0f, 1.0f, 0.0f, 1.0f});
            Draw::drawBox(left, y - 8 * scale, left + 16 * scale, y + 8 * scale, Draw::SOLID);
            Draw::drawBox(bar, y - 6 * scale, bar + 2 * scale, y + 6 * scale, Draw::SOLID);
        });
        const Picture actual = pictureOf([&] {
            moveTo(origin);
            mFont.setAlignment(alignment);
            mFont.draw("LI", {scale, scale}, {0.0f, 1.0f, 0.0f, 1.0f});
        });
        // Magnified glyphs have soft edges; each texel's middle has its full colour.
        const bool isMagnified = scale > 1.0f;
        EXPECT_TRUE(isSamePicture(actual, expected,
                                  isMagnified ? test::PictureDifference{6.0, 160}
                                              : test::PictureDifference{}));
    }
}

TEST_F(FontTest, BoundsATextByItsInk)
{
    const std::tuple<const char*, const char*, Font::Alignment, Vector2f, mathbase::Box2> rows[] = {
        {"Empty",              "",   Font::ALIGN_LEFT,  {1, 1},  {0, 0, 0, 0}    },
        {"FaintPixelsCount",   "g",  Font::ALIGN_LEFT,  {1, 1},  {0, 0, 9, 4}    },
        {"YDownwards",         "g",  Font::ALIGN_LEFT,  {1, -1}, {0, -4, 9, 0}   },
        {"NoLongerThanTheInk", "LI", Font::ALIGN_LEFT,  {1, 1},  {0, -8, 21, 8}  },
        {"Right",              "LI", Font::ALIGN_RIGHT, {1, 1},  {-22, -8, 0, 8} },
        {"WholeCellsIfScaled", "g",  Font::ALIGN_LEFT,  {2, 2},  {0, -16, 32, 16}},
    };
    for (const auto& [name, text, alignment, scale, expected] : rows) {
        mFont.setAlignment(alignment);
        EXPECT_EQ(mFont.getBounds(text, scale), expected) << name;
    }
}

TEST_F(FontTest, RoundsGlyphsToWholeUnitsAndTurnsThemWithItsMatrix)
{
    EXPECT_TRUE(isSamePicture(pictureOfText("L", {1.02f, 1.0f}), pictureOfText("L"), {}));
    // The bar at the top, and the one to the left.
    const Picture upwards = pictureOfText("T");
    EXPECT_EQ(pixelFrom(upwards, 8, -7), 0xffffffu);
    EXPECT_EQ(pixelFrom(upwards, 8, 4), 0x000000u);
    const Picture downwards = pictureOf([&] {
        Draw::setProject(-WIDTH / 2, WIDTH / 2, HEIGHT / 2, -HEIGHT / 2);
        mFont.draw("T", {1, -1}, {1, 1, 1, 1});
    });
    EXPECT_TRUE(isSamePicture(downwards, upwards, {})) << "upright with a negative scale";
    const Picture turned = pictureOf([&] {
        Draw::MatrixGL quarterTurn;
        quarterTurn.setRotZ(1.57079633f);
        Draw().setTransform(quarterTurn);
        mFont.draw("T", {1, 1}, {1, 1, 1, 1});
    });
    EXPECT_EQ(pixelFrom(turned, -7, -8), 0xffffffu);
    EXPECT_EQ(pixelFrom(turned, 4, -2), 0xffffffu);
    EXPECT_EQ(pixelFrom(turned, 4, -8), 0x000000u);
}

TEST_F(FontTest, BlendsByTheSheetsBrightnessAndLeavesEveryStateAsItWasAndChannelZeroEmpty)
{
    const Picture blended = pictureOf([&] {
        Draw::setColor({0, 0, 1, 1});
        Draw::drawBox(0, -20, 40, 20, Draw::SOLID);
        mFont.draw("g", {1, 1}, {1, 0, 0, 1});
    });
    EXPECT_EQ(pixelFrom(blended, 3, -4), 0xff0000u);
    EXPECT_EQ(pixelFrom(blended, 7, -4), 0xc80037u);
    EXPECT_EQ(pixelFrom(blended, 3, 4), 0x0000ffu);

    am::Image white = imageOf(1, 1, {0xffffffff});
    Texture* const texture = mDisplay.createTexture(white, Texture::TextureDeclaration{});
    // A textured rectangle after the text looks as it does without the text.
    const auto drawAround = [&](const std::string& text) {
        return pictureOf([&] {
            mDisplay.setTexture(texture, 3);
            mDisplay.setTexture(texture, 0);
            Draw::setTexturing(true);
            Draw::setColor({0.2f, 0.4f, 0.6f, 0.5f});
            moveTo({3, 4, 0});
            mFont.draw(text, {1, 1}, {1, 0, 0, 1});
            EXPECT_EQ(stateOf(GL_TEXTURE_BINDING_2D), 0);
            mDisplay.setTexture(texture, 0);
            Draw::drawBox(-40, -30, 40, 30, Draw::SOLID);
        });
    };
    const Picture without = drawAround("");
    EXPECT_TRUE(isSamePicture(drawAround("LL"), without, {}));
    EXPECT_EQ(pixelFrom(without, 0, 0), 0x336699u);
}

TEST_F(FontTest, SharesOneArrayBetweenTextsAllOverTheWindowAndAllocatesNothing)
{
    const std::string text = "LIgh I";
    const auto frame = [&] {
        mDisplay.resetStates();
        for (int i = 0; i < 200; ++i) {
            moveTo({static_cast<float>(i % 20), static_cast<float>(i), 0.0f});
            mFont.draw(text, {1, 1}, {1, 1, 1, 1});
            moveTo({0, 0, 0});
        }
        Draw::flush();
    };
    frame();
    const unsigned long arrays = Immediate::live().drawnArrays();
    const test::AllocationCounter counter;
    frame();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_EQ(Immediate::live().drawnArrays() - arrays, 1u);
}

TEST_F(FontTest, SaysWhatItCannotLoadAndGivesItsSheetBackAfterDrawingWhatWaits)
{
    const Picture picture = pictureOf([&] {
        Font other(&mDisplay);
        other.load("sheet.png", false, Vector2f(WIDTH, HEIGHT));
        other.draw("L", {1, 1}, {1, 1, 1, 1});
    });
    EXPECT_EQ(pixelFrom(picture, 5, 0), 0xffffffu);

    const auto refusal = [this](const char* name) {
        return thrownMessage([&] { mFont.load(name, false, Vector2f(1, 1)); });
    };
    EXPECT_EQ(refusal("none.png"), "Could not load font from 'none.png'");
    EXPECT_FLOAT_EQ(mFont.getLength("I", 1.0f), 5.0f) << "the sheet loaded before stays";
    mDisplay.setArchive(nullptr);
    EXPECT_EQ(refusal("sheet.png"),
              "Cannot load font from 'sheet.png', no archive added to the display!");
}

} // namespace
} // namespace zavex::display
