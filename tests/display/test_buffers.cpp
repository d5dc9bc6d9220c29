// Vertex and index buffers: with buffer objects and without, as two drivers would have it.

#include "display/dis_vboibo_gl.h"

#include "display/dis_vertexdef.h"
#include "gl_assets.h"

#include <array>

namespace zavex::display {
namespace {

struct Point {
    float x;
    float y;
};

/** A display whose driver may lack buffer objects. */
class DriverDisplay : public DisplayGLFW {
public:
    explicit DriverDisplay(bool hasBuffers) : mHasBuffers(hasBuffers) {}
    bool hasExtension(const std::string& name) const override
    {
        return (mHasBuffers || name != "GL_ARB_vertex_buffer_object") &&
               DisplayGLFW::hasExtension(name);
    }

private:
    bool mHasBuffers;
};

class Buffers : public testing::TestWithParam<bool> {
protected:
    Buffers() : mDisplay(GetParam())
    {
        test::clearLog();
        mFormat.addAttribute(VertexAttribute(0, "place", 0, Variable::TYPE_FLOAT, 2));
        mDisplay.open(smallMode());
        if (!GetParam())
            glBindBuffer = nullptr; // the loader's; looked up again with the next window
    }

    VBO* points(const std::vector<Point>& values)
    {
        VBO* const buffer =
            mDisplay.createVBO(static_cast<int>(values.size()), &mFormat, DisplayGL::MODE_STATIC);
        buffer->replace(0, static_cast<int>(values.size()), values.data());
        return buffer;
    }

    /** What the driver holds of the points that are bound. */
    static std::vector<Point> uploaded(std::size_t count)
    {
        std::vector<Point> out(count);
        glGetBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(count * sizeof(Point)),
                           out.data());
        return out;
    }

    VertexDef mFormat{sizeof(Point)}; // outlives the buffers
    DriverDisplay mDisplay;
};

INSTANTIATE_TEST_SUITE_P(Drivers, Buffers, testing::Bool(), [](const auto& each) {
    return std::string(each.param ? "WithBufferObjects" : "FromSystemMemory");
});

/** The window's left half, its right half, and nothing. */
// clang-format off
const std::vector<Point> HALVES = {
    {-1, -1}, {0, -1}, {-1, 1}, {0, -1}, {0, 1}, {-1, 1},
    {0,  -1}, {1, -1}, {0,  1}, {1, -1}, {1, 1}, {0,  1},
};
// clang-format on

constexpr struct DrawCase {
    const char* name;
    bool indexed;
    int firstIndex, numIndices, firstVertex, numVertices;
    unsigned left, right; // the colours of the halves
} DRAW_CASES[] = {
    {"AllVertices",                false, -1, 0, -1, 0, 0xff00, 0xff00},
    {"SomeVertices",               false, -1, 0, 6,  6, 0,      0xff00},
    {"NoVertices",                 false, -1, 0, 3,  0, 0,      0     },
    {"AllIndices",                 true,  -1, 0, 0,  0, 0xff00, 0     },
    {"AllIndicesWithAFirstVertex", true,  -1, 0, 6,  6, 0xff00, 0     },
    {"SomeIndices",                true,  6,  6, -1, 0, 0xff00, 0     },
};

TEST_P(Buffers, DrawWhatIsAskedFor)
{
    VBO* const vertices = points(HALVES);
    // The left half twice.
    const std::array<std::uint8_t, 12> order = {0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5};
    IBO* const indices = mDisplay.createIBO(12, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC);
    indices->replace(0, 12, order.data());
    for (const DrawCase& row : DRAW_CASES) {
        const Picture picture = test::pictureOf(mDisplay, [&] {
            Draw::setProject(mathbase::Matrix4x4Col());
            Draw().setCamera();
            Draw::setColor(1.0f, 0.0f, 0.0f, 1.0f);
            // Immediate drawing goes on while buffers are bound, before and after them.
            Draw::drawBox(-1.0f, -1.0f, 1.0f, -0.8f, Draw::SOLID);
            mDisplay.setVBO(vertices);
            mDisplay.setIBO(row.indexed ? indices : nullptr);
            Draw::setColor(0.0f, 1.0f, 0.0f, 1.0f);
            mDisplay.draw(DisplayGL::DRAW_TRIANGLES, row.firstIndex, row.numIndices,
                          row.firstVertex, row.numVertices);
            Draw::setColor(0.0f, 0.0f, 1.0f, 1.0f);
            Draw::drawBox(-1.0f, 0.8f, 1.0f, 1.0f, Draw::SOLID);
        });
        EXPECT_EQ(pixelAt(picture, 10, 24), row.left) << row.name;
        EXPECT_EQ(pixelAt(picture, 50, 24), row.right) << row.name;
        EXPECT_EQ(pixelAt(picture, 50, 1), 0x0000ffu) << row.name;
    }
}

TEST_P(Buffers, UploadWhatWasLockedForWriting)
{
    const bool hasObject = GetParam();
    VBO* const buffer = points(std::vector<Point>(30, Point{1.0f, 1.0f}));
    drawFrame(mDisplay, [&] {
        mDisplay.setVBO(buffer);
        // As the driver has it once something else was written: what is not uploaded keeps it.
        const std::vector<Point> marked(30, Point{5.0f, 5.0f});
        if (hasObject)
            glBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(Point) * 30, marked.data());
        EXPECT_EQ(static_cast<const Point*>(buffer->lock(false, true, 3, 4))->x, 1.0f);
        buffer->unlock();
        const auto expectUploaded = [&](std::size_t at, float x) {
            EXPECT_EQ(hasObject ? uploaded(30)[at].x : x, x) << at;
        };
        expectUploaded(3, 5.0f);

        std::fill_n(static_cast<Point*>(buffer->lock(true, true, 10, 10)), 10, Point{2.0f, 2.0f});
        buffer->unlock();
        for (const std::size_t at : {9u, 20u})
            expectUploaded(at, 5.0f);
        for (const std::size_t at : {10u, 19u})
            expectUploaded(at, 2.0f);
        EXPECT_EQ(static_cast<Point*>(buffer->lock(true, false, -1, 0))[19].x, 2.0f);
        buffer->unlock();
        expectUploaded(0, 1.0f); // the whole buffer
    });
}

