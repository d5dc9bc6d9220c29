#pragma once

#include "display/dis_resource.h"
#include "display/dis_vertexdef.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "mathbase/mb_vector4.h"

#include <string>
#include <vector>

namespace zavex::display {

/**
 * One shader file of the archives, compiled when a program that holds it is first used.
 *
 * Made by `DisplayGL::createVertexShader` and `createPixelShader`.
 */
class ShaderSource : public Resource {
public:
    enum Type : int {
        SHADER_VERTEX = 0,
        SHADER_PIXEL = 1,
    };

    using Resource::Resource;

    virtual Type getType() const = 0;

    /**
     * Puts the line "#define NAME VALUE" in front of the file at the next compilation: set it
     * before the program is first used. Lines stand in the order of their names.
     */
    virtual void setDefine(const std::string& name, const std::string& value) = 0;
};

/**
 * A shader program, linked when it is first used.
 *
 * Made by `DisplayGL::createShader`, used through `DisplayGL::setShader`. Compile and link errors
 * are Exceptions, thrown at the first use, that name the files.
 */
class Shader : public Resource {
public:
    using Resource::Resource;

    /** Adds a source and takes a hold on it. Takes effect at the next link. */
    virtual void attach(ShaderSource* source) = 0;

    /** Adds two files, whose sources this program alone owns. */
    virtual void attach(const std::string& vertexFile, const std::string& pixelFile) = 0;

    virtual void link() = 0;

    /** -1 when the program has no such uniform. The program must have been used. */
    virtual int getUniformLocation(const std::string& name) = 0;

    /** Appends the active uniforms; a type without a `Variable` (samplers) is `TYPE_NONE`, one
     * element. */
    virtual void getUniforms(std::vector<VertexAttribute>& uniforms) = 0;

    /** -1 when the program has no such attribute. The program must have been used. */
    virtual int getVertexAttribLocation(const std::string& name) = 0;

    /** Appends the active attributes. */
    virtual void getVertexAttribs(std::vector<VertexAttribute>& attributes) = 0;

    /** Binds an attribute's name to an index. Takes effect at the next link. */
    virtual void setVertexAttrib(int index, const std::string& name) = 0;

    /** Binds every attribute of `def`, which must not be null. */
    virtual void setVertexAttrib(const VertexDef* def) = 0;

    /** Sets `count` values of a uniform, starting at `location`; the program must be the one in
     * use. */
    virtual void set(int location, const int* value, int count) = 0;
    virtual void set(int location, const float* value, int count) = 0;
    virtual void set(int location, const mathbase::Vector2f* value, int count) = 0;
    virtual void set(int location, const mathbase::Vector3f* value, int count) = 0;
    virtual void set(int location, const mathbase::Vector4f* value, int count) = 0;
    virtual void set(int location, const mathbase::Matrix4x4Col* value, int count) = 0;
};

} // namespace zavex::display
