// The application with a song on a silent sound device.

#include "cadenza/open_cadenza.h"
#include "cadenza/scratch.h"
#include "display/dis_event.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zavex::cadenza {
namespace {

using test::OpenCadenza;
using test::writeText;

constexpr int SAMPLE_RATE = 44100;

std::string silence(int frames)
{
    const std::vector<float> samples(static_cast<std::size_t>(frames), 0.0f);
    const auto bytes = test::encodeSound(test::SoundFormat::WAV, 1, SAMPLE_RATE, samples);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class Song : public testing::Test {
protected:
    Song()
    {
        setenv("ALSOFT_DRIVERS", "null", 1);
        writeText("song.wav", silence(2 * SAMPLE_RATE));
    }

    ~Song() override { cadenza.reset(); }

    /** Opens the song, which then stands still. */
    void open(const std::string& loop)
    {
        writeText("setup.xml", "<demo><time loop=\"" + loop +
                                   "\"/><osd show=\"off\"/><music filename=\"song.wav\"/></demo>");
        cadenza = std::make_unique<OpenCadenza>();
        cadenza->setup(-1.0f);
        cadenza->openDevices();
        ASSERT_FALSE(cadenza->mNosound);
    }

    void pressSpace()
    {
        display::KeyEvent space;
        space.key = display::KEY_SPACE;
        cadenza->onKeyDown(space);
    }

    test::ScratchFolder folder;
    std::unique_ptr<OpenCadenza> cadenza;
};

TEST_F(Song, MovesWithTheDemoToASampleWithinIt)
{
    open("on");
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
}

/** Quietly, too: the sound library complains of a device that is left open. */
TEST_F(Song, EndsTheProgramAtItsEndWhenItDoesNot)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            open("off");
            cadenza->onDraw();
        },
        testing::ExitedWithCode(0), "^$");
}

TEST_F(Song, DoesNotEndWhilePaused)
{
    open("off");
    cadenza->setTime(1.5f);
    pressSpace();
    cadenza->setTime(1.5f);
    cadenza->onDraw();

    EXPECT_EQ(cadenza->getSystemTime(), 1.5f);
    EXPECT_EQ(cadenza->mMusicTime, 1.5f);
}

} // namespace
} // namespace zavex::cadenza