template <typename Index>
std::vector<std::uint32_t> indicesOf(const void* data)
{
    const auto* const indices = static_cast<const Index*>(data);
    return {indices, indices + 3};
}

TEST_P(Buffers, ConvertIndices)
{
    using Numbers = std::vector<std::uint32_t>;
    const std::tuple<const char*, IBO::Format, IBO::Format, int, Numbers> rows[] = {
        {"Plain",           IBO::FORMAT_UINT8,  IBO::FORMAT_NONE,  0,     {0, 1, 2}            },
        {"OffsetAlone",     IBO::FORMAT_UINT8,  IBO::FORMAT_UINT8, 7,     {7, 8, 9}            },
        {"WiderWithOffset", IBO::FORMAT_UINT16, IBO::FORMAT_UINT8, 100,   {100, 101, 102}      },
        {"WiderAlone",      IBO::FORMAT_UINT32, IBO::FORMAT_UINT8, 0,     {0, 1, 2}            },
        {"WhatFits",        IBO::FORMAT_UINT8,  IBO::FORMAT_UINT8, 255,   {255, 0, 1}          },
        {"FarOffset",       IBO::FORMAT_UINT32, IBO::FORMAT_UINT8, 70000, {70000, 70001, 70002}},
        {"Backwards",       IBO::FORMAT_UINT16, IBO::FORMAT_UINT8, -1,    {65535, 0, 1}        },
    };
    const std::array<std::uint8_t, 3> plain = {0, 1, 2};
    for (const auto& [name, format, source, offset, expected] : rows) {
        SCOPED_TRACE(name);
        test::clearLog();
        IBO* const buffer = mDisplay.createIBO(5, format, DisplayGL::MODE_DYNAMIC);
        buffer->replace(1, 3, plain.data(), offset, source);
        EXPECT_EQ(countLogged("log", "replace(1, 3, "), std::string(name) == "Plain" ? 1 : 0);
        const void* const data = buffer->lock(false, true, 1, 3);
        EXPECT_EQ(format == IBO::FORMAT_UINT8    ? indicesOf<std::uint8_t>(data)
                  : format == IBO::FORMAT_UINT16 ? indicesOf<std::uint16_t>(data)
                                                 : indicesOf<std::uint32_t>(data),
                  expected);
        buffer->destroy();
    }
}

