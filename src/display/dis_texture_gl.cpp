#include "display/dis_texture_gl.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_immediate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace zavex::display {

namespace {

constexpr std::size_t BYTES_PER_PIXEL = am::ImageObject::BYTES_PER_PIXEL;

struct FormatGL {
    Texture::Channels channels;
    Texture::ChannelFormat format;
    GLint formatGL;
};

constexpr FormatGL FORMATS[] = {
    {Texture::CHAN_RGB,   Texture::FORMAT_UINT8,  GL_RGB8                  },
    {Texture::CHAN_RGB,   Texture::FORMAT_UINT16, GL_RGB16                 },
    {Texture::CHAN_RGB,   Texture::FORMAT_HDR,    GL_RGB16                 },
    {Texture::CHAN_RGB,   Texture::FORMAT_F16,    GL_RGB16F_ARB            },
    {Texture::CHAN_RGB,   Texture::FORMAT_F32,    GL_RGB32F_ARB            },
    {Texture::CHAN_RGBA,  Texture::FORMAT_UINT8,  GL_RGBA8                 },
    {Texture::CHAN_RGBA,  Texture::FORMAT_UINT16, GL_RGBA16                },
    {Texture::CHAN_RGBA,  Texture::FORMAT_HDR,    GL_RGBA16                },
    {Texture::CHAN_RGBA,  Texture::FORMAT_F16,    GL_RGBA16F_ARB           },
    {Texture::CHAN_RGBA,  Texture::FORMAT_F32,    GL_RGBA32F_ARB           },
    {Texture::CHAN_LA,    Texture::FORMAT_UINT8,  GL_LUMINANCE8_ALPHA8     },
    {Texture::CHAN_LA,    Texture::FORMAT_UINT16, GL_LUMINANCE16_ALPHA16   },
    {Texture::CHAN_LA,    Texture::FORMAT_HDR,    GL_LUMINANCE16_ALPHA16   },
    {Texture::CHAN_LA,    Texture::FORMAT_F16,    GL_LUMINANCE_ALPHA16F_ARB},
    {Texture::CHAN_LA,    Texture::FORMAT_F32,    GL_LUMINANCE_ALPHA32F_ARB},
    {Texture::CHAN_DEPTH, Texture::FORMAT_UINT16, GL_DEPTH_COMPONENT16     },
    {Texture::CHAN_DEPTH, Texture::FORMAT_UINT24, GL_DEPTH_COMPONENT24     },
    {Texture::CHAN_DEPTH, Texture::FORMAT_UINT32, GL_DEPTH_COMPONENT32     },
};

GLenum targetGL(Texture::Target target)
{
    switch (target) {
        case Texture::TARGET_1D: return GL_TEXTURE_1D;
        case Texture::TARGET_3D: return GL_TEXTURE_3D;
        case Texture::TARGET_CUBE: return GL_TEXTURE_CUBE_MAP;
        case Texture::TARGET_2D:
        case Texture::TARGET_DEFAULT: break;
    }
    return GL_TEXTURE_2D;
}

bool isPowerOfTwo(int size)
{
    return std::has_single_bit(static_cast<unsigned>(size));
}

std::size_t pixelBytes(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * BYTES_PER_PIXEL;
}

/** Keeps what is bound to every target of the active unit as it was, whatever happens in between.
 */
class KeptBindings {
public:
    KeptBindings()
    {
        for (std::size_t i = 0; i < TARGETS.size(); ++i)
            GL_CHECKED(glGetIntegerv(TARGETS[i].binding, &mNames[i]));
    }
    ~KeptBindings()
    {
        for (std::size_t i = 0; i < TARGETS.size(); ++i)
            glBindTexture(TARGETS[i].target, static_cast<GLuint>(mNames[i]));
    }
    KeptBindings(const KeptBindings&) = delete;
    KeptBindings& operator=(const KeptBindings&) = delete;

private:
    struct Target {
        GLenum target;
        GLenum binding;
    };
    static constexpr std::array<Target, 4> TARGETS{
        {{GL_TEXTURE_1D, GL_TEXTURE_BINDING_1D},
         {GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D},
         {GL_TEXTURE_3D, GL_TEXTURE_BINDING_3D},
         {GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP}}
    };

