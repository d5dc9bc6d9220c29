// A PNG is refused or decoded; what is decoded is the same after it was written and read again.

#include "am/am_imagecodec_png.h"
#include "common/zvx_system.h"
#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <memory>

#include <zlib.h>

namespace zavex::fuzz {

void png(Bytes input)
{
    am::ImageCodecPNG codec;
    am::ImageObject picture;
    try {
        codec.decodeImage(input.data(), input.size(), picture);
    } catch (const Exception&) {
        return;
    }
    unsigned char* bytes = nullptr;
    std::size_t size = 0;
    expect(codec.encodeImage(&bytes, &size, picture), "a decoded picture cannot be written");
    const std::unique_ptr<unsigned char[]> owned(bytes);
    am::ImageObject again;
    codec.decodeImage(bytes, size, again);
    expect(again.getWidth() == picture.getWidth() && again.getHeight() == picture.getHeight() &&
               std::equal(again.getData(),
                          again.getData() +
                              am::ImageObject::byteCount(again.getWidth(), again.getHeight()),
                          picture.getData()),
           "a written picture differs");
}

void repairPng(std::span<std::uint8_t> input)
{
    constexpr std::size_t signature = 8;
    constexpr std::size_t word = 4; // bytes of a length, a type, a check sum
    for (std::size_t at = signature; input.size() > at + 3 * word;) {
        const std::size_t length = bigEndian(input, at);
        if (length > input.size() - at - 3 * word)
            return;
        const auto covered = input.subspan(at + word, word + length);
        auto sum = crc32(0, covered.data(), static_cast<unsigned>(covered.size()));
        at += 3 * word + length;
        for (std::size_t back = 1; back <= word; ++back, sum >>= 8U)
            input[at - back] = static_cast<std::uint8_t>(sum);
    }
}

} // namespace zavex::fuzz
