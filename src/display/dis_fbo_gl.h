#pragma once

#include "display/dis_fbo.h"
#include "display/dis_glinclude.h"

#include <vector>

namespace zavex::display {

class Texture_GL;

/** A render target on the framebuffer-object extension. */
class FBO_GL final : public FBO {
public:
    struct Entry {
        Attachment attachment;
        GLenum attachmentGL;
        Texture_GL* texture; // held
    };

    /** @param width, height  Pixels, not 0. */
    FBO_GL(DisplayGL* display, int width, int height, bool renderZ);
    FBO_GL(const FBO_GL&) = delete;
    FBO_GL& operator=(const FBO_GL&) = delete;
    ~FBO_GL() override;

    void disposeResource(bool lost) override;

    /** Throws Exception when render targets are missing or a texture is not of the target's size.
     */
    void restoreResource() override;

    void dettachAll() override;

    int getWidth() const override { return mScreenX; }
    int getHeight() const override { return mScreenY; }
    void attach(Attachment attachment, Texture* texture) override;

    /** Draws into the target from now on; builds first if disposed. */
    void bind();

private:
    void build();
    void deleteObjects();

    std::vector<Entry> attachments;
    bool mRenderZ = false;    // has a depth buffer of its own, of 24 bits
    int mScreenX = 0;         // pixels
    int mScreenY = 0;         // pixels
    GLuint mFrameBuffer = 0;  // 0 when none
    GLuint mDepthTexture = 0; // renderbuffer; 0 when none
};

} // namespace zavex::display
