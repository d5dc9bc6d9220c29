#pragma once

#include <memory>
#include <string_view>

struct ALCcontext_struct;
struct ALCdevice_struct;

namespace zavex::audio {

class OutputStream;
class SampleSource;

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

/**
 * Opens a stream that plays `source` on `device`; it stands at the source's first sample frame.
 *
 * The stream holds both. Null when the device cannot play the source's number of channels.
 */
std::shared_ptr<OutputStream> openSound(std::shared_ptr<AudioDevice> device,
                                        std::shared_ptr<SampleSource> source);

} // namespace zavex::audio
