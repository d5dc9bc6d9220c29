#include "e2e/program.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* RECORDING =
    R"(<time start="17"/><display width="160" height="120" title="recording"/>)"
    R"(<dump name="frames/shot.png" rate="25" length="1"/><music filename="afterglow.ogg"/>)";

Files recordShow(const VirtualScreen& screen)
{
    return record(ShowCopy(RECORDING), screen);
}

TEST(Recording, WritesOnePictureAFrameAndTheSameTwice)
{
    const VirtualScreen screen;
    const auto frames = recordShow(screen);
    ASSERT_EQ(frames.size(), 25u);
    EXPECT_EQ(frames.front().first, "shot.000000.png");
    EXPECT_EQ(frames.back().first, "shot.000024.png");
    EXPECT_NE(frames.front().second, frames.back().second);

    const auto again = recordShow(screen);
    ASSERT_EQ(again.size(), frames.size());
    for (std::size_t index = 0; index < frames.size(); ++index)
        EXPECT_TRUE(again[index].second == frames[index].second) << frames[index].first;
}

TEST(Recording, AFullDiskLosesFramesAndSaysHowMany)
{
    const VirtualScreen screen;
    const ShowCopy show(R"(<display width="160" height="120" title="full"/>)"
                        R"(<dump name="frames/shot.png" rate="25" length="0.2"/>)"
                        R"(<music mute="nosound"/>)");
    const auto before = show.scripts();
    constexpr std::size_t LARGEST_FILE = 100; // bytes: no picture and no script fits
    Program program(show.path(), screen, {}, LARGEST_FILE);
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
    EXPECT_NE(program.output().find("Dumped 5 frames, 5 lost"), std::string::npos)
        << program.output();
    EXPECT_EQ(show.scripts(), before);
    EXPECT_NE(program.output().find("script/plasma.plasma.xml"), std::string::npos);
    for (const auto& entry : fs::recursive_directory_iterator(show.path() / "frames"))
        ADD_FAILURE() << entry.path() << " was left behind";
}

} // namespace
} // namespace zavex::test
