#include "display/dis_glinclude.h"
#include "display/dis_shader_gl.h"
#include "gl_assets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace zavex::test {

using display::DisplayObsolete;
using display::Shader;
using display::ShaderSource;
using display::Variable;
using display::VertexAttribute;
using display::VertexDef;

namespace {

constexpr const char* PLAIN_VERTEX = "void main() { gl_Position = ftransform(); }\n";

class Shaders : public AssetsTest {
protected:
    Shaders()
    {
        mFolder.write("plain.vert", PLAIN_VERTEX);
        mFolder.write("colour.frag", "uniform vec4 colour;\n"
                                     "void main() { gl_FragColor = colour; }\n");
    }

    /** What a program with a pixel file fills the window with, as 0xRRGGBB. */
    unsigned drawnBy(
        Shader* shader, const std::function<void()>& prepare = [] {})
    {
        const Picture picture = pictureOf([&] {
            mDisplay.setShader(shader);
            prepare();
            DisplayObsolete::setProject(0.0f, 1.0f, 0.0f, 1.0f);
            DisplayObsolete::drawBox(0.0f, 0.0f, 1.0f, 1.0f, DisplayObsolete::SOLID);
        });
        return pixelAt(picture, 32, 24);
    }

    std::string useMessage(Shader* shader)
    {
        return thrownMessage([&] { mDisplay.setShader(shader); });
    }
};

const VertexAttribute* named(const std::vector<VertexAttribute>& attributes,
                             const std::string& name)
{
    const auto found = std::ranges::find(attributes, name, &VertexAttribute::name);
    return found == attributes.end() ? nullptr : &*found;
}

GLint currentProgram()
{
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    return program;
}

} // namespace

TEST_F(Shaders, AProgramLinksAtItsFirstUseAndDrawsWithItsUniforms)
{
    Shader* const shader = mDisplay.createShader("plain.vert", "colour.frag", nullptr);
    EXPECT_TRUE(shader->isDisposed());
    const mathbase::Vector4f green{0.0f, 1.0f, 0.0f, 1.0f};
    EXPECT_EQ(
        drawnBy(shader, [&] { shader->set(shader->getUniformLocation("colour"), &green, 1); }),
        0x00ff00u);
    EXPECT_EQ(shader->getUniformLocation("absent"), -1);
    EXPECT_EQ(currentProgram(), 0) << "a frame ends without a program";
    shader->destroy();
}

TEST_F(Shaders, ComeFromTheirExtensionsWhereTheVersionHasNone)
{
    glCreateShader = nullptr; // the loader's; looked up again with the next window
    glCreateProgram = nullptr;
    glUseProgram = nullptr;
    display::completeEntryPoints();
    mFolder.write("white.frag", "void main() { gl_FragColor = vec4(1.0); }");
    Shader* const shader = mDisplay.createShader("plain.vert", "white.frag", nullptr);
    EXPECT_EQ(drawnBy(shader), 0xffffffu);
    shader->destroy();
}

TEST(ShadersWithoutADriverForThem, SayWhatIsMissing)
{
    struct OldDisplay : display::DisplayGLFW {
        bool hasExtension(const std::string& name) const override
        {
            return name != "GL_ARB_fragment_shader" && DisplayGLFW::hasExtension(name);
        }
    } display;
    display.open(smallMode());
    glCreateProgram = nullptr;
    Shader* const shader = display.createShader("plain.vert", "plain.frag", nullptr);
    EXPECT_EQ(thrownMessage([&] { display.setShader(shader); }),
              "Display::Shader_GL; Shaders not supported [GL_ARB_fragment_shader]");
    shader->destroy();
}

TEST_F(Shaders, AUniformChangesOnlyWhatIsDrawnAfterIt)
{
    Shader* const shader = mDisplay.createShader("plain.vert", "colour.frag", nullptr);
    const Picture picture = pictureOf([&] {
        const mathbase::Vector4f red{1.0f, 0.0f, 0.0f, 1.0f};
        const mathbase::Vector4f blue{0.0f, 0.0f, 1.0f, 1.0f};
        mDisplay.setShader(shader);
        const int colour = shader->getUniformLocation("colour");
        DisplayObsolete::setProject(0.0f, 2.0f, 0.0f, 1.0f);
        shader->set(colour, &red, 1);
        DisplayObsolete::drawBox(0.0f, 0.0f, 1.0f, 1.0f, DisplayObsolete::SOLID);
        shader->set(colour, &blue, 1);
        DisplayObsolete::drawBox(1.0f, 0.0f, 2.0f, 1.0f, DisplayObsolete::SOLID);
    });
    EXPECT_EQ(pixelAt(picture, 10, 10), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 50, 10), 0x0000ffu);
    shader->destroy();
}

