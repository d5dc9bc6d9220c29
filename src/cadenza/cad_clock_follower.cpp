#include "cadenza/cad_clock_follower.h"

#include <algorithm>
#include <cmath>

namespace zavex::cadenza {

void MusicClockFollower::restart(double time)
{
    mShown = mHeard = time;
    mSettled = false;
    beginWait();
}

double MusicClockFollower::follow(double clock, double heard)
{
    watch(clock - mShown, heard);
    mShown = mWaiting ? wait(clock, heard) : compare(clock, heard);
    return mShown - clock;
}

/** Notes for how long the music has not moved; the previous call was `seconds` ago. */
void MusicClockFollower::watch(double seconds, double heard)
{
    mStillSeconds = heard == mHeard ? mStillSeconds + seconds : 0.0;
    mHeard = heard;
}

/** The time that the clock is to show: what it showed, until the music has passed that. */
double MusicClockFollower::wait(double clock, double heard)
{
    if (heard > mShown + IGNORED_SECONDS) {
        beginWindow(heard);
        return heard;
    }
    if (mStillSeconds < WAIT_SECONDS)
        return mShown;
    beginWindow(clock);
    return clock;
}

/** The time that the clock is to show, the music being on its way. */
double MusicClockFollower::compare(double clock, double heard)
{
    const double slewed = slew(clock - mShown);
    const double target = clock + slewed;
    if (clock < mWindowStart)
        return target;

    mWindowSum += heard - (clock - mWindowSlewed);
    ++mWindowCount;
    mWindowSlewed += slewed;
    return clock < mWindowStart + WINDOW_SECONDS ? target : judge(target);
}

/** This frame's part of the correction under way, `seconds` after the previous one. */
double MusicClockFollower::slew(double seconds)
{
    const double most = SLEW_SECONDS * std::max(0.0, seconds);
    const double part = std::clamp(mSlewLeft, -most, most);
    mSlewLeft -= part;
    return part;
}

/** Ends the comparison; the clock was to show `target` before it. */
double MusicClockFollower::judge(double target)
{
    const double needed = mWindowSum / mWindowCount - mWindowSlewed;
    const bool isMoving = mStillSeconds < STILL_SECONDS;
    const bool isNeeded = isMoving && std::abs(needed) >= IGNORED_SECONDS;
    const bool isAtOnce = isNeeded && (!mSettled || std::abs(needed) > JUMP_SECONDS);
    mSettled = mSettled || isMoving;
    mSlewLeft = isNeeded && !isAtOnce ? needed : 0.0;

    if (isAtOnce && target + needed < mShown) {
        beginWait();
        return mShown;
    }
    const double shown = isAtOnce ? target + needed : target;
    beginWindow(shown);
    return shown;
}

void MusicClockFollower::beginWait()
{
    mWaiting = true;
    mStillSeconds = 0.0;
}

void MusicClockFollower::beginWindow(double clock)
{
    mWaiting = false;
    mWindowStart = mSettled ? clock : clock + SETTLE_SECONDS;
    mWindowSlewed = 0.0;
    mWindowSum = 0.0;
    mWindowCount = 0;
}

} // namespace zavex::cadenza
