#include "display/dis_fbo.h"
#include "display/dis_shader.h"
#include "display/dis_texture_gl.h"
#include "gl_assets.h"

#include <GLFW/glfw3.h>

#include <set>
#include <utility>

namespace zavex::display {
namespace {

using T = Texture;
using Declaration = Texture::TextureDeclaration;

constexpr std::uint32_t RED = 0xffff0000;
constexpr std::uint32_t GREEN = 0xff00ff00;
constexpr std::uint32_t BLUE = 0xff0000ff;
constexpr std::uint32_t WHITE = 0xffffffff;

am::Image corners()
{
    return imageOf(2, 2, {RED, GREEN, BLUE, WHITE});
}

Declaration declared(T::Channels channels, T::ChannelFormat format)
{
    Declaration declaration = sized(4, 4);
    declaration.channelType = channels;
    declaration.channelFormat = format;
    return declaration;
}

class Textures : public DisplayTest {
protected:
    /** Width and height that the driver reports of level 0 of a texture that is built. */
    static std::pair<GLint, GLint> levelSize(Texture* texture)
    {
        std::pair<GLint, GLint> size;
        static_cast<Texture_GL*>(texture)->bind();
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &size.first);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &size.second);
        static_cast<Texture_GL*>(texture)->unbind();
        return size;
    }

    /** What is said when a texture is used. */
    std::string refusal(Texture* texture)
    {
        return thrownMessage([&] { mDisplay.setTexture(texture, 0); });
    }

    am::Image mCorners = corners();
};

TEST_F(Textures, TheTopRowOfAPictureIsTheFirstRowOfItsTexture)
{
    Declaration declaration = sized(-1, -1);
    declaration.repeatMode = 0;
    Texture* const texture = mDisplay.createTexture(mCorners, declaration);
    EXPECT_TRUE(texture->isDisposed());
    const Picture picture = shown(texture);
    EXPECT_FALSE(texture->isDisposed());
    EXPECT_EQ(pixelAt(picture, 2, 2), RED & 0xffffff);
    EXPECT_EQ(pixelAt(picture, 61, 2), GREEN & 0xffffff);
    EXPECT_EQ(pixelAt(picture, 2, 45), BLUE & 0xffffff);
    EXPECT_EQ(pixelAt(picture, 61, 45), WHITE & 0xffffff);
}

TEST_F(Textures, TheSameNameAndDeclarationGiveTheSameTexture)
{
    const Declaration plain = sized(-1, -1);
    Texture* const first = mDisplay.createTexture("x.png", false);
    EXPECT_EQ(mDisplay.createTexture("x.png", false), first);
    EXPECT_EQ(first->getRef(), 2);
    Texture* const other = mDisplay.createTexture("x.png", plain, false);
    EXPECT_NE(other, first);
    EXPECT_NE(mDisplay.createTexture("y.png", false), first);
    Texture* const unique = mDisplay.createTexture("x.png", true);
    EXPECT_NE(unique, first);
    EXPECT_EQ(first->getRef(), 2);
    first->destroy();
    EXPECT_EQ(first->getRef(), 1);
    first->destroy();
    unique->destroy();
    EXPECT_EQ(mDisplay.createTexture("x.png", false)->getRef(), 1);
    EXPECT_EQ(mDisplay.createTexture("x.png", plain, false), other) << "still cached";
}

TEST_F(Textures, ChannelsAreBoundIndependentlyAndFreedWithTheirTexture)
{
    am::Image red = imageOf(1, 1, {RED});
    Texture* const first = mDisplay.createTexture(red, sized(1, 1));
    Texture* const second = mDisplay.createTexture(mCorners, sized(2, 2));
    const auto boundTo = [](int channel) {
        const auto active = static_cast<GLenum>(stateOf(GL_ACTIVE_TEXTURE));
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(channel));
        const GLint name = stateOf(GL_TEXTURE_BINDING_2D);
        glActiveTexture(active);
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
    const Picture picture = pictureOf([&] {
        EXPECT_EQ(boundTo(0), 0);
        mDisplay.setTexture(first, 0);
        Draw::setProject(0.0f, 1.0f, 0.0f, 1.0f);
        Draw::setTexturing(true);
        Draw::drawBox(0.0f, 0.0f, 1.0f, 1.0f, Draw::SOLID);
        first->destroy();
        EXPECT_EQ(boundTo(0), 0);
    });
    EXPECT_EQ(pixelAt(picture, 2, 2), RED & 0xffffff) << "what was drawn before is there";
}

