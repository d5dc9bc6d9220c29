#pragma once

#include "display/dis_resource.h"

namespace zavex::display {

/**
 * A buffer of indices into the vertices of a `VBO`. It keeps a copy of them in system memory, which
 * is what `lock` hands out.
 *
 * Made by `DisplayGL::createIBO`, drawn with through `DisplayGL::setIBO` and `DisplayGL::draw`.
 * Starts filled with zeros. Filling works while it is disposed.
 */
class IBO : public Resource {
public:
    /** What one index is. */
    enum Format : int {
        FORMAT_NONE = 0,
        FORMAT_UINT8 = 1,
        FORMAT_UINT16 = 2,
        FORMAT_UINT32 = 3,
    };

    using Resource::Resource;

    virtual Format getFormat() const = 0;
    virtual int getNumIndices() const = 0;

    /** Makes it the source of indices, built first if disposed; `DisplayGL::setIBO` does. */
    virtual void bind() = 0;
    virtual void unbind() = 0;

    /** Overwrites `count` indices from `first` on; `data` is of the buffer's format. */
    virtual void replace(int first, int count, const void* data) = 0;

    /**
     * As above from indices of another format, to each of which `offset` is added: meshes that
     * count from 0 can share a vertex buffer. What does not fit the buffer's format is truncated.
     *
     * @param sourceFormat  `FORMAT_NONE` is the buffer's own.
     */
    virtual void replace(int first, int count, const void* data, int offset,
                         Format sourceFormat) = 0;

    /** As `VBO::lock` and `VBO::unlock`, for indices. */
    virtual void* lock(bool write, bool read, int first, int count) = 0;
    virtual void unlock() = 0;
};

} // namespace zavex::display
