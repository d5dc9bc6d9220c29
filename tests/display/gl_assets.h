#pragma once

#include "am/am.h"
#include "display/dis_display_obsolete.h"
#include "support/gl_display.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace zavex::test {

/** A picture of the given pixels, 0xAARRGGBB, top row first. */
inline am::Image imageOf(int width, int height, const std::vector<std::uint32_t>& pixels)
{
    auto bytes = std::make_unique<unsigned char[]>(pixels.size() * 4);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        for (std::size_t channel = 0; channel < 4; ++channel)
            bytes[i * 4 + channel] = static_cast<unsigned char>(pixels[i] >> (8 * channel));
    return am::Image{
        new am::ImageObject{width, height, std::move(bytes), nullptr, ""}
    };
}

/** Fills the drawing area with the texture bound on channel 0, its first row at the top. */
inline void drawTextured()
{
    using display::DisplayObsolete;
    const mathbase::Vector4f white{1.0f, 1.0f, 1.0f, 1.0f};
    DisplayObsolete::setProject(0.0f, 1.0f, 0.0f, 1.0f);
    DisplayObsolete::setTexturing(true);
    DisplayObsolete::drawQuad({
        {{0.0f, 0.0f, 0.0f}, {0.0f, 1.0f}, white},
        {{1.0f, 0.0f, 0.0f}, {1.0f, 1.0f}, white},
        {{1.0f, 1.0f, 0.0f}, {1.0f, 0.0f}, white},
        {{0.0f, 1.0f, 0.0f}, {0.0f, 0.0f}, white}
    });
    DisplayObsolete::setTexturing(false);
}

/** A small window whose display loads from a folder of its own. */
class AssetsTest : public GlDisplayTest {
protected:
    AssetsTest()
    {
        mArchive.addArchive(mFolder.path(""));
        mDisplay.setArchive(&mArchive);
    }

    void writeImage(const std::string& name, am::Image image)
    {
        ASSERT_TRUE(mArchive.writeImage(name, image));
    }

    /** What the full-screen switch does to resources. */
    void loseAndRestore()
    {
        mDisplay.disposeResources();
        mDisplay.restoreResources();
    }

    TemporaryFolder mFolder;
    am::ArchiveManager mArchive;
};

} // namespace zavex::test
