// What a caller must not do is refused by name, and leaves the display as it is.

#include "display/dis_fbo.h"
#include "display/dis_font.h"
#include "display/dis_ibo.h"
#include "display/dis_shader.h"
#include "display/dis_vbo.h"
#include "display/dis_vertexdef.h"
#include "gl_assets.h"

namespace zavex::display {
namespace {

using T = Texture;
using Mode = DisplayGL;

Texture::TextureDeclaration declared(T::Channels channels, T::ChannelFormat format, int width = 4,
                                     T::Target target = T::TARGET_2D)
{
    Texture::TextureDeclaration declaration = sized(width, 4);
    declaration.channelType = channels;
    declaration.channelFormat = format;
    declaration.target = target;
    return declaration;
}

class Misuse : public DisplayTest {
protected:
    void use(const Texture::TextureDeclaration& declaration)
    {
        mDisplay.setTexture(mDisplay.createTexture(declaration), 0);
    }

    void useTargetOfAnotherSize()
    {
        FBO* const target = mDisplay.createFBO(256, 256, false);
        target->attach(FBO::COLOR0, mDisplay.createTexture(sized(256, 128)));
        mDisplay.setFBO(target);
    }

    static am::Image imageOfSize(int width, int height)
    {
        am::Image image(new am::ImageObject);
        image->resize(width, height);
        return image;
    }

