#include "support/picture.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace zavex::test {
namespace {

Picture grey(int width, int height, std::uint8_t level)
{
    return {width, height,
            std::vector<std::uint8_t>(static_cast<std::size_t>(3 * width * height), level)};
}

class PictureTest : public testing::Test {
protected:
    TemporaryFolder mFolder;
    PictureFolders mFolders{mFolder.path("stored"), mFolder.path("actual")};
};

TEST_F(PictureTest, MeasuresTheWorstChannel)
{
    Picture actual = grey(2, 2, 10);
    actual.rgb[1] = 30; // green of the first pixel
    actual.rgb[3] = 8;  // red of the second

    const PictureDifference difference = differenceOf(actual, grey(2, 2, 10));
    EXPECT_DOUBLE_EQ(difference.mean, 5.0);
    EXPECT_EQ(difference.maximum, 20);
}

TEST_F(PictureTest, RefusesWhatIsBeyondEitherTolerance)
{
    Picture actual = grey(2, 2, 10);
    actual.rgb[0] = 20;
    EXPECT_TRUE(isSamePicture(actual, grey(2, 2, 10), {2.5, 10}));
    EXPECT_FALSE(isSamePicture(actual, grey(2, 2, 10), {2.4, 10}));
    EXPECT_FALSE(isSamePicture(actual, grey(2, 2, 10), {2.5, 9}));
    EXPECT_FALSE(isSamePicture(actual, grey(2, 3, 10), {255.0, 255}));
}

TEST_F(PictureTest, LeavesTheActualPictureBehindOnFailure)
{
    writePicture(mFolders.stored + "/one.png", grey(3, 2, 10));
    EXPECT_TRUE(looksLike(grey(3, 2, 10), "one", {}, mFolders));
    EXPECT_FALSE(std::filesystem::exists(mFolders.actual));

    EXPECT_FALSE(looksLike(grey(3, 2, 90), "one", {}, mFolders));
    EXPECT_EQ(readPicture(mFolders.actual + "/one.png").rgb, grey(3, 2, 90).rgb);

    EXPECT_FALSE(looksLike(grey(3, 2, 90), "missing", {}, mFolders));
    EXPECT_TRUE(std::filesystem::exists(mFolders.actual + "/missing.png"));
}

} // namespace
} // namespace zavex::test
