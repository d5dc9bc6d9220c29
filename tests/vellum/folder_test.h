#pragma once

#include "am/am.h"
#include "am/am_image.h"
#include "support/gl_display.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::vellum::test {

/** A window of 64 x 48 pixels whose files lie in a folder of the test's own. */
class FolderTest : public zavex::test::GlDisplayTest {
protected:
    FolderTest()
    {
        mArchive.addArchive(mFolder.path(""));
        mDisplay.setArchive(&mArchive);
    }

    /** @param colorAt  Gives the colour of the pixel (x, y) as 0xAARRGGBB. */
    template <typename ColorAt>
    void writePicture(const std::string& name, int width, int height, ColorAt colorAt)
    {
        am::Image picture(new am::ImageObject());
        picture->resize(width, height);
        unsigned char* byte = picture->getWriteData();
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (int shift = 0; shift < 32; shift += 8)
                    *byte++ = static_cast<unsigned char>(colorAt(x, y) >> shift);
        ASSERT_TRUE(mArchive.writeImage(name, picture));
    }

    zavex::test::TemporaryFolder mFolder;
    am::ArchiveManager mArchive;
};

} // namespace zavex::vellum::test
