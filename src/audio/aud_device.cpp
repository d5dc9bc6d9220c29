#include "audio/aud_device.h"

#include <AL/alc.h>

#include <algorithm>
#include <string>

namespace zavex::audio {

AudioDevice::AudioDevice(ALCdevice* device, ALCcontext* context)
    : mDevice(device), mContext(context)
{}

AudioDevice::~AudioDevice()
{
    if (alcGetCurrentContext() == mContext)
        alcMakeContextCurrent(nullptr);
    alcDestroyContext(mContext);
    alcCloseDevice(mDevice);
}

void AudioDevice::activate() const
{
    if (alcGetCurrentContext() != mContext)
        alcMakeContextCurrent(mContext);
}

double AudioDevice::getPeriod() const
{
    ALCint perSecond = 0;
    alcGetIntegerv(mDevice, ALC_REFRESH, 1, &perSecond);
    return 1.0 / std::max(1, perSecond);
}

std::shared_ptr<AudioDevice> openDevice(std::string_view name)
{
    const std::string wanted(name);
    ALCdevice* device = alcOpenDevice(wanted == "autodetect" ? nullptr : wanted.c_str());
    if (device == nullptr)
        return nullptr;

    ALCcontext* context = alcCreateContext(device, nullptr);
    if (context == nullptr) {
        alcCloseDevice(device);
        return nullptr;
    }
    return std::make_shared<AudioDevice>(device, context);
}

} // namespace zavex::audio
