#include "cadenza/cad_music.h"

#include "audio/aud_device.h"
#include "audio/aud_file.h"
#include "audio/aud_source.h"
#include "audio/aud_stream.h"
#include "common/zvx_system.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>

namespace zavex::cadenza {

Music::Music() = default;
Music::~Music() = default;

bool Music::setup(const am::File& file)
{
    ZVX_REQUIRE(!file.isNull(), "!file.isNull()");
    mDevice = audio::openDevice("autodetect");
    if (!mDevice) {
        ZVX_LOG("error", "Cadenza", "No sound device!\n");
        return false;
    }

    // The bytes stay where they are: the sound shares the handle that owns them.
    const auto holder = std::make_shared<am::File>(file);
    const auto* bytes = reinterpret_cast<const std::byte*>((*holder)->data);
    mFile = audio::createMemoryFile({holder, bytes}, file->bytes().size());

    mSource = audio::openSampleSource(mFile);
    if (!mSource) {
        std::puts("Could not open file");
        return false;
    }
    mSampleRate = mSource->getFormat().sampleRate;
    mSongLength = static_cast<int>(
        std::min<std::int64_t>(mSource->getLength(), std::numeric_limits<int>::max()));

    mSound = audio::openSound(mDevice, mSource);
    if (!mSound) {
        std::puts("Could not open sound!, muting");
        return false;
    }
    return true;
}

void Music::close()
{
    mFile.reset();
    mSource.reset();
    mSound.reset();
    mDevice.reset();
}

void Music::play()
{
    stream().play();
    mPaused = false;
}

void Music::pause(bool paused)
{
    if (paused)
        stream().stop();
    else
        stream().play();
    mPaused = paused;
}

bool Music::isPlaying()
{
    return stream().isPlaying();
}

void Music::loop(bool looped)
{
    stream().setRepeating(looped);
}

int Music::getRounds() const
{
    return static_cast<int>(stream().getRounds());
}

float Music::getTime() const
{
    return static_cast<float>(stream().getPosition()) / static_cast<float>(mSampleRate);
}

void Music::setTime(float seconds)
{
    const float frame = std::max(0.0f, seconds * static_cast<float>(mSampleRate));
    // Compared before it is converted: a float may be too large for every integer.
    const bool isBehindEnd = frame >= static_cast<float>(mSongLength);
    stream().setPosition(isBehindEnd ? mSongLength : static_cast<std::int64_t>(frame));
}

void Music::mute(bool muted)
{
    stream().setVolume(muted ? 0.0f : 1.0f);
}

float Music::getSongLength() const
{
    return static_cast<float>(mSongLength) / static_cast<float>(mSampleRate);
}

audio::OutputStream& Music::stream() const
{
    ZVX_REQUIRE(mSound, "mSound");
    return *mSound;
}

} // namespace zavex::cadenza
