#include "display/dis_glinclude.h"

#include "common/zvx_system.h"

#include <string_view>

namespace zavex::display {

const char* glErrorName(GLenum error)
{
    switch (error) {
        case GL_INVALID_ENUM: return "GL_INVALID_ENUM";
        case GL_INVALID_VALUE: return "GL_INVALID_VALUE";
        case GL_INVALID_OPERATION: return "GL_INVALID_OPERATION";
        case GL_STACK_OVERFLOW: return "GL_STACK_OVERFLOW";
        case GL_STACK_UNDERFLOW: return "GL_STACK_UNDERFLOW";
        case GL_OUT_OF_MEMORY: return "GL_OUT_OF_MEMORY";
        case GL_TABLE_TOO_LARGE: return "GL_TABLE_TOO_LARGE";
        default: return nullptr;
    }
}

void raiseGlError(GLenum error, const char* file, int line, const char* text)
{
    const char* const name = glErrorName(error);
    if (name == nullptr)
        return;
    const char* const source = file + (std::string_view(file).find_last_of('/') + 1);
    throw Exception("GL-error at [%d] %s\nLine: %s\nError: '%s'\n", line, source, text, name);
}

} // namespace zavex::display
