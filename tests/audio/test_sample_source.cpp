#include "audio/aud_source.h"
#include "audio/memory_file.h"

#include "support/case_name.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
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

struct FormatCase {
    const char* name;
    SoundFormat format;
    int channels;
    int sampleRate;
    std::int64_t frames;
    double noise; // largest mean square of what the format changes; silence would be 0.083

    friend void PrintTo(const FormatCase& each, std::ostream* out) { *out << each.name; }
};

constexpr FormatCase FORMAT_CASES[] = {
    {"Wav",         SoundFormat::WAV,  2, 44100, 50021, 1e-9},
    {"WavOneFrame", SoundFormat::WAV,  1, 8000,  1,     1e-9},
    {"Flac",        SoundFormat::FLAC, 2, 48000, 50021, 1e-9},
    {"FlacMono",    SoundFormat::FLAC, 1, 22050, 4097,  1e-9},
    {"Ogg",         SoundFormat::OGG,  2, 44100, 50021, 0.06},
};

class SampleSourceFormat : public testing::TestWithParam<FormatCase> {
protected:
    void SetUp() override
    {
        const FormatCase& each = GetParam();
        written = test::makeNoise(static_cast<std::size_t>(each.frames * each.channels));
        source = openBytes(test::encodeSound(each.format, each.channels, each.sampleRate, written));
        ASSERT_NE(source, nullptr);
    }

    std::vector<float> written;
    std::shared_ptr<SampleSource> source;
};

TEST_P(SampleSourceFormat, CountsItsFramesExactlyAndDeliversThemAll)
{
    const FormatCase& each = GetParam();
    EXPECT_EQ(source->getFormat().channels, each.channels);
    EXPECT_EQ(source->getFormat().sampleRate, each.sampleRate);
    EXPECT_EQ(source->getLength(), each.frames);
    EXPECT_EQ(source->getPosition(), 0);

    std::vector<float> read(written.size() + static_cast<std::size_t>(each.channels));
    EXPECT_EQ(source->read(read), each.frames);
    EXPECT_EQ(source->getPosition(), each.frames);
    double sum = 0.0;
    for (std::size_t i = 0; i < written.size(); ++i)
        sum += std::pow(double{read[i]} - double{written[i]}, 2.0);
    EXPECT_LE(sum / static_cast<double>(written.size()), each.noise);
}

TEST_P(SampleSourceFormat, DeliversTheSameFromAnyPositionWithinItsLength)
{
    const FormatCase& each = GetParam();
    std::vector<float> whole(written.size());
    ASSERT_EQ(source->read(whole), each.frames);

    constexpr std::int64_t moves = 50;
    for (std::int64_t move = 0; move < moves; ++move) {
        // Scattered over the sound, near and far from the move before.
        const std::int64_t frame = each.frames * (move * 19 % moves) / moves;
        const std::int64_t expected = std::min<std::int64_t>(700, each.frames - frame);
        std::vector<float> read(static_cast<std::size_t>(700 * each.channels));
        source->setPosition(frame);
        ASSERT_EQ(source->read(read), expected);
        EXPECT_EQ(source->getPosition(), frame + expected);
        for (std::int64_t i = 0; i < expected * each.channels; ++i)
            ASSERT_NEAR(read[static_cast<std::size_t>(i)],
                        whole[static_cast<std::size_t>(frame * each.channels + i)], 1e-5)
                << "sample " << i << " behind frame " << frame;
    }
    source->setPosition(each.frames + 1);
    EXPECT_EQ(source->getPosition(), each.frames);
    EXPECT_EQ(source->read(whole), 0);
    source->setPosition(-1);
    EXPECT_EQ(source->getPosition(), 0);
}

INSTANTIATE_TEST_SUITE_P(Cases, SampleSourceFormat, testing::ValuesIn(FORMAT_CASES),
                         test::caseName);

TEST(SampleSourceBroken, IsNoSound)
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

// Of a page of an Ogg file, in bytes from its start.
constexpr std::size_t OGG_POSITION = 6;
constexpr std::size_t OGG_CHECKSUM = 22;

