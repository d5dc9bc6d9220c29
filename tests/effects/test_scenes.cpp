// The scenes of the show but the first: where things stand, how they move, what they look like.

#include "effects_stage.h"

#include "effects/ascii.h"
#include "effects/flash.h"
#include "effects/lightspeed.h"
#include "effects/plasma.h"
#include "effects/stars.h"
#include "effects/volumetric.h"

#include "display/dis_immediate.h"
#include "support/allocation_counter.h"
#include "support/log_capture.h"

#include <array>
#include <limits>
#include <span>

namespace zavex::effects {
namespace {

using display::BlendEquation;
using display::BlendFactor;
using display::Immediate;
using test::Picture;

constexpr float FRAME = 0.04f; // seconds

class Scenes : public EffectsStage {
protected:
    Scenes()
    {
        prepare(mClear, "clear", "");
        preparePostProcess(0.3f, 0.0f);
    }

    void prepareStars(float level) { prepare(mStars, "stars", flat("not fast enough", level)); }

    void prepareAscii() { prepare(mAscii, "ascii", ""); }

    void prepareLightspeed(float span = 50.0f)
    {
        prepare(mLightspeed, "lightspeed",
                flat("not fast enough", 0.6f) + ramp("explode", -0.6f, 1.0f) +
                    ramp("rot x", 0.0f, 0.6f) + ramp("rot y", 0.2f, -0.4f) +
                    ramp("greetings (to)", 0.0f, 0.8f),
                span);
    }

    void prepareVolumetric(const std::string& path, float span = 40.0f)
    {
        prepare(mVolumetric, "volumetric",
                colour(R"(r="0.2" g="0.5" b="1.2")") +
                    colour(R"(r="0.3" g="0.25" b="1")", "color_house_create") + path +
                    flat("code", 0.8f),
                span);
    }

    static std::string bend()
    {
        return ramp("path x", -0.2f, 0.3f) + flat("path y", -0.92f) + ramp("path z", -1.0f, 1.0f);
    }

    /** The picture of one effect alone. */
    Picture pictureOf(cadenza::Effect& effect, float time, float delta = FRAME)
    {
        return present([&] {
            step(mClear, 1.0f, FRAME);
            step(effect, time, delta);
        });
    }

    /** How many arrays one frame of an effect takes. */
    unsigned long arraysOf(cadenza::Effect& effect, float time)
    {
        unsigned long arrays = 0;
        test::drawFrame(*mWindow, [&] {
            step(mClear, 1.0f, FRAME);
            const unsigned long before = Immediate::live().drawnArrays();
            step(effect, time, FRAME);
            display::DisplayObsolete::flush();
            arrays = Immediate::live().drawnArrays() - before;
        });
        return arrays;
    }

    Stars mStars;
    Ascii mAscii;
    Lightspeed mLightspeed;
    Volumetric mVolumetric;
};

TEST_F(Scenes, StarsShineAsTheirCurveSays)
{
    mCommon.from = {0.0f, 0.0f, 0.0f};
    mCommon.to = {0.0f, 5.0f, 10.0f};
    struct Row {
        float level;
        const char* picture; // null: black
    };
    for (const Row& row : {
             Row{-1.0f, nullptr     },
             Row{0.0f,  "stars_half"},
             Row{1.0f,  "stars"     }
    }) {
        Stars stars; // a script that is read again adds to the curves
        prepare(stars, "stars", flat("not fast enough", row.level));
        const Picture picture = pictureOf(stars, 1.0f);
        EXPECT_EQ(isBlack(picture), row.picture == nullptr) << row.level;
        if (row.picture) {
            EXPECT_TRUE(LOOKS_LIKE(picture, row.picture));
        }
        EXPECT_LE(arraysOf(stars, 1.0f), 2u);
    }
}

TEST_F(Scenes, CharactersSlideIntoThePicture)
{
    prepareAscii();
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mAscii, 1.0f), "ascii_title"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mAscii, 2.8f), "ascii_between"));
    const Picture complete = pictureOf(mAscii, 5.0f);
    EXPECT_TRUE(LOOKS_LIKE(complete, "ascii"));
    // Every cell is in its place, whichever way time went; the dither is another one each frame.
    EXPECT_LE(test::differenceOf(pictureOf(mAscii, 9.0f), complete).maximum, 2);
    EXPECT_GT(test::differenceOf(pictureOf(mAscii, 4.0f), complete).maximum, 50);
}

