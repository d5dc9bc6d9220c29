#include "vellum/vel_interval.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

constexpr struct EaseCase {
    const char* name;
    float from;
    float to;
    float rate;    // transitions per second; the duration is 0.3 seconds where it is not positive
    float elapsed; // seconds since the first `get` of the transition
    float expected;
} EASE_CASES[] = {
    {"UpAtTheStart",   0.0f, 1.0f,  0.0f,  0.0f,  0.0f   },
    {"UpHalfway",      0.0f, 1.0f,  0.0f,  0.15f, 0.7071f},
    {"UpAtTheEnd",     0.0f, 1.0f,  0.0f,  0.3f,  1.0f   },
    {"DownAtTheStart", 8.0f, -2.0f, 0.0f,  0.0f,  8.0f   },
    {"DownAThird",     8.0f, -2.0f, 0.0f,  0.1f,  3.0f   },
    {"SlowerHalfway",  0.0f, 1.0f,  0.25f, 2.0f,  0.7071f},
    {"ClockWentBack",  3.0f, 5.0f,  0.0f,  -1.0f, 3.0f   },
};

TEST(IntervalEase, IsPartOfTheWay)
{
    for (const EaseCase& row : EASE_CASES) {
        SCOPED_TRACE(row.name);
        Interval interval;
        interval.setSpeed(row.rate);
        interval.set(row.from, true);
        EXPECT_EQ(interval.get(2.0f, false), row.from);
        interval.set(row.to, false);
        EXPECT_EQ(interval.get(4.0f, false), row.from) << "starts when it is first asked";
        EXPECT_NEAR(interval.get(4.0f + row.elapsed, false), row.expected, 1e-4f);
    }
}

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

} // namespace

} // namespace zavex::vellum::test
