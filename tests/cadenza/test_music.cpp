#include "cadenza/cad_music.h"

#include "am/am_fixture.h"
#include "support/log_capture.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

namespace zavex::cadenza {
namespace {

constexpr int SAMPLE_RATE = 44100;

am::File makeSong(std::size_t frames, int channels = 2)
{
    const auto bytes =
        test::encodeSound(test::SoundFormat::WAV, channels, SAMPLE_RATE,
                          test::makeNoise(frames * static_cast<std::size_t>(channels)));
    return test::makeFile("song", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
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

TEST_F(MusicPlayback, SaysWhyAFileCannotBePlayed)
{
    EXPECT_EQ(refusal(test::makeFile("song", "this is not a song")), "Could not open file\n");
    EXPECT_EQ(refusal(test::makeFile("song", "")), "Could not open file\n");
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
