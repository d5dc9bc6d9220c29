#pragma once

#include "display/dis_resource.h"

namespace zavex::display {

class Texture;

/**
 * A render target: textures, and optionally a depth buffer, to draw into instead of the window.
 *
 * Made by `DisplayGL::createFBO`, drawn into between `DisplayGL::setFBO(target)` and
 * `setFBO(nullptr)`.
 */
class FBO : public Resource {
public:
    enum Attachment : int {
        COLOR0 = 0,
        COLOR1 = 1,
        COLOR2 = 2,
        COLOR3 = 3,
        DEPTH = 4,
        STENCIL = 5,
    };

    using Resource::Resource;

    virtual int getWidth() const = 0;  // pixels
    virtual int getHeight() const = 0; // pixels

    /**
     * Adds a texture of the target's size, not null, and takes a hold on it.
     *
     * Takes effect when the target is next built, so it belongs right after `createFBO`.
     */
    virtual void attach(Attachment attachment, Texture* texture) = 0;
};

} // namespace zavex::display
