#include "vellum/vel_interval.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

struct EaseCase {
    const char* name;
    float from;
    float to;
    float rate;    // transitions per second; the duration is 0.3 seconds where it is not positive
    float elapsed; // seconds since the first `get` of the transition
    float expected;

    friend void PrintTo(const EaseCase& ease, std::ostream* out) { *out << ease.name; }
};

constexpr EaseCase EASE_CASES[] = {
    {"UpAtTheStart",        0.0f, 1.0f,  0.0f,  0.0f,   0.0f   },
    {"UpHalfway",           0.0f, 1.0f,  0.0f,  0.15f,  0.7071f},
    {"UpAtTheEnd",          0.0f, 1.0f,  0.0f,  0.3f,   1.0f   },
    {"UpLongAfter",         0.0f, 1.0f,  0.0f,  100.0f, 1.0f   },
    {"DownAtTheStart",      8.0f, -2.0f, 0.0f,  0.0f,   8.0f   },
    {"DownAThird",          8.0f, -2.0f, 0.0f,  0.1f,   3.0f   },
    {"DownAtTheEnd",        8.0f, -2.0f, 0.0f,  0.3f,   -2.0f  },
    {"SlowerHalfway",       0.0f, 1.0f,  0.25f, 2.0f,   0.7071f},
    {"NegativeRateIgnored", 0.0f, 1.0f,  -4.0f, 0.15f,  0.7071f},
    {"ClockWentBack",       3.0f, 5.0f,  0.0f,  -1.0f,  3.0f   },
};

class IntervalEase : public testing::TestWithParam<EaseCase> {};

TEST_P(IntervalEase, IsPartOfTheWay)
{
    Interval interval;
    interval.setSpeed(GetParam().rate);
    interval.set(GetParam().from, true);
    EXPECT_EQ(interval.get(2.0f, false), GetParam().from);
    interval.set(GetParam().to, false);
    EXPECT_EQ(interval.get(4.0f, false), GetParam().from) << "starts when it is first asked";
    EXPECT_NEAR(interval.get(4.0f + GetParam().elapsed, false), GetParam().expected, 1e-4f);
}

INSTANTIATE_TEST_SUITE_P(Cases, IntervalEase, testing::ValuesIn(EASE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(Interval, TurnsAroundWhereItIs)
{
    Interval interval;
    interval.set(10.0f, false);
    interval.get(1.0f, false);
    const float reached = interval.get(1.1f, false);
    EXPECT_NEAR(reached, 5.0f, 1e-4f);
    interval.set(0.0f, false);
    EXPECT_EQ(interval.get(1.2f, false), reached);
    EXPECT_NEAR(interval.get(1.3f, false), 2.5f, 1e-4f);
}

TEST(Interval, LeavesFromTheTargetThatItReached)
{
    Interval interval;
    interval.set(1.0f, false);
    interval.get(1.0f, false);
    interval.get(2.0f, false);
    interval.set(0.0f, false);
    EXPECT_EQ(interval.get(3.0f, false), 1.0f);
}

} // namespace

} // namespace zavex::vellum::test
