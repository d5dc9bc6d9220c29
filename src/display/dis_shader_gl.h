#pragma once

#include "display/dis_glinclude.h"
#include "display/dis_shader.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace zavex::display {

/** A shader file, compiled from the archives with its defines in front. */
class ShaderSource_GL : public ShaderSource {
public:
    /** @param filename  The file's name in the archives. */
    ShaderSource_GL(DisplayGL* display, const std::string& filename);
    ShaderSource_GL(const ShaderSource_GL&) = delete;
    ShaderSource_GL& operator=(const ShaderSource_GL&) = delete;
    ~ShaderSource_GL() override;

    void disposeResource(bool lost) override;
    void restoreResource() override;
    void setDefine(const std::string& name, const std::string& value) override;

    /** Makes the shader object; there must be none. */
    virtual void createHandle() = 0;

    /** Compiles a file of the archives. Throws Exception, with the driver's words, when it fails.
     */
    void compile(const std::string& file);

    /** Compiles `size` characters at `data`, not null; `name` stands in the error. */
    void compile(const char* data, std::size_t size, const std::string& name);

    GLuint getHandle() const { return mHandle; }
    const std::string& getFilename() const { return mFilename; }

protected:
    GLuint mHandle = 0; // 0 when none

private:
    void deleteHandle();

    std::string mFilename;
    std::map<std::string, std::string> mDefines;
};

class VertexShaderSource_GL final : public ShaderSource_GL {
public:
    using ShaderSource_GL::ShaderSource_GL;

    Type getType() const override { return SHADER_VERTEX; }
    void createHandle() override;
};

class PixelShaderSource_GL final : public ShaderSource_GL {
public:
    using ShaderSource_GL::ShaderSource_GL;

    Type getType() const override { return SHADER_PIXEL; }
    void createHandle() override;
};

/** A program of the graphics library. */
class Shader_GL final : public Shader {
public:
    /** All of which a driver must have. */
    static constexpr const char* EXTENSIONS[] = {
        "GL_ARB_shader_objects",
        "GL_ARB_shading_language_100",
        "GL_ARB_vertex_shader",
        "GL_ARB_fragment_shader",
    };

    using Shader::Shader;
    Shader_GL(const Shader_GL&) = delete;
    Shader_GL& operator=(const Shader_GL&) = delete;
    ~Shader_GL() override;

    void disposeResource(bool lost) override;
    void restoreResource() override { link(); }
    void dettachAll() override;

    void attach(ShaderSource* source) override;
    void attach(const std::string& vertexFile, const std::string& pixelFile) override;
    void link() override;

    int getUniformLocation(const std::string& name) override;
    void getUniforms(std::vector<VertexAttribute>& uniforms) override;
    int getVertexAttribLocation(const std::string& name) override;
    void getVertexAttribs(std::vector<VertexAttribute>& attributes) override;
    void setVertexAttrib(int index, const std::string& name) override;
    void setVertexAttrib(const VertexDef* def) override;

    void set(int location, const int* value, int count) override;
    void set(int location, const float* value, int count) override;
    void set(int location, const mathbase::Vector2f* value, int count) override;
    void set(int location, const mathbase::Vector3f* value, int count) override;
    void set(int location, const mathbase::Vector4f* value, int count) override;
    void set(int location, const mathbase::Matrix4x4Col* value, int count) override;

    /** Draws with the program from now on; links first if disposed. */
    void bind();

private:
    struct Attachment {
        ShaderSource_GL* source; // held
        bool attached;           // to the present program object
    };

    void linkProgram();
    void attachSources();
    void logFiles() const;
    void deleteHandle();

    GLuint mHandle = 0; // 0 when none
    bool mLinked = false;
    std::vector<Attachment> mSources;
    std::map<std::string, int> mVertexAttribMap;
};

/** The `Variable` of a GL type; `TYPE_NONE` with one element when it has none. */
Variable getVaribleFromGLType(GLenum type);

} // namespace zavex::display
