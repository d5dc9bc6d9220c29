#include "audio/aud_device.h"

#include "common/zvx_system.h"

#define ALC_ALEXT_PROTOTYPES
#define AL_ALEXT_PROTOTYPES
#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>

#include <algorithm>
#include <chrono>
#include <new>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>

namespace zavex::audio {

namespace {

constexpr double NANOSECONDS = 1e9; // of a second

// More than a device takes in advance: from here on it plays.
constexpr double STARTED_SECONDS = 0.25;

// A program that was held up learns nothing about the device from how long that was.
constexpr double MOST_WATCH_SECONDS = 0.1;

/**
 * Runs `work` in a thread of its own, here where there can be none. The future may be dropped: what
 * `work` returns then ends in that thread.
 */
template <typename Work>
auto runAside(Work work)
{
    using Task = std::packaged_task<std::invoke_result_t<Work>()>;
    const auto task = std::make_shared<Task>(std::move(work));
    auto result = task->get_future();
    try {
        std::thread([task] { (*task)(); }).detach();
    } catch (const std::system_error&) {
        (*task)();
    }
    return result;
}

DeviceHandles openHandles(const std::string& name)
{
    DeviceHandles handles;
    handles.device.reset(alcOpenDevice(name == "autodetect" ? nullptr : name.c_str()));
    if (handles.device)
        handles.context = alcCreateContext(handles.device.get(), nullptr);
    if (handles.context == nullptr)
        handles.device.reset();
    return handles;
}

/** Waits for at most `seconds`. */
void closeAside(DeviceHandles handles, double seconds)
{
    try {
        runAside([closed = std::move(handles)]() mutable {
            closed.device.reset();
        }).wait_for(std::chrono::duration<double>(seconds));
    } catch (const std::bad_alloc&) {
        return; // it was closed here
    }
}

} // namespace

void CloseDevice::operator()(ALCdevice* device) const
{
    alcCloseDevice(device);
}

AudioDevice::AudioDevice(std::string_view name, DeviceHandles handles)
    : mName(name), mHandles(std::move(handles)), mWatched(steadySeconds())
{}

AudioDevice::~AudioDevice()
{
    close(CLOSE_SECONDS);
    if (mReturn.valid() && mReturn.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        closeAside(mReturn.get(), CLOSE_SECONDS);
}

void AudioDevice::activate(int opening) const
{
    ALCcontext* const reached = opening == mOpening ? mHandles.context : nullptr;
    if (alcGetCurrentContext() != reached)
        alcMakeContextCurrent(reached);
}

void AudioDevice::watch()
{
    const double now = steadySeconds();
    if (mState == State::GONE)
        tryAgain(now);
    else if (!isConnected())
        lose();
    if (mState != State::GONE)
        watchTaken(now);
    mWatched = now;
}

void AudioDevice::tryAgain(double now)
{
    if (!mReturn.valid() && now >= mRetryAt)
        mReturn = runAside([name = mName] { return openHandles(name); });
    if (!mReturn.valid() || mReturn.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return;

    mHandles = mReturn.get();
    mRetryAt = now + RETRY_SECONDS;
    if (!mHandles.device)
        return;
    ++mOpening;
    mState = State::STARTING;
    mTaken = mStartedAt = mStillSeconds = 0.0;
}

bool AudioDevice::isConnected() const
{
    ALCint connected = ALC_TRUE;
    alcGetIntegerv(mHandles.device.get(), ALC_CONNECTED, 1, &connected);
    return connected != ALC_FALSE;
}

void AudioDevice::lose()
{
    close(0.0);
    mState = State::GONE;
    mStallSeconds = 0.0;
    miss("is gone, it is tried again every two seconds");
}

/** Waits for at most `seconds`. */
void AudioDevice::close(double seconds)
{
    if (!mHandles.device)
        return;
    if (alcGetCurrentContext() == mHandles.context)
        alcMakeContextCurrent(nullptr);
    mHandles.context = nullptr;
    closeAside(std::move(mHandles), seconds);
}

void AudioDevice::watchTaken(double now)
{
    const double taken = getTakenSeconds();
    const bool isStill = taken == mTaken;
    mStillSeconds = isStill ? mStillSeconds + std::min(now - mWatched, MOST_WATCH_SECONDS) : 0.0;
    if (mState == State::STALLED && !isStill) {
        mState = State::STARTING;
        mStartedAt = mTaken;
    }
    mTaken = taken;

    if (mState == State::STARTING && mTaken - mStartedAt > STARTED_SECONDS) {
        mState = State::PLAYING;
        if (std::exchange(mMissed, false))
            ZVX_LOG("log", "app", "The sound device plays again");
    }
    const bool isPlaying = mState == State::PLAYING;
    if (mState == State::STALLED || mStillSeconds < (isPlaying ? STALL_SECONDS : START_SECONDS))
        return;
    mState = State::STALLED;
    mStallSeconds = isPlaying ? mStillSeconds : 0.0;
    miss("takes no sound");
}

double AudioDevice::getTakenSeconds() const
{
    ALCint64SOFT nanoseconds = 0;
    alcGetInteger64vSOFT(mHandles.device.get(), ALC_DEVICE_CLOCK_SOFT, 1, &nanoseconds);
    return static_cast<double>(nanoseconds) / NANOSECONDS;
}

/** Says so once, until it plays again. */
void AudioDevice::miss(const char* what)
{
    if (!std::exchange(mMissed, true))
        ZVX_LOG("log", "app", "The sound device %s", what);
}

double AudioDevice::getPeriod() const
{
    ALCint perSecond = 0;
    alcGetIntegerv(mHandles.device.get(), ALC_REFRESH, 1, &perSecond);
    return 1.0 / std::max(1, perSecond);
}

std::shared_ptr<AudioDevice> openDevice(std::string_view name)
{
    DeviceHandles handles = openHandles(std::string(name));
    return handles.device ? std::make_shared<AudioDevice>(name, std::move(handles)) : nullptr;
}

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace zavex::audio
