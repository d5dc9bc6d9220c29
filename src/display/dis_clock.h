#pragma once

namespace zavex::display {

/**
 * A clock that reads seconds since an origin that can be moved.
 *
 * Runs by itself from construction on; the first `update` stops it, and from then on it shows the
 * time of the latest `update` or `setTime`. Reads the window library's timer, which stands at 0
 * while the library is not initialised.
 */
class Clock {
public:
    Clock();

    /** Switches to manual time and takes over the present time. */
    void update();

    /** Moves the origin so that the clock reads `time` seconds, in manual mode too. */
    void setTime(float time);

    /** Seconds since the origin: the wall's, or those of the latest `update` in manual mode. */
    float getTime() const;

    /**
     * Blocks the calling thread for `seconds`; gives up the rest of its time slice for 0 or less.
     * Does nothing while the window library is not initialised.
     */
    static void sleep(float seconds);

private:
    bool mManualUpdate = false;
    float mStartTime = 0.0f;   // seconds of the window library's timer
    float mCurrentTime = 0.0f; // seconds
};

} // namespace zavex::display
