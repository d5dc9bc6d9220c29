// Vertex and index buffers: with buffer objects and without, as two drivers would have it.

#include "display/dis_vboibo_gl.h"

#include "display/dis_display_obsolete.h"
#include "display/dis_shader.h"
#include "display/dis_vertexdef.h"
#include "gl_assets.h"
#include "support/gl_display.h"
#include "support/log_capture.h"

#include <array>
#include <cstring>
#include <functional>
#include <numeric>

namespace zavex::display {
namespace {

using test::countLogged;
using test::pixelAt;
using test::thrownMessage;

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
        mDisplay.open(test::smallMode());
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

    /** What the driver holds of a live buffer. */
    template <typename Entity>
    std::vector<Entity> uploaded(GLenum target, std::size_t count)
    {
        std::vector<Entity> out(count);
        glGetBufferSubData(target, 0, static_cast<GLsizeiptr>(count * sizeof(Entity)), out.data());
        return out;
    }

    VertexDef mFormat{sizeof(Point)}; // outlives the buffers
    VertexDef mShapeless{4};
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
    bool left, right; // halves that are drawn
} DRAW_CASES[] = {
    {"AllVertices",                false, -1, 0, -1, 0, true,  true },
    {"SomeVertices",               false, -1, 0, 6,  6, false, true },
    {"NoVertices",                 false, -1, 0, 3,  0, false, false},
    {"AllIndices",                 true,  -1, 0, 0,  0, true,  false},
    {"AllIndicesWithAFirstVertex", true,  -1, 0, 6,  6, true,  false},
    {"SomeIndices",                true,  6,  6, -1, 0, true,  false},
};

TEST_P(Buffers, DrawWhatIsAskedFor)
{
    VBO* const vertices = points(HALVES);
    // The left half twice.
    const std::array<std::uint8_t, 12> order = {0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5};
    IBO* const indices = mDisplay.createIBO(12, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC);
    indices->replace(0, 12, order.data());
    for (const DrawCase& row : DRAW_CASES) {
        const test::Picture picture = test::pictureOf(mDisplay, [&] {
            DisplayObsolete::setProject(mathbase::Matrix4x4Col());
            DisplayObsolete().setCamera();
            DisplayObsolete::setColor(1.0f, 0.0f, 0.0f, 1.0f);
            // Immediate drawing goes on while buffers are bound, before and after them.
            DisplayObsolete::drawBox(-1.0f, -1.0f, 1.0f, -0.8f, DisplayObsolete::SOLID);
            mDisplay.setVBO(vertices);
            mDisplay.setIBO(row.indexed ? indices : nullptr);
            DisplayObsolete::setColor(0.0f, 1.0f, 0.0f, 1.0f);
            mDisplay.draw(DisplayGL::DRAW_TRIANGLES, row.firstIndex, row.numIndices,
                          row.firstVertex, row.numVertices);
            DisplayObsolete::setColor(0.0f, 0.0f, 1.0f, 1.0f);
            DisplayObsolete::drawBox(-1.0f, 0.8f, 1.0f, 1.0f, DisplayObsolete::SOLID);
        });
        EXPECT_EQ(pixelAt(picture, 10, 24), row.left ? 0x00ff00u : 0u) << row.name;
        EXPECT_EQ(pixelAt(picture, 50, 24), row.right ? 0x00ff00u : 0u) << row.name;
        EXPECT_EQ(pixelAt(picture, 50, 1), 0x0000ffu) << row.name;
    }
}

TEST_P(Buffers, UploadWhatWasLockedForWriting)
{
    VBO* const buffer = points(std::vector<Point>(30, Point{1.0f, 1.0f}));
    test::drawFrame(mDisplay, [&] {
        mDisplay.setVBO(buffer);
        // As the driver has it once something else was written: what is not uploaded keeps it.
        const bool hasObject = GetParam();
        const std::vector<Point> marked(30, Point{5.0f, 5.0f});
        if (hasObject)
            glBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(Point) * 30, marked.data());
        const auto expectUploaded = [&](int first, int count, float value) {
            if (!hasObject)
                return;
            const auto driver = uploaded<Point>(GL_ARRAY_BUFFER, 30);
            for (int i = 0; i < 30; ++i) {
                const bool isInside = i >= first && i < first + count;
                ASSERT_EQ(driver[static_cast<std::size_t>(i)].x, isInside ? value : 5.0f) << i;
            }
        };

        auto* const read = static_cast<const Point*>(buffer->lock(false, true, 3, 4));
        EXPECT_EQ(read->x, 1.0f);
        buffer->unlock();
        expectUploaded(0, 0, 0.0f);

        auto* const some = static_cast<Point*>(buffer->lock(true, true, 10, 10));
        std::fill_n(some, 10, Point{2.0f, 2.0f});
        buffer->unlock();
        expectUploaded(10, 10, 2.0f);
        EXPECT_EQ(static_cast<Point*>(buffer->lock(true, false, -1, 0))[19].x, 2.0f);
        buffer->unlock();
        if (hasObject) {
            EXPECT_EQ(uploaded<Point>(GL_ARRAY_BUFFER, 30)[0].x, 1.0f); // the whole buffer
        }
    });
}

