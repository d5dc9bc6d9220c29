#include "display/dis_clock.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <chrono>

namespace zavex::display {
namespace {

/** Wide enough for a test that is interrupted, narrow against the seconds that the timer is set. */
constexpr float INTERRUPTION = 20.0f; // seconds

std::chrono::duration<float> slept(float seconds)
{
    const auto start = std::chrono::steady_clock::now();
    Clock::sleep(seconds);
    return std::chrono::steady_clock::now() - start;
}

/** The window library's timer is set instead of waiting. */
TEST(Clock, RunsByItselfUntilItIsUpdatedAndFromTheTimeItIsSetTo)
{
    ASSERT_EQ(glfwInit(), GLFW_TRUE);
    glfwSetTime(1000.0);
    Clock clock;
    EXPECT_NEAR(clock.getTime(), 0.0f, INTERRUPTION);
    glfwSetTime(1500.0);
    EXPECT_NEAR(clock.getTime(), 500.0f, INTERRUPTION);
    clock.setTime(-200.0f);
    EXPECT_NEAR(clock.getTime(), -200.0f, INTERRUPTION);
    glfwSetTime(2000.0);
    EXPECT_NEAR(clock.getTime(), 300.0f, INTERRUPTION);

    clock.update();
    const float stands = clock.getTime();
    EXPECT_NEAR(stands, 300.0f, INTERRUPTION);
    glfwSetTime(2500.0);
    EXPECT_EQ(clock.getTime(), stands);
    clock.update();
    EXPECT_NEAR(clock.getTime(), 800.0f, INTERRUPTION);
    clock.setTime(7.0f);
    EXPECT_EQ(clock.getTime(), 7.0f);
    glfwSetTime(3000.0);
    clock.update();
    EXPECT_NEAR(clock.getTime(), 507.0f, INTERRUPTION);

    EXPECT_GE(slept(0.02f).count(), 0.02f);
    glfwTerminate();
    EXPECT_LT(slept(200.0f).count(), 100.0f) << "without the window library";
}

} // namespace
} // namespace zavex::display
