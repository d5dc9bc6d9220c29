// The scenes of the show but the first: where things stand, how they move, what they look like.

#include "effects_stage.h"

#include "effects/ascii.h"
#include "effects/lightspeed.h"
#include "effects/plasma.h"
#include "effects/stars.h"
#include "effects/volumetric.h"

#include "display/dis_immediate.h"
#include "support/allocation_counter.h"
#include "support/log_capture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
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

TEST_F(Scenes, StarsStandFarAwayAndNotBelowTheHorizon)
{
    prepareStars(0.0f);
    float highest = 0.0f;
    float brightest = 0.0f;
    for (int i = 0; i < Stars::COUNT; ++i) {
        const Star& star = mStars.stars()[i];
        ASSERT_GE(star.mPos.y, 0.0f) << i;
        ASSERT_NEAR(star.mPos.length(), 50000.0f, 1.0f) << i;
        ASSERT_EQ(star.mColor.x, star.mColor.z) << i;
        highest = std::max(highest, star.mPos.y);
        brightest = std::max(brightest, star.mColor.x);
    }
    EXPECT_GT(highest, 49900.0f);
    EXPECT_GT(brightest, 0.399f);
    EXPECT_LE(brightest, 0.4f);
}

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

TEST_F(Scenes, CharactersStartBelowTheirPlacesRowByRow)
{
    prepareAscii();
    std::set<float> different;
    for (int cell = 0; cell < Ascii::ROWS * Ascii::COLUMNS; ++cell) {
        const float row = static_cast<float>(cell / Ascii::COLUMNS);
        const float offset = mAscii.chars()[cell].mOffset;
        ASSERT_GE(offset, 0.5f * row) << cell;
        ASSERT_LT(offset, 0.5f * row + 0.5f) << cell;
        different.insert(offset);
    }
    EXPECT_GT(different.size(), 1800u);
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
    struct Row {
        float delta;
        bool moves;
    };
    prepareLightspeed();
    for (const Row& row : {
             Row{0.0f,   false},
             Row{-0.04f, false},
             Row{0.04f,  true },
             Row{0.99f,  true },
             Row{1.0f,   false},
             Row{7.0f,   false}
    }) {
        const float before = mLightspeed.streaks()[5].mPos.z;
        test::drawFrame(*mWindow, [&] { step(mLightspeed, 2.0f, row.delta); });
        EXPECT_EQ(mLightspeed.streaks()[5].mPos.z != before, row.moves) << row.delta;
    }
}

TEST_F(Scenes, StreaksComeInAgainAtTheFarEnd)
{
    prepareLightspeed();
    int entered = 0;
    for (int frame = 0; frame < 20; ++frame) {
        std::vector<float> before;
        for (int i = 0; i < Lightspeed::STREAKS; ++i)
            before.push_back(mLightspeed.streaks()[i].mPos.z);
        test::drawFrame(*mWindow, [&] { step(mLightspeed, 2.0f, FRAME); });
        for (int i = 0; i < Lightspeed::STREAKS; ++i) {
            const float flown = before[static_cast<std::size_t>(i)] - 34.0f * FRAME;
            const float now = mLightspeed.streaks()[i].mPos.z;
            if (flown >= 0.0f) {
                ASSERT_NEAR(now, flown, 1e-4f);
                continue;
            }
            ++entered;
            ASSERT_GE(now, flown + 18.0f - 1e-4f);
            ASSERT_LE(now, flown + 22.0f);
        }
    }
    EXPECT_GT(entered, 500);
}

TEST_F(Scenes, TheFlightLooksAsItDid)
{
    prepareLightspeed();
    pictureOf(mLightspeed, 0.5f);
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mLightspeed, 1.0f), "lightspeed_tunnel"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mLightspeed, 20.75f), "lightspeed_plates"));
    EXPECT_TRUE(LOOKS_LIKE(pictureOf(mLightspeed, 47.0f), "lightspeed_greetings"));
}

TEST_F(Scenes, AHouseIsBuiltInThreeStages)
{
    struct Row {
        float closeness;
        Volumetric::Stages stages;
    };
    for (const Row& row : {
             Row{0.0f,  {0.0f, 0.0f, 0.0f}},
             Row{0.05f, {0.5f, 0.0f, 0.0f}},
             Row{0.1f,  {1.0f, 0.0f, 0.0f}},
             Row{0.2f,  {1.0f, 1.0f, 0.0f}},
             Row{0.35f, {1.0f, 1.0f, 0.5f}},
             Row{0.5f,  {1.0f, 1.0f, 1.0f}},
             Row{1.0f,  {1.0f, 1.0f, 1.0f}},
    }) {
        const Volumetric::Stages stages = Volumetric::stagesAt(row.closeness);
        EXPECT_NEAR(stages.volume, row.stages.volume, 1e-6f) << row.closeness;
        EXPECT_NEAR(stages.body, row.stages.body, 1e-6f) << row.closeness;
        EXPECT_NEAR(stages.outline, row.stages.outline, 1e-6f) << row.closeness;
    }
}

