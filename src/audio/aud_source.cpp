#include "audio/aud_source.h"

#include "audio/aud_file.h"
#include "common/zvx_system.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <utility>

namespace zavex::audio {

namespace {

// Beyond what any device takes; a damaged file may state one that fills the memory with one block.
constexpr int MOST_SAMPLE_RATE = 1000000;

struct CloseSound {
    void operator()(SNDFILE* sound) const { sf_close(sound); }
};

using SoundPointer = std::unique_ptr<SNDFILE, CloseSound>;

File& fileOf(void* user)
{
    return *static_cast<File*>(user);
}

sf_count_t fileLength(void* user)
{
    return static_cast<sf_count_t>(fileOf(user).size());
}

sf_count_t fileTell(void* user)
{
    return static_cast<sf_count_t>(fileOf(user).tell());
}

sf_count_t fileSeek(sf_count_t offset, int whence, void* user)
{
    const sf_count_t origin = whence == SEEK_SET   ? 0
                              : whence == SEEK_CUR ? fileTell(user)
                                                   : fileLength(user);
    fileOf(user).seek(origin + offset);
    return fileTell(user);
}

sf_count_t fileRead(void* target, sf_count_t count, void* user)
{
    return static_cast<sf_count_t>(
        fileOf(user).read({static_cast<std::byte*>(target), static_cast<std::size_t>(count)}));
}

sf_count_t fileWrite(const void* /*bytes*/, sf_count_t /*count*/, void* /*user*/)
{
    return 0;
}

/** Null when the file's bytes are no sound. */
SoundPointer openDecoder(File& file, SF_INFO& info)
{
    SF_VIRTUAL_IO access = {fileLength, fileSeek, fileRead, fileWrite, fileTell};
    file.seek(0);
    return SoundPointer(sf_open_virtual(&access, SFM_READ, &info, &file));
}

class DecodedFile final : public SampleSource {
public:
    DecodedFile(std::shared_ptr<File> file, SoundPointer sound, const SF_INFO& info)
        : mFile(std::move(file)), mSound(std::move(sound)), mFormat{info.channels, info.samplerate},
          mLength(info.frames), mIsVorbis((info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_VORBIS)
    {}

    const SampleFormat& getFormat() const override { return mFormat; }
    std::int64_t getLength() const override { return mLength; }
    std::int64_t getPosition() const override { return mPosition; }
    void setPosition(std::int64_t frame) override;
    std::int64_t read(std::span<float> samples) override;

private:
    bool moveDecoder();
    bool skipTo(std::int64_t frame);
    bool skipVorbisTo(std::int64_t frame);

    std::shared_ptr<File> mFile; // read through by `mSound`
    SoundPointer mSound;
    SampleFormat mFormat;
    std::int64_t mLength = 0; // sample frames
    bool mIsVorbis = false;
    std::int64_t mPosition = 0; // sample frames
    bool mReadable = true;      // false behind the last sample frame that can be had
};

void DecodedFile::setPosition(std::int64_t frame)
{
    mPosition = std::clamp<std::int64_t>(frame, 0, mLength);
    // Not every decoder can stand behind the last sample frame.
    mReadable = mPosition < mLength && moveDecoder();
}

bool DecodedFile::moveDecoder()
{
    if (mSound && skipTo(mPosition))
        return true;
    // A decoder that came upon damage does not recover, so a fresh one tries.
    SF_INFO info = {};
    mSound = openDecoder(*mFile, info);
    if (mSound && skipTo(mPosition))
        return true;
    ZVX_LOG("log", "app", "The sound cannot be moved to sample frame %lld of %lld",
            static_cast<long long>(mPosition), static_cast<long long>(mLength));
    return false;
}

bool DecodedFile::skipTo(std::int64_t frame)
{
    return mIsVorbis ? skipVorbisTo(frame) : sf_seek(mSound.get(), frame, SEEK_SET) == frame;
}

/**
 * libsndfile misses by a block in one of twenty moves within a Vorbis file, unless it comes from
 * the start, and always within the last page, which is the one that may hold less than it says.
 */
bool DecodedFile::skipVorbisTo(std::int64_t frame)
{
    constexpr std::int64_t lastPageSeconds = 2;
    const std::int64_t lastPage = mLength - lastPageSeconds * mFormat.sampleRate;
    const std::int64_t reached = std::clamp<std::int64_t>(lastPage, 0, frame);
    if (sf_seek(mSound.get(), 0, SEEK_SET) != 0 ||
        sf_seek(mSound.get(), reached, SEEK_SET) != reached)
        return false;

    std::array<float, 4096> skipped = {};
    for (std::int64_t left = (frame - reached) * mFormat.channels; left > 0;) {
        const auto room = std::ssize(skipped) / mFormat.channels * mFormat.channels;
        const sf_count_t read =
            sf_read_float(mSound.get(), skipped.data(), std::min<sf_count_t>(left, room));
        if (read <= 0)
            return false;
        left -= read;
    }
    return true;
}

std::int64_t DecodedFile::read(std::span<float> samples)
{
    if (!mReadable)
        return 0;
    const sf_count_t wanted = std::ssize(samples) / mFormat.channels;
    const sf_count_t delivered =
        std::max<sf_count_t>(0, sf_readf_float(mSound.get(), samples.data(), wanted));
    mPosition += delivered;
    mReadable = delivered == wanted;
    if (!mReadable && mPosition < mLength)
        ZVX_LOG("log", "app", "The sound breaks off at sample frame %lld of %lld",
                static_cast<long long>(mPosition), static_cast<long long>(mLength));
    return delivered;
}

} // namespace

std::shared_ptr<SampleSource> openSampleSource(std::shared_ptr<File> file)
{
    SF_INFO info = {};
    SoundPointer sound = openDecoder(*file, info);
    if (!sound || info.channels <= 0 || info.frames <= 0)
        return nullptr;
    if (info.samplerate <= 0 || info.samplerate > MOST_SAMPLE_RATE)
        return nullptr;
    return std::make_shared<DecodedFile>(std::move(file), std::move(sound), info);
}

} // namespace zavex::audio
