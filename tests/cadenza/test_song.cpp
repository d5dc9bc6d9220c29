// A song on the sound library's silent device, which runs at a real one's pace.

#include "am/am_fixture.h"
#include "cadenza/cad_music.h"
#include "cadenza/stage.h"
#include "support/sound_file.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

namespace zavex::cadenza {
namespace {

constexpr int SAMPLE_RATE = 44100;

std::string noise(int frames, int channels = 2)
{
    const auto samples = test::makeNoise(static_cast<std::size_t>(frames * channels));
    const auto bytes = test::encodeSound(test::SoundFormat::WAV, channels, SAMPLE_RATE, samples);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class Song : public test::Stage {
protected:
    Song() { setenv("ALSOFT_DRIVERS", "null", 1); }

    /** Opens a song of two seconds, which then stands still. */
    void open()
    {
        test::writeText("song.wav", noise(2 * SAMPLE_RATE));
        start(R"(<osd show="off"/><music filename="song.wav"/>)");
        cadenza->openDevices();
        ASSERT_FALSE(cadenza->mNosound);
    }

    /** What a file that is no song says on standard output. */
    std::string refusal(const std::string& content)
    {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(music.setup(test::makeFile("song", content)));
        std::fflush(stdout);
        return testing::internal::GetCapturedStdout();
    }

    Music music;
};

TEST_F(Song, MovesWithTheDemoToASampleWithinIt)
{
    open();
    for (const auto& [time, expected] : {
             std::pair{1.00001f, 1.0f},
             {1e9f,     2.0f},
             {-2.0f,    0.0f}
    }) {
        cadenza->setTime(time);
        EXPECT_EQ(cadenza->getTime(), expected) << time;
        EXPECT_EQ(cadenza->mMusicTime, expected) << time;
        EXPECT_EQ(cadenza->mOsdTime, expected) << time;
    }
    cadenza->setTime(1.5f);
    press(display::KEY_SPACE);
    drawAt(1.5f);
    EXPECT_EQ(cadenza->getSystemTime(), 1.5f) << "ended while paused";
    EXPECT_EQ(cadenza->mMusicTime, 1.5f);
}

TEST_F(Song, KeepsItsFileAsLongAsItPlays)
{
    am::File file = test::makeFile("song", noise(SAMPLE_RATE));
    ASSERT_TRUE(music.setup(file));
    file.release();
    music.setTime(0.9f);
    music.play();
    while (music.isPlaying())
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(music.getTime(), 1.0f);
}

TEST_F(Song, ThatCannotBePlayedSaysWhy)
{
    EXPECT_EQ(refusal("this is not a song"), "Could not open file\n");
    EXPECT_EQ(refusal(""), "Could not open file\n");
    EXPECT_EQ(refusal(noise(100, 3)), "Could not open sound!, muting\n");
    EXPECT_TRUE(test::logLines().empty());
    EXPECT_EQ(test::thrownMessage([&] { Music().play(); }), "mSound");
    EXPECT_EQ(test::thrownMessage([&] { music.setup(am::File()); }), "!file.isNull()");
}

} // namespace
} // namespace zavex::cadenza
