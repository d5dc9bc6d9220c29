#include "vellum/vel_interval.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

// From, to, transitions per second (0.3 seconds long where that is not positive), seconds since the
// first `get` of the transition, and what it gives then.
constexpr float EASES[][5] = {
    {0.0f, 1.0f,  0.0f,  0.0f,  0.0f   },
    {0.0f, 1.0f,  0.0f,  0.15f, 0.7071f},
    {0.0f, 1.0f,  0.0f,  0.3f,  1.0f   },
    {8.0f, -2.0f, 0.0f,  0.1f,  3.0f   },
    {0.0f, 1.0f,  0.25f, 2.0f,  0.7071f},
    {3.0f, 5.0f,  0.0f,  -1.0f, 3.0f   }, // the clock went back
};

TEST(Interval, EasesPartOfTheWay)
{
    for (const auto& [from, to, rate, elapsed, expected] : EASES) {
        SCOPED_TRACE(testing::Message() << from << " to " << to << " after " << elapsed);
        Interval interval;
        interval.setSpeed(rate);
        interval.set(from, true);
        EXPECT_EQ(interval.get(2.0f, false), from);
        interval.set(to, false);
        EXPECT_EQ(interval.get(4.0f, false), from) << "starts when it is first asked";
        EXPECT_NEAR(interval.get(4.0f + elapsed, false), expected, 1e-4f);
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
