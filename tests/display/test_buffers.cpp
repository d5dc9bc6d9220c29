// Vertex and index buffers: with buffer objects and without, as two drivers would have it.

#include "display/dis_vboibo_gl.h"

#include "display/dis_vertexdef.h"
#include "gl_assets.h"

#include <array>
#include <cstring>
#include <tuple>

namespace zavex::display {
namespace {

struct Point {
    float x;
    float y;
};

class Buffers : public testing::TestWithParam<bool> {
protected:
    Buffers()
    {
        test::clearLog();
        mFormat.addAttribute(VertexAttribute(0, "place", 0, Variable::TYPE_FLOAT, 2));
        mDisplay.open(smallMode());
        if (!GetParam())
            glBindBuffer = nullptr; // the loader's; looked up again with the next window
    }

    VBO* points(const std::vector<Point>& values)
    {
        const int count = static_cast<int>(values.size());
        VBO* const buffer = mDisplay.createVBO(count, &mFormat, DisplayGL::MODE_STATIC);
        buffer->replace(0, count, values.data());
        return buffer;
    }

    /** Of the points that are bound, what the driver holds where there are objects. */
    void expectUploaded(std::size_t at, float x)
    {
        if (!GetParam())
            return;
        Point held{};
        glGetBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(at * sizeof held), sizeof held,
                           &held);
        EXPECT_EQ(held.x, x) << at;
    }

    VertexDef mFormat{sizeof(Point)}; // outlives the buffers
    OldDisplay mDisplay{{GetParam() ? "" : "GL_ARB_vertex_buffer_object"}};
};

INSTANTIATE_TEST_SUITE_P(Drivers, Buffers, testing::Bool(), [](const auto& each) {
    return std::string(each.param ? "WithBufferObjects" : "FromSystemMemory");
});

TEST_P(Buffers, DrawWhatIsAskedFor)
{
    // The window's left half and its right half; of the indices, the left one twice.
    // clang-format off
    VBO* const vertices = points({
        {-1, -1}, {0, -1}, {-1, 1}, {0, -1}, {0, 1}, {-1, 1},
        {0,  -1}, {1, -1}, {0,  1}, {1, -1}, {1, 1}, {0,  1},
    });
    const std::array<std::uint8_t, 12> order = {0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5};
    const struct {
        const char* name;
        bool isIndexed;
        int firstIndex, numIndices, firstVertex, numVertices;
        unsigned left, right; // colours
    } rows[] = {
        {"AllVertices", false, -1, 0, -1, 0, 0xff00, 0xff00},
        {"SomeVertices", false, -1, 0, 6, 6, 0, 0xff00},
        {"NoVertices", false, -1, 0, 3, 0, 0, 0},
        {"AllIndices", true, -1, 0, 0, 0, 0xff00, 0},
        {"AllIndicesWithAFirstVertex", true, -1, 0, 6, 6, 0xff00, 0},
        {"SomeIndices", true, 6, 6, -1, 0, 0xff00, 0},
    };
    // clang-format on
    IBO* const indices = mDisplay.createIBO(12, IBO::FORMAT_UINT8, DisplayGL::MODE_STATIC);
    indices->replace(0, 12, order.data());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Picture picture = test::pictureOf(mDisplay, [&] {
            Draw::setProject(mathbase::Matrix4x4Col());
            Draw().setCamera();
            Draw::setColor(1.0f, 0.0f, 0.0f, 1.0f);
            // Immediate drawing goes on while buffers are bound, before and after them.
            Draw::drawBox(-1.0f, -1.0f, 1.0f, -0.8f, Draw::SOLID);
            mDisplay.setVBO(vertices);
            mDisplay.setIBO(row.isIndexed ? indices : nullptr);
            Draw::setColor(0.0f, 1.0f, 0.0f, 1.0f);
            mDisplay.draw(DisplayGL::DRAW_TRIANGLES, row.firstIndex, row.numIndices,
                          row.firstVertex, row.numVertices);
            Draw::setColor(0.0f, 0.0f, 1.0f, 1.0f);
            Draw::drawBox(-1.0f, 0.8f, 1.0f, 1.0f, Draw::SOLID);
        });
        EXPECT_EQ(pixelAt(picture, 10, 24), row.left);
        EXPECT_EQ(pixelAt(picture, 50, 24), row.right);
        EXPECT_EQ(pixelAt(picture, 50, 1), 0x0000ffu);
    }
}

