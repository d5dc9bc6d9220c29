#include "display/dis_shader_gl.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_immediate.h"

#include <algorithm>

namespace zavex::display {

namespace {

struct TypeGL {
    GLenum typeGL;
    Variable variable;
};

constexpr TypeGL TYPES[] = {
    {GL_FLOAT,      {Variable::TYPE_FLOAT, 1} },
    {GL_FLOAT_VEC2, {Variable::TYPE_FLOAT, 2} },
    {GL_FLOAT_VEC3, {Variable::TYPE_FLOAT, 3} },
    {GL_FLOAT_VEC4, {Variable::TYPE_FLOAT, 4} },
    {GL_INT,        {Variable::TYPE_INT, 1}   },
    {GL_INT_VEC2,   {Variable::TYPE_INT, 2}   },
    {GL_INT_VEC3,   {Variable::TYPE_INT, 3}   },
    {GL_INT_VEC4,   {Variable::TYPE_INT, 4}   },
    {GL_BOOL,       {Variable::TYPE_BOOL, 1}  },
    {GL_BOOL_VEC2,  {Variable::TYPE_BOOL, 2}  },
    {GL_BOOL_VEC3,  {Variable::TYPE_BOOL, 3}  },
    {GL_BOOL_VEC4,  {Variable::TYPE_BOOL, 4}  },
    {GL_FLOAT_MAT2, {Variable::TYPE_FLOAT, 4} },
    {GL_FLOAT_MAT3, {Variable::TYPE_FLOAT, 9} },
    {GL_FLOAT_MAT4, {Variable::TYPE_FLOAT, 16}},
};

/** Asks one of the graphics library's objects for its log of the length that it reports. */
template <typename GetParameter, typename GetLog>
std::string infoLog(GLuint handle, GetParameter getParameter, GetLog getLog)
{
    GLint length = 0;
    GL_CHECKED(getParameter(handle, GL_INFO_LOG_LENGTH, &length));
    std::string log(static_cast<std::size_t>(std::max(length, 0)), '\0');
    if (length > 0)
        GL_CHECKED(getLog(handle, length, nullptr, log.data()));
    return log;
}

/** How the graphics library is asked for one kind of a program's variables. */
struct VariableQueries {
    GLenum count;
    GLenum nameLength; // of the longest name, its end included
    decltype(glGetActiveUniform) getActive;
    decltype(glGetUniformLocation) getLocation;
};

void appendVariables(GLuint program, const VariableQueries& queries,
                     std::vector<VertexAttribute>& variables)
{
    GLint count = 0;
    GLint nameLength = 0;
    GL_CHECKED(glGetProgramiv(program, queries.count, &count));
    GL_CHECKED(glGetProgramiv(program, queries.nameLength, &nameLength));
    std::string buffer(static_cast<std::size_t>(std::max(nameLength, 1)), '\0');
    for (GLint i = 0; i < count; ++i) {
        GLint arraySize = 0;
        GLenum type = 0;
        GL_CHECKED(queries.getActive(program, static_cast<GLuint>(i),
                                     static_cast<GLsizei>(buffer.size()), nullptr, &arraySize,
                                     &type, buffer.data()));
        const std::string name{buffer.c_str()};
        const Variable variable = getVaribleFromGLType(type);
        const GLint location = GL_CHECKED(queries.getLocation(program, name.c_str()));
        variables.emplace_back(location, name, 0, variable.type, variable.numElements);
    }
}

} // namespace

Variable getVaribleFromGLType(GLenum type)
{
    const auto* const known = std::ranges::find(TYPES, type, &TypeGL::typeGL);
    return known == std::end(TYPES) ? Variable{Variable::TYPE_NONE, 1} : known->variable;
}

ShaderSource_GL::ShaderSource_GL(DisplayGL* display, const std::string& filename)
    : ShaderSource{display}, mFilename{filename}
{}

ShaderSource_GL::~ShaderSource_GL()
{
    deleteHandle();
}

void ShaderSource_GL::deleteHandle()
{
    if (mHandle != 0)
        glDeleteShader(mHandle);
    mHandle = 0;
}

void ShaderSource_GL::setDefine(const std::string& name, const std::string& value)
{
    mDefines[name] = value;
}

void ShaderSource_GL::restoreResource()
{
    ZVX_REQUIRE(mDisposed, "mDisposed");
    ZVX_REQUIRE(!mFilename.empty(), "!mFilename.empty()");
    ZVX_REQUIRE(getDisplay()->supportsShaders(), "getDisplay()->supportsShaders()");
    compile(mFilename);
    mDisposed = false;
}

void ShaderSource_GL::disposeResource(bool lost)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    if (!lost)
        GL_CHECKED(glDeleteShader(mHandle));
    mHandle = 0;
    mDisposed = true;
}

