#include "effects_stage.h"

#include "effects/flash.h"
#include "effects/plasma.h"

#include "display/dis_immediate.h"

#include <GLFW/glfw3.h>

#include <array>
#include <cmath>

namespace zavex::effects {
namespace {

using display::BlendFactor;
using display::DisplayObsolete;
using display::Immediate;
using test::Picture;

class Effects : public EffectsStage {
protected:
    Flash mFlash;
    Plasma mPlasma;
};

/** Red, green and blue at a point, from the top left. */
std::array<int, 3> at(const Picture& picture, int x, int y)
{
    const std::uint8_t* rgb = &picture.rgb[static_cast<std::size_t>(y * picture.width + x) * 3];
    return {rgb[0], rgb[1], rgb[2]};
}

TEST_F(Effects, ClearFillsAndFlashDarkensByTwiceItsCurve)
{
    struct Row {
        float flash;
        int expected; // of 102, the cleared level
    };
    prepare(mClear, "clear", colour(R"(r="0" g="0.2" b="0.4")"));
    preparePostProcess(0.0f, 0.0f);
    for (const Row& row : {
             Row{0.0f,  102},
             Row{0.25f, 51 },
             Row{0.5f,  0  },
             Row{0.8f,  0  }
    }) {
        Flash flash;
        prepare(flash, "flash", flat("flash", row.flash));
        const Picture picture = present([&] {
            step(mClear, 1.0f, 0.04f);
            step(flash, 1.0f, 0.04f);
            EXPECT_TRUE(Immediate::live().state().blending);
            EXPECT_EQ(Immediate::live().state().blendSource, BlendFactor::ONE);
            EXPECT_EQ(Immediate::live().state().blendDestination, BlendFactor::ONE);
        });
        EXPECT_NEAR(at(picture, 160, 120)[2], row.expected, 1) << row.flash;
        EXPECT_NEAR(at(picture, 200, 90)[1], row.expected / 2, 1) << row.flash;
        EXPECT_EQ(at(picture, 3, 3)[0], 0) << row.flash;
        EXPECT_EQ(test::isBlack(picture), row.expected == 0) << row.flash;
    }
}

TEST_F(Effects, WithoutClearTheTargetKeepsItsPicture)
{
    prepare(mClear, "clear", colour(R"(r="0.4" g="0.2" b="0")"));
    preparePostProcess(0.0f, 0.0f);
    present([&] { step(mClear, 1.0f, 0.04f); });
    EXPECT_NEAR(at(present([] {}), 160, 120)[0], 102, 1);
}

/** A small bright square, off the middle so that a mirrored picture would show. */
void drawLamp()
{
    DisplayObsolete::setProject(mathbase::Matrix4x4Col());
    DisplayObsolete().setCamera();
    DisplayObsolete::setColor(1.0f, 0.9f, 0.7f, 1.0f);
    DisplayObsolete::drawBox(-0.65f, 0.35f, -0.35f, 0.65f, DisplayObsolete::SOLID);
}

TEST_F(Effects, TheGlowLooksAsItDid)
{
    prepare(mClear, "clear", "");
    preparePostProcess(1.0f, 0.0f);
    const Picture glowing = present([&] {
        step(mClear, 1.0f, 0.04f);
        drawLamp();
    });
    EXPECT_TRUE(LOOKS_LIKE(glowing, "glow"));
}

TEST_F(Effects, LightWithoutAHueTakesOneOfTheShows)
{
    struct Row {
        const char* cleared;
        std::array<int, 3> expected;
    };
    preparePostProcess(0.0f, 0.0f);
    for (const Row& row : {
             Row{R"(r="1" g="1" b="1")",          {231, 231, 231}},
             Row{R"(r="0.45" g="0.45" b="0.45")", {28, 74, 115}  },
             Row{R"(r="0.1" g="0.1" b="0.1")",    {8, 7, 26}     },
             Row{R"(r="0.1" g="0.3" b="0.6")",    {26, 77, 153}  },
             Row{R"(r="0.6" g="0.2" b="0.1")",    {153, 92, 26}  }
    }) {
        Clear clear;
        prepare(clear, "clear", colour(row.cleared));
        const std::array<int, 3> seen = at(present([&] { step(clear, 1.0f, 0.04f); }), 160, 120);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(seen[channel], row.expected[channel], 2) << row.cleared << channel;
    }
}

TEST_F(Effects, TheGrainIsFineAndColourless)
{
    prepare(mClear, "clear", colour(R"(r="0" g="0.4" b="0.4")"));
    preparePostProcess(0.0f, 1.0f);
    const Picture grainy = present([&] { step(mClear, 1.0f, 0.04f); });
    double sum = 0.0;
    double squares = 0.0;
    int pixels = 0;
    for (int y = 80; y < 160; ++y) { // where the picture is as bright as in its middle
        for (int x = 100; x < 220; ++x, ++pixels) {
            const std::array<int, 3> pixel = at(grainy, x, y);
            EXPECT_LE(std::abs(pixel[1] - pixel[2]), 1);
            sum += pixel[1];
            squares += pixel[1] * pixel[1];
        }
    }
    const double mean = sum / pixels;
    const double deviation = std::sqrt(squares / pixels - mean * mean);
    EXPECT_NEAR(mean, 102.0, 2.0);
    EXPECT_GT(deviation, 1.5);
    EXPECT_LT(deviation, 12.0);
}

std::string plasmaScript()
{
    return colour(R"(r="0.33" g="1.25" b="1.5")") + flat("stop", 0.5f) + flat("camera", -0.7f) +
           flat("logo1", 0.8f) + flat("hammertime", 0.9f) +
           "\t<plugin type=\"spline\" name=\"beat spline\">\n\t\t<key time=\"0\" value=\"1\"/>\n"
           "\t\t<key time=\"0.4\" value=\"0\"/>\n\t</plugin>\n"
           "\t<plugin type=\"trigger\" name=\"beat trigger\">\n"
           "\t\t<action start=\"1.5\" delay=\"1\" repeat=\"3\"/>\n\t</plugin>\n";
}

TEST_F(Effects, PlasmaLooksAsItDidAlsoAfterFullScreen)
{
    prepare(mClear, "clear", "");
    prepare(mPlasma, "plasma", plasmaScript());
    preparePostProcess(0.5f, 0.0f);
    Picture picture;
    for (const float time : {0.5f, 1.0f, 1.52f}) {
        picture = present([&] {
            step(mClear, time, 0.5f);
            step(mPlasma, time, 0.5f);
            EXPECT_FALSE(Immediate::live().state().blending);
            EXPECT_FALSE(Immediate::live().state().texturing);
        });
    }
    EXPECT_TRUE(LOOKS_LIKE(picture, "plasma"));

    // To full screen and back everything is built afresh.
    const auto again = [&] {
        return present([&] {
            step(mClear, 1.52f, 0.0f);
            step(mPlasma, 1.52f, 0.0f);
        });
    };
    picture = again();
    for (int turn = 0; turn < 2; ++turn) {
        mWindow->onKey(GLFW_KEY_LEFT_ALT, GLFW_PRESS);
        mWindow->onKey(GLFW_KEY_ENTER, GLFW_RELEASE);
        mWindow->onKey(GLFW_KEY_LEFT_ALT, GLFW_RELEASE);
        mWindow->update();
    }
    // Only the dither differs from frame to frame; a lost texture would be far more.
    EXPECT_TRUE(test::isSamePicture(again(), picture, {0.5, 2}));
}

} // namespace
} // namespace zavex::effects
