#include "am/am.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_font.h"
#include "display/dis_glinclude.h"
#include "display/dis_immediate.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"
#include "support/log_capture.h"
#include "support/picture.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace zavex::display {
namespace {

using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;
using test::Picture;
using Draw = DisplayObsolete;

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
class FontTest : public testing::Test {
protected:
    void SetUp() override
    {
        writeSheet(mFolder.path("sheet.png"));
        mArchives.addArchive(mFolder.path(""));
        mDisplay->setArchive(&mArchives);
        mFont.load("sheet.png", false, Vector2f(WIDTH, HEIGHT));
        start();
    }

    void start()
    {
        mDisplay->resetStates();
        Draw::setProject(-WIDTH / 2, WIDTH / 2, -HEIGHT / 2, HEIGHT / 2);
        moveTo({0, 0, 0});
        Draw::clear({0, 0, 0, 0}, 1.0f);
    }

    static void moveTo(const Vector3f& origin)
    {
        DisplayObsolete::MatrixGL transform;
        transform.setTranslation(origin);
        DisplayObsolete().setTransform(transform);
    }

    template <typename Action>
    Picture pictureOf(Action action)
    {
        start();
        action();
        return mDisplay.screenshot();
    }

    test::TemporaryFolder mFolder;
    am::ArchiveManager mArchives;
    test::GlDisplay mDisplay{WIDTH, HEIGHT};
    Font mFont{&*mDisplay};
};

TEST_F(FontTest, MeasuresTextByTheAdvancesOfItsBytes)
{
    const std::pair<const char*, float> cases[] = {
        {"",        0.0f },
        {"I",       5.0f }, // its rightmost column and two more
        {"L",       17.0f},
        {"g",       7.0f },
        {"h",       7.0f },
        {"x",       2.0f },
        {" ",       6.8f }, // a part of the cell, whatever is drawn there
        {"\xe4",    6.0f },
        {"\xff",    2.0f },
        {"I L\xe4", 34.8f},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_FLOAT_EQ(mFont.getLength(text, 1.0f), expected) << text;
        EXPECT_FLOAT_EQ(mFont.getLength(text, 2.5f), expected * 2.5f) << text;
    }
    EXPECT_FLOAT_EQ(mFont.getHeight(), 16.0f);
}

TEST_F(FontTest, MeasuresInPartsOfTheWindow)
{
    mFont.load("sheet.png", true, Vector2f(2 * WIDTH, HEIGHT / 2));
    EXPECT_FLOAT_EQ(mFont.getLength("I", 1.0f), 10.0f);
    EXPECT_FLOAT_EQ(mFont.getHeight(), 8.0f);

    mFont.setSizeOfSpace(9.0f);
    EXPECT_FLOAT_EQ(mFont.getLength(" ", 1.0f), 18.0f);
}

/** Where the text "LI" is drawn: its L fills a cell, its I is a bar. */
// The text is 22 units long; its second cell begins 17 units after the first.
constexpr struct PlaceCase {
    const char* name;
    Font::Alignment alignment;
    Vector3f origin;
    Vector2f scale;
    float left; // of the L
    float bar;  // left edge of the I's bar
} PLACES[] = {
    {"LeftStartsAtTheOrigin", Font::ALIGN_LEFT,   {0, 0, 0},   {1, 1}, 0,   19},
    {"RightEndsAtTheOrigin",  Font::ALIGN_RIGHT,  {0, 0, 0},   {1, 1}, -22, -3},
    {"CentreIsSymmetric",     Font::ALIGN_CENTER, {0, 0, 0},   {1, 1}, -11, 8 },
    {"MovesWithTheMatrix",    Font::ALIGN_LEFT,   {-20, 9, 0}, {1, 1}, -20, -1},
    {"ScalesAboutTheOrigin",  Font::ALIGN_RIGHT,  {10, -3, 0}, {2, 2}, -34, 4 },
};

TEST_F(FontTest, PlaceIsWhereTheAlignmentPutsIt)
{
    for (const PlaceCase& row : PLACES) {
        SCOPED_TRACE(row.name);
        const Picture expected = pictureOf([&] {
            Draw::setColor({0.0f, 1.0f, 0.0f, 1.0f});
            const float y = row.origin.y;
            const float scale = row.scale.x;
            Draw::drawBox(row.left, y - 8 * scale, row.left + 16 * scale, y + 8 * scale,
                          Draw::SOLID);
            Draw::drawBox(row.bar, y - 6 * scale, row.bar + 2 * scale, y + 6 * scale, Draw::SOLID);
        });
        const Picture actual = pictureOf([&] {
            moveTo(row.origin);
            mFont.setAlignment(row.alignment);
            mFont.draw("LI", row.scale, {0.0f, 1.0f, 0.0f, 1.0f});
        });
        // Magnified glyphs have soft edges; each texel's middle has its full colour.
        const bool isMagnified = row.scale.x > 1.0f;
        EXPECT_TRUE(test::isSamePicture(actual, expected,
                                        isMagnified ? test::PictureDifference{6.0, 160}
                                                    : test::PictureDifference{}));
    }
}

constexpr struct BoundsCase {
    const char* name;
    const char* text;
    Font::Alignment alignment;
    Vector2f scale;
    mathbase::Box2 expected;
} BOUNDS[] = {
    {"Empty",              "",   Font::ALIGN_LEFT,  {1, 1},  {0, 0, 0, 0}    },
    {"FaintPixelsCount",   "g",  Font::ALIGN_LEFT,  {1, 1},  {0, 0, 9, 4}    },
    {"YDownwards",         "g",  Font::ALIGN_LEFT,  {1, -1}, {0, -4, 9, 0}   },
    {"NoLongerThanTheInk", "LI", Font::ALIGN_LEFT,  {1, 1},  {0, -8, 21, 8}  },
    {"Right",              "LI", Font::ALIGN_RIGHT, {1, 1},  {-22, -8, 0, 8} },
    {"WholeCellsIfScaled", "g",  Font::ALIGN_LEFT,  {2, 2},  {0, -16, 32, 16}},
};

TEST_F(FontTest, BoundsATextByItsInk)
{
    for (const BoundsCase& row : BOUNDS) {
        mFont.setAlignment(row.alignment);
        EXPECT_EQ(mFont.getBounds(row.text, row.scale), row.expected) << row.name;
    }
}

TEST_F(FontTest, RoundsGlyphsToWholeUnits)
{
    const auto drawAt = [&](float scale) {
        return pictureOf([&] { mFont.draw("L", {scale, 1.0f}, {1, 1, 1, 1}); });
    };
    EXPECT_TRUE(test::isSamePicture(drawAt(1.02f), drawAt(1.0f), {}));
}

TEST_F(FontTest, StandsUprightWhereYGrowsDownwardsWithANegativeScale)
{
    const Picture upwards = pictureOf([&] { mFont.draw("T", {1, 1}, {1, 1, 1, 1}); });
    const Picture downwards = pictureOf([&] {
        Draw::setProject(-WIDTH / 2, WIDTH / 2, HEIGHT / 2, -HEIGHT / 2);
        mFont.draw("T", {1, -1}, {1, 1, 1, 1});
    });
    EXPECT_EQ(test::pixelAt(upwards, WIDTH / 2 + 8, HEIGHT / 2 - 7), 0xffffffu);
    EXPECT_EQ(test::pixelAt(upwards, WIDTH / 2 + 8, HEIGHT / 2 + 4), 0x000000u);
    EXPECT_TRUE(test::isSamePicture(downwards, upwards, {}));
}

TEST_F(FontTest, BlendsByTheSheetsBrightness)
{
    const Picture picture = pictureOf([&] {
        Draw::setColor({0, 0, 1, 1});
        Draw::drawBox(0, -20, 40, 20, Draw::SOLID);
        mFont.draw("g", {1, 1}, {1, 0, 0, 1});
    });
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 + 3, HEIGHT / 2 - 4), 0xff0000u);
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 + 7, HEIGHT / 2 - 4), 0xc80037u);
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 + 3, HEIGHT / 2 + 4), 0x0000ffu);
}