    VertexDef mFormat{8};
};

TEST_F(Misuse, IsRefusedByName)
{
    mFormat.addAttribute({0, "place", 0, Variable::TYPE_FLOAT, 2});
    VBO* const vertices = mDisplay.createVBO(12, &mFormat, Mode::MODE_STATIC);
    IBO* const indices = mDisplay.createIBO(4, IBO::FORMAT_UINT16, Mode::MODE_STREAM);
    Texture* const plain = mDisplay.createTexture(sized(4, 4));
    Texture* const built = mDisplay.createTexture(sized(4, 4));
    FBO* const target = mDisplay.createFBO(8, 8, false);
    Shader* const shader = mDisplay.createShader(nullptr);
    am::Image none;
    am::Image low = imageOfSize(64, 47);
    am::Image narrow = imageOfSize(63, 48);
    const std::uint8_t bytes[4] = {};
    const std::string range = "first>=0 && count>=0 && first+count<=mEntities";
    const std::string format = "Unknown mFormatGL for texture";
    const std::string size = "DisplayGLFW: Can not open a window of ";
    mDisplay.setTexture(built, 0);
    // clang-format off
    const struct {
        const char* name;
        std::function<void()> action;
        std::string message;
    } rows[] = {
        {"SecondDisplay", [] { const DisplayGLFW second; }, "Can not open more than one GLFW-device"},
        {"NorThird", [] { const DisplayGLFW third; }, "Can not open more than one GLFW-device"},
        {"NoListener", [&] { mDisplay.addListener(nullptr); }, "listener!=0"},
        {"NoWidth", [&] { mDisplay.open(smallMode(0, 48)); }, size + "0 x 48 pixels, both must be positive"},
        {"NoHeight", [&] { mDisplay.open(smallMode(64, 0)); }, size + "64 x 0 pixels, both must be positive"},
        {"NoImage", [&] { mDisplay.getScreenShot(none); }, "image.isNull()==false"},
        {"LowImage", [&] { mDisplay.getScreenShot(low); }, "image->getHeight()==mWindowMode.height"},
        {"NarrowImage", [&] { mDisplay.getScreenShot(narrow); }, "image->getWidth()==mWindowMode.width"},
        {"FontWithoutDisplay", [] { const Font font(nullptr); }, "display"},
        {"NoTargetWidth", [&] { mDisplay.createFBO(0, 8, false); }, "width!=0"},
        {"NoTargetHeight", [&] { mDisplay.createFBO(8, 0, false); }, "height!=0"},
        {"NoTargetTexture", [&] { target->attach(FBO::COLOR0, nullptr); }, "texture!=0"},
        {"OtherSize", [&] { useTargetOfAnotherSize(); },
         "FBO_GL::restoreResource; Texture dimension doesn't match FBO dimensions!"},
        {"NoDefinition", [&] { shader->setVertexAttrib(nullptr); }, "def!=0"},
        {"LowChannel", [&] { mDisplay.setTexture(plain, -1); }, "channel>=0 && channel<8"},
        {"HighChannel", [&] { mDisplay.setTexture(plain, 8); }, "channel>=0 && channel<8"},
        {"MipmapsTooEarly", [&] { plain->updateMipmaps(); }, "!mDisposed"},
        {"NoMipmaps", [&] { built->updateMipmaps(); }, "mDecl.useMipmaps"},
        {"Alpha", [&] { use(declared(T::CHAN_ALPHA, T::FORMAT_UINT8)); }, format},
        {"DepthsFormat", [&] { use(declared(T::CHAN_RGB, T::FORMAT_UINT24)); }, format},
        {"ByteOfDepth", [&] { use(declared(T::CHAN_DEPTH, T::FORMAT_UINT8)); }, format},
        {"HdrDepth", [&] { use(declared(T::CHAN_DEPTH, T::FORMAT_HDR)); }, format},
        {"Undeclared", [&] { use(declared(T::CHAN_RGB, T::FORMAT_UINT8, -1)); },
         "mDecl.width!=-1 && mDecl.height!=-1"},
        {"Empty", [&] { use(declared(T::CHAN_RGB, T::FORMAT_UINT8, 0)); },
         "Texture_GL; Can not create a texture of 0 x 4 texels"},
        {"Cube", [&] { use(declared(T::CHAN_RGB, T::FORMAT_UINT8, 4, T::TARGET_CUBE)); },
         "mDecl.target!=Texture::TARGET_CUBE"},
        {"Volume", [&] { use(declared(T::CHAN_RGB, T::FORMAT_UINT8, 4, T::TARGET_3D)); },
         "mDecl.target==Texture::TARGET_2D"},
        {"NeitherReadNorWritten", [&] { vertices->lock(false, false, 0, 1); }, "write || read"},
        {"NotLocked", [&] { vertices->unlock(); }, "mMapped!=0"},
        {"BeyondTheEnd", [&] { vertices->lock(true, false, 6, 7); }, range},
        {"BeforeTheStart", [&] { vertices->replace(-1, 1, bytes); }, range},
        {"HugeCount", [&] { indices->replace(4, 2147483647, nullptr); }, range},
        {"NegativeCount", [&] { indices->replace(0, -1, bytes, 1, IBO::FORMAT_UINT8); }, "count>=0"},
        {"NoFormat", [&] { mDisplay.createIBO(1, IBO::FORMAT_NONE, Mode::MODE_STATIC); }, "mFormat!=FORMAT_NONE"},
        {"NoMode", [&] { mDisplay.draw(Mode::DRAW_NONE, -1, 0, -1, 0); }, "outerMode!=DisplayGL::DRAW_NONE"},
        {"NothingToDraw", [&] { mDisplay.draw(Mode::DRAW_LINES, -1, 0, -1, 0); }, "mCurrentVBO!=0"},
        {"TooMany", [&] { mDisplay.setVBO(vertices), mDisplay.draw(Mode::DRAW_LINES, -1, 0, 11, 2); },
         "first+count<=size"},
        {"Locked", [&] { vertices->lock(true, false, -1, 0), vertices->lock(true, false, 0, 1); }, "mMapped==0"},
        {"OddHeight", [&] { mDisplay.open(smallMode(64, 47)), mDisplay.getScreenShot(low); },
         "(mWindowMode.height & 1) == 0"},
        {"OddHeightOfBytes", [&] { mDisplay.getScreenShotRGB24(nullptr); }, "(mWindowMode.height & 1) == 0"},
        {"ClosedTwice", [&] { mDisplay.close(), mDisplay.close(); }, "mOpened"},
    };
    // clang-format on
    for (const auto& row : rows) {
        const std::string message = thrownMessage(row.action);
        EXPECT_NE(message.find(row.message), std::string::npos) << row.name << ": " << message;
    }
    EXPECT_FALSE(mDisplay.update());
    mDisplay.open(smallMode());
    EXPECT_TRUE(mDisplay.update());
}

TEST_F(Misuse, ErrorsOfTheDriverNameTheCallTheFileAndTheErrorOrAreIgnored)
{
    // clang-format off
    const std::pair<GLenum, std::string> cases[] = {
        {0x500, "GL_INVALID_ENUM"}, {0x501, "GL_INVALID_VALUE"}, {0x502, "GL_INVALID_OPERATION"},
        {0x503, "GL_STACK_OVERFLOW"}, {0x504, "GL_STACK_UNDERFLOW"}, {0x505, "GL_OUT_OF_MEMORY"},
        {0x8031, "GL_TABLE_TOO_LARGE"},
    };
    // clang-format on
    const auto raised = [](GLenum error) {
        return thrownMessage([&] { raiseGlError(error, "/src/d/dis_file.cpp", 12, "glFoo( 1 )"); });
    };
    for (const auto& [error, name] : cases)
        EXPECT_EQ(raised(error),
                  "GL-error at [12] dis_file.cpp\nLine: glFoo( 1 )\nError: '" + name + "'\n");
    for (const GLenum ignored : {0u, 0x506u})
        EXPECT_EQ(raised(ignored), "nothing was thrown");
}

} // namespace
} // namespace zavex::display