TEST_F(Textures, RestoredOnesLookTheSame)
{
    ASSERT_TRUE(mArchive.writeImage("corners.png", mCorners));
    Texture* const fromFile = mDisplay.createTexture("corners.png", sized(2, 2), false);
    Texture* const fromImage = mDisplay.createTexture(mCorners, sized(2, 2));
    const Picture before = shown(fromFile);
    const auto expectSame = [&] {
        EXPECT_FALSE(fromFile->isDisposed());
        EXPECT_TRUE(isSamePicture(shown(fromFile), before, {}));
        EXPECT_TRUE(isSamePicture(shown(fromImage), before, {}));
    };
    expectSame();
    mDisplay.disposeResources();
    EXPECT_TRUE(fromFile->isDisposed() && fromImage->isDisposed());
    mDisplay.restoreResources();
    EXPECT_FALSE(fromImage->isDisposed());
    expectSame();

    mDisplay.onKey(GLFW_KEY_RIGHT_ALT, GLFW_PRESS);
    for (const bool isFull : {true, false}) {
        mDisplay.onKey(GLFW_KEY_ENTER, GLFW_PRESS);
        EXPECT_EQ(mDisplay.getWindowMode().fullscreen, !isFull);
        mDisplay.onKey(GLFW_KEY_ENTER, GLFW_RELEASE);
        EXPECT_EQ(mDisplay.getWindowMode().fullscreen, isFull);
        EXPECT_TRUE(mDisplay.update());
    }
    EXPECT_EQ(countLogged("log", "DisplayGLFW - ALT+ENTER"), 2);
    expectSame();

    std::filesystem::remove(mFolder.path("corners.png"));
    mDisplay.disposeResources();
    EXPECT_TRUE(thrownMessage([&] {
                    mDisplay.restoreResources();
                }).starts_with("Display::Resource; Could"));
}

TEST_F(Textures, OnlyADeclaredSizeRescalesThePicture)
{
    am::Image stripe = imageOf(3, 1, {RED, GREEN, BLUE});
    Texture* const asItIs = mDisplay.createTexture(stripe, sized(-1, -1));
    shown(asItIs);
    EXPECT_EQ(levelSize(asItIs), std::pair(3, 1));
    EXPECT_EQ(countLogged("warning", "rescaling"), 0);
    Texture* const texture = mDisplay.createTexture(mCorners, sized(8, 4));
    shown(texture);
    EXPECT_EQ(levelSize(texture), std::pair(8, 4));
    EXPECT_EQ(countLogged("warning", "Warning: Manually rescaling picture ''!"), 1);
}

TEST_F(Textures, MipmapsFollowWhatIsDrawnIntoLevelZero)
{
    Declaration declaration = sized(64, 64);
    declaration.useMipmaps = true;
    Texture* const texture = mDisplay.createTexture(declaration);
    FBO* const target = mDisplay.createFBO(64, 64, false);
    target->attach(FBO::COLOR0, texture);
    drawFrame(mDisplay, [&] {
        mDisplay.setFBO(target);
        Draw::clear({0.0f, 1.0f, 0.0f, 1.0f}, 1.0f);
        mDisplay.setFBO(nullptr);
        texture->updateMipmaps();
        static_cast<Texture_GL*>(texture)->bind();
        std::uint8_t smallest[4] = {};
        glGetTexImage(GL_TEXTURE_2D, 6, GL_RGBA, GL_UNSIGNED_BYTE, smallest);
        static_cast<Texture_GL*>(texture)->unbind();
        EXPECT_EQ(smallest[0], 0);
        EXPECT_EQ(smallest[1], 255);
    });
}

TEST_F(Textures, EveryFormatOfTheTableCanBeBuilt)
{
    const auto expectBuilt = [this](T::Channels channels, T::ChannelFormat format) {
        Texture* const texture = mDisplay.createTexture(declared(channels, format));
        EXPECT_EQ(refusal(texture), "nothing was thrown") << channels << " " << format;
    };
    for (const auto channels : {T::CHAN_RGB, T::CHAN_RGBA, T::CHAN_LA})
        for (const auto format :
             {T::FORMAT_UINT8, T::FORMAT_UINT16, T::FORMAT_F16, T::FORMAT_F32, T::FORMAT_HDR})
            expectBuilt(channels, format);
    for (const auto format : {T::FORMAT_UINT16, T::FORMAT_UINT24, T::FORMAT_UINT32})
        expectBuilt(T::CHAN_DEPTH, format);
}

