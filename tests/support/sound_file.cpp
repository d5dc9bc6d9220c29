#include "support/sound_file.h"

#include "support/temporary_folder.h"

#include <sndfile.h>

#include <algorithm>
#include <random>
#include <stdexcept>

namespace zavex::test {

namespace {

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
    const TemporaryFolder folder;
    SF_INFO info = {};
    info.channels = channels;
    info.samplerate = sampleRate;
    info.format = libraryFormat(format);
    SNDFILE* sound = sf_open(folder.path("sound").c_str(), SFM_WRITE, &info);
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
    const std::string file = folder.read("sound");
    const auto* const bytes = reinterpret_cast<const std::byte*>(file.data());
    return {bytes, bytes + file.size()};
}

} // namespace zavex::test