    std::array<GLint, TARGETS.size()> mNames{};
};

/** Part of an image between two corners, both included; reversed corners walk it backwards. */
struct Region {
    int x0;
    int y0;
    int x1;
    int y1;
    bool transpose; // swap rows and columns

    int columns() const { return std::abs(x1 - x0) + 1; }
    int rows() const { return std::abs(y1 - y0) + 1; }

    int width() const { return transpose ? rows() : columns(); }
    int height() const { return transpose ? columns() : rows(); }
};

std::vector<std::uint8_t> copiedRegion(am::Image& image, const Region& region)
{
    const int stepX = region.x1 < region.x0 ? -1 : 1;
    const int stepY = region.y1 < region.y0 ? -1 : 1;
    std::vector<std::uint8_t> pixels(pixelBytes(region.width(), region.height()));
    for (int row = 0; row < region.rows(); ++row)
        for (int column = 0; column < region.columns(); ++column) {
            const int x = region.x0 + column * stepX;
            const int y = region.y0 + row * stepY;
            const int toX = region.transpose ? row : column;
            const int toY = region.transpose ? column : row;
            std::memcpy(&pixels[pixelBytes(region.width(), toY) + pixelBytes(toX, 1)],
                        image->getData() + pixelBytes(image->getWidth(), y) + pixelBytes(x, 1),
                        BYTES_PER_PIXEL);
        }
    return pixels;
}

} // namespace

Texture_GL::Texture_GL(DisplayGL* display, const std::string& filename,
                       const TextureDeclaration& declaration)
    : Texture{display}, mDecl{declaration}, mRestoreFilename{filename}
{
    initDecl();
}

Texture_GL::Texture_GL(DisplayGL* display, am::Image& image, const TextureDeclaration& declaration)
    : Texture{display}, mDecl{declaration}, mRestoreImage{image}
{
    initDecl();
}

Texture_GL::Texture_GL(DisplayGL* display, const TextureDeclaration& declaration)
    : Texture{display}, mDecl{declaration}
{
    ZVX_REQUIRE(mDecl.width != -1 && mDecl.height != -1, "mDecl.width!=-1 && mDecl.height!=-1");
    initDecl();
}

Texture_GL::~Texture_GL()
{
    if (mTexture != 0)
        glDeleteTextures(1, &mTexture);
}

void Texture_GL::initDecl()
{
    if (mDecl.target == TARGET_DEFAULT)
        mDecl.target = TARGET_2D;
    if (mDecl.channelFormat == FORMAT_DEFAULT)
        mDecl.channelFormat = FORMAT_UINT8;
    if (mDecl.channelType == CHAN_DEFAULT)
        mDecl.channelType = CHAN_RGBA;

    mTargetGL = targetGL(mDecl.target);
    const auto* const known = std::ranges::find_if(FORMATS, [this](const FormatGL& format) {
        return format.channels == mDecl.channelType && format.format == mDecl.channelFormat;
    });
    if (known == std::end(FORMATS))
        throw Exception{"Unknown mFormatGL for texture"};
    mFormatGL = known->formatGL;
}

void Texture_GL::restoreResource()
{
    ZVX_REQUIRE(mDisposed, "mDisposed");
    ZVX_REQUIRE(mDecl.target != TARGET_CUBE, "mDecl.target!=Texture::TARGET_CUBE");
    ZVX_REQUIRE(mDecl.target == TARGET_2D, "mDecl.target==Texture::TARGET_2D");

    am::Image image = mRestoreImage;
    if (image.isNull() && !mRestoreFilename.empty())
        image = loadImage(mRestoreFilename, false);
    init(image);
    mDisposed = false;
}

