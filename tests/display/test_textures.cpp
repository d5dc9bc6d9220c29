#include "display/dis_fbo.h"
#include "display/dis_glinclude.h"
#include "display/dis_shader.h"
#include "display/dis_texture_gl.h"
#include "gl_assets.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <utility>

namespace zavex::test {

using display::DisplayGLFW;
using display::Texture;
using Declaration = Texture::TextureDeclaration;

namespace {

constexpr std::uint32_t RED = 0xffff0000;
constexpr std::uint32_t GREEN = 0xff00ff00;
constexpr std::uint32_t BLUE = 0xff0000ff;
constexpr std::uint32_t WHITE = 0xffffffff;

class Textures : public AssetsTest {
protected:
    /** The window filled with a texture. */
    Picture shown(Texture* texture)
    {
        return pictureOf([&] {
            mDisplay.setTexture(texture, 0);
            drawTextured();
        });
    }

    /** A size that the driver reports of level 0 of a texture that is built. */
    static GLint levelSize(Texture* texture, GLenum parameter)
    {
        GLint size = 0;
        static_cast<display::Texture_GL*>(texture)->bind();
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, parameter, &size);
        static_cast<display::Texture_GL*>(texture)->unbind();
        return size;
    }

    static Declaration sized(int width, int height)
    {
        Declaration declaration;
        declaration.width = width;
        declaration.height = height;
        declaration.useMipmaps = false;
        return declaration;
    }

    am::Image mCorners = imageOf(2, 2, {RED, GREEN, BLUE, WHITE});
};

/** A driver that lacks some extensions. */
class OldDriver : public DisplayGLFW {
public:
    explicit OldDriver(std::set<std::string> missing) : mMissing{std::move(missing)}
    {
        open(smallMode());
    }

    bool hasExtension(const std::string& name) const override
    {
        return !mMissing.contains(name) && DisplayGLFW::hasExtension(name);
    }

private:
    std::set<std::string> mMissing;
};

} // namespace

TEST_F(Textures, TheTopRowOfAPictureIsTheFirstRowOfItsTexture)
{
    Declaration declaration;
    declaration.useMipmaps = false;
    declaration.repeatMode = 0;
    Texture* const texture = mDisplay.createTexture(mCorners, declaration);
    EXPECT_TRUE(texture->isDisposed());
    const Picture picture = shown(texture);
    EXPECT_FALSE(texture->isDisposed());
    EXPECT_EQ(pixelAt(picture, 2, 2), RED & 0xffffff);
    EXPECT_EQ(pixelAt(picture, 61, 2), GREEN & 0xffffff);
    EXPECT_EQ(pixelAt(picture, 2, 45), BLUE & 0xffffff);
    EXPECT_EQ(pixelAt(picture, 61, 45), WHITE & 0xffffff);
    texture->destroy();
}

TEST_F(Textures, TheSameNameAndDeclarationGiveTheSameTexture)
{
    Declaration plain;
    plain.useMipmaps = false;
    Texture* const first = mDisplay.createTexture("x.png", false);
    EXPECT_EQ(mDisplay.createTexture("x.png", false), first);
    EXPECT_EQ(first->getRef(), 2);

    Texture* const other = mDisplay.createTexture("x.png", plain, false);
    EXPECT_NE(other, first);
    EXPECT_NE(mDisplay.createTexture("y.png", false), first);
    Texture* const unique = mDisplay.createTexture("x.png", true);
    EXPECT_NE(unique, first);
    EXPECT_EQ(first->getRef(), 2);

    clearLog();
    first->destroy();
    EXPECT_EQ(first->getRef(), 1);
    first->destroy();
    unique->destroy();
    Texture* const later = mDisplay.createTexture("x.png", false);
    EXPECT_EQ(later->getRef(), 1);
    EXPECT_EQ(mDisplay.createTexture("x.png", plain, false), other) << "still cached";
}

TEST_F(Textures, DestroyingABoundTextureUnbindsIt)
{
    am::Image red = imageOf(1, 1, {RED});
    Texture* const texture = mDisplay.createTexture(red, sized(1, 1));
    const Picture picture = pictureOf([&] {
        mDisplay.setTexture(texture, 0);
        drawTextured();
        texture->destroy();
        GLint bound = -1;
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
        EXPECT_EQ(bound, 0);
    });
    EXPECT_EQ(pixelAt(picture, 2, 2), RED & 0xffffff) << "what was drawn before is there";
}

