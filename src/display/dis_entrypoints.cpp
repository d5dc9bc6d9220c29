#include "display/dis_glinclude.h"

#include "common/zvx_system.h"

namespace zavex::display {

namespace {

/** The two take the same arguments, whatever the headers call their types. */
template <typename Core, typename Extension>
void complete(Core& core, Extension extension)
{
    if (core == nullptr)
        core = reinterpret_cast<Core>(extension);
}

void completeShaders()
{
    complete(glAttachShader, glAttachObjectARB);
    complete(glBindAttribLocation, glBindAttribLocationARB);
    complete(glCompileShader, glCompileShaderARB);
    complete(glCreateProgram, glCreateProgramObjectARB);
    complete(glCreateShader, glCreateShaderObjectARB);
    complete(glDeleteProgram, glDeleteObjectARB);
    complete(glDeleteShader, glDeleteObjectARB);
    complete(glGetActiveAttrib, glGetActiveAttribARB);
    complete(glGetActiveUniform, glGetActiveUniformARB);
    complete(glGetAttribLocation, glGetAttribLocationARB);
    complete(glGetProgramInfoLog, glGetInfoLogARB);
    complete(glGetProgramiv, glGetObjectParameterivARB);
    complete(glGetShaderInfoLog, glGetInfoLogARB);
    complete(glGetShaderiv, glGetObjectParameterivARB);
    complete(glGetUniformLocation, glGetUniformLocationARB);
    complete(glLinkProgram, glLinkProgramARB);
    complete(glShaderSource, glShaderSourceARB);
    complete(glUniform1fv, glUniform1fvARB);
    complete(glUniform1iv, glUniform1ivARB);
    complete(glUniform2fv, glUniform2fvARB);
    complete(glUniform3fv, glUniform3fvARB);
    complete(glUniform4fv, glUniform4fvARB);
    complete(glUniformMatrix4fv, glUniformMatrix4fvARB);
    complete(glUseProgram, glUseProgramObjectARB);
}

void completeArrays()
{
    complete(glBindBuffer, glBindBufferARB);
    complete(glBufferData, glBufferDataARB);
    complete(glBufferSubData, glBufferSubDataARB);
    complete(glDeleteBuffers, glDeleteBuffersARB);
    complete(glDisableVertexAttribArray, glDisableVertexAttribArrayARB);
    complete(glDrawRangeElements, glDrawRangeElementsEXT);
    complete(glEnableVertexAttribArray, glEnableVertexAttribArrayARB);
    complete(glGenBuffers, glGenBuffersARB);
    complete(glVertexAttribPointer, glVertexAttribPointerARB);
}

} // namespace

void completeEntryPoints()
{
    completeShaders();
    completeArrays();
    complete(glActiveTexture, glActiveTextureARB);
    complete(glBlendEquation, glBlendEquationEXT);
    complete(glClientActiveTexture, glClientActiveTextureARB);
    if (!glActiveTexture || !glClientActiveTexture || !glDrawRangeElements)
        throw Exception{"DisplayGLFW: OpenGL 1.3 is needed, this computer has '%s'",
                        reinterpret_cast<const char*>(glGetString(GL_VERSION))};
}

} // namespace zavex::display
