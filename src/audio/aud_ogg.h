#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zavex::audio {

/** What of an Ogg file a decoder may be given. */
struct OggExtent {
    std::size_t bytes = 0;      // at the start of the file; 0 when there is no sound in it
    std::int64_t maxFrames = 0; // sample frames that these can hold at most
};

/** Whether a file begins as an Ogg file does. */
bool isOgg(std::span<const std::byte> file);

/**
 * Walks over the pages of an Ogg file, from its start to the end of its first stream or to the
 * first page that is not whole: cut short, with a wrong checksum, of another stream, out of order,
 * or with a position that runs backwards or further than its packets reach. Decoders that seek by
 * such pages read what is not there and believe in any length.
 *
 * The stream must be Vorbis, Opus or FLAC; a file that interleaves others with it has no sound.
 */
OggExtent measureOgg(std::span<const std::byte> file);

} // namespace zavex::audio
