#include "audio/aud_source.h"
#include "audio/memory_file.h"

#include "support/log_capture.h"
#include "support/ogg_pages.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <tuple>

#if defined(__SANITIZE_ADDRESS__)
// libsndfile loses what libvorbis allocated when an Ogg file turns out to be broken.
extern "C" const char* __lsan_default_suppressions(); // NOLINT(*-reserved-identifier)
extern "C" const char* __lsan_default_suppressions()  // NOLINT(*-reserved-identifier)
{
    return "leak:vorbis_info_init\n";
}
#endif

namespace zavex::audio {
namespace {

using test::SoundFormat;

std::shared_ptr<SampleSource> openBytes(std::vector<std::byte> bytes)
{
    return openSampleSource(test::fileOf(std::move(bytes)));
}

constexpr struct FormatCase {
    const char* name;
    SoundFormat format;
    int channels;
    int sampleRate;
    std::int64_t frames;
    double noise; // largest mean square of what the format changes; silence would be 0.083
} FORMATS[] = {
    {"Wav",             SoundFormat::WAV,  2,    44100, 50021, 1e-9},
    {"WavOneFrame",     SoundFormat::WAV,  1,    8000,  1,     1e-9},
    {"WavMostChannels", SoundFormat::WAV,  1024, 8000,  3,     1e-9},
    {"Flac",            SoundFormat::FLAC, 2,    48000, 50021, 1e-9},
    {"FlacMono",        SoundFormat::FLAC, 1,    22050, 4097,  1e-9},
    {"Ogg",             SoundFormat::OGG,  2,    44100, 50021, 0.06},
};

/** From places scattered over the sound, near and far from the one before. */
void expectSameFromAnywhere(SampleSource& source, const std::vector<float>& whole,
                            const FormatCase& each)
{
    constexpr std::int64_t moves = 50;
    for (std::int64_t move = 0; move < moves; ++move) {
        const std::int64_t frame = each.frames * (move * 19 % moves) / moves;
        const std::int64_t expected = std::min<std::int64_t>(700, each.frames - frame);
        std::vector<float> read(static_cast<std::size_t>(700 * each.channels));
        source.setPosition(frame);
        ASSERT_EQ(source.read(read), expected);
        EXPECT_EQ(source.getPosition(), frame + expected);
        for (std::int64_t i = 0; i < expected * each.channels; ++i)
            ASSERT_NEAR(read[static_cast<std::size_t>(i)],
                        whole[static_cast<std::size_t>(frame * each.channels + i)], 1e-5)
                << "sample " << i << " behind frame " << frame;
    }
}

TEST(SampleSource, DeliversAllFramesOfEveryFormatFromAnyPosition)
{
    for (const FormatCase& each : FORMATS) {
        SCOPED_TRACE(each.name);
        test::clearLog();
        const auto written = test::makeNoise(static_cast<std::size_t>(each.frames * each.channels));
        const auto source =
            openBytes(test::encodeSound(each.format, each.channels, each.sampleRate, written));
        ASSERT_NE(source, nullptr);
        EXPECT_EQ(source->getFormat().channels, each.channels);
        EXPECT_EQ(source->getFormat().sampleRate, each.sampleRate);
        EXPECT_EQ(source->getLength(), each.frames);
        EXPECT_EQ(source->getPosition(), 0);
        EXPECT_EQ(test::countLogged("log", "The sound states "), 0) << "it was counted through";

        std::vector<float> read(written.size() + static_cast<std::size_t>(each.channels));
        EXPECT_EQ(source->read(read), each.frames);
        EXPECT_EQ(source->getPosition(), each.frames);
        double sum = 0.0;
        for (std::size_t i = 0; i < written.size(); ++i)
            sum += std::pow(double{read[i]} - double{written[i]}, 2.0);
        EXPECT_LE(sum / static_cast<double>(written.size()), each.noise);

        expectSameFromAnywhere(*source, read, each);
        source->setPosition(each.frames + 1);
        EXPECT_EQ(source->getPosition(), each.frames);
        EXPECT_EQ(source->read(read), 0);
        source->setPosition(-1);
        EXPECT_EQ(source->getPosition(), 0);
    }
}

TEST(SampleSource, OfABrokenFileIsNone)
{
    /** What a good file is cut to and gets appended, so that nothing is left to be heard. */
    const std::tuple<SoundFormat, std::size_t, std::string> cases[] = {
        {SoundFormat::WAV,  0,  ""                         },
        {SoundFormat::WAV,  0,  "<demo><music file=\"a\"/>"},
        {SoundFormat::WAV,  44, ""                         },
        {SoundFormat::FLAC, 4,  ""                         },
        {SoundFormat::OGG,  58, ""                         }, // the first page
        {SoundFormat::OGG,  4,  "no page follows this"     },
    };
    for (const auto& [format, kept, appended] : cases) {
        std::vector<std::byte> bytes = test::encodeSound(format, 2, 44100, test::makeNoise(2000));
        bytes.resize(kept);
        std::ranges::transform(appended, std::back_inserter(bytes),
                               [](char letter) { return static_cast<std::byte>(letter); });
        EXPECT_EQ(openBytes(std::move(bytes)), nullptr) << kept << appended;
    }
    constexpr int impossibleRate = 2000000000;
    EXPECT_EQ(openBytes(test::encodeSound(SoundFormat::WAV, 1, impossibleRate, test::makeNoise(8))),
              nullptr);
}

void seal(std::vector<std::byte>& ogg)
{
    test::sealOggPages({reinterpret_cast<std::uint8_t*>(ogg.data()), ogg.size()});
}

constexpr std::size_t OGG_SERIAL = 14; // in bytes from a page's start

std::size_t lastPageOf(const std::vector<std::byte>& ogg)
{
    constexpr std::string_view mark = "OggS";
    const auto found = std::find_end(ogg.begin(), ogg.end(), mark.begin(), mark.end(),
                                     [](std::byte a, char b) { return static_cast<char>(a) == b; });
    return static_cast<std::size_t>(found - ogg.begin());
}

using Bytes = std::vector<std::byte>;

TEST(SampleSource, OfADamagedFileIsAsLongAsWhatIsLeftAndCanBeMovedAnywhereInIt)
{
    constexpr std::int64_t frames = 50000;
    const auto cutInHalf = [](Bytes& bytes) { bytes.resize(bytes.size() / 2); };
    // The damage, and how many of the sample frames are left.
    const struct {
        const char* name;
        SoundFormat format;
        std::function<void(Bytes&)> damage;
        std::int64_t least;
        std::int64_t most;
    } rows[] = {
        {"WavCut",                 SoundFormat::WAV,  cutInHalf,                   24900,  25000 },
        {"FlacCut",                SoundFormat::FLAC, cutInHalf,                   15000,  35000 },
        {"FlacStatingTooMuch",     SoundFormat::FLAC,
         [](Bytes& bytes) { std::fill_n(bytes.begin() + 22, 4, std::byte{255}); }, frames, frames},
        {"OggStatingTooMuch",      SoundFormat::OGG,
         [](Bytes& bytes) {
             bytes[lastPageOf(bytes) + test::OGG_POSITION + 7] = std::byte{0x7f};
             seal(bytes);
         },                                                                        1000,   49999 },
 // The decoder of such a sound does not start, and must not be moved.
        {"OggWithASpoiltCodebook", SoundFormat::OGG,
         [](Bytes& bytes) { bytes[210] ^= std::byte{0x5a}, seal(bytes); },         0,      0     },
        {"OggWithAChangedPage",    SoundFormat::OGG,
         [](Bytes& bytes) { bytes.back() ^= std::byte{1}; },                       1000,   49999 },
    };
    for (const auto& each : rows) {
        SCOPED_TRACE(each.name);
        auto bytes = test::encodeSound(each.format, 1, 8000, test::makeNoise(frames));
        each.damage(bytes);
        const auto source = openBytes(std::move(bytes));
        const std::int64_t length = source ? source->getLength() : 0;
        ASSERT_GE(length, each.least);
        ASSERT_LE(length, each.most);
        std::vector<float> samples(frames + 1);
        for (std::int64_t frame = length; frame >= 0 && source; frame -= 4999) {
            source->setPosition(frame);
            EXPECT_EQ(source->read(samples), length - frame) << frame;
        }
    }
}

TEST(SampleSource, OfAnOggFileEndsBeforeAPageThatIsMissingOrOfAnotherStream)
{
    const auto whole = test::encodeSound(SoundFormat::OGG, 1, 8000, test::makeNoise(50000));
    const std::size_t last = lastPageOf(whole);
    const std::size_t odd = lastPageOf({whole.begin(), whole.begin() + std::ptrdiff_t(last)});
    const std::size_t kept = lastPageOf({whole.begin(), whole.begin() + std::ptrdiff_t(odd)});
    std::int64_t position = 0; // at the end of the page before
    std::memcpy(&position, whole.data() + kept + test::OGG_POSITION, sizeof position);
    EXPECT_GT(position, 1000);

    Bytes missing = whole;
    missing.erase(missing.begin() + std::ptrdiff_t(odd), missing.begin() + std::ptrdiff_t(last));
    Bytes foreign = whole;
    foreign[odd + OGG_SERIAL] ^= std::byte{1};
    seal(foreign);
    for (const Bytes& bytes : {missing, foreign})
        EXPECT_EQ(openBytes(bytes)->getLength(), position) << bytes.size();
}

/** Cut anywhere, a sound opens or does not; reading and moving in it touches nothing else. */
TEST(SampleSource, BearsBeingCutAnywhere)
{
    for (const SoundFormat format : {SoundFormat::WAV, SoundFormat::FLAC, SoundFormat::OGG}) {
        const auto whole = test::encodeSound(format, 2, 44100, test::makeNoise(3000));
        std::vector<float> samples(4000);
        for (std::size_t kept = 0; kept < whole.size(); kept += 1 + whole.size() / 97) {
            const auto source =
                openBytes({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept)});
            if (!source)
                continue;
            EXPECT_LE(source->read(samples), 1500) << kept;
            source->setPosition(700);
            EXPECT_LE(source->read(samples), 800) << kept;
        }
    }
}

} // namespace
} // namespace zavex::audio
