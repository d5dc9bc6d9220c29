#pragma once

#include <future>
#include <memory>
#include <string>
#include <string_view>

struct ALCcontext_struct;
struct ALCdevice_struct;

namespace zavex::audio {

/** Closes it together with its contexts; may take as long as the sound server likes. */
struct CloseDevice {
    void operator()(ALCdevice_struct* device) const;
};

/** What the sound library holds of an open device. */
struct DeviceHandles {
    std::unique_ptr<ALCdevice_struct, CloseDevice> device; // null when there is none
    ALCcontext_struct* context = nullptr;                  // ends with it
};

/**
 * A sound device. Closed when its last holder lets go; every stream on it is one.
 *
 * A device that goes away, because its sound server ends or it is unplugged, is opened again: tried
 * at once, then every `RETRY_SECONDS`. A server that hangs may keep whoever opens or closes a
 * device waiting, so both happen in a thread of their own, which shares nothing with this one but
 * its finished result; where closing takes longer than `CLOSE_SECONDS` it is left to that thread.
 */
class AudioDevice {
public:
    static constexpr double RETRY_SECONDS = 2.0;
    static constexpr double CLOSE_SECONDS = 2.0;
    static constexpr double STALL_SECONDS = 1.0; // without any sound taken
    static constexpr double START_SECONDS = 3.0; // the same, before the first

    enum class State {
        GONE,     // to be opened again
        STALLED,  // there, but takes no sound
        STARTING, // opened, or going on, a moment ago: takes sound in advance at most
        PLAYING,
    };

    /** Programs call `openDevice`. */
    AudioDevice(std::string_view name, DeviceHandles handles);
    ~AudioDevice();
    AudioDevice(const AudioDevice&) = delete;
    AudioDevice& operator=(const AudioDevice&) = delete;

    /** Looks after the device; call it often, at least once a frame while something plays. */
    void watch();

    /** As of the latest `watch`. */
    State getState() const { return mState; }

    /** For how many seconds a stalled device had taken nothing when that was noticed. */
    double getStallSeconds() const { return mStallSeconds; }

    /** How many times it was opened. What the sound library made on it lives until the next. */
    int getOpening() const { return mOpening; }

    /**
     * Makes the calls to the sound library that follow reach this device, if it is still open for
     * the `opening`-th time; else they reach nothing.
     */
    void activate(int opening) const;

    /** Seconds of sound that the device takes at a time. */
    double getPeriod() const;

private:
    void tryAgain(double now);
    bool isConnected() const;
    void lose();
    void close(double seconds);
    void watchTaken(double now);
    double getTakenSeconds() const;
    void miss(const char* what);

    std::string mName;
    DeviceHandles mHandles; // empty while the device is gone
    State mState = State::STARTING;
    int mOpening = 1;
    double mWatched = 0.0;      // when, steady seconds
    double mTaken = 0.0;        // seconds of sound since it was opened
    double mStartedAt = 0.0;    // of these, when it began to start
    double mStillSeconds = 0.0; // since `mTaken` last grew
    double mStallSeconds = 0.0;
    bool mMissed = false;               // gone or stalled since it last played
    double mRetryAt = 0.0;              // steady seconds
    std::future<DeviceHandles> mReturn; // valid while a thread opens the device
};

/**
 * Opens the sound device called `name`; "autodetect" takes the one that the system prefers.
 *
 * Null when there is none, or none that can play now.
 */
std::shared_ptr<AudioDevice> openDevice(std::string_view name);

/** Seconds of a clock that runs evenly; what is behind its zero does not matter. */
double steadySeconds();

} // namespace zavex::audio
