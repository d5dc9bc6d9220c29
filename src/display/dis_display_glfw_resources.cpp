#include "display/dis_display_glfw.h"

#include "am/am_image.h"
#include "common/zvx_system.h"
#include "display/dis_fbo_gl.h"
#include "display/dis_glinclude.h"
#include "display/dis_shader_gl.h"
#include "display/dis_texture_gl.h"
#include "display/dis_vboibo_gl.h"

#include <GLFW/glfw3.h>

#include <algorithm>
#include <memory>

namespace zavex::display {

namespace {

constexpr std::size_t BYTES_PER_RGB = 3;
constexpr std::size_t BYTES_PER_BGRA = am::ImageObject::BYTES_PER_PIXEL;

constexpr const char* DRAW_SOURCE = "dis_display_glfw"; // where drawing's errors are said to be

struct Range {
    int first;
    int count;
};

/** What of `size` entities is meant; all of them when `first` is -1. */
Range rangeOf(int first, int count, int size)
{
    if (first == -1)
        return {0, size};
    ZVX_REQUIRE(first >= 0 && count >= 0 && first <= size && count <= size - first,
                "first>=0 && count>=0 && first+count<=size");
    return {first, count};
}

GLenum primitiveOf(DisplayGL::DrawMode mode)
{
    switch (mode) {
        case DisplayGL::DRAW_POINTS: return GL_POINTS;
        case DisplayGL::DRAW_LINES: return GL_LINES;
        default: return GL_TRIANGLES;
    }
}

} // namespace

void DisplayGLFW::setArchive(am::ArchiveManager* archive)
{
    ZVX_LOG("info", "display", "Assigning archive %p to display %p", static_cast<void*>(archive),
            static_cast<void*>(this));
    mArchiveManager = archive;
}

bool DisplayGLFW::supportsFBO() const
{
    return hasExtension("GL_EXT_framebuffer_object");
}

bool DisplayGLFW::supportsShaders() const
{
    return std::ranges::all_of(Shader_GL::EXTENSIONS,
                               [this](const char* name) { return hasExtension(name); });
}

int DisplayGLFW::maxNumVertexAttrib() const
{
    GLint count = 0;
    GL_CHECKED(glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, &count));
    return count;
}

/** Takes a new resource into the display's ownership. */
template <typename ResourceType>
ResourceType* DisplayGLFW::registered(std::unique_ptr<ResourceType> resource)
{
    mResources.insert(resource.get());
    return resource.release();
}

VBO* DisplayGLFW::createVBO(int count, const VertexDef* def, ResourceMode mode)
{
    ZVX_REQUIRE(def, "def!=0");
    return registered(std::make_unique<VBO_GL>(this, count, def, mode));
}

IBO* DisplayGLFW::createIBO(int count, IBO::Format format, ResourceMode mode)
{
    return registered(std::make_unique<IBO_GL>(this, count, format, mode));
}

FBO* DisplayGLFW::createFBO(int width, int height, bool renderZ)
{
    return registered(std::make_unique<FBO_GL>(this, width, height, renderZ));
}

Texture* DisplayGLFW::createTexture(const std::string& name, bool unique)
{
    return createTexture(name, Texture::TextureDeclaration{}, unique);
}

Texture* DisplayGLFW::createTexture(const std::string& name,
                                    const Texture::TextureDeclaration& declaration, bool unique)
{
    const TextureKey key{name, declaration};
    if (!unique) {
        const auto cached = mTextureCache.find(key);
        if (cached != mTextureCache.end()) {
            cached->second->incRef();
            return cached->second;
        }
    }

    Texture* const texture = registered(std::make_unique<Texture_GL>(this, name, declaration));
    mTextureCache[key] = texture;
    return texture;
}

Texture* DisplayGLFW::createTexture(am::Image& image,
                                    const Texture::TextureDeclaration& declaration)
{
    return registered(std::make_unique<Texture_GL>(this, image, declaration));
}

Texture* DisplayGLFW::createTexture(const Texture::TextureDeclaration& declaration)
{
    return registered(std::make_unique<Texture_GL>(this, declaration));
}

Shader* DisplayGLFW::createShader(VertexDef* def)
{
    Shader* const shader = registered(std::make_unique<Shader_GL>(this));
    if (def)
        shader->setVertexAttrib(def);
    return shader;
}

Shader* DisplayGLFW::createShader(const std::string& vertexFile, const std::string& pixelFile,
                                  VertexDef* def)
{
    Shader* const shader = createShader(def);
    shader->attach(vertexFile, pixelFile);
    return shader;
}

ShaderSource* DisplayGLFW::createVertexShader(const std::string& file, bool)
{
    return registered(std::make_unique<VertexShaderSource_GL>(this, file));
}

