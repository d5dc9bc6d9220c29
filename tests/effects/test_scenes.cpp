// The scenes of the show: what they look like, how they move, what they leave behind.

#include "effects_stage.h"

#include "effects/ascii.h"
#include "effects/flash.h"
#include "effects/lightspeed.h"
#include "effects/plasma.h"
#include "effects/stars.h"
#include "effects/volumetric.h"

#include "display/dis_fbo.h"
#include "support/allocation_counter.h"
#include "support/log_capture.h"

#include <GLFW/glfw3.h>

#include <limits>
#include <vector>

namespace zavex::effects {
namespace {

using display::BlendFactor;
using display::Immediate;
using test::Picture;

template <typename EffectClass>
std::unique_ptr<CommonEffect> made()
{
    return std::make_unique<EffectClass>();
}

constexpr const char* BLACK = "black";

/** A frame, and the stored picture that it looks like, if it is looked at. */
struct Frame {
    float time;
    const char* picture = nullptr;
};

struct Scene {
    const char* name;
    std::unique_ptr<CommonEffect> (*make)();
    std::string plugins;
    float span;  // seconds
    float delta; // of each frame, seconds
    std::vector<Frame> frames;
    unsigned long arrays; // handed to the driver at most for the last frame
    void (*left)(Immediate::State&);
};

std::string bend()
{
    return ramp("path x", -0.2f, 0.3f) + flat("path y", -0.92f) + ramp("path z", -1.0f, 1.0f) +
           colour("r='0.2' g='0.5' b='1.2'") +
           colour("r='0.3' g='0.25' b='1'", "color_house_create") + flat("code", 0.8f);
}

std::string cubes()
{
    return colour("r='0.33' g='1.25' b='1.5'") + flat("stop", 0.5f) + flat("camera", -0.7f) +
           flat("logo1", 0.8f) + flat("hammertime", 0.9f) +
           "<plugin type='spline' name='beat spline'><key time='0' value='1'/>"
           "<key time='0.4' value='0'/></plugin><plugin type='trigger' name='beat trigger'>"
           "<action start='1.5' delay='1' repeat='3'/></plugin>";
}

std::string flight()
{
    return flat("not fast enough", 0.6f) + ramp("explode", -0.6f, 1.0f) +
           ramp("rot x", 0.0f, 0.6f) + ramp("rot y", 0.2f, -0.4f) +
           ramp("greetings (to)", 0.0f, 0.8f);
}

// clang-format off
void leavesAll(Immediate::State& /*state*/) {}
void leavesLight(Immediate::State& s) { s.blending = true; s.blendSource = s.blendDestination = BlendFactor::ONE; }
void leavesDepth(Immediate::State& s) { leavesLight(s); s.depthTest = s.faceCulling = true; s.depthWriting = false; }
void leavesNoBlending(Immediate::State& s) { leavesLight(s); s.blending = s.faceCulling = false; }
void leavesAPicture(Immediate::State& s) { s.blending = s.faceCulling = s.depthTest = false; }

/** In the order of drawing. */
std::vector<Scene> show()
{
    return {
        {"clear", made<Clear>, "", 10, 0.04f, {{1}}, 0, leavesAll},
        {"dark stars", made<Stars>, flat("not fast enough", -1), 10, 0.04f, {{1, BLACK}}, 2, leavesDepth},
        {"dim stars", made<Stars>, flat("not fast enough", 0), 10, 0.04f, {{1, "stars_half"}}, 2, leavesDepth},
        {"stars", made<Stars>, flat("not fast enough", 1), 10, 0.04f, {{1, "stars"}}, 2, leavesDepth},
        {"lightspeed", made<Lightspeed>, flight(), 50, 0.04f,
         {{0.5f}, {1, "lightspeed_tunnel"}, {20.75f, "lightspeed_plates"}, {47, "lightspeed_greetings"}}, 20, leavesLight},
        // Every character is in its place from 5 s on.
        {"ascii", made<Ascii>, "", 10, 0.04f,
         {{9, "ascii"}, {1, "ascii_title"}, {2.8f, "ascii_between"}, {5, "ascii"}}, 2, leavesLight},
        {"volumetric", made<Volumetric>, bend(), 40, 0.04f,
         {{2, "volumetric_start"}, {20, "volumetric"}, {38, "volumetric_end"}}, 60, leavesLight},
        {"flash", made<Flash>, flat("flash", 0.1f), 10, 0.04f, {{1}}, 1, leavesLight},
        {"plasma", made<Plasma>, cubes(), 10, 0.5f, {{0.5f}, {1}, {1.52f, "plasma"}}, 20, leavesNoBlending},
        {"postprocess", made<PostProcess>, "", 10, 0.04f, {{1}}, 4, leavesAPicture},
    };
}
// clang-format on

class Scenes : public EffectsStage {
protected:
    Scenes() { preparePostProcess(0.3f, 0.0f); }

    /** As `step`, and as if another effect had left the states as they should not be. */
    void stepAfterOthers(CommonEffect& effect, const Scene& scene, float time, bool on)
    {
        Immediate& immediate = Immediate::live();
        Immediate::State expected = immediate.state();
        expected.projection.setScale({1.0f, 2.0f, 3.0f});
        expected.blending = expected.texturing = expected.faceCulling = expected.depthTest = on;
        expected.depthWriting = !on;
        expected.blendSource = BlendFactor::DST_COLOR;
        expected.blendEquation = display::BlendEquation::SUBTRACT;
        expected.frontFace = display::Winding::CLOCKWISE;
        expected.lineWidth = expected.pointSize = 5.0f;
        immediate.change() = expected;
        scene.left(expected);

        const unsigned long arrays = immediate.drawnArrays();
        const test::AllocationCounter counter;
        step(effect, time, scene.delta);
        mAllocations = counter.count();
        immediate.flush();
        mArrays = immediate.drawnArrays() - arrays;
        EXPECT_EQ(immediate.state(), expected);
        EXPECT_EQ(mWindow->getFBO(), scene.left == leavesAPicture ? nullptr : mCommon.mVaddr[0]);
    }

