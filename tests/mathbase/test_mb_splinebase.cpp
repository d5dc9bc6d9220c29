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

const Keys RAMP = keysOf("0 0 1 1");
const Keys PEAK = keysOf("0 0 1 1 2 0");
const Keys STEP = keysOf("0 0 1 2 1 6 2 8");
const Keys TENTHS = keysOf("0.1 1 0.7 3");
const Keys NONE;
const Keys ONE = keysOf("2 5");
const Keys STEP_FIRST = keysOf("1 2 1 6 2 8");
const Keys ONLY_STEP = keysOf("1 2 1 6");
const Keys UNEVEN = keysOf("0 0 1 2 4 5");
const Keys TWO_STEPS = keysOf("0 0 1 1 1 5 1 9 2 8");
const Keys EQUAL = keysOf("0 0 1 0 2 0 2 1 2 2 3 0 4 0");

/** A curve with the keys in the given order, which must be sorted, equal times included. */
SplineFloat curve(const Keys& keys, SplineFloat::InterpolationMode interpolation = LINEAR,
                  SplineFloat::ExtrapolationMode before = HOLD,
                  SplineFloat::ExtrapolationMode after = HOLD)
{
    SplineFloat result(interpolation, true);
    result.setExtrapolationBefore(before);
    result.setExtrapolationAfter(after);
    for (std::size_t i = 0; i < keys.size(); ++i)
        result.addKey({static_cast<float>(i), 0.0f});
    for (std::size_t i = 0; i < keys.size(); ++i)
        result[static_cast<int>(i)] = keys[i];
    result.updateTangents(0, 1, 1);
    return result;
}

std::vector<float> timesOf(const SplineFloat& spline)
{
    std::vector<float> times;
    times.reserve(static_cast<std::size_t>(spline.getNumKeys()));
    for (int i = 0; i < spline.getNumKeys(); ++i)
        times.push_back(spline[i].time);
    return times;
}

// clang-format off
const struct ValueCase {
    const char* name;
    SplineFloat spline;
    float time;
    float expected;
} VALUE_CASES[] = {
    {"NoKeys", curve(NONE), 1.0f, 0.0f},
    {"OneKeyAfter", curve(ONE, SMOOTH, REPEAT, REPEAT), 9.0f, 5.0f},
    {"Linear", curve(RAMP), 0.25f, 0.25f},
    {"LinearClimbsOnBefore", curve(RAMP, LINEAR, ADD, ADD), -0.5f, -0.5f},
    {"WholePeriodsBefore", curve(RAMP, LINEAR, ADD, ADD), -3.0f, -3.0f},
    {"RepeatedAfter", curve(RAMP, LINEAR, REPEAT, REPEAT), 1.5f, 0.5f},
    {"RepeatedBefore", curve(RAMP, LINEAR, REPEAT, REPEAT), -0.25f, 0.75f},
    {"LastTimeItselfIsNotRepeated", curve(RAMP, LINEAR, REPEAT, REPEAT), 1.0f, 1.0f},
    {"RepeatedOnlyAfter", curve(RAMP, LINEAR, HOLD, REPEAT), -0.25f, 0.0f},
    {"ClimbsOnFarOutsideInSpiteOfRounding", curve(TENTHS, LINEAR, ADD, ADD), 60.1f, 201.0f},
    {"SquareTakesAKeyAtItsOwnTime", curve(PEAK, SQUARE), 1.0f, 1.0f},
    {"SquareTakesTheLastOfSeveralAtOneTime", curve(STEP, SQUARE), 1.0f, 6.0f},
    {"SquareAtTheLastTimeIsTheLastSegment", curve(PEAK, SQUARE), 2.0f, 1.0f},
    {"SquareAddsThePeriod", curve(RAMP, SQUARE, HOLD, ADD), 3.5f, 3.0f},
    {"SmoothIsFlatAtThePeak", curve(PEAK, SMOOTH), 1.0f, 1.0f},
    {"SmoothBetweenKeys", curve(PEAK, SMOOTH), 0.5f, 0.625f},
    {"SmoothOfARampIsTheRamp", curve(RAMP, SMOOTH, ADD, ADD), 0.3f, 0.3f},
    {"OtherModesAreSmooth", curve(PEAK, UNKNOWN), 0.5f, 0.5f},
    {"SmoothStraightUpToAStep", curve(STEP, SMOOTH), 0.5f, 1.0f},
    {"StepBeforeAllOtherKeys", curve(STEP_FIRST, SMOOTH), 1.0f, 2.0f},
    {"AllKeysAtOneTime", curve(ONLY_STEP, SMOOTH, REPEAT, ADD), 1.0f, 2.0f},
    {"AllKeysAtOneTimeAfter", curve(ONLY_STEP, SMOOTH, REPEAT, ADD), 3.0f, 6.0f},
    {"EndlessTime", curve(RAMP, LINEAR, REPEAT, ADD), INF, 1.0f},
    {"NotANumber", curve(PEAK, SMOOTH, REPEAT, ADD), NOT_A_NUMBER, 0.0f},
};
// clang-format on