ShaderSource* DisplayGLFW::createPixelShader(const std::string& file, bool)
{
    return registered(std::make_unique<PixelShaderSource_GL>(this, file));
}

void DisplayGLFW::destroy(const Resource* resource)
{
    if (!resource)
        return;
    // Who only reads a resource may let go of it too; the display is the one that owns it.
    const auto found = mResources.find(const_cast<Resource*>(resource));
    ZVX_REQUIRE(found != mResources.end(), "mResources.find(resource)!=mResources.end()");

    Resource* const owned = *found;
    owned->decRef();
    if (owned->getRef() > 0)
        return;
    forget(owned);
    mResources.erase(found);
    owned->dettachAll();
    delete owned;
}

/** Makes sure that nothing refers to a resource that is about to go. */
void DisplayGLFW::forget(const Resource* resource)
{
    std::erase_if(mTextureCache, [=](const auto& entry) { return entry.second == resource; });
    if (!mOpened) {
        mImmediate.discard();
        return;
    }

    mImmediate.flush();
    if (mCurrentShader == resource)
        setShader(nullptr);
    if (mCurrentVBO == resource)
        setVBO(nullptr);
    if (mCurrentIBO == resource)
        setIBO(nullptr);
    if (mCurrentFBO == resource)
        setFBO(nullptr);
    for (int channel = 0; channel < TEXTURE_CHANNELS; ++channel)
        if (mTextureChannels[static_cast<std::size_t>(channel)] == resource)
            setTexture(nullptr, channel);
}

void DisplayGLFW::disposeResources()
{
    ZVX_LOG("log", "app", "DisplayGLFW::disposeResources");
    mImmediate.flush();
    resetBindings();
    for (Resource* const resource : mResources)
        if (!resource->isDisposed())
            resource->disposeResource(false);
}

void DisplayGLFW::restoreResources()
{
    ZVX_LOG("log", "app", "DisplayGLFW::restoreResources");
    for (Resource* const resource : mResources)
        if (resource->isDisposed())
            resource->restoreResource();
}

void DisplayGLFW::setVBO(VBO* vbo)
{
    if (vbo == mCurrentVBO)
        return;
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();

    if (mCurrentVBO)
        mCurrentVBO->unbind();
    mCurrentVBO = nullptr;
    mImmediate.setBoundVertices(nullptr);
    if (!vbo)
        return;
    vbo->bind();
    mCurrentVBO = vbo;
    mImmediate.setBoundVertices(vbo->getFormat());
}

void DisplayGLFW::setIBO(IBO* ibo)
{
    if (ibo == mCurrentIBO)
        return;
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();

    if (mCurrentIBO)
        mCurrentIBO->unbind();
    mCurrentIBO = nullptr;
    if (!ibo)
        return;
    ibo->bind();
    mCurrentIBO = ibo;
}

// NOLINTNEXTLINE(readability-function-size): the parameters are fixed
void DisplayGLFW::draw(DrawMode outerMode, int firstIndex, int numIndices, int firstVertex,
                       int numVertices)
{
    ZVX_REQUIRE(outerMode != DisplayGL::DRAW_NONE, "outerMode!=DisplayGL::DRAW_NONE");
    ZVX_REQUIRE(mCurrentVBO, "mCurrentVBO!=0");
    ZVX_REQUIRE(mCurrentIBO || firstIndex == -1, "mCurrentIBO!=0");
    mImmediate.flushWithColor();

    const GLenum mode = primitiveOf(outerMode);
    if (!mCurrentIBO) {
        const Range range = rangeOf(firstVertex, numVertices, mCurrentVBO->getNumVertices());
        glDrawArrays(mode, range.first, range.count);
        GL_REPORT_ERROR(DRAW_SOURCE, __LINE__, "glDrawArrays(mode, range.first, range.count)");
        return;
    }
    const auto& indices = static_cast<const IBO_GL&>(*mCurrentIBO);
    const Range range = rangeOf(firstIndex, numIndices, indices.getNumIndices());
    glDrawElements(mode, range.count, indices.getFormatGL(), indices.getPointerGL(range.first));
    GL_REPORT_ERROR(DRAW_SOURCE, __LINE__,
                    "glDrawElements(mode, range.count, indices.getFormatGL(), "
                    "indices.getPointerGL(range.first))");
}

void DisplayGLFW::setFBO(FBO* fbo)
{
    if (fbo == mCurrentFBO)
        return;
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();

    if (mCurrentFBO)
        GL_CHECKED(glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0));
    GL_CHECKED(glViewport(0, 0, mWindowMode.width, mWindowMode.height));
    mCurrentFBO = nullptr;
    if (!fbo)
        return;
    static_cast<FBO_GL*>(fbo)->bind();
    mCurrentFBO = fbo;
}

