#include "audio/aud_source.h"

#include "audio/aud_file.h"
#include "common/zvx_system.h"

#include <sndfile.h>

#include <algorithm>
#include <utility>

namespace zavex::audio {

namespace {

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

class DecodedFile final : public SampleSource {
public:
    DecodedFile(std::shared_ptr<File> file, SoundPointer sound, const SF_INFO& info)
        : mFile(std::move(file)), mSound(std::move(sound)), mFormat{info.channels, info.samplerate},
          mLength(info.frames)
    {}

    const SampleFormat& getFormat() const override { return mFormat; }
    std::int64_t getLength() const override { return mLength; }
    std::int64_t getPosition() const override { return mPosition; }

    void setPosition(std::int64_t frame) override
    {
        mPosition = std::clamp<std::int64_t>(frame, 0, mLength);
        // Not every decoder can stand behind the last sample frame.
        mReadable = mPosition < mLength;
        if (!mReadable || sf_seek(mSound.get(), mPosition, SEEK_SET) == mPosition)
            return;
        mReadable = false;
        ZVX_LOG("warning", "system", "The sound cannot be moved to sample frame %lld of %lld: %s",
                static_cast<long long>(mPosition), static_cast<long long>(mLength),
                sf_strerror(mSound.get()));
    }

    std::int64_t read(std::span<float> samples) override
    {
        const sf_count_t wanted = std::ssize(samples) / mFormat.channels;
        if (!mReadable)
            return 0;
        const std::int64_t delivered =
            std::max<sf_count_t>(0, sf_readf_float(mSound.get(), samples.data(), wanted));
        mPosition += delivered;
        if (delivered < wanted)
            endAt(mPosition);
        return delivered;
    }

private:
    void endAt(std::int64_t frame)
    {
        mReadable = false;
        if (frame < mLength)
            ZVX_LOG("warning", "system", "The sound breaks off at sample frame %lld of %lld",
                    static_cast<long long>(frame), static_cast<long long>(mLength));
    }

    std::shared_ptr<File> mFile; // read through by `mSound`
    SoundPointer mSound;
    SampleFormat mFormat;
    std::int64_t mLength = 0;   // sample frames
    std::int64_t mPosition = 0; // sample frames
    bool mReadable = true;      // false behind the last sample frame that can be had
};

} // namespace

std::shared_ptr<SampleSource> openSampleSource(std::shared_ptr<File> file)
{
    SF_VIRTUAL_IO access = {fileLength, fileSeek, fileRead, fileWrite, fileTell};
    SF_INFO info = {};
    file->seek(0);
    SoundPointer sound(sf_open_virtual(&access, SFM_READ, &info, file.get()));
    if (!sound || info.samplerate <= 0 || info.channels <= 0 || info.frames <= 0)
        return nullptr;
    return std::make_shared<DecodedFile>(std::move(file), std::move(sound), info);
}

} // namespace zavex::audio
