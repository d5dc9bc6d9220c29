#include "audio/aud_source.h"

#include "audio/aud_file.h"
#include "audio/aud_ogg.h"
#include "common/zvx_system.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <utility>

namespace zavex::audio {

namespace {

// Beyond what any device takes; a damaged file may state one that fills the memory with one block.
constexpr int MOST_SAMPLE_RATE = 1000000;
constexpr int MOST_CHANNELS = 1024;

// Where a length has to be found by decoding, what comes behind is not played: three hours of sound
// are decoded within seconds.
constexpr std::int64_t MOST_COUNTED_FRAMES = std::int64_t{1} << 29;
constexpr std::size_t SKIPPED_SAMPLES = 4096; // at a time

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
    sf_count_t position = 0;
    if (__builtin_add_overflow(origin, offset, &position))
        return -1;
    fileOf(user).seek(position);
    return fileTell(user);
}

sf_count_t fileRead(void* target, sf_count_t count, void* user)
{
    if (count <= 0)
        return 0;
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

/** More sample frames than a byte of such a file can hold. */
std::int64_t maxFramesPerByte(int format)
{
    constexpr std::int64_t packed = 8; // one bit each
    constexpr std::int64_t mpeg = 64;
    constexpr std::int64_t lossless = 8192; // silence takes next to nothing
    const int codec = format & SF_FORMAT_SUBMASK;
    if ((format & SF_FORMAT_TYPEMASK) == SF_FORMAT_FLAC ||
        (codec >= SF_FORMAT_ALAC_16 && codec <= SF_FORMAT_ALAC_32))
        return lossless;
    return codec >= SF_FORMAT_MPEG_LAYER_I && codec <= SF_FORMAT_MPEG_LAYER_III ? mpeg : packed;
}

class DecodedFile final : public SampleSource {
public:
    DecodedFile(std::shared_ptr<File> file, SoundPointer sound, const SF_INFO& info)
        : mFile(std::move(file)), mSound(std::move(sound)), mFormat{info.channels, info.samplerate},
          mLength(info.frames), mIsVorbis((info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_VORBIS)
    {}

    /**
     * Must come first: makes certain that the sound is as long as it states, at most `maxFrames`,
     * by going to its end. Where that is not there, the length is what can be decoded.
     */
    void settleLength(std::int64_t maxFrames);

    const SampleFormat& getFormat() const override { return mFormat; }
    std::int64_t getLength() const override { return mLength; }
    std::int64_t getPosition() const override { return mPosition; }
    void setPosition(std::int64_t frame) override;
    std::int64_t read(std::span<float> samples) override;

private:
    bool moveDecoder();
    bool skipTo(std::int64_t frame);
    bool skipVorbisTo(std::int64_t frame);
    std::int64_t skip(std::int64_t frames);
    std::int64_t countFrames();

    std::shared_ptr<File> mFile; // read through by `mSound`
    SoundPointer mSound;
    SampleFormat mFormat;
    std::int64_t mLength = 0; // sample frames
    bool mIsVorbis = false;
    std::int64_t mPosition = 0; // sample frames
    bool mReadable = true;      // false behind the last sample frame that can be had
};

void DecodedFile::settleLength(std::int64_t maxFrames)
{
    // libsndfile goes on with a Vorbis decoder that did not start: it reads nothing, and seeking
    // in it is fatal.
    const std::int64_t stated = mLength;
    const bool hasStart = skip(1) == 1;
    const bool hasEnd =
        hasStart && stated > 0 && stated <= maxFrames && skipTo(stated - 1) && skip(1) == 1;
    if (!hasEnd) {
        mLength = hasStart ? countFrames() : 0;
        ZVX_LOG("log", "app", "The sound states %lld sample frames and holds %lld",
                static_cast<long long>(stated), static_cast<long long>(mLength));
    }
    setPosition(0);
}

std::int64_t DecodedFile::countFrames()
{
    SF_INFO info = {};
    mSound = openDecoder(*mFile, info);
    return mSound ? skip(MOST_COUNTED_FRAMES) : 0;
}

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

    return skip(frame - reached) == frame - reached;
}

/** Decodes up to `frames` and drops them; returns how many there were. */
std::int64_t DecodedFile::skip(std::int64_t frames)
{
    std::array<float, SKIPPED_SAMPLES> dropped = {};
    const std::int64_t room = std::ssize(dropped) / mFormat.channels;
    std::int64_t left = frames;
    while (left > 0) {
        const sf_count_t read = sf_readf_float(mSound.get(), dropped.data(), std::min(left, room));
        if (read <= 0)
            break;
        left -= read;
    }
    return frames - left;
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
    OggExtent extent;
    const bool wasOgg = isOgg(file->contents());
    if (wasOgg) {
        extent = measureOgg(file->contents());
        if (extent.bytes < file->size())
            ZVX_LOG("log", "app",
                    "Of the sound's %zu bytes the first %zu are played: no whole page follows",
                    file->size(), extent.bytes);
        file = file->first(extent.bytes);
    }
    SF_INFO info = {};
    SoundPointer sound = openDecoder(*file, info);
    if (!sound || info.channels <= 0 || info.channels > MOST_CHANNELS)
        return nullptr;
    if (info.samplerate <= 0 || info.samplerate > MOST_SAMPLE_RATE)
        return nullptr;

    const std::int64_t maxFrames =
        wasOgg ? extent.maxFrames
               : static_cast<std::int64_t>(file->size()) * maxFramesPerByte(info.format);
    const auto source = std::make_shared<DecodedFile>(std::move(file), std::move(sound), info);
    source->settleLength(maxFrames);
    return source->getLength() > 0 ? source : nullptr;
}

} // namespace zavex::audio
