#pragma once

#include <memory>
#include <string_view>

struct ALCcontext_struct;
struct ALCdevice_struct;

namespace zavex::audio {

/** An open sound device. Closed when its last holder lets go; every stream on it is one. */
class AudioDevice {
public:
    /** Takes over both, which belong together. Programs call `openDevice`. */
    AudioDevice(ALCdevice_struct* device, ALCcontext_struct* context);
    ~AudioDevice();
    AudioDevice(const AudioDevice&) = delete;
    AudioDevice& operator=(const AudioDevice&) = delete;

    /** Makes the calls to the sound library that follow reach this device. */
    void activate() const;

    /** Seconds of sound that the device takes at a time. */
    double getPeriod() const;

private:
    ALCdevice_struct* mDevice = nullptr;   // owned
    ALCcontext_struct* mContext = nullptr; // owned
};

/**
 * Opens the sound device called `name`; "autodetect" takes the one that the system prefers.
 *
 * Null when there is none, or none that can play now.
 */
std::shared_ptr<AudioDevice> openDevice(std::string_view name);

} // namespace zavex::audio
