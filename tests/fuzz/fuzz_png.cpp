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
    const auto pixels = [](const am::ImageObject& of) {
        return std::span(of.getData(), am::ImageObject::byteCount(of.getWidth(), of.getHeight()));
    };
    expect(again.getWidth() == picture.getWidth() &&
               std::ranges::equal(pixels(again), pixels(picture)),
           "a written picture differs");
}

void repairPng(std::span<std::uint8_t> input)
{
    constexpr std::size_t signature = 8;
    constexpr std::size_t word = 4; // bytes of a length, a type, a check sum
    for (std::size_t at = signature; input.size() > at + 3 * word;) {
        std::size_t length = 0;
        for (const std::uint8_t byte : input.subspan(at, word))
            length = length << 8U | byte;
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