void Texture_GL::init(am::Image& image)
{
    const bool isFloat = mDecl.channelFormat == FORMAT_F16 || mDecl.channelFormat == FORMAT_F32;
    if (isFloat && !mDisplay->hasExtension("GL_ARB_texture_float"))
        throw Exception{"OpenGL does not support float-textures on this computer!"};
    checkSize(image);

    const KeptBindings kept;
    glGenTextures(1, &mTexture);
    GL_REPORT_ERROR(__FILE__, __LINE__, "glGenTextures( 1, &mTexture )");
    try {
        GL_CHECKED(glBindTexture(mTargetGL, mTexture));
        const int right = image.isNull() ? 0 : image->getWidth() - 1;
        const int bottom = image.isNull() ? 0 : image->getHeight() - 1;
        loadImage(image, mTargetGL, mFormatGL, 0, 0, right, bottom, false);
        setParameters();
    } catch (...) {
        glDeleteTextures(1, &mTexture);
        mTexture = 0;
        throw;
    }
}

/** Where none was asked for. */
void Texture_GL::takeSizeOf(am::Image& image)
{
    if (image->getWidth() <= 0 || image->getHeight() <= 0)
        throw Exception{"Texture_GL; Image '%s' has no pixels (%d x %d)", mRestoreFilename.c_str(),
                        image->getWidth(), image->getHeight()};
    if (mDecl.width == -1)
        mDecl.width = image->getWidth();
    if (mDecl.height == -1)
        mDecl.height = image->getHeight();
}

void Texture_GL::checkSize(am::Image& image)
{
    if (!image.isNull())
        takeSizeOf(image);
    ZVX_REQUIRE(mDecl.width != -1 && mDecl.height != -1, "mDecl.width!=-1 && mDecl.height!=-1");
    if (mDecl.width <= 0 || mDecl.height <= 0)
        throw Exception{"Texture_GL; Can not create a texture of %d x %d texels", mDecl.width,
                        mDecl.height};

    const bool fits = (isPowerOfTwo(mDecl.width) && isPowerOfTwo(mDecl.height)) ||
                      mDisplay->hasExtension("GL_ARB_texture_non_power_of_two");
    if (fits)
        return;
    if (image.isNull())
        throw Exception{"OpenGL does not support non-power-of-2-textures on this computer!"};
    if (mDecl.useMipmaps)
        return;
    mDecl.width = roundedUpToPowerOfTwo(mDecl.width);
    mDecl.height = roundedUpToPowerOfTwo(mDecl.height);
}

int Texture_GL::roundedUpToPowerOfTwo(int size)
{
    return static_cast<int>(std::bit_ceil(static_cast<unsigned>(size)));
}

void Texture_GL::setParameters() const
{
    const auto wrap = [this](RepeatMode axis) {
        return (mDecl.repeatMode & axis) != 0 ? GL_REPEAT : GL_CLAMP_TO_EDGE;
    };
    const GLint minification = mDecl.useMipmaps ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR;
    GL_CHECKED(glTexParameteri(mTargetGL, GL_TEXTURE_MAG_FILTER, GL_LINEAR));
    GL_CHECKED(glTexParameteri(mTargetGL, GL_TEXTURE_MIN_FILTER, minification));
    GL_CHECKED(glTexParameteri(mTargetGL, GL_TEXTURE_WRAP_S, wrap(REPEAT_X)));
    GL_CHECKED(glTexParameteri(mTargetGL, GL_TEXTURE_WRAP_T, wrap(REPEAT_Y)));
    GL_CHECKED(glTexParameteri(mTargetGL, GL_TEXTURE_WRAP_R, wrap(REPEAT_Z)));
}