TEST_P(Buffers, KeepTheirContentsThroughALostContext)
{
    VBO* const vertices = points(HALVES);
    drawFrame(mDisplay, [&] { mDisplay.setVBO(vertices); });
    EXPECT_FALSE(vertices->isDisposed());
    mDisplay.close();
    EXPECT_TRUE(vertices->isDisposed());
    const Point moved[] = {
        {7.0f, 8.0f}
    };
    vertices->replace(1, 1, moved);
    mDisplay.open(smallMode());
    drawFrame(mDisplay, [&] {
        mDisplay.setVBO(vertices);
        if (GetParam()) {
            EXPECT_EQ(uploaded(12)[1].x, 7.0f);
            EXPECT_EQ(uploaded(12)[11].y, 1.0f);
        }
    });
}

TEST_P(Buffers, LeaveNothingBoundWhenTheyAreRefused)
{
    VertexDef shapeless{4};
    shapeless.addAttribute(VertexAttribute(0, "place", 0, Variable::TYPE_FLOAT, 1));
    shapeless.addAttribute(VertexAttribute(1, "shape", 0, Variable::TYPE_NONE, 1));
    VBO* const buffer = mDisplay.createVBO(1, &shapeless, DisplayGL::MODE_STATIC);
    EXPECT_EQ(thrownMessage([&] { mDisplay.setVBO(buffer); }), "attribute.type!=TYPE_NONE");
    GLint enabled = 0;
    glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
    EXPECT_EQ(enabled, 0);
    EXPECT_EQ(stateOf(GL_ARRAY_BUFFER_BINDING), 0);
    buffer->destroy();
}

TEST_P(Buffers, TellWhatTheDriverLacksOrDislikes)
{
    const int most = stateOf(GL_MAX_ELEMENTS_INDICES);
    for (const int count : {most, most + 1})
        mDisplay.createIBO(count, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC);
    mDisplay.createVBO(stateOf(GL_MAX_ELEMENTS_VERTICES) + 1, &mFormat, DisplayGL::MODE_STATIC);
    const auto warnings = [](const std::string& text) { return countLogged("warning", text); };
    EXPECT_EQ(warnings("GL_ARB_vertex_buffer_object not supported, emulating fool"),
              GetParam() ? 0 : 3);
    EXPECT_EQ(warnings("Creating vertex buffer with too many vertices ("), GetParam() ? 1 : 0);
    EXPECT_EQ(warnings("Creating index buffer with too many indices (" + std::to_string(most + 1) +
                       " when " + std::to_string(most)),
              GetParam() ? 1 : 0);
    EXPECT_EQ(warnings("Creating"), GetParam() ? 2 : 0);
}

TEST_P(Buffers, NameTheDrawingThatFailed)
{
    VBO* const vertices = points(HALVES);
    IBO* const indices = mDisplay.createIBO(3, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC);
    for (IBO* const each : {static_cast<IBO*>(nullptr), indices}) {
        drawFrame(mDisplay, [&] {
            mDisplay.setVBO(vertices);
            mDisplay.setIBO(each);
            Draw::flush();
            glEnable(GL_NONE); // leaves an error
            const std::string message =
                thrownMessage([&] { mDisplay.draw(DisplayGL::DRAW_TRIANGLES, -1, 0, -1, 0); });
            EXPECT_NE(message.find(each ? "] dis_display_glfw\nLine: glDrawElements("
                                        : "] dis_display_glfw\nLine: glDrawArrays("),
                      std::string::npos)
                << message;
            EXPECT_TRUE(message.ends_with("\nError: 'GL_INVALID_ENUM'\n")) << message;
        });
    }
}

} // namespace
} // namespace zavex::display