TEST_F(Textures, ChannelsAreBoundIndependently)
{
    Texture* const first = mDisplay.createTexture(mCorners, sized(2, 2));
    Texture* const second = mDisplay.createTexture(mCorners, sized(2, 2));
    const auto boundTo = [](int channel) {
        GLint name = -1;
        GLint active = 0;
        glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(channel));
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
        glActiveTexture(static_cast<GLenum>(active));
        return name;
    };
    drawFrame(mDisplay, [&] {
        mDisplay.setTexture(first, 0);
        mDisplay.setTexture(second, 7);
        EXPECT_NE(boundTo(0), 0);
        EXPECT_NE(boundTo(7), 0);
        EXPECT_NE(boundTo(0), boundTo(7));
        mDisplay.setTexture(nullptr, 7);
        EXPECT_EQ(boundTo(7), 0);
        EXPECT_NE(boundTo(0), 0);
    });
    drawFrame(mDisplay, [&] { EXPECT_EQ(boundTo(0), 0); });
    EXPECT_EQ(thrownMessage([&] { mDisplay.setTexture(first, 8); }), "channel>=0 && channel<8");
    first->destroy();
    second->destroy();
}

TEST_F(Textures, RestoredOnesLookTheSame)
{
    writeImage("corners.png", mCorners);
    Texture* const fromFile = mDisplay.createTexture("corners.png", sized(2, 2), false);
    Texture* const fromImage = mDisplay.createTexture(mCorners, sized(2, 2));
    const Picture before = shown(fromFile);
    EXPECT_TRUE(isSamePicture(shown(fromImage), before, {0.0, 0}));

    mDisplay.disposeResources();
    EXPECT_TRUE(fromFile->isDisposed() && fromImage->isDisposed());
    mDisplay.restoreResources();
    EXPECT_FALSE(fromFile->isDisposed() || fromImage->isDisposed());
    EXPECT_TRUE(isSamePicture(shown(fromFile), before, {0.0, 0}));
    EXPECT_TRUE(isSamePicture(shown(fromImage), before, {0.0, 0}));

    mDisplay.onKey(GLFW_KEY_RIGHT_ALT, GLFW_PRESS);
    mDisplay.onKey(GLFW_KEY_ENTER, GLFW_RELEASE);
    mDisplay.onKey(GLFW_KEY_ENTER, GLFW_RELEASE);
    EXPECT_FALSE(fromFile->isDisposed() || fromImage->isDisposed());
    EXPECT_TRUE(isSamePicture(shown(fromFile), before, {0.0, 0}));

    std::filesystem::remove(mFolder.path("corners.png"));
    mDisplay.disposeResources();
    EXPECT_EQ(thrownMessage([&] { mDisplay.restoreResources(); }).find("Display::Resource; Could"),
              0u);
    fromFile->destroy();
    fromImage->destroy();
}

TEST_F(Textures, OnlyADeclaredSizeRescalesThePicture)
{
    am::Image stripe = imageOf(3, 1, {RED, GREEN, BLUE});
    Texture* const asItIs = mDisplay.createTexture(stripe, sized(-1, -1));
    shown(asItIs);
    EXPECT_EQ(levelSize(asItIs, GL_TEXTURE_WIDTH), 3);
    EXPECT_EQ(levelSize(asItIs, GL_TEXTURE_HEIGHT), 1);
    EXPECT_EQ(countLogged("warning", "rescaling"), 0);
    asItIs->destroy();

    Texture* const texture = mDisplay.createTexture(mCorners, sized(8, 4));
    shown(texture);
    EXPECT_EQ(levelSize(texture, GL_TEXTURE_WIDTH), 8);
    EXPECT_EQ(levelSize(texture, GL_TEXTURE_HEIGHT), 4);
    EXPECT_EQ(countLogged("warning", "Warning: Manually rescaling picture ''!"), 1);
    texture->destroy();
}