TEST_P(Buffers, UploadWhatWasWrittenAndKeepItThroughALostContext)
{
    VBO* const buffer = points(std::vector<Point>(30, Point{1.0f, 1.0f}));
    drawFrame(mDisplay, [&] {
        mDisplay.setVBO(buffer);
        // As the driver has it once something else was written: what is not uploaded keeps it.
        const std::vector<Point> marked(30, Point{5.0f, 5.0f});
        if (GetParam())
            glBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(Point) * 30, marked.data());
        EXPECT_EQ(static_cast<const Point*>(buffer->lock(false, true, 3, 4))->x, 1.0f);
        buffer->unlock();
        expectUploaded(3, 5.0f);

        std::fill_n(static_cast<Point*>(buffer->lock(true, true, 10, 10)), 10, Point{2.0f, 2.0f});
        buffer->unlock();
        for (const std::size_t at : {9u, 10u, 19u, 20u})
            expectUploaded(at, at == 10 || at == 19 ? 2.0f : 5.0f);
        EXPECT_EQ(static_cast<Point*>(buffer->lock(true, false, -1, 0))[19].x, 2.0f);
        buffer->unlock();
        expectUploaded(0, 1.0f); // the whole buffer
    });
    EXPECT_NO_THROW(buffer->replace(30, 0, nullptr));
    EXPECT_FALSE(buffer->isDisposed());
    mDisplay.close();
    EXPECT_TRUE(buffer->isDisposed());
    const Point moved{7.0f, 8.0f};
    buffer->replace(1, 1, &moved);
    mDisplay.open(smallMode());
    drawFrame(mDisplay, [&] {
        mDisplay.setVBO(buffer);
        expectUploaded(1, 7.0f);
        expectUploaded(19, 2.0f);
    });
}

TEST_P(Buffers, ConvertIndices)
{
    using I = IBO;
    // Made of 0, 1, 2.
    // clang-format off
    const std::tuple<const char*, I::Format, I::Format, int, std::array<std::uint32_t, 3>> rows[] = {
        {"Plain", I::FORMAT_UINT8, I::FORMAT_NONE, 0, {0, 1, 2}},
        {"OffsetAlone", I::FORMAT_UINT8, I::FORMAT_UINT8, 7, {7, 8, 9}},
        {"WiderWithOffset", I::FORMAT_UINT16, I::FORMAT_UINT8, 100, {100, 101, 102}},
        {"WiderAlone", I::FORMAT_UINT32, I::FORMAT_UINT8, 0, {0, 1, 2}},
        {"WhatFits", I::FORMAT_UINT8, I::FORMAT_UINT8, 255, {255, 0, 1}},
        {"FarOffset", I::FORMAT_UINT32, I::FORMAT_UINT8, 70000, {70000, 70001, 70002}},
        {"Backwards", I::FORMAT_UINT16, I::FORMAT_UINT8, -1, {65535, 0, 1}},
    };
    // clang-format on
    const std::array<std::uint8_t, 3> plain = {0, 1, 2};
    for (const auto& [name, format, source, offset, expected] : rows) {
        SCOPED_TRACE(name);
        test::clearLog();
        IBO* const buffer = mDisplay.createIBO(5, format, DisplayGL::MODE_DYNAMIC);
        buffer->replace(1, 3, plain.data(), offset, source);
        EXPECT_EQ(countLogged("log", "replace(1, 3, "), std::string(name) == "Plain" ? 1 : 0);
        const auto* const bytes = static_cast<const std::uint8_t*>(buffer->lock(false, true, 1, 3));
        const std::size_t size = format == I::FORMAT_UINT8 ? 1 : format == I::FORMAT_UINT16 ? 2 : 4;
        for (std::size_t i = 0; i < 3; ++i) {
            std::uint32_t index = 0; // the machine's first byte is the lowest
            std::memcpy(&index, bytes + i * size, size);
            EXPECT_EQ(index, expected[i]) << i;
        }
    }
}

TEST_P(Buffers, TellWhatTheDriverLacksOrDislikesAndLeaveNothingBoundWhenRefused)
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

    mFormat.addAttribute(VertexAttribute(1, "shape", 0, Variable::TYPE_NONE, 1));
    EXPECT_EQ(thrownMessage([&] {
                  mDisplay.setVBO(points({
                      {0, 0}
                  }));
              }),
              "attribute.type!=TYPE_NONE");
    GLint enabled = 0;
    glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
    EXPECT_EQ(enabled, 0);
    EXPECT_EQ(stateOf(GL_ARRAY_BUFFER_BINDING), 0);
}

} // namespace
} // namespace zavex::display