TEST(SplineValue, FollowsTheModes)
{
    for (const ValueCase& row : VALUE_CASES) {
        SCOPED_TRACE(row.name);
        EXPECT_NEAR(row.spline.evaluate(row.time), row.expected, 1e-4f);
    }
}

const struct TangentCase {
    const char* name;
    Keys keys;
    SplineFloat::ExtrapolationMode before;
    SplineFloat::ExtrapolationMode after;
    std::string expected; // as tangentsOf
} TANGENT_CASES[] = {
    {"OneKeyIsFlat",                  ONE,       ADD,    ADD,    "0 0"                       },
    {"PeakIsFlat",                    PEAK,      HOLD,   HOLD,   "0 1, 0 0, -1 0"            },
    {"SlopeIsScaledToEachSegment",    UNEVEN,    HOLD,   HOLD,   "0 2, 1.5 4.5, 3 0"         },
    {"RepeatWrapsAround",             UNEVEN,    REPEAT, REPEAT, "2 0.666667, 1.5 4.5, -3 -1"},
    {"RepeatAddWrapsAroundLifted",    UNEVEN,    ADD,    ADD,    "4.5 1.5, 1.5 4.5, 4.5 1.5" },
    {"EachEndFollowsItsOwnMode",      UNEVEN,    ADD,    HOLD,   "4.5 1.5, 1.5 4.5, 3 0"     },
    {"TwoKeysWrapOntoThemselves",     RAMP,      REPEAT, ADD,    "0.5 0.5, 1 1"              },
    {"NextToAStepTheOtherSideCounts", STEP,      HOLD,   HOLD,   "0 2, 2 0, 0 2, 2 0"        },
    {"BetweenTwoStepsFlat",           TWO_STEPS, HOLD,   HOLD,   "0 1, 1 0, 0 0, 0 -1, -1 0" },
    {"AllAtOneTimeIsFinite",          ONLY_STEP, REPEAT, ADD,    "0 0, 0 0"                  },
};

/** "in out, in out, ..." of each key; a negative zero reads 0. */
std::string tangentsOf(const SplineFloat& spline)
{
    std::ostringstream text;
    for (int i = 0; i < spline.getNumKeys(); ++i)
        text << (i > 0 ? ", " : "") << spline[i].tangentIN + 0.0f << ' '
             << spline[i].tangentOUT + 0.0f;
    return text.str();
}

TEST(SplineTangent, ComesFromTheNeighbours)
{
    for (const TangentCase& row : TANGENT_CASES) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(tangentsOf(curve(row.keys, SMOOTH, row.before, row.after)), row.expected);
    }
}

TEST(Spline, KeepsItsTangentsUnlessTheyAreAutomaticAndSmooth)
{
    for (const bool isLinear : {false, true}) {
        SplineFloat spline(isLinear ? LINEAR : SMOOTH, isLinear);
        spline.addKey({0.0f, 0.0f, 3.0f, 4.0f});
        spline.addKey({1.0f, 2.0f, 5.0f, 6.0f});
        EXPECT_EQ(spline[0].tangentOUT, 4.0f) << isLinear;
        EXPECT_EQ(spline[1].tangentIN, 5.0f) << isLinear;
    }
}

TEST(Spline, NamesTheSegmentOfATime)
{
    const std::tuple<Keys, float, int> cases[] = {
        {NONE,  0.0f,         SplineFloat::NO_KEYS         },
        {ONE,   1.9f,         SplineFloat::BEFORE_FIRST_KEY},
        {ONE,   2.0f,         SplineFloat::AFTER_LAST_KEY  },
        {RAMP,  1.0f,         0                            },
        {PEAK,  2.1f,         SplineFloat::AFTER_LAST_KEY  },
        {PEAK,  0.0f,         0                            },
        {PEAK,  2.0f,         1                            },
        {PEAK,  NOT_A_NUMBER, SplineFloat::AFTER_LAST_KEY  },
        {STEP,  1.0f,         0                            },
        {EQUAL, 2.0f,         3                            },
    };
    for (const auto& [keys, time, expected] : cases) {
        SCOPED_TRACE(testing::Message() << time);
        EXPECT_EQ(curve(keys).getKeyIndex(time), expected);
    }
}

