#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace zavex::test {

enum class SoundFormat { WAV, FLAC, OGG };

/** White noise, the same for the same number of samples; full scale in -1..1. */
std::vector<float> makeNoise(std::size_t count);

/** A sound file in memory. @param samples  Interleaved, full scale in -1..1. */
std::vector<std::byte> encodeSound(SoundFormat format, int channels, int sampleRate,
                                   std::span<const float> samples);

} // namespace zavex::test
