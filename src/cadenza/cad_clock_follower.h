#pragma once

namespace zavex::cadenza {

/**
 * Keeps a clock with the music that is heard: told both times every frame, it answers by how much
 * the clock is to be set.
 *
 * Sound starts late and runs on its own crystal. Each second the mean difference is judged: above
 * `JUMP_SECONDS` the clock is set to the music at once, below it the clock is nudged by at most
 * `SLEW_SECONDS` a second. A clock that is far ahead is not set back, it waits for the music. Music
 * that stands still (a device that is gone) is not followed.
 *
 * Reads no time and allocates nothing. Times are seconds of the demo.
 */
class MusicClockFollower {
public:
    static constexpr double JUMP_SECONDS = 0.1;
    static constexpr double SLEW_SECONDS = 0.005;    // for each second
    static constexpr double IGNORED_SECONDS = 0.001; // a smaller mean difference is none
    static constexpr double WAIT_SECONDS = 3.0;      // longest wait for music that stands still

    /**
     * Call when the music starts, is moved or goes on after a pause, with the time that the clock
     * is then set to: the clock waits there until the music is heard to move.
     */
    void restart(double time);

    /**
     * One frame of playing music; call it before the frame's demo time is taken.
     *
     * @param clock  What the clock reads; runs forward except by what this function answers.
     * @param heard  The position being heard.
     * @return Seconds to add to the clock, 0 when nothing is to change. The clock so set is never
     *         before what it read, as corrected, in the call before.
     */
    double follow(double clock, double heard);

private:
    void beginWindow(double clock, double heard);
    double wait(double clock, double heard);
    double judge(double clock, double heard);

    bool mWaiting = false;
    double mShown = 0.0;         // clock after the last correction
    double mHeard = 0.0;         // heard position of the last call
    double mStoodStill = 0.0;    // seconds that waiting music has not moved
    double mSlew = 0.0;          // correction a second, in force
    double mWindowStart = 0.0;   // clock at which the running comparison began
    double mWindowHeard = 0.0;   // heard position at that time
    double mWindowApplied = 0.0; // corrected since then
    double mWindowSum = 0.0;     // of the differences, uncorrected
    int mWindowCount = 0;
};

} // namespace zavex::cadenza