    void goToFullScreenAndBack()
    {
        for (int turn = 0; turn < 2; ++turn) {
            mWindow->onKey(GLFW_KEY_LEFT_ALT, GLFW_PRESS);
            mWindow->onKey(GLFW_KEY_ENTER, GLFW_RELEASE);
            mWindow->onKey(GLFW_KEY_LEFT_ALT, GLFW_RELEASE);
            mWindow->update();
        }
    }

    std::size_t mAllocations = 0; // of the latest frame
    unsigned long mArrays = 0;    // of the latest frame
};

TEST_F(Scenes, LookAsTheyDidAndLeaveWhatTheyFound)
{
    for (const Scene& scene : show()) {
        SCOPED_TRACE(scene.name);
        mCommon.from = {0.0f, 0.0f, 0.0f};
        mCommon.to = {0.0f, 5.0f, 10.0f};
        mCommon.roll = 0.0f;
        preparePostProcess(scene.make == made<Plasma> ? 0.5f : 0.3f, 0.0f);
        const auto effect = scene.make();
        prepare(*effect, scene.plugins, scene.span);
        if (scene.make == made<Plasma>) {
            effect->rehearse();
            goToFullScreenAndBack();
        }
        bool on = false;
        for (const Frame& frame : scene.frames) {
            on = !on;
            const Picture picture =
                present([&] { stepAfterOthers(*effect, scene, frame.time, on); });
            if (frame.picture == BLACK) {
                EXPECT_TRUE(isBlack(picture));
            } else if (frame.picture) {
                EXPECT_TRUE(LOOKS_LIKE(picture, frame.picture));
            }
        }
        present([&] { stepAfterOthers(*effect, scene, scene.frames.back().time, !on); });
        EXPECT_EQ(mAllocations, 0u);
        EXPECT_LE(mArrays, scene.arrays);
    }
}

TEST_F(Scenes, StreaksRestWhileTimeDoesAndTheCameraAtTheEnd)
{
    Lightspeed tunnel;
    prepare(tunnel, flight());
    for (const float delta : {0.0f, -0.04f, 0.04f, 0.99f, 1.0f, 7.0f}) {
        const float before = tunnel.streaks()[5].mPos.z;
        test::drawFrame(*mWindow, [&] { step(tunnel, 2.0f, delta); });
        EXPECT_EQ(tunnel.streaks()[5].mPos.z != before, delta > 0.0f && delta < 1.0f) << delta;
    }
    Volumetric road;
    prepare(road, bend(), 40.0f);
    const auto cameraAt = [&](float time) {
        test::drawFrame(*mWindow, [&] { step(road, time, FRAME); });
        return mCommon.from.z;
    };
    const float last = cameraAt(39.8f);
    EXPECT_EQ(cameraAt(39.83f), last); // from 0.9955 of the span on
    EXPECT_LT(cameraAt(10.0f), last);
}

TEST_F(Scenes, WildCurvesGiveAPictureAndNoComplaint)
{
    const float huge = std::numeric_limits<float>::max();
    for (const std::string& path :
         {std::string(), flat("path x", 0.5f) + flat("path y", 0.0f) + flat("path z", 0.0f),
          ramp("path x", -huge, huge) + ramp("path z", huge, -huge),
          flat("path x", std::numeric_limits<float>::quiet_NaN()), ramp("path z", 1.0f, -1.0f)}) {
        for (const float span : {10.0f, 0.0f}) {
            Volumetric effect;
            prepare(effect, path, span);
            present([&] { effect.draw(0.5f, FRAME, 0.5f); });
        }
    }
}

TEST_F(Scenes, ARehearsalMakesAllThatIsDrawnAndChangesNothing)
{
    std::vector<std::unique_ptr<CommonEffect>> once;
    std::vector<std::unique_ptr<CommonEffect>> often;
    for (auto* effects : {&once, &often})
        for (const Scene& scene : show())
            prepare(*effects->emplace_back(scene.make()), scene.plugins, 40.0f);
    const auto play = [&](const auto& effects) {
        std::srand(1); // the grain's
        Picture picture;
        for (const float time : {11.5f, 12.0f})
            picture = test::pictureOf(*mWindow, [&] {
                for (const auto& effect : effects)
                    step(*effect, time, 0.5f);
            });
        return picture;
    };
    for (const auto& effect : once)
        effect->rehearse();
    am::ArchiveManager empty;
    mWindow->setArchive(&empty); // nothing is read any more
    const Picture picture = play(once);
    EXPECT_FALSE(isBlack(picture));
    mWindow->setArchive(&mArchives);
    for (int turn = 0; turn < 2; ++turn)
        for (const auto& effect : often)
            effect->rehearse();
    EXPECT_TRUE(test::isSamePicture(play(often), picture, {0.0, 0}));
}

TEST(BlendEquations, AreRequired)
{
    struct PoorDisplay : display::DisplayGLFW {
        bool hasExtension(const std::string& /*name*/) const override { return false; }
    };
    PoorDisplay display;
    Volumetric effect;
    effect.setIdentity("volumetric", "nowhere");
    effect.load(&display);
    EXPECT_EQ(test::thrownMessage([&] { effect.setup(); }),
              "Your graphics card does not support blending equations! "
              "[GL_EXT_blend_subtract or GL_ARB_imaging]");
}

} // namespace
} // namespace zavex::effects
