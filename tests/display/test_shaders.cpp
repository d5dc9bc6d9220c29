#include "display/dis_shader_gl.h"

#include "gl_assets.h"

#include <algorithm>

namespace zavex::display {
namespace {

constexpr mathbase::Vector4f RED{1.0f, 0.0f, 0.0f, 1.0f};
constexpr mathbase::Vector4f BLUE{0.0f, 0.0f, 1.0f, 1.0f};
constexpr const char* PLAIN_VERTEX = "void main() { gl_Position = ftransform(); }\n";

class Shaders : public DisplayTest {
protected:
    Shaders()
    {
        mFolder.write("plain.vert", PLAIN_VERTEX);
        mFolder.write("white.frag", "void main() { gl_FragColor = vec4(1.0); }");
        mFolder.write("colour.frag", "uniform vec4 colour;\n"
                                     "void main() { gl_FragColor = colour; }\n");
    }

    Shader* withPlainVertex(const char* pixelFile)
    {
        return mDisplay.createShader("plain.vert", pixelFile, nullptr);
    }

    /** What a program fills the window with, as 0xRRGGBB. */
    unsigned drawnBy(
        Shader* shader, const std::function<void()>& prepare = [] {})
    {
        const Picture picture = pictureOf([&] {
            mDisplay.setShader(shader);
            prepare();
            Draw::setProject(0.0f, 1.0f, 0.0f, 1.0f);
            Draw::drawBox(0.0f, 0.0f, 1.0f, 1.0f, Draw::SOLID);
        });
        return pixelAt(picture, 32, 24);
    }

