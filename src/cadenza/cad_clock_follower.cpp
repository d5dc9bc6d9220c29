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
    const double seconds = clock - mShown;
    watch(seconds, heard);
    if (mWaiting)
        mShown = wait(clock, heard);
    else if (seconds > HELD_UP_SECONDS && std::abs(heard - clock) > JUMP_SECONDS)
        mShown = set(heard);
    else
        mShown = compare(clock, heard);
    return mShown - clock;
}

void MusicClockFollower::shift(double seconds)
{
    mShown += seconds;
    mHeard += seconds;
    mWindowStart += seconds;
}

/**
 * Notes for how long the music has not moved; the previous call was `seconds` ago. While the whole
 * program stood still, the music could not move.
 */
void MusicClockFollower::watch(double seconds, double heard)
{
    const double watched = std::min(seconds, HELD_UP_SECONDS);
    mStillSeconds = heard == mHeard ? mStillSeconds + watched : 0.0;
    mHeard = heard;
}

/** The time that the clock is to show: what it showed, until the music has passed that. */
double MusicClockFollower::wait(double clock, double heard)
{
    const bool isMovingBehind = mStillSeconds == 0.0 && isFarBehind(heard);
    if (heard > mShown + IGNORED_SECONDS || isMovingBehind) {
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

    const double difference = heard - (clock - mWindowSlewed);
    if (mWindowCount > 0 && std::abs(difference - mWindowSum / mWindowCount) > JUMP_SECONDS) {
        mSettled = false;
        beginWindow(clock);
        return target;
    }
    mWindowSum += difference;
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

    const double shown = isAtOnce ? target + needed : target;
    if (isAtOnce && shown < mShown && !isFarBehind(shown)) {
        beginWait();
        return mShown;
    }
    beginWindow(shown);
    return shown;
}

/** The time that the clock is to show: what is heard, which is looked at anew from there. */
double MusicClockFollower::set(double heard)
{
    mSettled = false;
    mSlewLeft = 0.0;
    beginWindow(heard);
    return heard;
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