TEST_F(FontTest, LeavesEveryStateAsItWasAndChannelZeroEmpty)
{
    am::Image white(new am::ImageObject());
    white->resize(1, 1);
    std::fill_n(white->getWriteData(), 4, static_cast<unsigned char>(255));
    Texture* const texture = mDisplay->createTexture(white, Texture::TextureDeclaration{});

    // A textured rectangle after the text looks as it does without the text.
    const auto drawAround = [&](const std::string& text) {
        return pictureOf([&] {
            mDisplay->setTexture(texture, 3);
            mDisplay->setTexture(texture, 0);
            Draw::setTexturing(true);
            Draw::setColor({0.2f, 0.4f, 0.6f, 0.5f});
            moveTo({3, 4, 0});
            mFont.draw(text, {1, 1}, {1, 0, 0, 1});
            GLint bound = -1;
            glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
            EXPECT_EQ(bound, 0);
            mDisplay->setTexture(texture, 0);
            Draw::drawBox(-40, -30, 40, 30, Draw::SOLID);
        });
    };
    const Picture without = drawAround("");
    EXPECT_TRUE(test::isSamePicture(drawAround("LL"), without, {}));
    EXPECT_EQ(test::pixelAt(without, WIDTH / 2, HEIGHT / 2), 0x336699u);
    mDisplay->destroy(texture);
}

