#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace zavex::test {

// Of a page of an Ogg file, in bytes from its start.
inline constexpr std::size_t OGG_POSITION = 6;
inline constexpr std::size_t OGG_CHECKSUM = 22;
inline constexpr std::size_t OGG_HEADER = 27; // its last byte counts the segments' sizes behind it

/** Gives every page the check sum that its bytes have; one that is cut, that of what is there. */
inline void sealOggPages(std::span<std::uint8_t> file)
{
    constexpr std::string_view mark = "OggS";
    auto at = file.begin();
    while ((at = std::search(at, file.end(), mark.begin(), mark.end())) != file.end()) {
        const auto rest = file.subspan(static_cast<std::size_t>(at - file.begin()));
        ++at;
        if (rest.size() < OGG_HEADER || rest.size() < OGG_HEADER + rest[OGG_HEADER - 1])
            continue;
        std::size_t size = OGG_HEADER + rest[OGG_HEADER - 1];
        for (const std::uint8_t segment : rest.subspan(OGG_HEADER, rest[OGG_HEADER - 1]))
            size += segment;
        std::ranges::fill(rest.subspan(OGG_CHECKSUM, 4), std::uint8_t{0});
        std::uint32_t sum = 0;
        for (const std::uint8_t byte : rest.first(std::min(size, rest.size()))) {
            sum ^= std::uint32_t{byte} << 24U;
            for (int bit = 0; bit < 8; ++bit)
                sum = sum << 1U ^ ((sum & 0x80000000U) != 0 ? 0x04C11DB7U : 0U);
        }
        for (std::size_t byte = 0; byte < 4; ++byte, sum >>= 8U)
            rest[OGG_CHECKSUM + byte] = static_cast<std::uint8_t>(sum);
    }
}

} // namespace zavex::test