void DisplayGLFW::setTexture(Texture* texture, int channel)
{
    ZVX_REQUIRE(channel >= 0 && channel < TEXTURE_CHANNELS, "channel>=0 && channel<8");
    Texture*& recorded = mTextureChannels[static_cast<std::size_t>(channel)];
    if (channel == mActiveTextureChannel && texture == recorded)
        return;
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();

    if (channel != mActiveTextureChannel) {
        GL_CHECKED(glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(channel)));
        mActiveTextureChannel = channel;
    }
    if (texture)
        static_cast<Texture_GL*>(texture)->bind();
    else if (recorded)
        static_cast<Texture_GL*>(recorded)->unbind();
    recorded = texture;
}

void DisplayGLFW::setShader(Shader* shader)
{
    if (shader == mCurrentShader)
        return;
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();

    if (mCurrentShader)
        GL_CHECKED(glUseProgram(0));
    mCurrentShader = nullptr;
    if (!shader)
        return;
    static_cast<Shader_GL*>(shader)->bind();
    mCurrentShader = shader;
}

/**
 * What the popped attributes brought back: they were pushed when no texture was bound, and unit 0
 * was the active one, as a context begins.
 */
void DisplayGLFW::forgetTextures()
{
    mTextureChannels.fill(nullptr);
    mActiveTextureChannel = 0;
}

void DisplayGLFW::resetBindings()
{
    setVBO(nullptr);
    setFBO(nullptr);
    setIBO(nullptr);
    setShader(nullptr);
    for (int channel = TEXTURE_CHANNELS; --channel > 0;)
        if (mTextureChannels[static_cast<std::size_t>(channel)])
            setTexture(nullptr, channel);
    setTexture(nullptr, 0);
}

void DisplayGLFW::getScreenShotRGB24(std::uint8_t* buffer)
{
    ZVX_REQUIRE((mWindowMode.height & 1) == 0, "(mWindowMode.height & 1) == 0");
    readPixels(GL_RGB, BYTES_PER_RGB, buffer);
}

void DisplayGLFW::getScreenShot(am::Image& image)
{
    ZVX_REQUIRE(!image.isNull(), "image.isNull()==false");
    ZVX_REQUIRE((mWindowMode.height & 1) == 0, "(mWindowMode.height & 1) == 0");
    ZVX_REQUIRE(image->getWidth() == mWindowMode.width, "image->getWidth()==mWindowMode.width");
    ZVX_REQUIRE(image->getHeight() == mWindowMode.height, "image->getHeight()==mWindowMode.height");
    requireAskedSize();

    std::uint8_t* const pixels = image->getWriteData();
    readPixels(GL_BGRA, BYTES_PER_BGRA, pixels);
    const std::size_t size = static_cast<std::size_t>(mWindowMode.width) *
                             static_cast<std::size_t>(mWindowMode.height) * BYTES_PER_BGRA;
    for (std::size_t alpha = BYTES_PER_BGRA - 1; alpha < size; alpha += BYTES_PER_BGRA)
        pixels[alpha] = 255;
}

/** A window manager may resize a window that asks to be left alone, which no event tells. */
void DisplayGLFW::requireAskedSize() const
{
    if (mWindowMode.canResize)
        return;
    int width = 0;
    int height = 0;
    glfwGetWindowSize(mWindow, &width, &height);
    if (width != mWindowMode.width || height != mWindowMode.height)
        throw Exception{
            "DisplayGLFW: Can not take a picture of %d x %d pixels, the window manager made the "
            "window %d x %d, which was not to be resized",
            mWindowMode.width, mWindowMode.height, width, height};
}

/** The library's rows go from the bottom up; the ones read here from the top down. */
void DisplayGLFW::readPixels(unsigned int format, std::size_t bytesPerPixel, std::uint8_t* pixels)
{
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();
    GL_CHECKED(glPixelStorei(GL_PACK_ALIGNMENT, 1));
    GL_CHECKED(glReadPixels(0, 0, mWindowMode.width, mWindowMode.height, format, GL_UNSIGNED_BYTE,
                            pixels));

    const auto row =
        static_cast<std::ptrdiff_t>(static_cast<std::size_t>(mWindowMode.width) * bytesPerPixel);
    for (std::ptrdiff_t i = 0; i < mWindowMode.height / 2; ++i)
        std::swap_ranges(pixels + i * row, pixels + (i + 1) * row,
                         pixels + (mWindowMode.height - 1 - i) * row);
}

} // namespace zavex::display