TEST(Spline, RemembersTheSegmentOfAKeyThatTwoShare)
{
    const SplineFloat spline = curve(keysOf("0 0 1 0 2 0 3 0 4 0"));
    EXPECT_EQ(spline.getKeyIndex(1.5f), 1);
    EXPECT_EQ(spline.getKeyIndex(2.0f), 1);
    EXPECT_EQ(spline.getKeyIndex(2.5f), 2);
    EXPECT_EQ(spline.getKeyIndex(2.0f), 2);
    EXPECT_EQ(spline.getKeyIndex(3.5f), 3);
    EXPECT_EQ(spline.getKeyIndex(0.0f), 0);
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

TEST(Spline, InsertsAKeyAtItsTimeAndWidensTheRange)
{
    const std::tuple<Keys, float, int> cases[] = {
        {NONE, 3.0f,  0},
        {ONE,  0.5f,  0},
        {ONE,  2.0f,  1},
        {RAMP, -1.0f, 0},
        {PEAK, 0.0f,  1},
        {PEAK, 1.5f,  2},
        {PEAK, 2.0f,  2},
        {RAMP, 1.0f,  1},
        {PEAK, 2.5f,  3},
    };
    for (const auto& [keys, time, expected] : cases) {
        SCOPED_TRACE(testing::Message() << time);
        SplineFloat spline = curve(keys);
        EXPECT_EQ(spline.addKey({time, 50.0f}), expected);
        EXPECT_EQ(spline[expected].value, 50.0f);
        EXPECT_EQ(spline.getMaxValue(), 50.0f);
        EXPECT_TRUE(std::ranges::is_sorted(timesOf(spline)));
        EXPECT_EQ(spline.getInterval(), Vector2f(timesOf(spline).front(), timesOf(spline).back()));
    }
}

TEST(Spline, RemovesKeysDownToNoneAndForgetsItsSegment)
{
    SplineFloat spline = curve(PEAK, SMOOTH);
    EXPECT_EQ(spline.getKeyIndex(1.5f), 1);
    spline.removeKey(1);
    EXPECT_EQ(timesOf(spline), (std::vector{0.0f, 2.0f}));
    EXPECT_EQ(spline.getMaxValue(), 0.0f);
    EXPECT_EQ(spline.evaluate(1.5f), 0.0f);

    spline[0].value = 4.0f;
    spline.updateKey(0);
    spline.removeKey(1);
    spline.removeKey(0);
    EXPECT_FALSE(spline.hasKeys());
    EXPECT_EQ(spline.getMaxValue(), 4.0f);
}

TEST(Spline, RefusesIndicesOutsideItsKeys)
{
    SplineFloat spline = curve(RAMP);
    for (const int index : {-1, 2}) {
        EXPECT_EQ(test::thrownMessage([&] { spline.removeKey(index); }),
                  "index>=0 && index<(int)mKeys.size()")
            << index;
        EXPECT_EQ(test::thrownMessage([&] { spline.updateKey(index); }),
                  "index>=0 && index<(int)mKeys.size()")
            << index;
    }
    EXPECT_EQ(spline.getNumKeys(), 2);
}

TEST(Spline, PutsAChangedKeyBackInOrder)
{
    const std::tuple<int, float, int> cases[] = {
        {1, 1.5f,  1},
        {1, 2.0f,  1},
        {0, 9.0f,  2},
        {2, -1.0f, 0},
        {0, 1.5f,  1},
        {2, 0.0f,  1},
        {2, 7.0f,  2},
    };
    for (const auto& [index, time, expected] : cases) {
        SCOPED_TRACE(testing::Message() << index << " " << time);
        SplineFloat spline = curve(PEAK, SMOOTH);
        spline[index].time = time;
        spline[index].value = 50.0f;
        EXPECT_EQ(spline.updateKey(index), expected);
        EXPECT_EQ(spline[expected].value, 50.0f);
        EXPECT_EQ(spline.getMaxValue(), 50.0f);
        EXPECT_TRUE(std::ranges::is_sorted(timesOf(spline)));
    }
}

} // namespace

} // namespace zavex::mathbase
