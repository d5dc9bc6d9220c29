#include "display/dis_fbo_gl.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_texture_gl.h"

#include <array>
#include <cstdio>

namespace zavex::display {

namespace {

constexpr std::array<GLenum, 6> ATTACHMENTS_GL{GL_COLOR_ATTACHMENT0_EXT, GL_COLOR_ATTACHMENT1_EXT,
                                               GL_COLOR_ATTACHMENT2_EXT, GL_COLOR_ATTACHMENT3_EXT,
                                               GL_DEPTH_ATTACHMENT_EXT,  GL_STENCIL_ATTACHMENT_EXT};

/** What makes a framebuffer incomplete; null for a complete one and for other reasons. */
const char* diagnostic(GLenum status)
{
    switch (status) {
        case GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT_EXT:
            return "Framebuffer incomplete, missing attachment";
        case GL_FRAMEBUFFER_INCOMPLETE_DIMENSIONS_EXT:
            return "Framebuffer incomplete, attached images must have same dimensions";
        case GL_FRAMEBUFFER_INCOMPLETE_FORMATS_EXT:
            return "Framebuffer incomplete, attached images must have same format";
        case GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER_EXT:
            return "Framebuffer incomplete, missing draw buffer";
        case GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER_EXT:
            return "Framebuffer incomplete, missing read buffer";
        case GL_FRAMEBUFFER_UNSUPPORTED_EXT: return "Unsupported framebuffer format";
        default: return nullptr;
    }
}

} // namespace

FBO_GL::FBO_GL(DisplayGL* display, int width, int height, bool renderZ)
    : FBO{display}, mRenderZ{renderZ}, mScreenX{width}, mScreenY{height}
{
    ZVX_REQUIRE(width != 0, "width!=0");
    ZVX_REQUIRE(height != 0, "height!=0");
}

FBO_GL::~FBO_GL()
{
    dettachAll();
    deleteObjects();
}

void FBO_GL::attach(Attachment attachment, Texture* texture)
{
    ZVX_REQUIRE(texture, "texture!=0");
    attachments.push_back({attachment, ATTACHMENTS_GL[static_cast<std::size_t>(attachment)],
                           static_cast<Texture_GL*>(texture)});
    texture->incRef();
}

void FBO_GL::dettachAll()
{
    for (const Entry& entry : attachments)
        entry.texture->destroy();
    attachments.clear();
}

void FBO_GL::restoreResource()
{
    ZVX_REQUIRE(mDisposed, "mDisposed");
    if (!mDisplay->hasExtension("GL_EXT_framebuffer_object"))
        throw Exception{
            "Display::FBO_GL; Render Targets not supported [GL_EXT_framebuffer_object]"};

    try {
        build();
    } catch (...) {
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
        deleteObjects();
        throw;
    }
    mDisposed = false;
}

void FBO_GL::build()
{
    GL_CHECKED(glGenFramebuffersEXT(1, &mFrameBuffer));
    GL_CHECKED(glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, mFrameBuffer));
    for (const Entry& entry : attachments) {
        if (entry.texture->isDisposed())
            entry.texture->restoreResource();
        const Texture::TextureDeclaration& declaration = entry.texture->getDeclaration();
        if (declaration.width != mScreenX || declaration.height != mScreenY)
            throw Exception{
                "FBO_GL::restoreResource; Texture dimension doesn't match FBO dimensions!"};
        GL_CHECKED(glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, entry.attachmentGL,
                                             entry.texture->getTargetGL(),
                                             entry.texture->getTextureGL(), 0));
    }
    if (mRenderZ) {
        GL_CHECKED(glGenRenderbuffersEXT(1, &mDepthTexture));
        GL_CHECKED(glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, mDepthTexture));
        GL_CHECKED(glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_DEPTH_COMPONENT24, mScreenX,
                                            mScreenY));
        GL_CHECKED(glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT,
                                                GL_RENDERBUFFER_EXT, mDepthTexture));
    }

    const GLenum status = glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT);
    GL_REPORT_ERROR(__FILE__, __LINE__, "Checking status");
    if (const char* const reason = diagnostic(status))
        std::puts(reason);
    GL_CHECKED(glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0));
}

void FBO_GL::disposeResource(bool lost)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    if (!lost) {
        deleteObjects();
        GL_REPORT_ERROR(__FILE__, __LINE__, "glDeleteFramebuffersEXT(1, &mFrameBuffer)");
    }
    mFrameBuffer = 0;
    mDepthTexture = 0;
    mDisposed = true;
}

void FBO_GL::deleteObjects()
{
    if (mFrameBuffer != 0)
        glDeleteFramebuffersEXT(1, &mFrameBuffer);
    if (mDepthTexture != 0)
        glDeleteRenderbuffersEXT(1, &mDepthTexture);
    mFrameBuffer = 0;
    mDepthTexture = 0;
}

void FBO_GL::bind()
{
    if (mDisposed)
        restoreResource();
    GL_CHECKED(glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, mFrameBuffer));
    GL_CHECKED(glViewport(0, 0, mScreenX, mScreenY));
}

} // namespace zavex::display
