// A sound is refused, or can be played from everywhere as far as it goes.

#include "audio/aud_file.h"
#include "audio/aud_source.h"
#include "fuzz/fuzz_target.h"

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

} // namespace zavex::fuzz