/** Gives every page of an Ogg file the checksum that its bytes have. */
void seal(std::vector<std::byte>& ogg)
{
    const auto valueAt = [&](std::size_t at) { return std::to_integer<unsigned>(ogg[at]); };
    for (std::size_t page = 0, end = 0; page < ogg.size(); page = end) {
        end = page + 27 + valueAt(page + 26);
        for (std::size_t segment = page + 27; segment < page + 27 + valueAt(page + 26); ++segment)
            end += valueAt(segment);
        std::fill_n(ogg.data() + page + OGG_CHECKSUM, 4, std::byte{0});
        std::uint32_t sum = 0;
        for (std::size_t bit = page * 8; bit < end * 8; ++bit) {
            const std::uint32_t next = valueAt(bit / 8) >> (7 - bit % 8) & 1U;
            const bool carry = ((sum >> 31) ^ next) != 0;
            sum = sum << 1 ^ (carry ? 0x04c11db7U : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i)
            ogg[page + OGG_CHECKSUM + i] = static_cast<std::byte>(sum >> 8 * i);
    }
}

std::size_t lastPageOf(const std::vector<std::byte>& ogg)
{
    constexpr std::string_view mark = "OggS";
    const auto found = std::find_end(ogg.begin(), ogg.end(), mark.begin(), mark.end(),
                                     [](std::byte a, char b) { return static_cast<char>(a) == b; });
    return static_cast<std::size_t>(found - ogg.begin());
}

/** A sound of 50000 sample frames with damage, and how many of them are left. */
struct DamageCase {
    const char* name;
    SoundFormat format;
    void (*damage)(std::vector<std::byte>& bytes);
    std::int64_t least;
    std::int64_t most;

    friend void PrintTo(const DamageCase& each, std::ostream* out) { *out << each.name; }
};

void cutInHalf(std::vector<std::byte>& bytes)
{
    bytes.resize(bytes.size() / 2);
}

void changeTheLastByte(std::vector<std::byte>& bytes)
{
    bytes.back() ^= std::byte{1};
}

void stateTooMuchInFlac(std::vector<std::byte>& bytes)
{
    std::fill_n(bytes.begin() + 22, 4, std::byte{255});
}

void stateTooMuchInOgg(std::vector<std::byte>& bytes)
{
    bytes[lastPageOf(bytes) + OGG_POSITION + 7] = std::byte{0x7f};
    seal(bytes);
}

/** The decoder of such a sound does not start, and must not be moved. */
void spoilACodebook(std::vector<std::byte>& bytes)
{
    bytes[210] ^= std::byte{0x5a};
    seal(bytes);
}

constexpr DamageCase DAMAGE_CASES[] = {
    {"WavCut",                 SoundFormat::WAV,  cutInHalf,          24900, 25000},
    {"FlacCut",                SoundFormat::FLAC, cutInHalf,          15000, 35000},
    {"FlacStatingTooMuch",     SoundFormat::FLAC, stateTooMuchInFlac, 50000, 50000},
    {"OggStatingTooMuch",      SoundFormat::OGG,  stateTooMuchInOgg,  1000,  49999},
    {"OggWithASpoiltCodebook", SoundFormat::OGG,  spoilACodebook,     0,     0    },
    {"OggWithAChangedPage",    SoundFormat::OGG,  changeTheLastByte,  1000,  49999},
};

class SampleSourceDamaged : public testing::TestWithParam<DamageCase> {};

TEST_P(SampleSourceDamaged, IsAsLongAsWhatIsLeftAndCanBeMovedAnywhereInIt)
{
    constexpr std::int64_t frames = 50000;
    const DamageCase& each = GetParam();
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

INSTANTIATE_TEST_SUITE_P(Cases, SampleSourceDamaged, testing::ValuesIn(DAMAGE_CASES),
                         test::caseName);

/** Cut anywhere, a sound opens or does not; reading and moving in it touches nothing else. */
TEST(SampleSourceTruncated, BearsBeingCutAnywhere)
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
