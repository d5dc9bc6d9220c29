#include "mathbase/mb_splinebase.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace zavex::mathbase {
namespace {

using Key = SplineBaseKey<float>;
using Keys = std::vector<Key>;

constexpr auto SQUARE = SplineFloat::SQUARE;
constexpr auto LINEAR = SplineFloat::LINEAR;
constexpr auto SMOOTH = SplineFloat::SMOOTH;
constexpr auto UNKNOWN = static_cast<SplineFloat::InterpolationMode>(3);
constexpr auto HOLD = SplineFloat::EXT_CONSTANT;
constexpr auto REPEAT = SplineFloat::EXT_REPEAT;
constexpr auto ADD = SplineFloat::EXT_REPEAT_ADD;
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float INF = std::numeric_limits<float>::infinity();

/** Keys from "time value time value ...". */
Keys keysOf(const std::string& numbers)
{
    Keys keys;
    std::istringstream in(numbers);
    for (float time = 0.0f, value = 0.0f; in >> time >> value;)
        keys.push_back({time, value});
    return keys;
}

const Keys NONE;
const Keys ONE = keysOf("2 5");
const Keys RAMP = keysOf("0 0 1 1");
const Keys PEAK = keysOf("0 0 1 1 2 0");
const Keys STEP = keysOf("0 0 1 2 1 6 2 8");
const Keys ONLY_STEP = keysOf("1 2 1 6");

/** A curve with the keys in the given order, which must be sorted, equal times included. */
SplineFloat curve(const Keys& keys, SplineFloat::InterpolationMode interpolation = LINEAR,
                  SplineFloat::ExtrapolationMode before = HOLD,
                  SplineFloat::ExtrapolationMode after = HOLD)
{
    SplineFloat result(interpolation, true);
    result.setExtrapolationBefore(before);
    result.setExtrapolationAfter(after);
    result.addKeys(keys);
    return result;
}

// clang-format off
const std::tuple<const char*, SplineFloat, float, float> VALUES[] = {
    {"NoKeys", curve(NONE), 1.0f, 0.0f},
    {"OneKeyAfter", curve(ONE, SMOOTH, REPEAT, REPEAT), 9.0f, 5.0f},
    {"Linear", curve(RAMP), 0.25f, 0.25f},
    {"LinearClimbsOnBefore", curve(RAMP, LINEAR, ADD, ADD), -0.5f, -0.5f},
    {"WholePeriodsBefore", curve(RAMP, LINEAR, ADD, ADD), -3.0f, -3.0f},
    {"RepeatedAfter", curve(RAMP, LINEAR, REPEAT, REPEAT), 1.5f, 0.5f},
    {"RepeatedBefore", curve(RAMP, LINEAR, REPEAT, REPEAT), -0.25f, 0.75f},
    {"LastTimeItselfIsNotRepeated", curve(RAMP, LINEAR, REPEAT, REPEAT), 1.0f, 1.0f},
    {"RepeatedOnlyAfter", curve(RAMP, LINEAR, HOLD, REPEAT), -0.25f, 0.0f},
    {"ClimbsOnFarOutside", curve(keysOf("0.1 1 0.7 3"), LINEAR, ADD, ADD), 60.1f, 201.0f},
    {"SquareTakesAKeyAtItsOwnTime", curve(PEAK, SQUARE), 1.0f, 1.0f},
    {"SquareTakesTheLastOfSeveralAtOneTime", curve(STEP, SQUARE), 1.0f, 6.0f},
    {"SquareAtTheLastTimeIsTheLastSegment", curve(PEAK, SQUARE), 2.0f, 1.0f},
    {"SquareAddsThePeriod", curve(RAMP, SQUARE, HOLD, ADD), 3.5f, 3.0f},
    {"SmoothIsFlatAtThePeak", curve(PEAK, SMOOTH), 1.0f, 1.0f},
    {"SmoothBetweenKeys", curve(PEAK, SMOOTH), 0.5f, 0.625f},
    {"SmoothOfARampIsTheRamp", curve(RAMP, SMOOTH, ADD, ADD), 0.3f, 0.3f},
    {"OtherModesAreSmooth", curve(PEAK, UNKNOWN), 0.5f, 0.5f},
    {"SmoothStraightUpToAStep", curve(STEP, SMOOTH), 0.5f, 1.0f},
    {"StepBeforeAllOtherKeys", curve(keysOf("1 2 1 6 2 8"), SMOOTH), 1.0f, 2.0f},
    {"AllKeysAtOneTime", curve(ONLY_STEP, SMOOTH, REPEAT, ADD), 1.0f, 2.0f},
    {"AllKeysAtOneTimeAfter", curve(ONLY_STEP, SMOOTH, REPEAT, ADD), 3.0f, 6.0f},
    {"EndlessTime", curve(RAMP, LINEAR, REPEAT, ADD), INF, 1.0f},
    {"NotANumber", curve(PEAK, SMOOTH, REPEAT, ADD), NOT_A_NUMBER, 0.0f},
};
// clang-format on

TEST(Spline, FollowsItsModes)
{
    for (const auto& [name, spline, time, expected] : VALUES)
        EXPECT_NEAR(spline.evaluate(time), expected, 1e-4f) << name;
}

/** "in out, in out, ..." of each key; a negative zero reads 0. */
std::string tangentsOf(const SplineFloat& spline)
{
    std::ostringstream text;
    for (int i = 0; i < spline.getNumKeys(); ++i)
        text << (i > 0 ? ", " : "") << spline[i].tangentIN + 0.0f << ' '
             << spline[i].tangentOUT + 0.0f;
    return text.str();
}

TEST(Spline, TakesItsTangentsFromTheNeighboursIfTheyAreAutomaticAndSmooth)
{
    using Mode = SplineFloat::ExtrapolationMode;
    const Keys uneven = keysOf("0 0 1 2 4 5");
    const std::tuple<const char*, Keys, Mode, Mode, std::string> rows[] = {
        {"OneKeyIsFlat",                  ONE,                           ADD,    ADD,    "0 0"                       },
        {"PeakIsFlat",                    PEAK,                          HOLD,   HOLD,   "0 1, 0 0, -1 0"            },
        {"SlopeIsScaledToEachSegment",    uneven,                        HOLD,   HOLD,   "0 2, 1.5 4.5, 3 0"         },
        {"RepeatWrapsAround",             uneven,                        REPEAT, REPEAT, "2 0.666667, 1.5 4.5, -3 -1"},
        {"RepeatAddWrapsAroundLifted",    uneven,                        ADD,    ADD,    "4.5 1.5, 1.5 4.5, 4.5 1.5" },
        {"EachEndFollowsItsOwnMode",      uneven,                        ADD,    HOLD,   "4.5 1.5, 1.5 4.5, 3 0"     },
        {"TwoKeysWrapOntoThemselves",     RAMP,                          REPEAT, ADD,    "0.5 0.5, 1 1"              },
        {"NextToAStepTheOtherSideCounts", STEP,                          HOLD,   HOLD,   "0 2, 2 0, 0 2, 2 0"        },
        {"BetweenTwoStepsFlat",           keysOf("0 0 1 1 1 5 1 9 2 8"), HOLD,   HOLD,
         "0 1, 1 0, 0 0, 0 -1, -1 0"                                                                                 },
        {"AllAtOneTimeIsFinite",          ONLY_STEP,                     REPEAT, ADD,    "0 0, 0 0"                  },
    };
    for (const auto& [name, keys, before, after, expected] : rows)
        EXPECT_EQ(tangentsOf(curve(keys, SMOOTH, before, after)), expected) << name;

    const Keys keys = {Key(0, 0, 3, 4), Key(1, 2, 5, 6)};
    EXPECT_EQ(tangentsOf(curve(keys, LINEAR)), "3 4, 5 6");
    SplineFloat manual(SMOOTH, false);
    manual.addKeys(keys);
    EXPECT_EQ(tangentsOf(manual), "3 4, 5 6");
}

TEST(Spline, NamesTheSegmentOfATime)
{
    const Keys equal = keysOf("0 0 1 0 2 0 2 1 2 2 3 0 4 0");
    // clang-format off
    const std::tuple<Keys, float, int> rows[] = {
        {NONE, 0, SplineFloat::NO_KEYS}, {ONE, 1.9f, SplineFloat::BEFORE_FIRST_KEY},
        {ONE, 2, SplineFloat::AFTER_LAST_KEY}, {RAMP, 1, 0}, {PEAK, 0, 0}, {PEAK, 2, 1},
        {PEAK, 2.1f, SplineFloat::AFTER_LAST_KEY}, {STEP, 1, 0}, {equal, 2, 3},
        {PEAK, NOT_A_NUMBER, SplineFloat::AFTER_LAST_KEY},
    };
    // clang-format on
    for (const auto& [keys, time, expected] : rows)
        EXPECT_EQ(curve(keys).getKeyIndex(time), expected) << keys.size() << " at " << time;

    const SplineFloat spline = curve(keysOf("0 0 1 0 2 0 3 0 4 0"));
    const std::pair<float, int> remembering[] = {
        {1.5f, 1}, // then the one that two share is that of the last look-up
        {2.0f, 1},
        {2.5f, 2},
        {2.0f, 2},
        {3.5f, 3},
        {0.0f, 0},
    };
    for (const auto& [time, expected] : remembering)
        EXPECT_EQ(spline.getKeyIndex(time), expected) << time;
}

TEST(Spline, FindsTheSameValuesWhateverWasLookedUpBefore)
{
    Keys keys;
    for (int i = 0; i < 100; ++i) {
        const float at = static_cast<float>(i);
        keys.push_back({at + 0.5f * std::sin(at), std::cos(at * 3.0f)});
    }
    const SplineFloat warm = curve(keys, SMOOTH, REPEAT, ADD);
    for (int i = 0; i < 500; ++i) {
        const float time = static_cast<float>((i * 787) % 1500) * 0.1f - 20.0f;
        const SplineFloat cold = curve(keys, SMOOTH, REPEAT, ADD);
        ASSERT_EQ(warm.evaluate(time), cold.evaluate(time)) << time;
    }
}

TEST(Spline, PutsAKeyAtItsTimeAndWidensTheRange)
{
    const auto expectKept = [](const SplineFloat& spline, int index, int expected) {
        ASSERT_EQ(index, expected);
        EXPECT_EQ(spline[index].value, 50.0f);
        EXPECT_EQ(spline.getMaxValue(), 50.0f);
        for (int i = 1; i < spline.getNumKeys(); ++i)
            EXPECT_LE(spline[i - 1].time, spline[i].time);
        EXPECT_EQ(spline.getInterval().x, spline[0].time);
        EXPECT_EQ(spline.getInterval().y, spline[spline.getNumKeys() - 1].time);
    };
    // clang-format off
    const std::tuple<Keys, float, int> added[] = {
        {NONE, 3, 0}, {ONE, 0.5f, 0}, {ONE, 2, 1}, {RAMP, -1, 0}, {RAMP, 1, 1}, {PEAK, 0, 1},
        {PEAK, 1.5f, 2}, {PEAK, 2, 2}, {PEAK, 2.5f, 3},
    };
    const std::tuple<int, float, int> moved[] = {
        {1, 1.5f, 1}, {1, 2, 1}, {0, 9, 2}, {2, -1, 0}, {0, 1.5f, 1}, {2, 0, 1}, {2, 7, 2},
    };
    // clang-format on
    for (const auto& [keys, time, expected] : added) {
        SCOPED_TRACE(testing::Message() << keys.size() << " added at " << time);
        SplineFloat spline = curve(keys);
        const int index = spline.addKey({time, 50.0f});
        expectKept(spline, index, expected);
    }
    for (const auto& [from, time, expected] : moved) {
        SCOPED_TRACE(testing::Message() << from << " moved to " << time);
        SplineFloat spline = curve(PEAK, SMOOTH);
        spline[from].time = time;
        spline[from].value = 50.0f;
        const int index = spline.updateKey(from);
        expectKept(spline, index, expected);
    }
}

TEST(Spline, RemovesKeysDownToNoneAndForgetsItsSegment)
{
    SplineFloat spline = curve(PEAK, SMOOTH);
    EXPECT_EQ(spline.getKeyIndex(1.5f), 1);
    spline.removeKey(1);
    EXPECT_EQ(spline.getInterval(), Vector2f(0, 2));
    EXPECT_EQ(spline.getMaxValue(), 0.0f);
    EXPECT_EQ(spline.evaluate(1.5f), 0.0f);
    for (const int index : {-1, 2}) {
        const std::string expected = "index>=0 && index<(int)mKeys.size()";
        EXPECT_EQ(test::thrownMessage([&] { spline.removeKey(index); }), expected) << index;
        EXPECT_EQ(test::thrownMessage([&] { spline.updateKey(index); }), expected) << index;
    }
    EXPECT_EQ(spline.getNumKeys(), 2);

    spline[0].value = 4.0f;
    spline.updateKey(0);
    spline.removeKey(1);
    spline.removeKey(0);
    EXPECT_FALSE(spline.hasKeys());
    EXPECT_EQ(spline.getMaxValue(), 4.0f);
}

} // namespace
} // namespace zavex::mathbase
