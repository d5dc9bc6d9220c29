#include "display/dis_fbo.h"
#include "display/dis_glinclude.h"
#include "gl_assets.h"

#include <gtest/gtest.h>

#include <array>

namespace zavex::test {

using display::DisplayObsolete;
using display::FBO;
using display::Texture;

namespace {

class RenderTargets : public AssetsTest {
protected:
    Texture* createColour(int width, int height)
    {
        Texture::TextureDeclaration declaration;
        declaration.width = width;
        declaration.height = height;
        declaration.useMipmaps = false;
        return mDisplay.createTexture(declaration);
    }

    /** A target that owns its only colour texture. */
    FBO* createTarget(int width, int height, bool renderZ)
    {
        FBO* const target = mDisplay.createFBO(width, height, renderZ);
        Texture* const colour = createColour(width, height);
        target->attach(FBO::COLOR0, colour);
        colour->destroy();
        return target;
    }

    static std::array<GLint, 4> viewport()
    {
        std::array<GLint, 4> box{};
        glGetIntegerv(GL_VIEWPORT, box.data());
        return box;
    }
};

void drawSquareAt(float z, float grey)
{
    DisplayObsolete::setColor(grey);
    DisplayObsolete::drawBox(0.0f, 0.0f, z, 1.0f, 1.0f, z);
}

} // namespace

TEST_F(RenderTargets, WhatIsDrawnIntoATargetIsItsTexture)
{
    Texture* const colour = createColour(32, 32);
    FBO* const target = mDisplay.createFBO(32, 32, false);
    target->attach(FBO::COLOR0, colour);
    EXPECT_EQ(target->getWidth(), 32);
    EXPECT_EQ(target->getHeight(), 32);
    const Picture picture = pictureOf([&] {
        DisplayObsolete::clear({0.0f, 0.0f, 1.0f, 1.0f}, 1.0f);
        mDisplay.setFBO(target);
        EXPECT_EQ(viewport(), (std::array<GLint, 4>{0, 0, 32, 32}));
        DisplayObsolete::clear({1.0f, 0.0f, 0.0f, 1.0f}, 1.0f);
        mDisplay.setFBO(nullptr);
        EXPECT_EQ(viewport(), (std::array<GLint, 4>{0, 0, 64, 48}));
    });
    EXPECT_EQ(pixelAt(picture, 10, 10), 0x0000ffu) << "the window is left alone";

    const Picture shown = pictureOf([&] {
        mDisplay.setTexture(colour, 0);
        drawTextured();
    });
    EXPECT_EQ(pixelAt(shown, 10, 10), 0xff0000u);

    loseAndRestore();
    EXPECT_FALSE(target->isDisposed());
    drawFrame(mDisplay, [&] {
        mDisplay.setFBO(target);
        DisplayObsolete::clear({0.0f, 1.0f, 0.0f, 1.0f}, 1.0f);
    });
    const Picture restored = pictureOf([&] {
        mDisplay.setTexture(colour, 0);
        drawTextured();
    });
    EXPECT_EQ(pixelAt(restored, 10, 10), 0x00ff00u);
    target->destroy();
    colour->destroy();
}

TEST_F(RenderTargets, LeavingATargetOpensTheWholeWindowEvenWhenLetterboxed)
{
    FBO* const target = createTarget(16, 16, false);
    mDisplay.setActiveResolution(32, 24);
    drawFrame(mDisplay, [&] {
        EXPECT_EQ(viewport(), (std::array<GLint, 4>{16, 12, 32, 24}));
        mDisplay.setFBO(target);
        mDisplay.setFBO(nullptr);
        EXPECT_EQ(viewport(), (std::array<GLint, 4>{0, 0, 64, 48}));
    });
    target->destroy();
}

TEST_F(RenderTargets, ATextureOfAnotherSizeIsRefusedAtTheFirstUse)
{
    FBO* const target = mDisplay.createFBO(256, 256, false);
    Texture* const colour = createColour(256, 128);
    target->attach(FBO::COLOR0, colour);
    EXPECT_EQ(thrownMessage([&] { mDisplay.setFBO(target); }),
              "FBO_GL::restoreResource; Texture dimension doesn't match FBO dimensions!");
    EXPECT_TRUE(target->isDisposed());
    EXPECT_TRUE(mDisplay.update()) << "the window is drawn into as before";
    target->destroy();
    colour->destroy();
}

TEST_F(RenderTargets, OnlyATargetWithDepthTestsDepth)
{
    for (const bool renderZ : {true, false}) {
        FBO* const target = createTarget(8, 8, renderZ);
        drawFrame(mDisplay, [&] {
            mDisplay.setFBO(target);
            DisplayObsolete::setProject(0.0f, 1.0f, 0.0f, 1.0f);
            DisplayObsolete::setDepthTest(true);
            DisplayObsolete::clear({0.0f, 0.0f, 0.0f, 1.0f}, 1.0f);
            drawSquareAt(-0.5f, 1.0f);
            drawSquareAt(0.5f, 0.0f);
            DisplayObsolete::flush();
            std::array<std::uint8_t, 4> pixel{};
            glReadPixels(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
            EXPECT_EQ(pixel[0], renderZ ? 255 : 0) << renderZ;
        });
        target->destroy();
    }
}

TEST_F(RenderTargets, ATargetHoldsItsTexturesAndLetsGoOfThem)
{
    Texture* const colour = createColour(8, 8);
    FBO* const target = mDisplay.createFBO(8, 8, false);
    target->attach(FBO::COLOR0, colour);
    EXPECT_EQ(colour->getRef(), 2);
    target->destroy();
    EXPECT_EQ(colour->getRef(), 1);
    colour->destroy();
}

TEST_F(RenderTargets, CallerErrorsAreNamed)
{
    EXPECT_EQ(thrownMessage([&] { mDisplay.createFBO(0, 8, false); }), "width!=0");
    EXPECT_EQ(thrownMessage([&] { mDisplay.createFBO(8, 0, false); }), "height!=0");
    FBO* const target = mDisplay.createFBO(8, 8, false);
    EXPECT_EQ(thrownMessage([&] { target->attach(FBO::COLOR0, nullptr); }), "texture!=0");
    target->destroy();
}

TEST_F(RenderTargets, AnIncompleteTargetSaysSoAndDrawingGoesOn)
{
    FBO* const target = mDisplay.createFBO(8, 8, false);
    testing::internal::CaptureStdout();
    EXPECT_NO_THROW(mDisplay.setFBO(target));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Framebuffer incomplete, missing attachment\n");
    EXPECT_NO_THROW(mDisplay.setFBO(nullptr));
    EXPECT_TRUE(mDisplay.update());
    target->destroy();
}

} // namespace zavex::test
