#pragma once

#include "display/dis_display.h"
#include "display/dis_glinclude.h"
#include "display/dis_ibo.h"
#include "display/dis_vbo.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zavex::display {

struct VertexAttribute;

/**
 * What vertex and index buffers share: a buffer object, the system copy of its contents, and the
 * lock on it. Without "GL_ARB_vertex_buffer_object" there is no buffer object and the driver reads
 * the system copy.
 *
 * @tparam PARENT  The interface that it implements.
 * @tparam TARGET  What the buffer object is bound to.
 */
template <typename PARENT, GLenum TARGET>
class BufferObject_GL : public PARENT {
public:
    BufferObject_GL(DisplayGL* display, int entities, int entitySize, DisplayGL::ResourceMode mode);
    BufferObject_GL(const BufferObject_GL&) = delete;
    BufferObject_GL& operator=(const BufferObject_GL&) = delete;
    ~BufferObject_GL() override;

    void disposeResource(bool lost) override;
    void restoreResource() override;

    void* lock(bool write, bool read, int first, int count) override;
    void unlock() override;
    using PARENT::replace;
    void replace(int first, int count, const void* data) override;

protected:
    bool hasBufferObjects() const;

    /** Binds the buffer object if there is one; builds it first if disposed. */
    void bindObject();
    void unbindObject() const;

    /** What the driver is told for the byte at `offset`. */
    const void* pointerGL(std::size_t offset) const;

    int mEntities = 0;   // vertices or indices
    int mEntitySize = 0; // bytes
    GLuint mID = 0;      // 0 when none

private:
    void requireRange(int first, int count) const;
    std::size_t bytes(int entities) const;
    void upload(int first, int count) const;
    void uploadAll() const;

    std::vector<std::uint8_t> mCompPtr; // the system copy
    DisplayGL::ResourceMode mMode = DisplayGL::MODE_STATIC;
    GLenum mMapped = 0; // access of the lock that is outstanding, 0 for none
    int mMappedFirstEntity = 0;
    int mMappedNumEntities = 0;
};

/** Vertices of one definition, which must outlive the buffer. */
class VBO_GL final : public BufferObject_GL<VBO, GL_ARRAY_BUFFER> {
public:
    VBO_GL(DisplayGL* display, int count, const VertexDef* format, DisplayGL::ResourceMode mode);

    const VertexDef* getFormat() const override { return mFormat; }
    int getNumVertices() const override { return mEntities; }
    void bind() override;
    void unbind() override;

private:
    void enable(const VertexAttribute& attribute) const;

    const VertexDef* mFormat = nullptr; // not owned
};

/** Indices of one format. */
class IBO_GL final : public BufferObject_GL<IBO, GL_ELEMENT_ARRAY_BUFFER> {
public:
    IBO_GL(DisplayGL* display, int count, Format format, DisplayGL::ResourceMode mode);

    Format getFormat() const override { return mFormat; }
    int getNumIndices() const override { return mEntities; }
    void bind() override { bindObject(); }
    void unbind() override { unbindObject(); }

    using BufferObject_GL::replace;
    void replace(int first, int count, const void* data, int offset, Format sourceFormat) override;

    /** The lowest and the highest vertex that the indices name, for whoever wants to know. */
    void setLimits(int low, int high);
    bool isLimited() const { return mHigh >= mLow; }
    int getFirstIndex() const { return mLow; }
    int getLastIndex() const { return mHigh; }

    GLenum getFormatGL() const { return mFormatGL; }

    /** What the driver is told for the index `first`. */
    const void* getPointerGL(int first) const;

private:
    int mLow = 0;
    int mHigh = -1; // below mLow: not limited
    Format mFormat = FORMAT_NONE;
    GLenum mFormatGL = 0;
};

} // namespace zavex::display
