#include "vellum/folder_test.h"
#include "vellum/vel_image.h"
#include "vellum/vel_workspace.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::vellum::test {

using mathbase::Vector2f;
using zavex::test::Picture;
using zavex::test::pixelAt;

namespace {

constexpr int IMAGE_WIDTH = 10; // pixels
constexpr int IMAGE_HEIGHT = 6;

constexpr unsigned RED = 0xff0000;
constexpr unsigned BLACK = 0x000000;

/** Red, with a green top row and a blue left column. */
unsigned colorOf(int x, int y)
{
    if (y == 0)
        return 0x00ff00;
    return x == 0 ? 0x0000ff : RED;
}

/** An image on a workspace that fills a small window. */
class ImageTest : public FolderTest {
protected:
    ImageTest()
    {
        writePicture("picture.png", IMAGE_WIDTH, IMAGE_HEIGHT,
                     [](int x, int y) { return 0xff000000u | colorOf(x, y); });
        mWorkspace.setDisplay(&mDisplay);
        mWorkspace.setArea(Image::Area(0, 0, 64, 48));
        mWorkspace.addControl(mImage);
    }

    ~ImageTest() override { mWorkspace.deleteControls(); }

    Picture frame()
    {
        return pictureOf([&] {
            mWorkspace.getRender().setupDraw(Vector2f(64, 48), Vector2f(0, 0), 0.0f);
            mWorkspace.draw();
        });
    }

    Workspace mWorkspace;
    Image* mImage = new Image; // owned by the workspace
};

TEST_F(ImageTest, IsDrawnPixelForPixelInTheMiddleWhereItFits)
{
    mImage->setFile("picture.png");
    mImage->setArea(Image::Area(10, 10, 41, 31)); // the middle is (25.5, 20.5)
    const Picture picture = frame();
    for (int y = -1; y <= IMAGE_HEIGHT; ++y)
        for (int x = -1; x <= IMAGE_WIDTH; ++x) {
            const bool inside = x >= 0 && x < IMAGE_WIDTH && y >= 0 && y < IMAGE_HEIGHT;
            EXPECT_EQ(pixelAt(picture, 20 + x, 17 + y), inside ? colorOf(x, y) : BLACK)
                << x << ", " << y;
        }
}

TEST_F(ImageTest, ShrinksToFitWithItsProportions)
{
    mImage->setFile("picture.png");
    mImage->setArea(Image::Area(10, 10, 15, 40)); // 5 x 3 pixels from (10, 23) on
    const Picture picture = frame();
    EXPECT_EQ(pixelAt(picture, 13, 25) & 0xf0f0f0u, RED & 0xf0f0f0u);
    EXPECT_NE(pixelAt(picture, 14, 23), BLACK);
    for (const auto& [x, y] : {std::pair(13, 22), std::pair(13, 26), std::pair(9, 24)})
        EXPECT_EQ(pixelAt(picture, x, y), BLACK) << x << ", " << y;
}

TEST_F(ImageTest, SaysOnceThatAFileIsMissingAndDrawsAFrame)
{
    mImage->setFile("missing.png");
    mImage->setArea(Image::Area(10, 10, 40, 30));
    frame();
    const Picture picture = frame();
    EXPECT_NE(pixelAt(picture, 10, 10), pixelAt(picture, 11, 11)) << "a border";
    EXPECT_NE(pixelAt(picture, 11, 11), BLACK);
    EXPECT_EQ(zavex::test::countLogged("error", "image 'missing.png'"), 1);

    mImage->setFile("picture.png");
    EXPECT_EQ(pixelAt(frame(), 25, 20), RED);
}

TEST(Image, OutlivesItsDisplay)
{
    Workspace workspace;
    auto* const image = new Image;
    workspace.addControl(image);
    image->setFile("missing.png");
    {
        zavex::test::GlDisplay window;
        am::ArchiveManager archive;
        window->setArchive(&archive);
        workspace.setDisplay(&*window);
        zavex::test::pictureOf(*window, [&] {
            workspace.getRender().setupDraw(Vector2f(64, 48), Vector2f(0, 0), 0.0f);
            workspace.draw();
        });
        workspace.setDisplay(nullptr);
    }
    workspace.deleteControls();
}

} // namespace

} // namespace zavex::vellum::test
