// What the parts of a picture do that other effects draw: clearing, darkening, showing.

#include "effects_stage.h"

#include "effects/flash.h"

#include "display/dis_display_obsolete.h"
#include "display/dis_fbo.h"

#include <array>
#include <cmath>

namespace zavex::effects {
namespace {

using display::DisplayObsolete;
using display::Immediate;
using test::Picture;

class Effects : public EffectsStage {
protected:
    Effects() { preparePostProcess(0.0f, 0.0f); }
};

/** Red, green or blue at a point, from the top left. */
int at(const Picture& picture, int x, int y, std::size_t channel)
{
    return picture.rgb[static_cast<std::size_t>(y * picture.width + x) * 3 + channel];
}

TEST_F(Effects, FlashDarkensByTwiceItsCurveAndGreyTakesAHueOfTheShow)
{
    const struct {
        const char* cleared;
        float flash;
        std::array<int, 3> expected;
    } rows[] = {
        {"r='0' g='0.2' b='0.4'",      -0.1f, {0, 51, 102}   },
        {"r='0' g='0.2' b='0.4'",      0.25f, {0, 26, 51}    },
        {"r='0' g='0.2' b='0.4'",      0.5f,  {0, 0, 0}      },
        {"r='0' g='0.2' b='0.4'",      0.8f,  {0, 0, 0}      },
        {"r='1' g='1' b='1'",          0.0f,  {231, 231, 231}},
        {"r='0.45' g='0.45' b='0.45'", 0.0f,  {28, 74, 115}  },
        {"r='0.1' g='0.1' b='0.1'",    0.0f,  {8, 7, 26}     },
        {"r='0.1' g='0.3' b='0.6'",    0.0f,  {26, 77, 153}  },
        {"r='0.6' g='0.2' b='0.1'",    0.0f,  {153, 92, 26}  },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.cleared) + std::to_string(row.flash));
        clearTo(row.cleared);
        Flash flash;
        prepare(flash, flat("flash", row.flash));
        const Picture picture = present([&] { step(flash, 1.0f, FRAME); });
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(at(picture, 160, 120, channel), row.expected[channel], 2);
        EXPECT_EQ(test::isBlack(picture), row.expected[2] == 0);
    }
    // Without `clear` the target keeps its picture.
    const auto show = [&] { mPostProcess->draw(1.0f, FRAME, 0.1f); };
    EXPECT_NEAR(at(test::pictureOf(*mWindow, show), 160, 120, 0), 153, 2);
}

/** Leaves nothing as it should be. */
class Careless final : public CommonEffect {
    void drawFrame(float /*time*/, float /*delta*/, float /*progress*/) override
    {
        mDisplay->setFBO(mCommon->mVaddrHalf[1]);
        mDisplay->setShader(
            mDisplay->createShader("plasma/plasma.vert", "plasma/plasma.frag", nullptr));
        mDisplay->setTexture(mCommon->mVaddrHalf_Texture[0], 0);
        setPerspective(10.0f);
        DisplayObsolete().setCamera({0.0f, 0.0f, -1.0f}, {0.0f, 1.0f, 0.0f}, 1.0f);
        DisplayObsolete::setColor(0.1f);
        Immediate::State& state = Immediate::live().change();
        state.scissor = {3, 4, 5, 6};
        state.lineWidth = state.pointSize = 7.0f;
        state.blendEquation = display::BlendEquation::SUBTRACT;
        state.frontFace = display::Winding::CLOCKWISE;
        state.texturing = state.faceCulling = state.scissorTest = state.depthTest = true;
        state.depthWriting = false;
    }
};

TEST_F(Effects, TheGlowLooksAsItDidWhateverWasDrawnBefore)
{
    preparePostProcess(1.0f, 0.0f);
    Careless careless;
    prepare(careless, "");
    const Picture glowing = present([&] {
        const Immediate::State found = Immediate::live().state();
        const auto colour = Immediate::live().color();
        step(careless, 1.0f, FRAME);
        EXPECT_EQ(Immediate::live().state(), found);
        EXPECT_EQ(Immediate::live().color(), colour);
        EXPECT_EQ(mWindow->getFBO(), mCommon.mVaddr[0]);

        // A small bright square, off the middle so that a mirrored picture would show, and plain
        // even if a texture that is still bound were laid on it.
        Immediate::live().change().texturing = true;
        DisplayObsolete::setProject(mathbase::Matrix4x4Col());
        DisplayObsolete::setColor(1.0f, 0.9f, 0.7f, 1.0f);
        DisplayObsolete::drawBox(-0.65f, 0.35f, -0.35f, 0.65f, DisplayObsolete::SOLID);
    });
    EXPECT_TRUE(LOOKS_LIKE(glowing, "glow"));
}

TEST_F(Effects, TheGrainIsFineAndColourless)
{
    clearTo("r='0' g='0.4' b='0.4'");
    preparePostProcess(0.0f, 1.0f);
    const Picture grainy = present([] {});
    double squares = 0.0;
    for (int y = 80; y < 160; ++y) { // where the picture is as bright as in its middle
        for (int x = 100; x < 220; ++x) {
            EXPECT_NEAR(at(grainy, x, y, 1), at(grainy, x, y, 2), 1);
            squares += std::pow(at(grainy, x, y, 1) - 102.0, 2.0);
        }
    }
    const double deviation = std::sqrt(squares / (80.0 * 120.0));
    EXPECT_GT(deviation, 1.5);
    EXPECT_LT(deviation, 12.0);
}

} // namespace
} // namespace zavex::effects