TEST_F(Textures, MipmapsFollowWhatIsDrawnIntoLevelZero)
{
    Declaration declaration = sized(64, 64);
    declaration.useMipmaps = true;
    Texture* const texture = mDisplay.createTexture(declaration);
    display::FBO* const target = mDisplay.createFBO(64, 64, false);
    target->attach(display::FBO::COLOR0, texture);
    drawFrame(mDisplay, [&] {
        mDisplay.setFBO(target);
        display::DisplayObsolete::clear({0.0f, 1.0f, 0.0f, 1.0f}, 1.0f);
        mDisplay.setFBO(nullptr);
        texture->updateMipmaps();
        static_cast<display::Texture_GL*>(texture)->bind();
        std::uint8_t smallest[4] = {};
        glGetTexImage(GL_TEXTURE_2D, 6, GL_RGBA, GL_UNSIGNED_BYTE, smallest);
        static_cast<display::Texture_GL*>(texture)->unbind();
        EXPECT_EQ(smallest[0], 0);
        EXPECT_EQ(smallest[1], 255);
    });
    target->destroy();

    Texture* const plain = mDisplay.createTexture(sized(4, 4));
    EXPECT_EQ(thrownMessage([&] { plain->updateMipmaps(); }), "!mDisposed");
    shown(plain);
    EXPECT_EQ(thrownMessage([&] { plain->updateMipmaps(); }), "mDecl.useMipmaps");
    plain->destroy();
    texture->destroy();
}

constexpr Declaration declared(int width, Texture::Channels channels, Texture::ChannelFormat format,
                               Texture::Target target = Texture::TARGET_2D)
{
    Declaration declaration;
    declaration.width = width;
    declaration.height = 4;
    declaration.channelType = channels;
    declaration.channelFormat = format;
    declaration.target = target;
    return declaration;
}

TEST_F(Textures, WhatCannotBeBuiltIsRefusedByName)
{
    using T = Texture;
    const auto refusal = [this](const Declaration& declaration) {
        return thrownMessage([&] { mDisplay.setTexture(mDisplay.createTexture(declaration), 0); });
    };
    for (const auto& [channels, format] :
         {std::pair(T::CHAN_ALPHA, T::FORMAT_UINT8), std::pair(T::CHAN_RGB, T::FORMAT_UINT24),
          std::pair(T::CHAN_DEPTH, T::FORMAT_UINT8), std::pair(T::CHAN_DEPTH, T::FORMAT_HDR)})
        EXPECT_EQ(refusal(declared(4, channels, format)), "Unknown mFormatGL for texture")
            << channels;
    EXPECT_EQ(refusal(declared(-1, T::CHAN_RGB, T::FORMAT_UINT8)),
              "mDecl.width!=-1 && mDecl.height!=-1");
    EXPECT_EQ(refusal(declared(0, T::CHAN_RGB, T::FORMAT_UINT8)),
              "Texture_GL; Can not create a texture of 0 x 4 texels");
    EXPECT_EQ(refusal(declared(4, T::CHAN_RGB, T::FORMAT_UINT8, T::TARGET_CUBE)),
              "mDecl.target!=Texture::TARGET_CUBE");
    EXPECT_EQ(refusal(declared(4, T::CHAN_RGB, T::FORMAT_UINT8, T::TARGET_3D)),
              "mDecl.target==Texture::TARGET_2D");
}

TEST_F(Textures, EveryFormatOfTheTableCanBeBuilt)
{
    const auto build = [this](Texture::Channels channels, Texture::ChannelFormat format) {
        Declaration declaration = declared(4, channels, format);
        declaration.useMipmaps = false;
        Texture* const texture = mDisplay.createTexture(declaration);
        EXPECT_NO_THROW(mDisplay.setTexture(texture, 0)) << channels << " " << format;
        texture->destroy();
    };
    using T = Texture;
    for (const auto channels : {T::CHAN_RGB, T::CHAN_RGBA, T::CHAN_LA})
        for (const auto format :
             {T::FORMAT_UINT8, T::FORMAT_UINT16, T::FORMAT_F16, T::FORMAT_F32, T::FORMAT_HDR})
            build(channels, format);
    for (const auto format : {T::FORMAT_UINT16, T::FORMAT_UINT24, T::FORMAT_UINT32})
        build(T::CHAN_DEPTH, format);
}