TEST_F(Scenes, StreaksFlyOnlyWhileTimeGoesOn)
{
    prepareLightspeed();
    for (const float delta : {0.0f, -0.04f, 0.04f, 0.99f, 1.0f, 7.0f}) {
        const float before = mLightspeed.streaks()[5].mPos.z;
        test::drawFrame(*mWindow, [&] { step(mLightspeed, 2.0f, delta); });
        EXPECT_EQ(mLightspeed.streaks()[5].mPos.z != before, delta > 0.0f && delta < 1.0f) << delta;
    }
}

TEST_F(Scenes, TheFlightLooksAsItDid)
{
    prepareLightspeed();
    pictureOf(mLightspeed, 0.5f);
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mLightspeed, 1.0f), "lightspeed_tunnel"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mLightspeed, 20.75f), "lightspeed_plates"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mLightspeed, 47.0f), "lightspeed_greetings"));
}

TEST_F(Scenes, TheCameraRestsAtTheEndOfThePath)
{
    prepareVolumetric(bend());
    const auto cameraAt = [&](float time) {
        test::drawFrame(*mWindow, [&] { step(mVolumetric, time, FRAME); });
        return mCommon.from.z;
    };
    const float last = cameraAt(39.8f);
    EXPECT_EQ(cameraAt(39.83f), last); // from 0.9955 of the span on
    EXPECT_LT(cameraAt(10.0f), last);
}

TEST_F(Scenes, TheRoadLooksAsItDid)
{
    prepareVolumetric(bend());
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mVolumetric, 2.0f), "volumetric_start"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mVolumetric, 20.0f), "volumetric"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mVolumetric, 38.0f), "volumetric_end"));
    EXPECT_LT(arraysOf(mVolumetric, 20.0f), 60u);
}

TEST_F(Scenes, WildCurvesGiveAPictureAndNoComplaint)
{
    const float huge = std::numeric_limits<float>::max();
    const std::string paths[] = {
        "",
        flat("path x", 0.5f) + flat("path y", 0.0f) + flat("path z", 0.0f),
        ramp("path x", -huge, huge) + ramp("path z", huge, -huge),
        flat("path x", std::numeric_limits<float>::quiet_NaN()),
        ramp("path z", 1.0f, -1.0f),
    };
    for (const std::string& path : paths) {
        for (const float span : {10.0f, 0.0f}) {
            Volumetric effect;
            prepare(effect, "volumetric", path, span);
            const Picture picture = present([&] {
                step(mClear, 1.0f, FRAME);
                effect.draw(0.5f, FRAME, 0.5f);
            });
            EXPECT_EQ(picture.width, WIDTH) << path;
        }
    }
}

/** What a scene leaves behind for the next one. */
TEST_F(Scenes, EachLeavesItsStates)
{
    prepareStars(0.0f);
    prepareAscii();
    prepareLightspeed();
    prepareVolumetric(bend());
    const auto statesAfter = [&](cadenza::Effect& effect) {
        Immediate::State state;
        test::drawFrame(*mWindow, [&] {
            step(effect, 4.0f, FRAME);
            state = Immediate::live().state();
        });
        EXPECT_EQ(state.blendSource, BlendFactor::ONE) << effect.getName();
        EXPECT_EQ(state.blendDestination, BlendFactor::ONE) << effect.getName();
        EXPECT_EQ(state.blendEquation, BlendEquation::ADD) << effect.getName();
        return std::array{state.blending, state.depthWriting, state.depthTest, state.faceCulling,
                          state.texturing};
    };
    for (cadenza::Effect* effect :
         std::array<cadenza::Effect*, 3>{&mAscii, &mLightspeed, &mVolumetric})
        EXPECT_EQ(statesAfter(*effect), (std::array{true, true, false, false, false}))
            << effect->getName();
    EXPECT_EQ(statesAfter(mStars), (std::array{true, false, true, true, false}));
}

