#pragma once

#include <string>
#include <vector>

namespace zavex::display {

/** The type of a shader variable or of one attribute of a vertex. */
struct Variable {
    enum VariableType : int {
        TYPE_NONE = 0,
        TYPE_BOOL = 1,
        TYPE_BYTE = 2,
        TYPE_UBYTE = 3,
        TYPE_SHORT = 4,
        TYPE_USHORT = 5,
        TYPE_INT = 6,
        TYPE_UINT = 7,
        TYPE_FLOAT = 8,
        TYPE_DOUBLE = 9,
    };

    VariableType type = TYPE_NONE;
    int numElements = 0;
};

struct NamedVariable : Variable {
    std::string name;
};

/** One attribute of a vertex, or an active attribute or uniform of a shader program. */
struct VertexAttribute : NamedVariable {
    VertexAttribute() = default;

    /**
     * @param attributeIndex  Index that a shader binds the name to, or location in a program.
     * @param byteOffset  Offset in bytes inside one vertex.
     * @param elements  Components, 1 to 4 in a vertex.
     */
    VertexAttribute(int attributeIndex, const std::string& attributeName, int byteOffset,
                    VariableType elementType, int elements);

    int index = 0;
    int offset = 0; // bytes
};

/**
 * The layout of one vertex.
 *
 * Shaders and buffers keep pointers to a definition, so it must outlive them.
 */
class VertexDef {
public:
    /** @param size  Bytes per vertex. */
    explicit VertexDef(int size) : mSize(size) {}

    void addAttribute(const VertexAttribute& attribute) { mAttributes.push_back(attribute); }

    int getNumAttributes() const { return static_cast<int>(mAttributes.size()); }
    const std::vector<VertexAttribute>& getAttributes() const { return mAttributes; }
    int getVertexSize() const { return mSize; }

private:
    int mSize = 0; // bytes
    std::vector<VertexAttribute> mAttributes;
};

} // namespace zavex::display