TEST_F(Textures, MissingFilesAndArchivesAreNamedAtTheFirstUse)
{
    Texture* const texture = mDisplay.createTexture("absent.png", false);
    EXPECT_EQ(thrownMessage([&] { mDisplay.setTexture(texture, 0); }),
              "Display::Resource; Could not read (or decode) image 'absent.png' "
              "(am msg was 'loadImage, File not found (absent.png)')");
    EXPECT_EQ(countLogged("log", mFolder.path("")), 1);

    mFolder.write("broken.png", "no picture");
    Texture* const broken = mDisplay.createTexture("broken.png", false);
    EXPECT_NE(thrownMessage([&] { mDisplay.setTexture(broken, 0); }).find("Not a png-file"),
              std::string::npos);

    mDisplay.setArchive(nullptr);
    EXPECT_EQ(thrownMessage([&] { mDisplay.setTexture(texture, 0); }),
              "Display::Resource; This resource can not load files (when loading image "
              "'absent.png')");
    EXPECT_EQ(countLogged("info", "Assigning archive "), 2);
}

TEST_F(Textures, PicturesInMemoryAreDecodedByTheirName)
{
    writeImage("corners.png", mCorners);
    const am::File file = mArchive.readFile("corners.png", -1);
    Texture* const resource = mDisplay.createTexture(sized(2, 2));
    const auto* const bytes = reinterpret_cast<const unsigned char*>(file->data);
    const am::Image image =
        resource->loadImage("inner.png", bytes, static_cast<std::size_t>(file->length));
    EXPECT_EQ(image->getWidth(), 2);
    EXPECT_EQ(resource->loadImage("inner.png", bytes, 0)->getData(), image->getData()) << "cached";
    EXPECT_EQ(thrownMessage([&] {
                  resource->loadImage("inner.xyz", bytes, 4);
              }).find("Display::Resource; Could not read (or decode) image 'inner.xyz'"),
              0u);
    resource->destroy();
}

TEST(TexturesOnAnOldDriver, UnusualSizesAreRoundedUpOrRefused)
{
    clearLog();
    OldDriver display{{"GL_ARB_texture_non_power_of_two"}};
    am::Image image = imageOf(300, 200, std::vector<std::uint32_t>(300 * 200, GREEN));
    Declaration declaration;
    declaration.useMipmaps = false;
    Texture* const texture = display.createTexture(image, declaration);
    const Picture picture = pictureOf(display, [&] {
        display.setTexture(texture, 0);
        drawTextured();
    });
    EXPECT_EQ(texture->getDeclaration().width, 512);
    EXPECT_EQ(texture->getDeclaration().height, 256);
    EXPECT_EQ(countLogged("warning", "Warning: Manually rescaling picture"), 1);
    EXPECT_EQ(pixelAt(picture, 32, 24), GREEN & 0xffffff);

    declaration.width = 300;
    declaration.height = 200;
    Texture* const empty = display.createTexture(declaration);
    EXPECT_EQ(thrownMessage([&] { display.setTexture(empty, 0); }),
              "OpenGL does not support non-power-of-2-textures on this computer!");
    texture->destroy();
    empty->destroy();
}

TEST(TexturesOnAnOldDriver, FloatFormatsAreRefused)
{
    OldDriver display{{"GL_ARB_texture_float"}};
    Texture* const texture =
        display.createTexture(declared(4, Texture::CHAN_RGB, Texture::FORMAT_F16));
    EXPECT_EQ(thrownMessage([&] { display.setTexture(texture, 0); }),
              "OpenGL does not support float-textures on this computer!");
    texture->destroy();
}

TEST(ResourcesAtTheEnd, AreCountedAndDeleted)
{
    clearLog();
    am::Image image = imageOf(2, 2, {RED, GREEN, BLUE, WHITE});
    {
        DisplayGLFW display;
        display.open(smallMode());
        Texture* const texture = display.createTexture(image, Declaration{});
        drawFrame(display, [&] { display.setTexture(texture, 0); });
        display.createTexture("x.png", false);
        display.createTexture("x.png", false);
        display.createShader("a.vert", "a.frag", nullptr);
        Declaration declaration;
        declaration.width = declaration.height = 4;
        display.createFBO(4, 4, true)
            ->attach(display::FBO::COLOR0, display.createTexture(declaration));
    }
    EXPECT_EQ(countLogged("log", "When destructing glfw-display, there was 7 resources not "
                                 "destroyed."),
              1);
    clearLog();
    {
        DisplayGLFW display;
        display.open(smallMode());
        display.createTexture("x.png", false)->destroy();
    }
    EXPECT_EQ(countLogged("log", "When destructing"), 0);
}

} // namespace zavex::test