TEST_F(FontTest, SharesOneArrayBetweenTextsAllOverTheWindow)
{
    const std::string text = "LIgh I";
    const auto frame = [&] {
        mDisplay->resetStates();
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

TEST_F(FontTest, TurnsAndScalesWithAnyOtherMatrix)
{
    DisplayObsolete::MatrixGL quarterTurn;
    quarterTurn.setRotZ(1.57079633f);
    const Picture turned = pictureOf([&] {
        DisplayObsolete().setTransform(quarterTurn);
        mFont.draw("T", {1, 1}, {1, 1, 1, 1});
    });
    // The bar at the top stands on the left, the one to the left lies below.
    EXPECT_EQ(test::pixelAt(turned, WIDTH / 2 - 7, HEIGHT / 2 - 8), 0xffffffu);
    EXPECT_EQ(test::pixelAt(turned, WIDTH / 2 + 4, HEIGHT / 2 - 2), 0xffffffu);
    EXPECT_EQ(test::pixelAt(turned, WIDTH / 2 + 4, HEIGHT / 2 - 8), 0x000000u);
}

TEST_F(FontTest, SaysWhatItCannotLoad)
{
    EXPECT_EQ(test::thrownMessage([&] {
                  mFont.load("none.png", false, {1, 1});
              }),
              "Could not load font from 'none.png'");
    EXPECT_FLOAT_EQ(mFont.getLength("I", 1.0f), 5.0f) << "the sheet loaded before stays";

    mDisplay->setArchive(nullptr);
    EXPECT_EQ(test::thrownMessage([&] {
                  mFont.load("sheet.png", false, {1, 1});
              }),
              "Cannot load font from 'sheet.png', no archive added to the display!");
    EXPECT_EQ(test::thrownMessage([] { Font(nullptr); }), "display");
}

TEST_F(FontTest, GivesItsSheetBackAfterDrawingWhatWaits)
{
    const Picture picture = pictureOf([&] {
        Font other(&*mDisplay);
        other.load("sheet.png", false, Vector2f(WIDTH, HEIGHT));
        other.draw("L", {1, 1}, {1, 1, 1, 1});
    });
    EXPECT_EQ(test::pixelAt(picture, WIDTH / 2 + 5, HEIGHT / 2), 0xffffffu);
}

} // namespace
} // namespace zavex::display