TEST_F(Shaders, DefinesStandInFrontOfTheFileInTheOrderOfTheirNamesFromTheNextCompilationOn)
{
    const std::string file = "void main() { gl_FragColor = vec4(LEVEL, 0.0, EXTRA, 1.0); }";
    mFolder.write("defined.frag", file);
    ShaderSource* const vertex = mDisplay.createVertexShader("plain.vert", false);
    ShaderSource* const pixel = mDisplay.createPixelShader("defined.frag", false);
    EXPECT_EQ(vertex->getType(), ShaderSource::SHADER_VERTEX);
    EXPECT_EQ(pixel->getType(), ShaderSource::SHADER_PIXEL);
    pixel->setDefine("LEVEL", "1.0");
    pixel->setDefine("EXTRA", "0.0");
    Shader* const shader = mDisplay.createShader(nullptr);
    shader->attach(vertex);
    shader->attach(pixel);
    EXPECT_EQ(drawnBy(shader), 0xff0000u);
    std::string source(1024, '\0');
    GLsizei length = 0;
    glGetShaderSource(static_cast<display::ShaderSource_GL*>(pixel)->getHandle(), 1024, &length,
                      source.data());
    source.resize(static_cast<std::size_t>(length));
    EXPECT_EQ(source, "#define EXTRA 0.0\n#define LEVEL 1.0\n" + file);

    pixel->setDefine("EXTRA", "1.0");
    EXPECT_EQ(drawnBy(shader), 0xff0000u);
    loseAndRestore();
    EXPECT_EQ(drawnBy(shader), 0xff00ffu);
    vertex->destroy();
    pixel->destroy();
    shader->destroy();
}

TEST_F(Shaders, AttributesAreBoundAsTheVertexDefinitionSays)
{
    mFolder.write("bound.vert", "attribute vec3 color;\n"
                                "attribute vec4 position;\n"
                                "varying vec3 shade;\n"
                                "void main() { shade = color; gl_Position = position; }\n");
    mFolder.write("bound.frag", "varying vec3 shade;\n"
                                "void main() { gl_FragColor = vec4(shade, 1.0); }\n");
    VertexDef definition{28};
    definition.addAttribute({0, "position", 0, Variable::TYPE_FLOAT, 4});
    definition.addAttribute({3, "color", 16, Variable::TYPE_FLOAT, 3});
    Shader* const shader = mDisplay.createShader("bound.vert", "bound.frag", &definition);
    mDisplay.setShader(shader);
    const auto expectBindings = [&] {
        EXPECT_EQ(shader->getVertexAttribLocation("position"), 0);
        EXPECT_EQ(shader->getVertexAttribLocation("color"), 3);
    };
    expectBindings();
    mDisplay.setShader(nullptr);
    loseAndRestore();
    expectBindings();

    std::vector<VertexAttribute> attributes;
    shader->getVertexAttribs(attributes);
    ASSERT_EQ(attributes.size(), 2u);
    ASSERT_NE(named(attributes, "color"), nullptr);
    EXPECT_EQ(named(attributes, "color")->index, 3);
    EXPECT_EQ(named(attributes, "color")->type, Variable::TYPE_FLOAT);
    EXPECT_EQ(named(attributes, "color")->numElements, 3);
    EXPECT_EQ(thrownMessage([&] { shader->setVertexAttrib(nullptr); }), "def!=0");
    shader->destroy();
}

