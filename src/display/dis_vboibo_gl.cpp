#include "display/dis_vboibo_gl.h"

#include "common/zvx_system.h"
#include "display/dis_vertexdef.h"

#include <algorithm>

namespace zavex::display {

namespace {

constexpr const char* EXTENSION = "GL_ARB_vertex_buffer_object";

GLenum usageOf(DisplayGL::ResourceMode mode)
{
    switch (mode) {
        case DisplayGL::MODE_STREAM: return GL_STREAM_DRAW;
        case DisplayGL::MODE_DYNAMIC: return GL_DYNAMIC_DRAW;
        default: return GL_STATIC_DRAW;
    }
}

GLenum typeOf(Variable::VariableType type)
{
    switch (type) {
        case Variable::TYPE_BOOL: return GL_BOOL;
        case Variable::TYPE_BYTE: return GL_BYTE;
        case Variable::TYPE_UBYTE: return GL_UNSIGNED_BYTE;
        case Variable::TYPE_SHORT: return GL_SHORT;
        case Variable::TYPE_USHORT: return GL_UNSIGNED_SHORT;
        case Variable::TYPE_INT: return GL_INT;
        case Variable::TYPE_UINT: return GL_UNSIGNED_INT;
        case Variable::TYPE_FLOAT: return GL_FLOAT;
        case Variable::TYPE_DOUBLE: return GL_DOUBLE;
        case Variable::TYPE_NONE: break;
    }
    return GL_NONE;
}

/** Bytes of an index. */
int sizeOf(IBO::Format format)
{
    switch (format) {
        case IBO::FORMAT_UINT8: return 1;
        case IBO::FORMAT_UINT16: return 2;
        case IBO::FORMAT_UINT32: return 4;
        case IBO::FORMAT_NONE: break;
    }
    return 0;
}

GLenum typeOf(IBO::Format format)
{
    switch (format) {
        case IBO::FORMAT_UINT8: return GL_UNSIGNED_BYTE;
        case IBO::FORMAT_UINT16: return GL_UNSIGNED_SHORT;
        case IBO::FORMAT_UINT32: return GL_UNSIGNED_INT;
        case IBO::FORMAT_NONE: break;
    }
    return GL_NONE;
}

std::uint32_t readIndex(const void* data, std::size_t number, IBO::Format format)
{
    switch (format) {
        case IBO::FORMAT_UINT8: return static_cast<const std::uint8_t*>(data)[number];
        case IBO::FORMAT_UINT16: return static_cast<const std::uint16_t*>(data)[number];
        default: return static_cast<const std::uint32_t*>(data)[number];
    }
}

template <typename Index>
std::vector<std::uint8_t> converted(const void* data, std::size_t count, std::uint32_t offset,
                                    IBO::Format sourceFormat)
{
    std::vector<std::uint8_t> out(count * sizeof(Index));
    for (std::size_t i = 0; i < count; ++i) {
        const auto index = static_cast<Index>(readIndex(data, i, sourceFormat) + offset);
        std::copy_n(reinterpret_cast<const std::uint8_t*>(&index), sizeof(Index),
                    &out[i * sizeof(Index)]);
    }
    return out;
}

/** A line in the log where buffers are emulated, or larger than the driver likes them. */
void reportCount(const DisplayGL& display, const char* message, GLenum limit, int count)
{
    if (!display.hasExtension(EXTENSION)) {
        ZVX_LOG("warning", "display", "%s not supported, emulating fool", EXTENSION);
        return;
    }
    GLint recommended = 0;
    GL_CHECKED(glGetIntegerv(limit, &recommended));
    if (count > recommended)
        ZVX_LOG("warning", "display", message, count, recommended);
}

/** Binds a buffer object for as long as it lives. */
class Binding {
public:
    Binding(GLenum target, GLuint buffer) : mTarget(target)
    {
        GL_CHECKED(glGetIntegerv(target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING
                                                           : GL_ELEMENT_ARRAY_BUFFER_BINDING,
                                 &mBefore));
        GL_CHECKED(glBindBuffer(target, buffer));
    }
    ~Binding() { glBindBuffer(mTarget, static_cast<GLuint>(mBefore)); }
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;

private:
    GLenum mTarget;
    GLint mBefore = 0;
};

} // namespace

template <typename PARENT, GLenum TARGET>
BufferObject_GL<PARENT, TARGET>::BufferObject_GL(DisplayGL* display, int entities, int entitySize,
                                                 DisplayGL::ResourceMode mode)
    : PARENT(display), mEntities(entities), mEntitySize(entitySize), mMode(mode)
{
    ZVX_REQUIRE(entities >= 0, "mEntities>=0");
    ZVX_REQUIRE(entitySize > 0, "mEntitySize>0");
    mCompPtr.resize(bytes(entities));
}

template <typename PARENT, GLenum TARGET>
BufferObject_GL<PARENT, TARGET>::~BufferObject_GL()
{
    if (mID != 0)
        glDeleteBuffers(1, &mID);
}

template <typename PARENT, GLenum TARGET>
bool BufferObject_GL<PARENT, TARGET>::hasBufferObjects() const
{
    return this->getDisplay()->hasExtension(EXTENSION);
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::restoreResource()
{
    ZVX_REQUIRE(mID == 0, "mID==0");
    ZVX_REQUIRE(this->mDisposed, "mDisposed");
    if (hasBufferObjects()) {
        GL_CHECKED(glGenBuffers(1, &mID));
        uploadAll();
    }
    this->mDisposed = false;
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::disposeResource(bool lost)
{
    ZVX_REQUIRE(!this->mDisposed, "!mDisposed");
    if (!lost && mID != 0)
        GL_CHECKED(glDeleteBuffers(1, &mID));
    mID = 0;
    this->mDisposed = true;
}

template <typename PARENT, GLenum TARGET>
void* BufferObject_GL<PARENT, TARGET>::lock(bool write, bool read, int first, int count)
{
    ZVX_REQUIRE(mMapped == 0, "mMapped==0");
    ZVX_REQUIRE(write || read, "write || read");
    if (first != -1)
        requireRange(first, count);
    if (write)
        mMapped = read ? GL_READ_WRITE : GL_WRITE_ONLY;
    else
        mMapped = GL_READ_ONLY;
    mMappedFirstEntity = first;
    mMappedNumEntities = count;
    return first == -1 ? mCompPtr.data() : mCompPtr.data() + bytes(first);
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::unlock()
{
    ZVX_REQUIRE(mMapped != 0, "mMapped!=0");
    const bool written = mMapped != GL_READ_ONLY;
    mMapped = 0;
    if (mID == 0 || !written)
        return;
    if (mMappedFirstEntity == -1)
        uploadAll();
    else
        upload(mMappedFirstEntity, mMappedNumEntities);
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::replace(int first, int count, const void* data)
{
    requireRange(first, count);
    if (count == 0)
        return;
    std::copy_n(static_cast<const std::uint8_t*>(data), bytes(count),
                mCompPtr.data() + bytes(first));
    if (mID != 0)
        upload(first, count);
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::bindObject()
{
    if (this->mDisposed)
        restoreResource();
    if (mID != 0)
        GL_CHECKED(glBindBuffer(TARGET, mID));
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::unbindObject() const
{
    if (mID != 0)
        GL_CHECKED(glBindBuffer(TARGET, 0));
}

template <typename PARENT, GLenum TARGET>
const void* BufferObject_GL<PARENT, TARGET>::pointerGL(std::size_t offset) const
{
    if (mID == 0)
        return mCompPtr.data() + offset;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the driver takes the pointer's value for an offset
    return reinterpret_cast<const void*>(offset);
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::requireRange(int first, int count) const
{
    ZVX_REQUIRE(first >= 0 && count >= 0 && first <= mEntities && count <= mEntities - first,
                "first>=0 && count>=0 && first+count<=mEntities");
}

template <typename PARENT, GLenum TARGET>
std::size_t BufferObject_GL<PARENT, TARGET>::bytes(int entities) const
{
    return static_cast<std::size_t>(entities) * static_cast<std::size_t>(mEntitySize);
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::upload(int first, int count) const
{
    const Binding binding(TARGET, mID);
    GL_CHECKED(glBufferSubData(TARGET, static_cast<GLintptr>(bytes(first)),
                               static_cast<GLsizeiptr>(bytes(count)),
                               mCompPtr.data() + bytes(first)));
}

template <typename PARENT, GLenum TARGET>
void BufferObject_GL<PARENT, TARGET>::uploadAll() const
{
    const Binding binding(TARGET, mID);
    GL_CHECKED(glBufferData(TARGET, static_cast<GLsizeiptr>(mCompPtr.size()), mCompPtr.data(),
                            usageOf(mMode)));
}

template class BufferObject_GL<VBO, GL_ARRAY_BUFFER>;
template class BufferObject_GL<IBO, GL_ELEMENT_ARRAY_BUFFER>;

VBO_GL::VBO_GL(DisplayGL* display, int count, const VertexDef* format, DisplayGL::ResourceMode mode)
    : BufferObject_GL(display, count, format->getVertexSize(), mode), mFormat(format)
{
    reportCount(*display, "Creating vertex buffer with too many vertices (%d when %d recommended)",
                GL_MAX_ELEMENTS_VERTICES, count);
}

void VBO_GL::bind()
{
    bindObject();
    std::size_t enabled = 0;
    try {
        for (; enabled < mFormat->getAttributes().size(); ++enabled)
            enable(mFormat->getAttributes()[enabled]);
    } catch (...) {
        // Without checks: one error is on its way already.
        while (enabled-- > 0)
            glDisableVertexAttribArray(
                static_cast<GLuint>(mFormat->getAttributes()[enabled].index));
        if (mID != 0)
            glBindBuffer(GL_ARRAY_BUFFER, 0);
        throw;
    }
}

/** An attribute that is refused stays disabled. */
void VBO_GL::enable(const VertexAttribute& attribute) const
{
    const GLenum type = typeOf(attribute.type);
    ZVX_REQUIRE(type != GL_NONE, "attribute.type!=TYPE_NONE");
    if (glEnableVertexAttribArray == nullptr)
        throw Exception{"Display::VBO_GL; Vertex attributes not supported [GL_ARB_vertex_shader]"};
    const auto index = static_cast<GLuint>(attribute.index);
    GL_CHECKED(glVertexAttribPointer(index, attribute.numElements, type, GL_FALSE, mEntitySize,
                                     pointerGL(static_cast<std::size_t>(attribute.offset))));
    GL_CHECKED(glEnableVertexAttribArray(index));
}

void VBO_GL::unbind()
{
    unbindObject();
    for (const VertexAttribute& attribute : mFormat->getAttributes())
        GL_CHECKED(glDisableVertexAttribArray(static_cast<GLuint>(attribute.index)));
}

IBO_GL::IBO_GL(DisplayGL* display, int count, Format format, DisplayGL::ResourceMode mode)
    : BufferObject_GL(display, count, std::max(sizeOf(format), 1), mode), mFormat(format),
      mFormatGL(typeOf(format))
{
    ZVX_REQUIRE(mFormat != FORMAT_NONE, "mFormat!=FORMAT_NONE");
    reportCount(*display, "Creating index buffer with too many indices (%d when %d recommended)",
                GL_MAX_ELEMENTS_INDICES, count);
}

void IBO_GL::replace(int first, int count, const void* data, int offset, Format sourceFormat)
{
    const Format source = sourceFormat == FORMAT_NONE ? mFormat : sourceFormat;
    if (offset == 0 && source == mFormat) {
        ZVX_LOG("log", "app", "replace(%d, %d, %p)", first, count, data);
        replace(first, count, data);
        return;
    }
    ZVX_REQUIRE(count >= 0, "count>=0");
    const auto number = static_cast<std::size_t>(count);
    const auto added = static_cast<std::uint32_t>(offset);
    switch (mFormat) {
        case FORMAT_UINT8:
            replace(first, count, converted<std::uint8_t>(data, number, added, source).data());
            break;
        case FORMAT_UINT16:
            replace(first, count, converted<std::uint16_t>(data, number, added, source).data());
            break;
        default:
            replace(first, count, converted<std::uint32_t>(data, number, added, source).data());
            break;
    }
}

void IBO_GL::setLimits(int low, int high)
{
    mLow = low;
    mHigh = high;
}

const void* IBO_GL::getPointerGL(int first) const
{
    return pointerGL(static_cast<std::size_t>(first) * static_cast<std::size_t>(mEntitySize));
}

} // namespace zavex::display
