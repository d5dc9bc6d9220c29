#include "display/dis_fbo.h"

#include "gl_assets.h"

#include <array>

namespace zavex::display {
namespace {

class RenderTargets : public DisplayTest {
protected:
    /** A target that owns its only colour texture. */
    FBO* createTarget(int width, int height, bool renderZ)
    {
        FBO* const target = mDisplay.createFBO(width, height, renderZ);
        Texture* const colour = mDisplay.createTexture(sized(width, height));
        target->attach(FBO::COLOR0, colour);
        colour->destroy();
        return target;
    }

    static void expectViewport(const std::array<GLint, 4>& expected)
    {
        std::array<GLint, 4> box{};
        glGetIntegerv(GL_VIEWPORT, box.data());
        EXPECT_EQ(box, expected);
    }
};

TEST_F(RenderTargets, WhatIsDrawnIntoATargetIsItsTexture)
{
    Texture* const colour = mDisplay.createTexture(sized(32, 32));
    FBO* const target = mDisplay.createFBO(32, 32, false);
    target->attach(FBO::COLOR0, colour);
    EXPECT_EQ(colour->getRef(), 2);
    EXPECT_EQ(target->getWidth(), 32);
    EXPECT_EQ(target->getHeight(), 32);
    const auto fillTarget = [&](const mathbase::Vector4f& fill) {
        mDisplay.setFBO(target);
        expectViewport({0, 0, 32, 32});
        Draw::clear(fill, 1.0f);
    };
    const Picture picture = pictureOf([&] {
        Draw::clear({0.0f, 0.0f, 1.0f, 1.0f}, 1.0f);
        fillTarget({1.0f, 0.0f, 0.0f, 1.0f});
        mDisplay.setFBO(nullptr);
        expectViewport({0, 0, 64, 48});
    });
    EXPECT_EQ(pixelAt(picture, 10, 10), 0x0000ffu) << "the window is left alone";
    EXPECT_EQ(pixelAt(shown(colour), 10, 10), 0xff0000u);

    loseAndRestore();
    EXPECT_FALSE(target->isDisposed());
    drawFrame(mDisplay, [&] { fillTarget({0.0f, 1.0f, 0.0f, 1.0f}); });
    EXPECT_EQ(pixelAt(shown(colour), 10, 10), 0x00ff00u);
    target->destroy();
    EXPECT_EQ(colour->getRef(), 1);
}

TEST_F(RenderTargets, LeavingATargetOpensTheWholeWindowEvenWhenLetterboxed)
{
    FBO* const target = createTarget(16, 16, false);
    mDisplay.setActiveResolution(32, 24);
    drawFrame(mDisplay, [&] {
        expectViewport({16, 12, 32, 24});
        mDisplay.setFBO(target);
        mDisplay.setFBO(nullptr);
        expectViewport({0, 0, 64, 48});
    });
}

TEST_F(RenderTargets, OnlyATargetWithDepthTestsDepth)
{
    for (const bool renderZ : {true, false}) {
        FBO* const target = createTarget(8, 8, renderZ);
        drawFrame(mDisplay, [&] {
            mDisplay.setFBO(target);
            Draw::setProject(0.0f, 1.0f, 0.0f, 1.0f);
            Draw::setDepthTest(true);
            Draw::clear({0.0f, 0.0f, 0.0f, 1.0f}, 1.0f);
            for (const float grey : {1.0f, 0.0f}) {
                Draw::setColor(grey);
                Draw::drawBox(0.0f, 0.0f, 0.5f - grey, 1.0f, 1.0f, 0.5f - grey);
            }
            Draw::flush();
            std::array<std::uint8_t, 4> pixel{};
            glReadPixels(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
            EXPECT_EQ(pixel[0], renderZ ? 255 : 0) << renderZ;
        });
        target->destroy();
    }
}

TEST_F(RenderTargets, DrawingGoesOnAfterOneThatIsRefusedOrIncomplete)
{
    FBO* const refused = mDisplay.createFBO(8, 4, false);
    refused->attach(FBO::COLOR0, mDisplay.createTexture(sized(8, 8)));
    EXPECT_THROW(mDisplay.setFBO(refused), Exception);
    EXPECT_TRUE(refused->isDisposed());
    EXPECT_EQ(stateOf(GL_FRAMEBUFFER_BINDING), 0) << "the window is drawn into as before";
    EXPECT_TRUE(mDisplay.update());

    FBO* const incomplete = mDisplay.createFBO(8, 8, false);
    testing::internal::CaptureStdout();
    EXPECT_NO_THROW(mDisplay.setFBO(incomplete));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Framebuffer incomplete, missing attachment\n");
    EXPECT_NO_THROW(mDisplay.setFBO(nullptr));
    EXPECT_TRUE(mDisplay.update());
}

} // namespace
} // namespace zavex::display
