#pragma once

// The one place that includes the graphics library, so that its headers come in the right order.
#include <GL/glew.h>

#include <GL/glu.h>

#include <type_traits>

namespace zavex::display {

/**
 * Fills the entry points that a driver of an older version does not have from the extensions that
 * they came from. The ones that it has in neither way stay null: those of shaders, buffer objects,
 * vertex attributes and blend equations.
 *
 * To be called with a context, after GLEW is initialised. Throws Exception when the driver lacks
 * what everything is drawn with.
 */
void completeEntryPoints();

/**
 * The name of an error code of the graphics library, "GL_INVALID_ENUM" for 0x500; null for
 * GL_NO_ERROR and for codes that are not reported.
 */
const char* glErrorName(GLenum error);

/**
 * Throws Exception when `error` has a name (`glErrorName`); the message gives the line, the source
 * file without its folder, the text of the checked call and the error's name.
 */
void raiseGlError(GLenum error, const char* file, int line, const char* text);

/** Makes `call`, checks the error flag and returns what the call returned; see GL_CHECKED. */
template <typename Call>
auto checkedGlCall(const char* file, int line, const char* text, Call call)
{
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        raiseGlError(glGetError(), file, line, text);
    } else {
        const auto result = call();
        raiseGlError(glGetError(), file, line, text);
        return result;
    }
}

} // namespace zavex::display

/**
 * Reads the graphics library's error flag and throws Exception when it holds an error. `text` names
 * the call that is checked. Must not stand between glBegin and glEnd.
 */
#define GL_REPORT_ERROR(file, line, text)                                                          \
    ::zavex::display::raiseGlError(glGetError(), file, line, text)

/**
 * Makes one graphics call and checks it; the call's own source text names it in the error. Yields
 * what the call returns: `const GLuint shader = GL_CHECKED(glCreateShader(type));`.
 */
#define GL_CHECKED(...)                                                                            \
    ::zavex::display::checkedGlCall(__FILE__, __LINE__, #__VA_ARGS__, [&] { return __VA_ARGS__; })