    std::string refusal(Shader* shader)
    {
        return thrownMessage([&] { mDisplay.setShader(shader); });
    }
};

std::string textOf(int index, int type, int elements)
{
    return std::to_string(index) + " " + std::to_string(type) + " " + std::to_string(elements);
}

/** The attribute or uniform of that name. */
std::string listed(const std::vector<VertexAttribute>& all, const std::string& name)
{
    const auto found = std::ranges::find(all, name, &VertexAttribute::name);
    return found == all.end() ? "missing" : textOf(found->index, found->type, found->numElements);
}

TEST_F(Shaders, LinkAtTheirFirstUseAndAUniformChangesOnlyWhatIsDrawnAfterIt)
{
    Shader* const shader = withPlainVertex("colour.frag");
    EXPECT_TRUE(shader->isDisposed());
    const Picture picture = pictureOf([&] {
        mDisplay.setShader(shader);
        const int colour = shader->getUniformLocation("colour");
        Draw::setProject(0.0f, 2.0f, 0.0f, 1.0f);
        shader->set(colour, &RED, 1);
        Draw::drawBox(0.0f, 0.0f, 1.0f, 1.0f, Draw::SOLID);
        shader->set(colour, &BLUE, 1);
        Draw::drawBox(1.0f, 0.0f, 2.0f, 1.0f, Draw::SOLID);
    });
    EXPECT_EQ(pixelAt(picture, 10, 10), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 50, 10), 0x0000ffu);
    EXPECT_EQ(shader->getUniformLocation("absent"), -1);
    EXPECT_EQ(stateOf(GL_CURRENT_PROGRAM), 0) << "a frame ends without a program";
    drawFrame(mDisplay, [&] {
        mDisplay.setShader(shader);
        EXPECT_NE(stateOf(GL_CURRENT_PROGRAM), 0);
        glUseProgram(0);
        mDisplay.setShader(shader);
        EXPECT_EQ(stateOf(GL_CURRENT_PROGRAM), 0) << "a second switch went to the driver";
        mDisplay.setShader(nullptr);
    });
}

TEST_F(Shaders, ComeFromTheirExtensionsWhereTheVersionHasNone)
{
    glCreateShader = nullptr; // the loader's; looked up again with the next window
    glCreateProgram = nullptr;
    glUseProgram = nullptr;
    completeEntryPoints();
    EXPECT_EQ(drawnBy(withPlainVertex("white.frag")), 0xffffffu);
}

TEST(ShadersWithoutADriverForThem, SayWhatIsMissing)
{
    OldDisplay display{{"GL_ARB_fragment_shader"}};
    display.open(smallMode());
    glCreateProgram = nullptr;
    Shader* const shader = display.createShader("plain.vert", "plain.frag", nullptr);
    EXPECT_EQ(thrownMessage([&] { display.setShader(shader); }),
              "Display::Shader_GL; Shaders not supported [GL_ARB_fragment_shader]");
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
    EXPECT_EQ(pixel->getRef(), 2);
    EXPECT_EQ(drawnBy(shader), 0xff0000u);
    char source[1024] = {};
    glGetShaderSource(static_cast<ShaderSource_GL*>(pixel)->getHandle(), 1024, nullptr, source);
    EXPECT_EQ(source, "#define EXTRA 0.0\n#define LEVEL 1.0\n" + file);

    pixel->setDefine("EXTRA", "1.0");
    EXPECT_EQ(drawnBy(shader), 0xff0000u);
    loseAndRestore();
    EXPECT_EQ(drawnBy(shader), 0xff00ffu);
    shader->destroy();
    EXPECT_EQ(pixel->getRef(), 1);
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
    for (const bool isRestored : {false, true}) {
        EXPECT_EQ(shader->getVertexAttribLocation("position"), 0) << isRestored;
        EXPECT_EQ(shader->getVertexAttribLocation("color"), 3) << isRestored;
        mDisplay.setShader(nullptr);
        loseAndRestore();
    }
    std::vector<VertexAttribute> attributes;
    shader->getVertexAttribs(attributes);
    EXPECT_EQ(attributes.size(), 2u);
    EXPECT_EQ(listed(attributes, "color"), textOf(3, Variable::TYPE_FLOAT, 3));
}

TEST_F(Shaders, UniformsAreSetAndListedByType)
{
    mFolder.write("all.frag", R"(
        uniform int number;
        uniform float single;
        uniform vec2 pair;
        uniform vec3 triples[2];
        uniform mat4 matrix;
        uniform bvec2 flags;
        uniform sampler2D picture;
        void main() {
            vec4 corner = matrix * vec4(0.0, 0.0, 0.0, 1.0);
            float sum = float(number) + single + pair.x + pair.y + triples[1].z + corner.x +
                float(flags.x);
            gl_FragColor = vec4(sum, texture2D(picture, vec2(0.0)).r, 0.0, 1.0);
        })");
    Shader* const shader = withPlainVertex("all.frag");
    const auto locationOf = [&](const char* name) { return shader->getUniformLocation(name); };
    const int number = 3;
    const float single = -2.0f;
    const mathbase::Vector2f pair{0.25f, -0.5f};
    const mathbase::Vector3f triples[2] = {mathbase::Vector3f(9, 9, 9),
                                           mathbase::Vector3f(9, 9, 0.5f)};
    mathbase::Matrix4x4Col matrix;
    matrix.setTranslation(mathbase::Vector3f{-0.25f, 9.0f, 9.0f});
    const auto prepare = [&] {
        shader->set(locationOf("number"), &number, 1);
        shader->set(locationOf("single"), &single, 1);
        shader->set(locationOf("pair"), &pair, 1);
        shader->set(locationOf("triples"), triples, 2);
        shader->set(locationOf("matrix"), &matrix, 1);
    };
    EXPECT_EQ(drawnBy(shader, prepare), 0xff0000u) << "3 - 2 + 0.25 - 0.5 + 0.5 - 0.25 = 1";

    std::vector<VertexAttribute> uniforms;
    shader->getUniforms(uniforms);
    const auto expectListed = [&](const char* name, Variable::VariableType type, int elements) {
        EXPECT_EQ(listed(uniforms, name), textOf(locationOf(name), type, elements)) << name;
    };
    expectListed("number", Variable::TYPE_INT, 1);
    expectListed("triples[0]", Variable::TYPE_FLOAT, 3);
    expectListed("matrix", Variable::TYPE_FLOAT, 16);
    expectListed("flags", Variable::TYPE_BOOL, 2);
    expectListed("picture", Variable::TYPE_NONE, 1);
}

TEST_F(Shaders, FailuresNameTheFilesAndLeaveTheProgramToBeTriedAgain)
{
    Shader* const missing = withPlainVertex("absent.frag");
    EXPECT_EQ(refusal(missing), "Display::Resource; File 'absent.frag' could not be read");
    EXPECT_EQ(test::logLines()[test::logLines().size() - 2].message,
              "The archives are searched in this order: " + mFolder.path(""));

    mFolder.write("broken.frag", "void main() { nonsense }");
    Shader* const broken = withPlainVertex("broken.frag");
    EXPECT_TRUE(
        refusal(broken).starts_with("Could not compile 'broken.frag'.\nCompile message:\n"));
    EXPECT_GT(refusal(broken).size(), 60u) << "the driver says why";
    mFolder.write("broken.frag", "void main() { gl_FragColor = vec4(1.0); }");
    EXPECT_EQ(drawnBy(broken), 0xffffffu);

    mFolder.write("calling.frag", "void absent();\nvoid main() { absent(); }");
    Shader* const unlinked = withPlainVertex("calling.frag");
    const std::string linkMessage = refusal(unlinked);
    EXPECT_TRUE(linkMessage.starts_with("Could not link.\n\nLink message:\n")) << linkMessage;
    EXPECT_EQ(linkMessage.find("calling.frag"), std::string::npos) << linkMessage;
    EXPECT_EQ(countLogged("log", "made of: plain.vert, calling.frag"), 1);
    EXPECT_TRUE(unlinked->isDisposed());

    mDisplay.setArchive(nullptr);
    EXPECT_EQ(refusal(missing), "The device can not load files! (when loading absent.frag)");
}

} // namespace
} // namespace zavex::display
