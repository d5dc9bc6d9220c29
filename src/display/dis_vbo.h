#pragma once

#include "display/dis_resource.h"

namespace zavex::display {

class VertexDef;

/**
 * A buffer of vertices. It keeps a copy of them in system memory, which is what `lock` hands out.
 *
 * Made by `DisplayGL::createVBO`, drawn from with `DisplayGL::setVBO` and `DisplayGL::draw`. Starts
 * filled with zeros. Filling works while it is disposed.
 */
class VBO : public Resource {
public:
    using Resource::Resource;

    virtual const VertexDef* getFormat() const = 0;
    virtual int getNumVertices() const = 0;

    /** Makes it the source of vertices, built first if disposed; `DisplayGL::setVBO` does. */
    virtual void bind() = 0;
    virtual void unbind() = 0;

    /**
     * Hands out vertices to be read, written or both, until `unlock`. One of the flags must be set
     * and no lock outstanding. Written vertices must all be filled in or kept as they are.
     *
     * @param first  Of the range; -1 for the whole buffer, whatever `count` is.
     * @return The vertex `first` in the system copy.
     */
    virtual void* lock(bool write, bool read, int first, int count) = 0;

    /** Ends the lock and uploads the range if it was locked for writing. */
    virtual void unlock() = 0;

    /** Overwrites `count` vertices from `first` on. */
    virtual void replace(int first, int count, const void* data) = 0;
};

} // namespace zavex::display
