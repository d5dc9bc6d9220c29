#pragma once

namespace zavex::vellum {

/**
 * A value that eases from where it is to where it should be: fast start, gentle arrival.
 *
 * Reads no clock: times, in seconds, come from the caller and must not be negative. A time before
 * the start of a transition counts as its start.
 */
class Interval {
public:
    /** @param rate  Transitions that fit into a second; nothing changes unless it is positive. */
    void setSpeed(float rate);

    /** Heads for `target` from the value that was returned last, or is there at once. */
    void set(float target, bool immediate);

    /**
     * The value at `time`; a transition that was only set starts here. A quarter of a sine.
     *
     * @param immediate  Whether the target is wanted, however far the transition is.
     */
    float get(float time, bool immediate);

private:
    static constexpr float AT_NEXT_GET = -10.0f;

    float mSpeed = 0.3f; // duration of a transition, seconds
    float mValue1 = 0.0f;
    float mValue2 = 0.0f;
    float value = 0.0f;           // NOLINT(readability-identifier-naming): returned last
    float mLasttime = 0.0f;       // of the first `get`, seconds
    float mSetTime = AT_NEXT_GET; // when the transition started, seconds
    bool mSetup = false;          // `mLasttime` is known
};

} // namespace zavex::vellum