TEST_F(Shaders, UniformsAreSetAndListedByType)
{
    mFolder.write("all.frag",
                  "uniform int number;\n"
                  "uniform float single;\n"
                  "uniform vec2 pair;\n"
                  "uniform vec3 triples[2];\n"
                  "uniform mat4 matrix;\n"
                  "uniform bvec2 flags;\n"
                  "uniform sampler2D picture;\n"
                  "void main() {\n"
                  "    vec4 corner = matrix * vec4(0.0, 0.0, 0.0, 1.0);\n"
                  "    float sum = float(number) + single + pair.x + pair.y +\n"
                  "        triples[1].z + corner.x + float(flags.x);\n"
                  "    gl_FragColor = vec4(sum, texture2D(picture, vec2(0.0)).r, 0.0, 1.0);\n"
                  "}\n");
    Shader* const shader = mDisplay.createShader("plain.vert", "all.frag", nullptr);
    const int number = 3;
    const float single = -2.0f;
    const mathbase::Vector2f pair{0.25f, -0.5f};
    const mathbase::Vector3f triples[2] = {
        {9.0f, 9.0f, 9.0f},
        {9.0f, 9.0f, 0.5f}
    };
    mathbase::Matrix4x4Col matrix;
    matrix.setTranslation(mathbase::Vector3f{-0.25f, 9.0f, 9.0f});
    const auto prepare = [&] {
        shader->set(shader->getUniformLocation("number"), &number, 1);
        shader->set(shader->getUniformLocation("single"), &single, 1);
        shader->set(shader->getUniformLocation("pair"), &pair, 1);
        shader->set(shader->getUniformLocation("triples"), triples, 2);
        shader->set(shader->getUniformLocation("matrix"), &matrix, 1);
    };
    EXPECT_EQ(drawnBy(shader, prepare), 0xff0000u) << "3 - 2 + 0.25 - 0.5 + 0.5 - 0.25 = 1";

    std::vector<VertexAttribute> uniforms;
    shader->getUniforms(uniforms);
    const auto expectType = [&](const char* name, Variable::VariableType type, int elements) {
        const VertexAttribute* const uniform = named(uniforms, name);
        ASSERT_NE(uniform, nullptr) << name;
        EXPECT_EQ(uniform->type, type) << name;
        EXPECT_EQ(uniform->numElements, elements) << name;
        EXPECT_EQ(uniform->index, shader->getUniformLocation(name)) << name;
    };
    expectType("number", Variable::TYPE_INT, 1);
    expectType("single", Variable::TYPE_FLOAT, 1);
    expectType("pair", Variable::TYPE_FLOAT, 2);
    expectType("triples[0]", Variable::TYPE_FLOAT, 3);
    expectType("matrix", Variable::TYPE_FLOAT, 16);
    expectType("flags", Variable::TYPE_BOOL, 2);
    expectType("picture", Variable::TYPE_NONE, 1);
    shader->destroy();
}

TEST_F(Shaders, FailuresNameTheFilesAndLeaveTheProgramToBeTriedAgain)
{
    Shader* const missing = mDisplay.createShader("plain.vert", "absent.frag", nullptr);
    EXPECT_EQ(useMessage(missing), "Display::Resource; File 'absent.frag' could not be read");
    EXPECT_EQ(logLines()[logLines().size() - 2].message,
              "The archives are searched in this order: " + mFolder.path(""));

    mFolder.write("broken.frag", "void main() { nonsense }");
    Shader* const broken = mDisplay.createShader("plain.vert", "broken.frag", nullptr);
    EXPECT_EQ(useMessage(broken).find("Could not compile 'broken.frag'.\nCompile message:\n"), 0u);
    EXPECT_GT(useMessage(broken).size(), 60u) << "the driver says why";

    mFolder.write("calling.frag", "void absent();\nvoid main() { absent(); }");
    Shader* const unlinked = mDisplay.createShader("plain.vert", "calling.frag", nullptr);
    const std::string linkMessage = useMessage(unlinked);
    EXPECT_EQ(linkMessage.find("Could not link.\n\nLink message:\n"), 0u);
    EXPECT_EQ(linkMessage.find("calling.frag"), std::string::npos) << linkMessage;
    EXPECT_EQ(countLogged("log", "made of: plain.vert, calling.frag"), 1);
    EXPECT_TRUE(unlinked->isDisposed());

    mFolder.write("broken.frag", "void main() { gl_FragColor = vec4(1.0); }");
    EXPECT_EQ(drawnBy(broken), 0xffffffu);

    mDisplay.setArchive(nullptr);
    EXPECT_EQ(useMessage(missing), "The device can not load files! (when loading absent.frag)");
    for (Shader* const shader : {missing, broken, unlinked})
        shader->destroy();
}

TEST_F(Shaders, AProgramOwnsTheFilesThatItWasMadeFrom)
{
    ShaderSource* const shared = mDisplay.createVertexShader("plain.vert", false);
    Shader* const first = mDisplay.createShader(nullptr);
    Shader* const second = mDisplay.createShader("plain.vert", "colour.frag", nullptr);
    first->attach(shared);
    second->attach(shared);
    EXPECT_EQ(shared->getRef(), 3);
    first->destroy();
    second->destroy();
    EXPECT_EQ(shared->getRef(), 1);
    shared->destroy();
}

TEST_F(Shaders, TheSameProgramIsNotSwitchedTo)
{
    Shader* const shader = mDisplay.createShader("plain.vert", "colour.frag", nullptr);
    drawFrame(mDisplay, [&] {
        mDisplay.setShader(shader);
        const GLint program = currentProgram();
        EXPECT_NE(program, 0);
        glUseProgram(0);
        mDisplay.setShader(shader);
        EXPECT_EQ(currentProgram(), 0) << "a second switch went to the driver";
        mDisplay.setShader(nullptr);
    });
    shader->destroy();
}

} // namespace zavex::test