void ShaderSource_GL::compile(const std::string& file)
{
    ZVX_REQUIRE(getDisplay()->supportsShaders(), "getDisplay()->supportsShaders()");
    if (!canLoad())
        throw Exception{"The device can not load files! (when loading %s)", file.c_str()};

    const am::File text = loadFile(file);
    compile(text->data, text->bytes().size(), file);
}

void ShaderSource_GL::compile(const char* data, std::size_t size, const std::string& name)
{
    ZVX_REQUIRE(data, "data");
    if (mHandle == 0)
        createHandle();

    std::string text; // the defines, then the file; an explicit length, so no zero byte is needed
    for (const auto& [define, value] : mDefines)
        text.append("#define ").append(define).append(" ").append(value).append("\n");
    text.append(data, size);
    const GLchar* const start = text.data();
    const auto length = static_cast<GLint>(text.size());
    GL_CHECKED(glShaderSource(mHandle, 1, &start, &length));
    GL_CHECKED(glCompileShader(mHandle));

    GLint compiled = GL_FALSE;
    GL_CHECKED(glGetShaderiv(mHandle, GL_COMPILE_STATUS, &compiled));
    if (compiled == GL_TRUE)
        return;
    const std::string log = infoLog(mHandle, glGetShaderiv, glGetShaderInfoLog);
    deleteHandle();
    throw Exception{"Could not compile '%s'.\nCompile message:\n%s", name.c_str(), log.c_str()};
}

void VertexShaderSource_GL::createHandle()
{
    ZVX_REQUIRE(mHandle == 0, "mHandle==0");
    mHandle = glCreateShader(GL_VERTEX_SHADER);
    GL_REPORT_ERROR(__FILE__, __LINE__, "mHandle=glCreateShader(GL_VERTEX_SHADER)");
    ZVX_REQUIRE(mHandle != 0, "mHandle!=0");
}

void PixelShaderSource_GL::createHandle()
{
    ZVX_REQUIRE(mHandle == 0, "mHandle==0");
    mHandle = glCreateShader(GL_FRAGMENT_SHADER);
    GL_REPORT_ERROR(__FILE__, __LINE__, "mHandle=glCreateShader(GL_FRAGMENT_SHADER)");
    ZVX_REQUIRE(mHandle != 0, "mHandle!=0");
}

Shader_GL::~Shader_GL()
{
    dettachAll();
    deleteHandle();
}

void Shader_GL::deleteHandle()
{
    if (mHandle != 0)
        glDeleteProgram(mHandle);
    mHandle = 0;
    for (Attachment& attachment : mSources)
        attachment.attached = false;
}

void Shader_GL::attach(ShaderSource* source)
{
    ZVX_REQUIRE(source, "source!=0");
    mSources.push_back({static_cast<ShaderSource_GL*>(source), false});
    source->incRef();
}

void Shader_GL::attach(const std::string& vertexFile, const std::string& pixelFile)
{
    ShaderSource* const vertex = mDisplay->createVertexShader(vertexFile, false);
    ShaderSource* const pixel = mDisplay->createPixelShader(pixelFile, false);
    attach(vertex);
    attach(pixel);
    vertex->destroy();
    pixel->destroy();
}

void Shader_GL::dettachAll()
{
    for (const Attachment& attachment : mSources)
        attachment.source->destroy();
    mSources.clear();
}

void Shader_GL::link()
{
    // A program that did not come about leaves no object behind: its name means nothing to the next
    // context.
    mLinked = false;
    mDisposed = true;
    try {
        linkProgram();
    } catch (...) {
        deleteHandle();
        throw;
    }
    mLinked = true;
    mDisposed = false;
}

