#include "support/sound_file.h"

#include <sndfile.h>

#include <algorithm>
#include <random>
#include <stdexcept>

namespace zavex::test {

namespace {

/** What libsndfile writes to: bytes and a position in them. */
struct MemoryTarget {
    std::vector<std::byte> bytes;
    sf_count_t position = 0;
};

MemoryTarget& targetOf(void* user)
{
    return *static_cast<MemoryTarget*>(user);
}

sf_count_t targetLength(void* user)
{
    return std::ssize(targetOf(user).bytes);
}

sf_count_t targetSeek(sf_count_t offset, int whence, void* user)
{
    MemoryTarget& target = targetOf(user);
    const sf_count_t origin = whence == SEEK_SET   ? 0
                              : whence == SEEK_CUR ? target.position
                                                   : targetLength(user);
    target.position = origin + offset;
    return target.position;
}

sf_count_t targetRead(void* bytes, sf_count_t count, void* user)
{
    MemoryTarget& target = targetOf(user);
    const sf_count_t there = std::min(count, targetLength(user) - target.position);
    std::copy_n(target.bytes.begin() + target.position, there, static_cast<std::byte*>(bytes));
    target.position += there;
    return there;
}

sf_count_t targetWrite(const void* bytes, sf_count_t count, void* user)
{
    MemoryTarget& target = targetOf(user);
    const auto end = static_cast<std::size_t>(target.position + count);
    target.bytes.resize(std::max(target.bytes.size(), end));
    std::copy_n(static_cast<const std::byte*>(bytes), count,
                target.bytes.begin() + target.position);
    target.position += count;
    return count;
}

sf_count_t targetTell(void* user)
{
    return targetOf(user).position;
}

int libraryFormat(SoundFormat format)
{
    switch (format) {
        case SoundFormat::WAV: return SF_FORMAT_WAV | SF_FORMAT_PCM_16;
        case SoundFormat::FLAC: return SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
        case SoundFormat::OGG: return SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    }
    throw std::invalid_argument("no such sound format");
}

} // namespace

std::vector<float> makeNoise(std::size_t count)
{
    std::mt19937 generator(count);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = static_cast<float>(generator()) / static_cast<float>(generator.max()) - 0.5f;
    return samples;
}

std::vector<std::byte> encodeSound(SoundFormat format, int channels, int sampleRate,
                                   std::span<const float> samples)
{
    MemoryTarget target;
    SF_VIRTUAL_IO access = {targetLength, targetSeek, targetRead, targetWrite, targetTell};
    SF_INFO info = {};
    info.channels = channels;
    info.samplerate = sampleRate;
    info.format = libraryFormat(format);
    SNDFILE* sound = sf_open_virtual(&access, SFM_WRITE, &info, &target);
    if (sound == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    // In pieces: the Vorbis encoder takes the whole of a long call on its stack.
    constexpr std::size_t PIECE = 4096;
    const std::size_t piece = PIECE * static_cast<std::size_t>(channels);
    for (std::size_t at = 0; at < samples.size(); at += piece) {
        const auto part = samples.subspan(at, std::min(piece, samples.size() - at));
        sf_write_float(sound, part.data(), std::ssize(part));
    }
    sf_close(sound);
    return std::move(target.bytes);
}

} // namespace zavex::test
