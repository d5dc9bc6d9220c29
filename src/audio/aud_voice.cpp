#include "audio/aud_voice.h"

#include "audio/aud_device.h"
#include "audio/aud_source.h"
#include "common/zvx_system.h"

#define AL_ALEXT_PROTOTYPES
#include <AL/al.h>
#include <AL/alext.h>

#include <utility>

namespace zavex::audio {

namespace {

constexpr double FRAME_UNITS =
    4294967296.0;                   // the library counts sample frames in 32.32 fixed point
constexpr double NANOSECONDS = 1e9; // of a second
constexpr int USUAL_PERIODS = 3;    // of the device, that the library keeps mixed ahead

/** The sound library's name of interleaved floats, AL_NONE when it has none. */
ALenum findFormat(int channels)
{
    struct Named {
        int channels;
        const char* name;
    };
    static constexpr Named formats[] = {
        {1, "AL_FORMAT_MONO_FLOAT32"  },
        {2, "AL_FORMAT_STEREO_FLOAT32"},
        {4, "AL_FORMAT_QUAD32"        },
        {6, "AL_FORMAT_51CHN32"       },
        {7, "AL_FORMAT_61CHN32"       },
        {8, "AL_FORMAT_71CHN32"       },
    };
    for (const Named& format : formats)
        if (format.channels == channels) {
            const ALenum value = alGetEnumValue(format.name);
            return value == -1 ? AL_NONE : value;
        }
    return AL_NONE;
}

ALint sourceValue(ALuint source, ALenum name)
{
    ALint value = 0;
    alGetSourcei(source, name, &value);
    return value;
}

} // namespace

std::unique_ptr<Voice> Voice::open(std::shared_ptr<AudioDevice> device, const SampleFormat& format)
{
    device->activate(device->getOpening());
    const ALenum libraryFormat = findFormat(format.channels);
    if (libraryFormat == AL_NONE || alIsExtensionPresent("AL_SOFT_source_latency") == AL_FALSE)
        return nullptr;

    std::unique_ptr<Voice> voice(new Voice(std::move(device), format, libraryFormat));
    return voice->mFreeCount == BLOCK_COUNT ? std::move(voice) : nullptr;
}

Voice::Voice(std::shared_ptr<AudioDevice> device, const SampleFormat& format, int libraryFormat)
    : mDevice(std::move(device)), mOpening(mDevice->getOpening()), mPeriod(mDevice->getPeriod()),
      mSampleRate(format.sampleRate), mLibraryFormat(libraryFormat)
{
    alGetError();
    alGenSources(1, &mSource);
    if (alGetError() != AL_NO_ERROR)
        return;
    alGenBuffers(BLOCK_COUNT, mFreeBlocks.data());
    if (alGetError() != AL_NO_ERROR)
        return;
    mFreeCount = BLOCK_COUNT;

    // Two channels go to the two loudspeakers as they are, without a room simulated around them.
    if (format.channels == 2 && alIsExtensionPresent("AL_SOFT_direct_channels") == AL_TRUE)
        alSourcei(mSource, AL_DIRECT_CHANNELS_SOFT, AL_TRUE);
}

Voice::~Voice()
{
    mDevice->activate(mOpening);
    if (mSource == 0)
        return;
    clear();
    alDeleteSources(1, &mSource);
    alDeleteBuffers(mFreeCount, mFreeBlocks.data());
}

void Voice::queue(std::span<const float> samples)
{
    ZVX_REQUIRE(mFreeCount > 0, "mFreeCount > 0");
    mDevice->activate(mOpening);
    const ALuint block = mFreeBlocks[static_cast<std::size_t>(--mFreeCount)];
    alBufferData(block, mLibraryFormat, samples.data(), static_cast<ALsizei>(samples.size_bytes()),
                 mSampleRate);
    alSourceQueueBuffers(mSource, 1, &block);
}

void Voice::unqueue(int count)
{
    mDevice->activate(mOpening);
    alSourceUnqueueBuffers(mSource, count, mFreeBlocks.data() + mFreeCount);
    mFreeCount += count;
}

void Voice::clear()
{
    mDevice->activate(mOpening);
    alSourceStop(mSource);
    unqueue(getQueuedCount());
    alSourceRewind(mSource);
}

void Voice::start()
{
    mDevice->activate(mOpening);
    alSourcePlay(mSource);
}

void Voice::pause()
{
    mDevice->activate(mOpening);
    alSourcePause(mSource);
}

void Voice::setVolume(float volume)
{
    mDevice->activate(mOpening);
    alSourcef(mSource, AL_GAIN, volume);
}

bool Voice::isLost() const
{
    return mDevice->getState() == AudioDevice::State::GONE || mDevice->getOpening() != mOpening;
}

bool Voice::isRunning() const
{
    mDevice->activate(mOpening);
    return sourceValue(mSource, AL_SOURCE_STATE) == AL_PLAYING;
}

bool Voice::isPlayedOut() const
{
    mDevice->activate(mOpening);
    return sourceValue(mSource, AL_SOURCE_STATE) == AL_STOPPED;
}

int Voice::getPlayedCount() const
{
    mDevice->activate(mOpening);
    return sourceValue(mSource, AL_BUFFERS_PROCESSED);
}

Voice::Progress Voice::getProgress() const
{
    mDevice->activate(mOpening);
    ALint64SOFT offsetAndLatency[2] = {};
    alGetSourcei64vSOFT(mSource, AL_SAMPLE_OFFSET_LATENCY_SOFT, offsetAndLatency);
    const double taken = static_cast<double>(offsetAndLatency[0]) / FRAME_UNITS;
    double latency = static_cast<double>(offsetAndLatency[1]) / NANOSECONDS;
    // A sound server that has just started a stream accounts for next to nothing, for up to two
    // seconds; what the library keeps in front of it is known all the same.
    if (latency < mPeriod / 2.0)
        latency = mPeriod * USUAL_PERIODS;
    return {taken, latency * mSampleRate};
}

} // namespace zavex::audio
