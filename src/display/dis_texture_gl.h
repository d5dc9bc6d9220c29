#pragma once

#include "display/dis_glinclude.h"
#include "display/dis_texture.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zavex::display {

/**
 * A texture of the graphics library, built from a file, an image, or empty.
 *
 * Two-dimensional textures only: the others can be declared but not built.
 */
class Texture_GL final : public Texture {
public:
    /** From a file of the display's archives. Throws Exception when the format does not exist. */
    Texture_GL(DisplayGL* display, const std::string& filename,
               const TextureDeclaration& declaration);

    /** From an image, of which it keeps a handle. */
    Texture_GL(DisplayGL* display, am::Image& image, const TextureDeclaration& declaration);

    /** Empty, of the declared size. */
    Texture_GL(DisplayGL* display, const TextureDeclaration& declaration);

    Texture_GL(const Texture_GL&) = delete;
    Texture_GL& operator=(const Texture_GL&) = delete;
    ~Texture_GL() override;

    void disposeResource(bool lost) override;
    void restoreResource() override;
    void updateMipmaps() override;
    const TextureDeclaration& getDeclaration() const override { return mDecl; }

    /** Binds to the active texture unit; builds first if disposed. */
    void bind();
    void unbind();

    GLenum getTargetGL() const { return mTargetGL; }
    GLuint getTextureGL() const { return mTexture; }

    /** The smallest power of two that is not below `size`, which must be in 1..2^30. */
    static int roundedUpToPowerOfTwo(int size);

private:
    using Resource::loadImage;

    void initDecl();
    void init(am::Image& image);
    void takeSizeOf(am::Image& image);
    void checkSize(am::Image& image);
    void setParameters() const;

    /**
     * Uploads the region of an image between two corners, both included, scaled to the declared
     * size.
     *
     * Corners in reverse order mirror the region. A null image uploads zeros.
     *
     * @param transpose  Swaps the region's rows and columns.
     */
    // NOLINTNEXTLINE(readability-function-size): two corners and where they go
    void loadImage(am::Image& image, GLenum target, GLint format, int x0, int y0, int x1, int y1,
                   bool transpose) const;
    std::vector<std::uint8_t> scaled(const std::uint8_t* pixels, int width, int height) const;
    void upload(GLenum target, GLint format, const std::uint8_t* pixels, bool isDepth) const;

    TextureDeclaration mDecl;
    std::string mRestoreFilename; // empty when not made from a file
    am::Image mRestoreImage;      // null when not made from an image
    GLenum mTargetGL = GL_TEXTURE_2D;
    GLint mFormatGL = 0; // internal format
    GLuint mTexture = 0; // 0 when none
};

} // namespace zavex::display