TEST_F(Scenes, HousesLineBothSidesOfThePathInThreeRowsAndGrow)
{
    prepareVolumetric(bend());
    for (int h = 0; h < Volumetric::HOUSES; ++h) {
        const Star& house = mVolumetric.houses()[h];
        const float share = static_cast<float>(h) / Volumetric::HOUSES;
        const float path = 20.0f * (-0.2f + 0.5f * share);
        const float row = static_cast<float>(h % 3) * 1.7f + 1.0f;
        const float offset = (house.mPos.x - path) * (h % 2 == 0 ? 1.0f : -1.0f) / row;
        ASSERT_GE(offset, 2.5f - 1e-3f) << h;
        ASSERT_LE(offset, 4.0f + 1e-3f) << h;
        ASSERT_NEAR(house.mPos.z, -100.0f + 200.0f * share, 1e-2f) << h;
        const float growth = std::sin(0.5f * 3.14159265f * share);
        ASSERT_GE(house.mSize.y, 0.5f * growth + 0.5f - 1e-4f) << h;
        ASSERT_LE(house.mSize.y, 5.5f * growth + 0.5f + 1e-4f) << h;
    }
}

TEST_F(Scenes, TheCameraFollowsThePathAndRestsAtItsEnd)
{
    prepareVolumetric(bend());
    const auto cameraAt = [&](float time) {
        test::drawFrame(*mWindow, [&] { step(mVolumetric, time, FRAME); });
        return mCommon.from;
    };
    const auto middle = cameraAt(20.0f);
    EXPECT_NEAR(middle.x, 1.0f, 1e-4f);
    EXPECT_NEAR(middle.y, -18.0f, 1e-3f); // 20 * -0.92 + 0.4
    EXPECT_NEAR(middle.z, 0.0f, 1e-4f);
    EXPECT_NEAR(mCommon.to.z, 5.0f, 1e-3f);
    EXPECT_NEAR(mCommon.to.y, -16.6f, 1e-3f);
    EXPECT_NEAR(mCommon.roll, 8.0f * 0.5f * 0.0125f, 1e-5f);
    const auto last = cameraAt(39.8f);
    EXPECT_EQ(cameraAt(39.83f).z, last.z); // from 0.9955 of the span on
    EXPECT_LT(cameraAt(10.0f).z, last.z);
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
    cadenza::Effect* const additive[] = {&mAscii, &mLightspeed, &mVolumetric};
    for (cadenza::Effect* effect : additive) {
        test::drawFrame(*mWindow, [&] {
            step(*effect, 4.0f, FRAME);
            const Immediate::State& state = Immediate::live().state();
            EXPECT_TRUE(state.blending) << effect->getName();
            EXPECT_EQ(state.blendSource, BlendFactor::ONE) << effect->getName();
            EXPECT_EQ(state.blendDestination, BlendFactor::ONE) << effect->getName();
            EXPECT_EQ(state.blendEquation, BlendEquation::ADD) << effect->getName();
            EXPECT_FALSE(state.texturing) << effect->getName();
            EXPECT_FALSE(state.depthTest) << effect->getName();
            EXPECT_FALSE(state.faceCulling) << effect->getName();
            EXPECT_TRUE(state.depthWriting) << effect->getName();
        });
    }
    test::drawFrame(*mWindow, [&] {
        step(mStars, 4.0f, FRAME);
        const Immediate::State& state = Immediate::live().state();
        EXPECT_TRUE(state.blending && state.depthTest && state.faceCulling);
        EXPECT_FALSE(state.depthWriting);
        EXPECT_EQ(state.blendSource, BlendFactor::ONE);
        EXPECT_EQ(state.blendDestination, BlendFactor::ONE);
    });
}

TEST_F(Scenes, ASteadyFrameAllocatesNothing)
{
    prepareStars(0.5f);
    prepareAscii();
    prepareLightspeed();
    prepareVolumetric(bend());
    for (cadenza::Effect* effect :
         std::initializer_list<cadenza::Effect*>{&mStars, &mAscii, &mLightspeed, &mVolumetric}) {
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

TEST_F(Scenes, AMissingPictureIsNamed)
{
    am::ArchiveManager empty;
    empty.addArchive("./");
    mWindow->setArchive(&empty);
    prepareAscii();
    const std::string message = test::thrownMessage([&] { pictureOf(mAscii, 1.0f); });
    EXPECT_NE(message.find("ascii/ascii.png"), std::string::npos) << message;
    mWindow->setArchive(&mArchives);
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