TEST_F(Scenes, ASteadyFrameAllocatesNothing)
{
    prepareStars(0.5f);
    prepareAscii();
    prepareLightspeed();
    prepareVolumetric(bend());
    Flash flash;
    prepare(flash, "flash", flat("flash", 0.1f));
    Plasma plasma;
    prepare(plasma, "plasma", flat("stop", 0.5f) + flat("hammertime", 0.9f));
    cadenza::Effect* const effects[] = {&mCommon,     &mClear, &mStars, &mAscii,      &mLightspeed,
                                        &mVolumetric, &flash,  &plasma, &mPostProcess};
    for (cadenza::Effect* effect : effects) {
        std::size_t allocations = 0;
        for (int frame = 1; frame <= 4; ++frame)
            test::drawFrame(*mWindow, [&] {
                const test::AllocationCounter counter;
                step(*effect, 1.0f + FRAME * static_cast<float>(frame), FRAME);
                allocations = counter.count();
            });
        EXPECT_EQ(allocations, 0u) << effect->getName();
    }
}

TEST_F(Scenes, ARehearsalMakesAllThatIsDrawnAndChangesNothing)
{
    prepareStars(0.6f);
    prepareAscii();
    prepareLightspeed();
    prepareVolumetric(bend());
    Plasma plasma;
    Plasma twin; // rehearses once only
    for (Plasma* cells : {&plasma, &twin})
        prepare(*cells, "plasma", flat("stop", 1.0f) + flat("hammertime", 0.4f), 40.0f);
    PostProcess grainy;
    prepare(grainy, "postprocess", flat("glow", 0.0f) + flat("glownoise", 0.0f));
    CommonEffect* const scenes[] = {&twin,        &mStars, &mLightspeed, &mAscii,
                                    &mVolumetric, &plasma, &grainy};
    const auto rehearse = [](std::span<CommonEffect* const> rehearsing) {
        std::srand(1); // the grain's
        for (CommonEffect* scene : rehearsing) {
            const unsigned long arrays = Immediate::live().drawnArrays();
            scene->rehearse();
            EXPECT_GT(Immediate::live().drawnArrays(), arrays) << scene->getName();
        }
    };
    const auto pictureAt = [&](float time, float delta) {
        return test::pictureOf(*mWindow, [&] {
            step(mClear, 1.0f, FRAME);
            for (CommonEffect* scene : scenes)
                step(*scene, time, delta);
        });
    };

    rehearse(scenes);
    am::ArchiveManager empty;
    mWindow->setArchive(&empty); // nothing is read any more
    for (const float time : {11.0f, 11.5f, 12.0f})
        pictureAt(time, 0.5f);
    std::srand(1);
    const Picture picture = pictureAt(12.0f, 0.0f);
    rehearse(std::span(scenes).subspan(1));
    EXPECT_TRUE(test::isSamePicture(pictureAt(12.0f, 0.0f), picture, {0.0, 0}));
    mWindow->setArchive(&mArchives);
    rehearse(std::span(scenes).subspan(1));
    EXPECT_TRUE(isBlack(present([] {})));
    const auto cellsOf = [&](Plasma& effect) {
        std::srand(1);
        return pictureOf(effect, 12.5f, 0.5f);
    };
    const Picture cells = cellsOf(twin);
    EXPECT_TRUE(test::isSamePicture(cellsOf(plasma), cells, {0.0, 0}));
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
