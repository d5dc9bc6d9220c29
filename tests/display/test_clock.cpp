#include "display/dis_clock.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <chrono>

namespace zavex::display {
namespace {

/** Wide enough for a test that is interrupted, narrow against the seconds that the timer is set. */
constexpr float INTERRUPTION = 20.0f; // seconds

/** The window library with its timer, which the tests set instead of waiting. */
class ClockTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(glfwInit(), GLFW_TRUE);
        glfwSetTime(0.0);
    }

    void TearDown() override { glfwTerminate(); }
};

TEST_F(ClockTest, RunsByItselfSinceConstruction)
{
    glfwSetTime(1000.0);
    const Clock clock;
    EXPECT_NEAR(clock.getTime(), 0.0f, INTERRUPTION);

    glfwSetTime(1500.0);
    EXPECT_NEAR(clock.getTime(), 500.0f, INTERRUPTION);
}

TEST_F(ClockTest, StandsStillBetweenUpdatesOnceUpdated)
{
    Clock clock;
    glfwSetTime(100.0);
    clock.update();
    const float first = clock.getTime();
    EXPECT_NEAR(first, 100.0f, INTERRUPTION);

    glfwSetTime(500.0);
    EXPECT_EQ(clock.getTime(), first);
    clock.update();
    EXPECT_NEAR(clock.getTime(), 500.0f, INTERRUPTION);
}

TEST_F(ClockTest, ReadsTheTimeItIsSetToAndCountsOn)
{
    Clock clock;
    clock.setTime(-200.0f);
    EXPECT_NEAR(clock.getTime(), -200.0f, INTERRUPTION);
    glfwSetTime(500.0);
    EXPECT_NEAR(clock.getTime(), 300.0f, INTERRUPTION);

    clock.update();
    clock.setTime(7.0f);
    EXPECT_EQ(clock.getTime(), 7.0f);
    glfwSetTime(1000.0);
    clock.update();
    EXPECT_NEAR(clock.getTime(), 507.0f, INTERRUPTION);
}

TEST_F(ClockTest, SleepsNoShorterThanAsked)
{
    const auto start = std::chrono::steady_clock::now();
    Clock::sleep(0.02f);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    Clock::sleep(0.0f);
}

TEST(ClockWithoutWindowLibrary, DoesNotSleep)
{
    const auto start = std::chrono::steady_clock::now();
    Clock::sleep(200.0f);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(100));
}

} // namespace
} // namespace zavex::display
