#pragma once

namespace zavex::cadenza {

/**
 * Keeps a clock with the music that is heard: told both times every frame, it answers by how much
 * the clock is to be set.
 *
 * Sound starts late and runs on its own crystal. After a `restart` the clock waits until the music
 * is heard to move, and the first comparison sets it right at once. From then on the mean
 * difference over each second is judged: above `JUMP_SECONDS` the clock is set to the music at
 * once, back as well as ahead, below it the clock is slewed by at most `SLEW_SECONDS` a second and
 * never runs backwards. Music that stands still (a device that is gone) is not followed.
 *
 * A difference that changes by more than `JUMP_SECONDS` within a comparison, because the music was
 * held up, starts it anew, and a clock that was not looked after for `HELD_UP_SECONDS` is compared
 * at once: so long may the whole program have stood still.
 *
 * Reads no time and allocates nothing. Times are seconds of the demo.
 */
class MusicClockFollower {
public:
    static constexpr double WINDOW_SECONDS = 1.0; // what one comparison takes
    static constexpr double SETTLE_SECONDS = 0.5; // before the first: new reports are rough
    static constexpr double JUMP_SECONDS = 0.1;
    static constexpr double HELD_UP_SECONDS = 0.5;   // between two calls
    static constexpr double SLEW_SECONDS = 0.005;    // for each second
    static constexpr double IGNORED_SECONDS = 0.001; // a smaller difference is none
    static constexpr double STILL_SECONDS = 0.25;    // music unmoved for longer stands still
    static constexpr double WAIT_SECONDS = 3.0;      // longest wait for music that stands still

    /**
     * Must be called when the music starts, is moved or goes on after a pause.
     *
     * @param time  What the clock is set to; the music must stand there, too.
     */
    void restart(double time);

    /**
     * One frame of playing music; call it before the frame's demo time is taken.
     *
     * @param clock  What the clock reads. Between two calls it runs forward by itself.
     * @param heard  The position being heard.
     * @return Seconds to add to the clock; 0 when nothing is to change. The clock so set is not
     *         before what the previous call, or `restart`, left it at, unless by more than
     *         `JUMP_SECONDS`.
     */
    double follow(double clock, double heard);

    /** Clock and music were both moved by `seconds`, as when a song starts over. */
    void shift(double seconds);

private:
    void watch(double seconds, double heard);
    double wait(double clock, double heard);
    double compare(double clock, double heard);
    double slew(double seconds);
    double judge(double target);
    double set(double heard);
    bool isFarBehind(double heard) const { return heard < mShown - JUMP_SECONDS; }
    void beginWait();
    void beginWindow(double clock);

    double mShown = 0.0;        // the clock as the previous call left it
    bool mWaiting = true;       // for the music to pass `mShown`
    bool mSettled = false;      // the first comparison since `restart` is done
    double mHeard = 0.0;        // of the previous call
    double mStillSeconds = 0.0; // for how long it has been that
    double mSlewLeft = 0.0;     // seconds of correction under way
    double mWindowStart = 0.0;  // clock; the comparison takes no sample before it
    double mWindowSlewed = 0.0; // seconds corrected since then
    double mWindowSum = 0.0;    // of what heard - clock would be without that
    int mWindowCount = 0;
};

} // namespace zavex::cadenza
