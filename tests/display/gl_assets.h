#pragma once

#include "am/am.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"
#include "display/dis_texture.h"
#include "support/gl_display.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zavex::display {

using test::countLogged;
using test::drawFrame;
using test::isSamePicture;
using test::Picture;
using test::pixelAt;
using test::smallMode;
using test::thrownMessage;
using Draw = DisplayObsolete;

/** A picture of the given pixels, 0xAARRGGBB, top row first. */
inline am::Image imageOf(int width, int height, const std::vector<std::uint32_t>& pixels)
{
    auto bytes = std::make_unique<unsigned char[]>(pixels.size() * 4);
    for (std::size_t i = 0; i < pixels.size() * 4; ++i)
        bytes[i] = static_cast<unsigned char>(pixels[i / 4] >> (8 * (i % 4)));
    return am::Image(new am::ImageObject(width, height, std::move(bytes), nullptr, ""));
}

/** A texture of that size without mipmaps. */
inline Texture::TextureDeclaration sized(int width, int height)
{
    Texture::TextureDeclaration declaration;
    declaration.width = width;
    declaration.height = height;
    declaration.useMipmaps = false;
    return declaration;
}

inline GLint stateOf(GLenum name)
{
    GLint value = -1;
    glGetIntegerv(name, &value);
    return value;
}

/** A display whose driver lacks some extensions. */
class OldDisplay : public DisplayGLFW {
public:
    explicit OldDisplay(std::set<std::string> lacking) : mLacking(std::move(lacking)) {}
    bool hasExtension(const std::string& name) const override
    {
        return !mLacking.contains(name) && DisplayGLFW::hasExtension(name);
    }

private:
    std::set<std::string> mLacking;
};

/** A small window whose display loads from a folder of its own. */
class DisplayTest : public test::GlDisplayTest {
protected:
    explicit DisplayTest(int width = 64, int height = 48) : GlDisplayTest(width, height)
    {
        mArchive.addArchive(mFolder.path(""));
        mDisplay.setArchive(&mArchive);
    }

    /** What the full-screen switch does to resources. */
    void loseAndRestore()
    {
        mDisplay.disposeResources();
        mDisplay.restoreResources();
    }

    /** The window filled with a texture, its first row at the top. */
    Picture shown(Texture* texture)
    {
        return pictureOf([&] {
            mDisplay.setTexture(texture, 0);
            Draw::setProject(0.0f, 1.0f, 1.0f, 0.0f);
            Draw::setTexturing(true);
            Draw::Vertex corners[4];
            for (int i = 0; i < 4; ++i) {
                const auto x = static_cast<float>(i == 1 || i == 2);
                const auto y = static_cast<float>(i >= 2);
                corners[i] = {
                    {x,  y, 0},
                    { x, y },
                    { 1, 1,  1,  1}
                };
            }
            Draw::drawQuad(corners);
            Draw::setTexturing(false);
        });
    }

    test::TemporaryFolder mFolder;
    am::ArchiveManager mArchive;
};

} // namespace zavex::display
