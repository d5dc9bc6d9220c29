// A sound is refused, or can be played from everywhere as far as it goes.

#include "audio/aud_file.h"
#include "audio/aud_source.h"
#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace zavex::fuzz {

namespace {

constexpr std::int64_t BLOCK = 2048; // sample frames

void play(audio::SampleSource& source, std::vector<float>& block)
{
    const std::int64_t from = source.getPosition();
    const std::int64_t count = source.read(block);
    expect(count >= 0 && count <= BLOCK, "more was delivered than asked for");
    expect(source.getPosition() == from + count, "the position does not follow what was read");
}

/** The check sum of an Ogg page whose own is zero. */
std::uint32_t oggSum(Bytes page)
{
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : page) {
        sum ^= std::uint32_t{byte} << 24U;
        for (int bit = 0; bit < 8; ++bit)
            sum = sum << 1U ^ ((sum & 0x80000000U) != 0 ? 0x04C11DB7U : 0U);
    }
    return sum;
}

} // namespace

void sound(Bytes input)
{
    const std::shared_ptr<const std::byte> bytes(reinterpret_cast<const std::byte*>(input.data()),
                                                 [](const std::byte*) {});
    const auto source = audio::openSampleSource(audio::createMemoryFile(bytes, input.size()));
    if (!source)
        return;
    const auto channels = static_cast<std::size_t>(source->getFormat().channels);
    std::vector<float> block(static_cast<std::size_t>(BLOCK) * channels);
    play(*source, block);
    const std::int64_t length = source->getLength();
    for (const std::int64_t frame : {length / 2, length - 1, std::int64_t{1}, length, length / 3}) {
        source->setPosition(frame);
        play(*source, block);
        play(*source, block);
    }
}

void repairSound(std::span<std::uint8_t> input)
{
    constexpr std::size_t header = 27; // bytes; the last one counts the segments
    constexpr std::size_t sumAt = 22;
    constexpr std::string_view capture = "OggS";
    auto page = input.begin();
    while ((page = std::search(page, input.end(), capture.begin(), capture.end())) != input.end()) {
        const auto rest = input.subspan(static_cast<std::size_t>(page - input.begin()));
        ++page;
        if (rest.size() < header || rest.size() < header + rest[header - 1])
            continue;
        std::size_t size = header + rest[header - 1];
        for (const std::uint8_t segment : rest.subspan(header, rest[header - 1]))
            size += segment;
        std::ranges::fill(rest.subspan(sumAt, 4), std::uint8_t{0});
        std::uint32_t sum = oggSum(rest.first(std::min(size, rest.size())));
        for (std::size_t byte = 0; byte < 4; ++byte, sum >>= 8U)
            rest[sumAt + byte] = static_cast<std::uint8_t>(sum);
    }
}

} // namespace zavex::fuzz
