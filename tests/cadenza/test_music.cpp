#include "cadenza/cad_music.h"

#include "support/case_name.h"
#include "support/log_capture.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>

namespace zavex::cadenza {
namespace {

constexpr int SAMPLE_RATE = 44100;

am::File makeFile(const void* bytes, std::size_t size)
{
    auto copy = std::make_unique<char[]>(size);
    std::memcpy(copy.get(), bytes, size);
    return am::File(
        new am::FileStructure("song", std::move(copy), static_cast<std::int32_t>(size)));
}

am::File makeSong(std::size_t frames, int channels = 2)
{
    const auto bytes =
        test::encodeSound(test::SoundFormat::WAV, channels, SAMPLE_RATE,
                          test::makeNoise(frames * static_cast<std::size_t>(channels)));
    return makeFile(bytes.data(), bytes.size());
}

/** Plays on the sound library's silent device, which runs at a real one's pace. */
class MusicPlayback : public testing::Test {
protected:
    void SetUp() override
    {
        setenv("ALSOFT_DRIVERS", "null", 1);
        test::clearLog();
    }

    /** What `setup` says on standard output. */
    std::string refusal(const am::File& file)
    {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(music.setup(file));
        std::fflush(stdout);
        return testing::internal::GetCapturedStdout();
    }

    bool playUntil(float seconds)
    {
        while (music.isPlaying()) {
            if (music.getTime() >= seconds)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return false;
    }

    Music music;
};

TEST_F(MusicPlayback, KeepsTheFileAsLongAsTheSong)
{
    am::File file = makeSong(SAMPLE_RATE);
    ASSERT_TRUE(music.setup(file));
    file.release();
    music.setTime(0.9f);
    music.play();
    EXPECT_FALSE(playUntil(2.0f));
    EXPECT_EQ(music.getTime(), 1.0f);
}

struct TimeCase {
    const char* name;
    float seconds;
    float reached;

    friend void PrintTo(const TimeCase& time, std::ostream* out) { *out << time.name; }
};

constexpr TimeCase TIME_CASES[] = {
    {"Start",             0.0f,     0.0f},
    {"WholeFrame",        1.0f,     1.0f},
    {"CutToAFrame",       1.00001f, 1.0f},
    {"Negative",          -1.0f,    0.0f},
    {"End",               2.0f,     2.0f},
    {"BehindEnd",         2.0001f,  2.0f},
    {"FarBehindEnd",      1e9f,     2.0f},
    {"MoreThanAnInteger", 1e30f,    2.0f},
};

class MusicTime : public MusicPlayback, public testing::WithParamInterface<TimeCase> {};

TEST_P(MusicTime, LandsOnAFrameWithinTheSong)
{
    ASSERT_TRUE(music.setup(makeSong(SAMPLE_RATE * 2)));
    music.setTime(GetParam().seconds);
    EXPECT_EQ(music.getTime(), GetParam().reached);
    music.setTime(music.getTime());
    EXPECT_EQ(music.getTime(), GetParam().reached) << "reading back and setting moves it";
}

INSTANTIATE_TEST_SUITE_P(Cases, MusicTime, testing::ValuesIn(TIME_CASES), test::caseName);

TEST_F(MusicPlayback, SaysWhyAFileCannotBePlayed)
{
    constexpr std::string_view TEXT = "this is not a song";
    EXPECT_EQ(refusal(makeFile(TEXT.data(), TEXT.size())), "Could not open file\n");
    EXPECT_EQ(refusal(makeFile(TEXT.data(), 0)), "Could not open file\n");
    EXPECT_EQ(refusal(makeSong(100, 3)), "Could not open sound!, muting\n");
    EXPECT_TRUE(test::logLines().empty());
}

TEST_F(MusicPlayback, RefusesToPlayBeforeItIsSetUp)
{
    EXPECT_EQ(test::thrownMessage([&] { music.play(); }), "mSound");
    EXPECT_EQ(test::thrownMessage([&] { music.setup(am::File()); }), "!file.isNull()");
}

} // namespace
} // namespace zavex::cadenza