constexpr struct IndexCase {
    const char* name;
    IBO::Format format;
    IBO::Format source;
    int offset;
    std::array<std::uint32_t, 3> expected;
} INDEX_CASES[] = {
    {"Plain",           IBO::FORMAT_UINT8,  IBO::FORMAT_NONE,  0,     {0, 1, 2}            },
    {"OffsetAlone",     IBO::FORMAT_UINT8,  IBO::FORMAT_UINT8, 7,     {7, 8, 9}            },
    {"WiderWithOffset", IBO::FORMAT_UINT16, IBO::FORMAT_UINT8, 100,   {100, 101, 102}      },
    {"WiderAlone",      IBO::FORMAT_UINT32, IBO::FORMAT_UINT8, 0,     {0, 1, 2}            },
    {"WhatFits",        IBO::FORMAT_UINT8,  IBO::FORMAT_UINT8, 255,   {255, 0, 1}          },
    {"FarOffset",       IBO::FORMAT_UINT32, IBO::FORMAT_UINT8, 70000, {70000, 70001, 70002}},
    {"Backwards",       IBO::FORMAT_UINT16, IBO::FORMAT_UINT8, -1,    {65535, 0, 1}        },
};

TEST_P(Buffers, ConvertIndices)
{
    const std::array<std::uint8_t, 3> source = {0, 1, 2};
    for (const IndexCase& row : INDEX_CASES) {
        test::clearLog();
        IBO* const buffer = mDisplay.createIBO(5, row.format, DisplayGL::MODE_DYNAMIC);
        buffer->replace(1, 3, source.data(), row.offset, row.source);
        EXPECT_EQ(countLogged("log", "replace(1, 3, "), std::string(row.name) == "Plain" ? 1 : 0);
        const void* const data = buffer->lock(false, true, 1, 3);
        for (std::size_t i = 0; i < 3; ++i) {
            const std::uint32_t stored =
                row.format == IBO::FORMAT_UINT8    ? static_cast<const std::uint8_t*>(data)[i]
                : row.format == IBO::FORMAT_UINT16 ? static_cast<const std::uint16_t*>(data)[i]
                                                   : static_cast<const std::uint32_t*>(data)[i];
            EXPECT_EQ(stored, row.expected[i]) << row.name << " " << i;
        }
        buffer->unlock();
        buffer->destroy();
    }
}

TEST_P(Buffers, KeepTheirContentsThroughALostContext)
{
    VBO* const vertices = points(HALVES);
    test::drawFrame(mDisplay, [&] { mDisplay.setVBO(vertices); });
    EXPECT_FALSE(vertices->isDisposed());
    mDisplay.close();
    EXPECT_TRUE(vertices->isDisposed());
    const Point moved[] = {
        {7.0f, 8.0f}
    };
    vertices->replace(1, 1, moved);
    mDisplay.open(test::smallMode());
    test::drawFrame(mDisplay, [&] {
        mDisplay.setVBO(vertices);
        if (GetParam()) {
            EXPECT_EQ(uploaded<Point>(GL_ARRAY_BUFFER, 12)[1].x, 7.0f);
            EXPECT_EQ(uploaded<Point>(GL_ARRAY_BUFFER, 12)[11].y, 1.0f);
        }
    });
}