TEST_F(Textures, MissingFilesAndArchivesAreNamedAtTheFirstUse)
{
    const std::string start = "Display::Resource; ";
    Texture* const texture = mDisplay.createTexture("absent.png", false);
    EXPECT_EQ(refusal(texture), start + "Could not read (or decode) image 'absent.png' "
                                        "(am msg was 'loadImage, File not found (absent.png)')");
    EXPECT_EQ(countLogged("log", mFolder.path("")), 1);
    mFolder.write("broken.png", "no picture");
    EXPECT_NE(refusal(mDisplay.createTexture("broken.png", false)).find("Not a png-file"),
              std::string::npos);
    // A picture in memory is decoded by its name, and cached by it.
    const auto load = [&](const char* name, std::string_view bytes) {
        return texture->loadImage(name, reinterpret_cast<const unsigned char*>(bytes.data()),
                                  bytes.size());
    };
    ASSERT_TRUE(mArchive.writeImage("corners.png", mCorners));
    const std::string png = mFolder.read("corners.png");
    const am::Image image = load("inner.png", png);
    EXPECT_EQ(image->getWidth(), 2);
    EXPECT_EQ(load("inner.png", "")->getData(), image->getData());
    EXPECT_TRUE(thrownMessage([&] {
                    load("inner.xyz", png);
                }).starts_with(start + "Could not read (or decode) image 'inner.xyz'"));
    mDisplay.setArchive(nullptr);
    EXPECT_EQ(refusal(texture), start + "This resource can not load files (when loading image "
                                        "'absent.png')");
    EXPECT_EQ(countLogged("info", "Assigning archive "), 2);
}

TEST(TexturesOnAnOldDriver, AreRoundedUpOrRefused)
{
    OldDisplay display{
        {"GL_ARB_texture_non_power_of_two", "GL_ARB_texture_float"}
    };
    display.open(smallMode());
    test::clearLog();
    const auto refusal = [&](Texture* texture) {
        return thrownMessage([&] { display.setTexture(texture, 0); });
    };
    am::Image image = imageOf(300, 200, std::vector<std::uint32_t>(300 * 200, GREEN));
    Texture* const texture = display.createTexture(image, sized(-1, -1));
    EXPECT_EQ(refusal(texture), "nothing was thrown");
    EXPECT_EQ(texture->getDeclaration().width, 512);
    EXPECT_EQ(texture->getDeclaration().height, 256);
    EXPECT_EQ(countLogged("warning", "Warning: Manually rescaling picture"), 1);
    std::vector<std::uint32_t> texels(512 * 256);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_BGRA, GL_UNSIGNED_BYTE, texels.data());
    EXPECT_EQ(texels.front(), GREEN);
    EXPECT_EQ(texels.back(), GREEN);
    EXPECT_EQ(refusal(display.createTexture(sized(300, 256))),
              "OpenGL does not support non-power-of-2-textures on this computer!");
    EXPECT_EQ(refusal(display.createTexture(declared(T::CHAN_RGB, T::FORMAT_F16))),
              "OpenGL does not support float-textures on this computer!");
}

TEST(ResourcesAtTheEnd, AreCountedAndDeleted)
{
    test::clearLog();
    am::Image image = corners();
    {
        DisplayGLFW display;
        display.open(smallMode());
        Texture* const texture = display.createTexture(image, Declaration{});
        drawFrame(display, [&] { display.setTexture(texture, 0); });
        display.createTexture("x.png", false);
        display.createTexture("x.png", false);
        display.createShader("a.vert", "a.frag", nullptr);
        display.createFBO(4, 4, true)->attach(FBO::COLOR0, display.createTexture(sized(4, 4)));
        display.createTexture("y.png", false)->destroy();
    }
    EXPECT_EQ(
        countLogged("log", "When destructing glfw-display, there was 7 resources not destroyed."),
        1);
    test::clearLog();
    DisplayGLFW().open(smallMode());
    EXPECT_EQ(countLogged("log", "When destructing"), 0);
}

} // namespace
} // namespace zavex::display