void Shader_GL::linkProgram()
{
    for (const char* const extension : EXTENSIONS)
        if (!mDisplay->hasExtension(extension))
            throw Exception{"Display::Shader_GL; Shaders not supported [%s]", extension};
    if (mHandle == 0) {
        mHandle = GL_CHECKED(glCreateProgram());
        ZVX_REQUIRE(mHandle, "mHandle");
    }

    attachSources();
    for (const auto& binding : mVertexAttribMap)
        GL_CHECKED(glBindAttribLocation(mHandle, static_cast<GLuint>(binding.second),
                                        binding.first.c_str()));
    GL_CHECKED(glLinkProgram(mHandle));

    GLint linked = GL_FALSE;
    GL_CHECKED(glGetProgramiv(mHandle, GL_LINK_STATUS, &linked));
    if (linked == GL_TRUE)
        return;
    logFiles();
    const std::string log = infoLog(mHandle, glGetProgramiv, glGetProgramInfoLog);
    throw Exception{"Could not link.\n\nLink message:\n%s", log.c_str()};
}

void Shader_GL::attachSources()
{
    for (Attachment& attachment : mSources) {
        if (attachment.attached)
            continue;
        if (attachment.source->isDisposed())
            attachment.source->restoreResource();
        ZVX_REQUIRE(!attachment.source->isDisposed(), "!mDisposed");
        GL_CHECKED(glAttachShader(mHandle, attachment.source->getHandle()));
        attachment.attached = true;
    }
}

void Shader_GL::logFiles() const
{
    std::string files;
    for (const Attachment& attachment : mSources)
        files += (files.empty() ? "" : ", ") + attachment.source->getFilename();
    ZVX_LOG("log", "app", "The program that does not link is made of: %s", files.c_str());
}

void Shader_GL::disposeResource(bool lost)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    mLinked = false;
    if (lost)
        mHandle = 0;
    deleteHandle();
    if (!lost)
        GL_REPORT_ERROR(__FILE__, __LINE__, "glDeleteProgram(mHandle)");
    mDisposed = true;
}

void Shader_GL::bind()
{
    if (mDisposed)
        restoreResource();
    GL_CHECKED(glUseProgram(mHandle));
}

int Shader_GL::getUniformLocation(const std::string& name)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    return GL_CHECKED(glGetUniformLocation(mHandle, name.c_str()));
}

int Shader_GL::getVertexAttribLocation(const std::string& name)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    return GL_CHECKED(glGetAttribLocation(mHandle, name.c_str()));
}

void Shader_GL::getUniforms(std::vector<VertexAttribute>& uniforms)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    appendVariables(mHandle,
                    {GL_ACTIVE_UNIFORMS, GL_ACTIVE_UNIFORM_MAX_LENGTH, glGetActiveUniform,
                     glGetUniformLocation},
                    uniforms);
}

void Shader_GL::getVertexAttribs(std::vector<VertexAttribute>& attributes)
{
    ZVX_REQUIRE(!mDisposed, "!mDisposed");
    appendVariables(mHandle,
                    {GL_ACTIVE_ATTRIBUTES, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, glGetActiveAttrib,
                     glGetAttribLocation},
                    attributes);
}

void Shader_GL::setVertexAttrib(int index, const std::string& name)
{
    mVertexAttribMap[name] = index;
}

void Shader_GL::setVertexAttrib(const VertexDef* def)
{
    ZVX_REQUIRE(def, "def!=0");
    for (const VertexAttribute& attribute : def->getAttributes())
        setVertexAttrib(attribute.index, attribute.name);
}

void Shader_GL::set(int location, const int* value, int count)
{
    Immediate::live().flush();
    GL_CHECKED(glUniform1iv(location, count, value));
}

void Shader_GL::set(int location, const float* value, int count)
{
    Immediate::live().flush();
    GL_CHECKED(glUniform1fv(location, count, value));
}

void Shader_GL::set(int location, const mathbase::Vector2f* value, int count)
{
    Immediate::live().flush();
    GL_CHECKED(glUniform2fv(location, count, &value->x));
}

void Shader_GL::set(int location, const mathbase::Vector3f* value, int count)
{
    Immediate::live().flush();
    GL_CHECKED(glUniform3fv(location, count, &value->x));
}

void Shader_GL::set(int location, const mathbase::Vector4f* value, int count)
{
    Immediate::live().flush();
    GL_CHECKED(glUniform4fv(location, count, &value->x));
}

void Shader_GL::set(int location, const mathbase::Matrix4x4Col* value, int count)
{
    Immediate::live().flush();
    GL_CHECKED(glUniformMatrix4fv(location, count, GL_FALSE, value->mData));
}

} // namespace zavex::display
