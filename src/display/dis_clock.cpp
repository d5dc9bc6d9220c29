#include "display/dis_clock.h"

#include <GLFW/glfw3.h>

#include <chrono>
#include <thread>

namespace zavex::display {

namespace {

float now()
{
    return static_cast<float>(glfwGetTime());
}

} // namespace

Clock::Clock() : mStartTime(now()) {}

void Clock::update()
{
    mManualUpdate = true;
    mCurrentTime = now() - mStartTime;
}

void Clock::setTime(float time)
{
    mStartTime = now() - time;
    mCurrentTime = time;
}

float Clock::getTime() const
{
    return mManualUpdate ? mCurrentTime : now() - mStartTime;
}

void Clock::sleep(float seconds)
{
    if (glfwGetTimerFrequency() == 0)
        return;
    if (seconds > 0.0f)
        std::this_thread::sleep_for(std::chrono::duration<float>(seconds));
    else
        std::this_thread::yield();
}

} // namespace zavex::display