TEST_P(Buffers, RefuseMisuse)
{
    VBO* const vertices = points(HALVES);
    IBO* const indices = mDisplay.createIBO(4, IBO::FORMAT_UINT16, DisplayGL::MODE_STREAM);
    const std::string range = "first>=0 && count>=0 && first+count<=mEntities";
    mShapeless.addAttribute(VertexAttribute(0, "place", 0, Variable::TYPE_FLOAT, 1));
    mShapeless.addAttribute(VertexAttribute(1, "shape", 0, Variable::TYPE_NONE, 1));
    VBO* const shapeless = mDisplay.createVBO(1, &mShapeless, DisplayGL::MODE_STATIC);
    // clang-format off
    const struct {
        const char* name;
        std::function<void()> action;
        std::string message;
    } rows[] = {
        {"NoFlag",         [&] { vertices->lock(false, false, 0, 1); }, "write || read"},
        {"NotLocked",      [&] { vertices->unlock(); }, "mMapped!=0"},
        {"BeyondTheEnd",   [&] { vertices->lock(true, false, 6, 7); }, range},
        {"BeforeTheStart", [&] { vertices->replace(-1, 1, HALVES.data()); }, range},
        {"HugeCount",      [&] { indices->replace(4, 2147483647, nullptr); }, range},
        {"NegativeCount",  [&] { indices->replace(0, -1, HALVES.data(), 1, IBO::FORMAT_UINT8); }, "count>=0"},
        {"NoFormat",       [&] { mDisplay.createIBO(1, IBO::FORMAT_NONE, DisplayGL::MODE_STATIC); }, "mFormat!=FORMAT_NONE"},
        {"NoMode",         [&] { mDisplay.draw(DisplayGL::DRAW_NONE, -1, 0, -1, 0); }, "outerMode!=DisplayGL::DRAW_NONE"},
        {"NothingToDraw",  [&] { mDisplay.draw(DisplayGL::DRAW_LINES, -1, 0, -1, 0); }, "mCurrentVBO!=0"},
        {"NoType",         [&] { mDisplay.setVBO(shapeless); }, "attribute.type!=TYPE_NONE"},
        {"Locked",         [&] { vertices->lock(true, false, -1, 0), vertices->lock(true, false, 0, 1); }, "mMapped==0"},
    };
    // clang-format on
    for (const auto& row : rows)
        EXPECT_NE(thrownMessage(row.action).find(row.message), std::string::npos) << row.name;
    GLint enabled = 0;
    GLint bound = 0;
    glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(enabled, 0) << "by a buffer that was refused";
    EXPECT_EQ(bound, 0);
    EXPECT_NE(thrownMessage([&] {
                  mDisplay.setVBO(points(HALVES));
                  mDisplay.draw(DisplayGL::DRAW_TRIANGLES, -1, 0, 11, 2);
              }).find("first+count<=size"),
              std::string::npos);
}

TEST_P(Buffers, TellWhatTheDriverLacks)
{
    points(HALVES);
    EXPECT_EQ(countLogged("warning", "GL_ARB_vertex_buffer_object not supported, emulating fool"),
              GetParam() ? 0 : 1);
    const struct {
        GLenum limit;
        std::function<void(int)> create;
        std::string message;
    } rows[] = {
        {GL_MAX_ELEMENTS_VERTICES,
         [&](int count) { mDisplay.createVBO(count, &mFormat, DisplayGL::MODE_STATIC); },
         "Creating vertex buffer with too many vertices ("},
        {GL_MAX_ELEMENTS_INDICES,
         [&](int count) { mDisplay.createIBO(count, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC); },
         "Creating index buffer with too many indices ("  },
    };
    for (const auto& row : rows) {
        GLint recommended = 0;
        glGetIntegerv(row.limit, &recommended);
        if (recommended >= 10000000)
            continue;
        row.create(recommended);
        row.create(recommended + 1);
        EXPECT_EQ(countLogged("warning", row.message), GetParam() ? 1 : 0);
        EXPECT_EQ(countLogged("warning", row.message + std::to_string(recommended + 1) + " when " +
                                             std::to_string(recommended) + " recommended)"),
                  GetParam() ? 1 : 0);
    }
}

TEST_P(Buffers, NameTheDrawingThatFailed)
{
    VBO* const vertices = points(HALVES);
    IBO* const indices = mDisplay.createIBO(3, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC);
    for (IBO* const each : {static_cast<IBO*>(nullptr), indices}) {
        test::drawFrame(mDisplay, [&] {
            mDisplay.setVBO(vertices);
            mDisplay.setIBO(each);
            DisplayObsolete::flush();
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
