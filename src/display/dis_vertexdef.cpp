#include "display/dis_vertexdef.h"

namespace zavex::display {

VertexAttribute::VertexAttribute(int attributeIndex, const std::string& attributeName,
                                 int byteOffset, VariableType elementType, int elements)
    : NamedVariable{{elementType, elements}, attributeName}, index{attributeIndex},
      offset{byteOffset}
{}

} // namespace zavex::display
