#include "vellum/vel_image.h"
#include "vellum/vel_workspace.h"

#include "am/am.h"
#include "am/am_image.h"
#include "support/gl_display.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <unistd.h>

namespace zavex::vellum::test {

using mathbase::Vector2f;
using zavex::test::GlDisplay;
using zavex::test::GlDisplayTest;
using zavex::test::Picture;
using zavex::test::pixelAt;

namespace {

constexpr int WINDOW_WIDTH = 64;  // pixels
constexpr int WINDOW_HEIGHT = 48; // pixels
constexpr int IMAGE_WIDTH = 10;   // pixels
constexpr int IMAGE_HEIGHT = 6;   // pixels

constexpr unsigned RED = 0xff0000;
constexpr unsigned GREEN = 0x00ff00;
constexpr unsigned BLUE = 0x0000ff;
constexpr unsigned BLACK = 0x000000;

/** Red, with a green top row and a blue left column. */
unsigned colorOf(int x, int y)
{
    if (y == 0)
        return GREEN;
    return x == 0 ? BLUE : RED;
}

/** An image on a workspace that fills a small window. */
class ImageTest : public GlDisplayTest {
protected:
    ImageTest()
    {
        std::filesystem::create_directories(mFolder);
        mArchive.addArchive(mFolder);
        mDisplay.setArchive(&mArchive);
        am::Image picture(new am::ImageObject());
        picture->resize(IMAGE_WIDTH, IMAGE_HEIGHT);
        unsigned char* pixel = picture->getWriteData();
        for (int y = 0; y < IMAGE_HEIGHT; ++y)
            for (int x = 0; x < IMAGE_WIDTH; ++x, pixel += 4) {
                const unsigned color = colorOf(x, y);
                pixel[0] = static_cast<unsigned char>(color);
                pixel[1] = static_cast<unsigned char>(color >> 8);
                pixel[2] = static_cast<unsigned char>(color >> 16);
                pixel[3] = 255;
            }
        mArchive.writeImage("picture.png", picture);
        mWorkspace.setDisplay(&mDisplay);
        mWorkspace.setArea(Image::Area(0, 0, WINDOW_WIDTH, WINDOW_HEIGHT));
        mWorkspace.addControl(mImage);
    }

    ~ImageTest() override
    {
        mWorkspace.deleteControls();
        std::filesystem::remove_all(mFolder);
    }

    Picture frame()
    {
        return pictureOf([&] {
            mWorkspace.getRender().setupDraw(Vector2f(WINDOW_WIDTH, WINDOW_HEIGHT), Vector2f(0, 0),
                                             0.0f);
            mWorkspace.draw();
        });
    }

    std::string mFolder = testing::TempDir() + "image_" + std::to_string(getpid()) + "/";
    am::ArchiveManager mArchive;
    Workspace mWorkspace;
    Image* mImage = new Image; // owned by the workspace
};

TEST_F(ImageTest, IsDrawnPixelForPixelInTheMiddleWhereItFits)
{
    mImage->setFile("picture.png");
    mImage->setArea(Image::Area(10, 10, 41, 31)); // the middle is (25.5, 20.5)
    const Picture picture = frame();
    for (int y = 0; y < IMAGE_HEIGHT; ++y)
        for (int x = 0; x < IMAGE_WIDTH; ++x)
            EXPECT_EQ(pixelAt(picture, 20 + x, 17 + y), colorOf(x, y)) << x << ", " << y;
    for (const auto& [x, y] : {
             std::pair{19, 20},
             {30, 20},
             {25, 16},
             {25, 23}
    })
        EXPECT_EQ(pixelAt(picture, x, y), BLACK) << x << ", " << y;
}

TEST_F(ImageTest, ShrinksToFitWithItsProportions)
{
    mImage->setFile("picture.png");
    mImage->setArea(Image::Area(10, 10, 15, 40)); // 5 x 3 pixels from (10, 23) on
    const Picture picture = frame();
    EXPECT_EQ(pixelAt(picture, 13, 25) & 0xf0f0f0u, RED & 0xf0f0f0u);
    EXPECT_NE(pixelAt(picture, 14, 23), BLACK);
    for (const auto& [x, y] : {
             std::pair{13, 22},
             {13, 26},
             {9,  24},
             {15, 24}
    })
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
        GlDisplay window;
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