// NOLINTNEXTLINE(readability-function-size): two corners and where they go
void Texture_GL::loadImage(am::Image& image, GLenum target, GLint format, int x0, int y0, int x1,
                           int y1, bool transpose) const
{
    if (image.isNull()) {
        const std::vector<std::uint8_t> zeros(pixelBytes(mDecl.width, mDecl.height));
        upload(target, format, zeros.data(), mDecl.channelType == CHAN_DEPTH);
        return;
    }

    const Region region{x0, y0, x1, y1, transpose};
    const bool isDeclaredSize = region.width() == mDecl.width && region.height() == mDecl.height;
    const bool whole = x0 == 0 && y0 == 0 && x1 == image->getWidth() - 1 &&
                       y1 == image->getHeight() - 1 && !transpose;
    if (whole && isDeclaredSize) {
        upload(target, format, image->getData(), false);
        return;
    }

    std::vector<std::uint8_t> pixels = copiedRegion(image, region);
    if (!isDeclaredSize)
        pixels = scaled(pixels.data(), region.width(), region.height());
    upload(target, format, pixels.data(), false);
}

std::vector<std::uint8_t> Texture_GL::scaled(const std::uint8_t* pixels, int width,
                                             int height) const
{
    ZVX_LOG("warning", "display", "Warning: Manually rescaling picture '%s'!",
            mRestoreFilename.c_str());
    std::vector<std::uint8_t> result(pixelBytes(mDecl.width, mDecl.height));
    const GLint error = gluScaleImage(GL_BGRA, width, height, GL_UNSIGNED_BYTE, pixels, mDecl.width,
                                      mDecl.height, GL_UNSIGNED_BYTE, result.data());
    if (error != 0)
        throw Exception{"Texture_GL; Could not rescale picture '%s' from %d x %d to %d x %d (%s)",
                        mRestoreFilename.c_str(),
                        width,
                        height,
                        mDecl.width,
                        mDecl.height,
                        reinterpret_cast<const char*>(gluErrorString(static_cast<GLenum>(error)))};
    return result;
}

/** @param isDepth  The pixels are depths of 32 bits; the library takes no colours for those. */
void Texture_GL::upload(GLenum target, GLint format, const std::uint8_t* pixels, bool isDepth) const
{
    const GLenum layout = isDepth ? GL_DEPTH_COMPONENT : GL_BGRA;
    const GLenum type = isDepth ? GL_UNSIGNED_INT : GL_UNSIGNED_BYTE;
    if (!mDecl.useMipmaps) {
        GL_CHECKED(
            glTexImage2D(target, 0, format, mDecl.width, mDecl.height, 0, layout, type, pixels));
        return;
    }

    const GLint error =
        gluBuild2DMipmaps(target, format, mDecl.width, mDecl.height, layout, type, pixels);
    GL_REPORT_ERROR(__FILE__, __LINE__, "gluBuild2DMipmaps");
    if (error != 0)
        throw Exception{"Texture_GL; Could not build mipmaps of picture '%s' (%s)",
                        mRestoreFilename.c_str(),
                        reinterpret_cast<const char*>(gluErrorString(static_cast<GLenum>(error)))};
}

void Texture_GL::disposeResource(bool lost)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    if (!lost)
        GL_CHECKED(glDeleteTextures(1, &mTexture));
    mTexture = 0;
    mDisposed = true;
}

void Texture_GL::updateMipmaps()
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    ZVX_REQUIRE(mDecl.useMipmaps, "mDecl.useMipmaps");
    if (!mDisplay->supportsFBO())
        throw Exception{"Texture_GL; Mipmaps can not be updated [GL_EXT_framebuffer_object]"};
    Immediate::live().flush();
    const KeptBindings kept;
    GL_CHECKED(glBindTexture(mTargetGL, mTexture));
    GL_CHECKED(glGenerateMipmapEXT(mTargetGL));
}

void Texture_GL::bind()
{
    if (mDisposed)
        restoreResource();
    GL_CHECKED(glBindTexture(mTargetGL, mTexture));
}

void Texture_GL::unbind()
{
    GL_CHECKED(glBindTexture(mTargetGL, 0));
}

} // namespace zavex::display
