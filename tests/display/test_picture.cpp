#include "support/picture.h"
#include "support/temporary_folder.h"

namespace zavex::test {
namespace {

Picture grey(int width, int height, std::uint8_t level)
{
    return {width, height,
            std::vector<std::uint8_t>(static_cast<std::size_t>(3 * width * height), level)};
}

TEST(Pictures, AreMeasuredByTheirWorstChannel)
{
    Picture actual = grey(2, 2, 10);
    actual.rgb[1] = 30; // green of the first pixel
    actual.rgb[3] = 8;  // red of the second
    EXPECT_TRUE(isSamePicture(actual, grey(2, 2, 10), {5.0, 20}));
    EXPECT_FALSE(isSamePicture(actual, grey(2, 2, 10), {4.9, 20}));
    EXPECT_FALSE(isSamePicture(actual, grey(2, 2, 10), {5.0, 19}));
    EXPECT_FALSE(isSamePicture(grey(2, 2, 10), grey(2, 3, 10), {255.0, 255}));
}

TEST(Pictures, AreLeftBehindWhenTheyDiffer)
{
    const TemporaryFolder folder;
    const PictureFolders folders{folder.path("stored"), folder.path("actual")};
    writePicture(folders.stored + "/one.png", grey(3, 2, 10));
    EXPECT_TRUE(looksLike(grey(3, 2, 10), "one", {}, folders));
    EXPECT_FALSE(std::filesystem::exists(folders.actual));
    EXPECT_FALSE(looksLike(grey(3, 2, 90), "one", {}, folders));
    EXPECT_EQ(readPicture(folders.actual + "/one.png").rgb, grey(3, 2, 90).rgb);
    EXPECT_FALSE(looksLike(grey(3, 2, 90), "missing", {}, folders));
    EXPECT_TRUE(std::filesystem::exists(folders.actual + "/missing.png"));
}

} // namespace
} // namespace zavex::test
