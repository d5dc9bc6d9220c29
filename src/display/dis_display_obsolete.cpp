#include "display/dis_display_obsolete.h"

#include "display/dis_display.h"
#include "display/dis_glinclude.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <tuple>

namespace zavex::display {

namespace {

using mathbase::Vector3f;
using mathbase::Vector4f;
using Primitive = Immediate::Primitive;
using Index = Immediate::Index;

constexpr std::size_t BOX_CORNERS = std::tuple_size_v<DisplayObsolete::BoxCorners>;

// clang-format off

/** Each side starts at what is its lower left corner when seen from outside. */
constexpr std::array<std::array<Index, 4>, 6> BOX_SIDES = {{
    {1, 0, 2, 3}, // -z
    {4, 5, 7, 6}, // +z
    {0, 1, 5, 4}, // -y
    {6, 7, 3, 2}, // +y
    {0, 4, 6, 2}, // -x
    {5, 1, 3, 7}, // +x
}};

constexpr std::array<std::array<Index, 2>, 12> BOX_EDGES = {{
    {0, 1}, {2, 3}, {4, 5}, {6, 7}, // along x
    {0, 2}, {1, 3}, {4, 6}, {5, 7}, // along y
    {0, 4}, {1, 5}, {2, 6}, {3, 7}, // along z
}};

/** Texture coordinates of a side's corners: t = 0 is the picture's top. */
constexpr float SIDE_TEXCOORDS[4][2] = {{0, 1}, {1, 1}, {1, 0}, {0, 0}};

// clang-format on

constexpr std::size_t CIRCLE_SEGMENTS = 32;
constexpr float CIRCLE_STEP = 2.0f * std::numbers::pi_v<float> / CIRCLE_SEGMENTS; // radians

/** Vertices handed over at once: whole lines and triangles, and less than fits an array. */
constexpr std::size_t CHUNK = 49152;
static_assert(CHUNK <= Immediate::VERTEX_CAPACITY && 3 * CHUNK <= Immediate::INDEX_CAPACITY);

using Color = std::array<float, 4>;

Immediate::Vertex vertexAt(float x, float y, float z, const Color& color)
{
    return {x, y, z, 0.0f, 0.0f, color[0], color[1], color[2], color[3]};
}

Immediate::Vertex vertexOf(const DisplayObsolete::Vertex& vertex)
{
    return {vertex.position.x, vertex.position.y, vertex.position.z,
            vertex.texcoord.x, vertex.texcoord.y, vertex.color.x,
            vertex.color.y,    vertex.color.z,    vertex.color.w};
}

DisplayObsolete::BoxCorners cornersBetween(const Vector3f& low, const Vector3f& high)
{
    return {
        {
         {low.x, low.y, low.z},
         {high.x, low.y, low.z},
         {low.x, high.y, low.z},
         {high.x, high.y, low.z},
         {low.x, low.y, high.z},
         {high.x, low.y, high.z},
         {low.x, high.y, high.z},
         {high.x, high.y, high.z},
         }
    };
}

void writeBoxCorners(Immediate::Vertex* out, const DisplayObsolete::BoxCorners& corners,
                     const Color& color)
{
    for (const Vector3f& corner : corners)
        *out++ = vertexAt(corner.x, corner.y, corner.z, color);
}

/** Appends shapes of `perShape` vertices each, in portions that fit an array. */
void appendShapes(Primitive primitive, std::size_t perShape,
                  const DisplayObsolete::Vertex* vertices, std::size_t count)
{
    Immediate& immediate = Immediate::live();
    const std::size_t whole = count - count % perShape;
    for (std::size_t done = 0; done < whole; done += CHUNK) {
        const std::size_t portion = std::min(CHUNK, whole - done);
        const auto room = immediate.append(primitive, portion, portion);
        for (std::size_t i = 0; i < portion; ++i) {
            room.vertices[i] = vertexOf(vertices[done + i]);
            room.indices[i] = static_cast<Index>(room.first + i);
        }
    }
}

/** Makes room for a strip or loop of lines through `count` vertices, which the caller fills in. */
Immediate::Vertex* appendPath(std::size_t count, bool closed)
{
    const std::size_t lines = closed ? count : count - 1;
    const auto room = Immediate::live().append(Primitive::LINES, count, 2 * lines);
    for (std::size_t i = 0; i < lines; ++i) {
        room.indices[2 * i] = static_cast<Index>(room.first + i);
        room.indices[2 * i + 1] = static_cast<Index>(room.first + (i + 1) % count);
    }
    return room.vertices;
}

/** Makes room for a fan of triangles around the first of `count` vertices, filled in by the caller.
 */
Immediate::Vertex* appendFan(std::size_t count)
{
    const std::size_t triangles = count - 2;
    const auto room = Immediate::live().append(Primitive::TRIANGLES, count, 3 * triangles);
    for (std::size_t i = 0; i < triangles; ++i) {
        room.indices[3 * i] = room.first;
        room.indices[3 * i + 1] = static_cast<Index>(room.first + i + 1);
        room.indices[3 * i + 2] = static_cast<Index>(room.first + i + 2);
    }
    return room.vertices;
}

struct UnitCircle {
    float x[CIRCLE_SEGMENTS + 1];
    float y[CIRCLE_SEGMENTS + 1];

    UnitCircle()
    {
        for (std::size_t i = 0; i <= CIRCLE_SEGMENTS; ++i) {
            x[i] = std::cos(CIRCLE_STEP * static_cast<float>(i));
            y[i] = std::sin(CIRCLE_STEP * static_cast<float>(i));
        }
    }
};

/** The value of a hexadecimal digit; 0 for any other character. */
int hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return 0;
}

} // namespace

void DisplayObsolete::setColor(float red, float green, float blue, float alpha)
{
    Immediate::live().setColor(red, green, blue, alpha);
}

void DisplayObsolete::setColor(const Vector4f& color)
{
    setColor(color.x, color.y, color.z, color.w);
}

void DisplayObsolete::setColor(const Vector3f& color)
{
    setColor(color.x, color.y, color.z, 1.0f);
}

void DisplayObsolete::setColor(float grey)
{
    setColor(grey, grey, grey, 1.0f);
}

Vector4f DisplayObsolete::hex2vec(std::string_view text)
{
    float components[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    for (std::size_t i = 0; i < 4 && text.size() >= 2 * i + 1; ++i) {
        const int high = hexDigit(text[2 * i]);
        const int low = text.size() > 2 * i + 1 ? hexDigit(text[2 * i + 1]) : 0;
        components[i] = static_cast<float>(16 * high + low) / 255.0f;
    }
    return {components[0], components[1], components[2], components[3]};
}

void DisplayObsolete::setProject(const MatrixGL& projection)
{
    Immediate::live().change().projection = projection;
}

void DisplayObsolete::setProject()
{
    setProject(frameProjection(Immediate::live().display().getWindowMode()));
}

void DisplayObsolete::setProject(float left, float right, float bottom, float top)
{
    MatrixGL projection;
    projection.setProjectOrtho2D(left, right, bottom, top);
    setProject(projection);
}

void DisplayObsolete::setCamera(const MatrixGL& camera)
{
    mCameraMatrix = camera;
    setModelView();
}

void DisplayObsolete::setCamera(const Vector3f& eye, const Vector3f& target, float roll)
{
    MatrixGL camera;
    camera.setCamera(eye, target, roll);
    setCamera(camera);
}

void DisplayObsolete::setCamera()
{
    setCamera(MatrixGL{});
}

void DisplayObsolete::setTransform(const MatrixGL& transform)
{
    mTransformMatrix = transform;
    setModelView();
}

void DisplayObsolete::setTransform()
{
    setTransform(MatrixGL{});
}

void DisplayObsolete::setModelView() const
{
    MatrixGL& modelView = Immediate::live().change().modelView;
    modelView = mCameraMatrix;
    modelView.multiplyFromRight(mTransformMatrix);
}

void DisplayObsolete::setBlending(bool enabled)
{
    Immediate::live().change().blending = enabled;
}

void DisplayObsolete::setBlendFunction(BlendFactor source, BlendFactor destination)
{
    Immediate::State& state = Immediate::live().change();
    state.blendSource = source;
    state.blendDestination = destination;
}

void DisplayObsolete::setBlendEquation(BlendEquation equation)
{
    Immediate::live().change().blendEquation = equation;
}

void DisplayObsolete::setDepthTest(bool enabled)
{
    Immediate::live().change().depthTest = enabled;
}

void DisplayObsolete::setDepthWriting(bool enabled)
{
    Immediate::live().change().depthWriting = enabled;
}

void DisplayObsolete::setFaceCulling(bool enabled)
{
    Immediate::live().change().faceCulling = enabled;
}

void DisplayObsolete::setFrontFace(Winding winding)
{
    Immediate::live().change().frontFace = winding;
}

void DisplayObsolete::setTexturing(bool enabled)
{
    Immediate::live().change().texturing = enabled;
}

void DisplayObsolete::setLineWidth(float pixels)
{
    Immediate::live().change().lineWidth = pixels;
}

void DisplayObsolete::setPointSize(float pixels)
{
    Immediate::live().change().pointSize = pixels;
}

void DisplayObsolete::setScissorTest(bool enabled)
{
    Immediate::live().change().scissorTest = enabled;
}

void DisplayObsolete::setScissor(int x, int y, int width, int height)
{
    Immediate::live().change().scissor = {x, y, width, height};
}

void DisplayObsolete::clear(const Vector4f& color, float depth)
{
    flush();
    GL_CHECKED(glClearColor(color.x, color.y, color.z, color.w));
    GL_CHECKED(glClearDepth(static_cast<double>(depth)));
    GL_CHECKED(glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT));
}

void DisplayObsolete::drawLine(float x0, float y0, float x1, float y1)
{
    drawLine(Vector3f{x0, y0, 0.0f}, Vector3f{x1, y1, 0.0f});
}

void DisplayObsolete::drawBox(float x0, float y0, float x1, float y1, FillMode mode)
{
    Immediate& immediate = Immediate::live();
    Immediate::Vertex* const corners = mode == WIRE ? appendPath(4, true) : immediate.appendQuad();
    const Color& color = immediate.color();
    corners[0] = vertexAt(x0, y0, 0.0f, color);
    corners[1] = vertexAt(x1, y0, 0.0f, color);
    corners[2] = vertexAt(x1, y1, 0.0f, color);
    corners[3] = vertexAt(x0, y1, 0.0f, color);
}

void DisplayObsolete::drawCircle(float x, float y, float radius, FillMode mode)
{
    drawCircle(x, y, radius, radius, mode);
}

void DisplayObsolete::drawCircle(float x, float y, float radiusX, float radiusY, FillMode mode)
{
    if (!(radiusX > 0.0f && radiusY > 0.0f))
        return;

    static const UnitCircle unit;
    const bool wire = mode == WIRE;
    const std::size_t points = wire ? CIRCLE_SEGMENTS : CIRCLE_SEGMENTS + 1;
    Immediate::Vertex* out = wire ? appendPath(points, true) : appendFan(points + 1);
    const Color& color = Immediate::live().color();
    if (!wire)
        *out++ = vertexAt(x, y, 0.0f, color);
    for (std::size_t i = 0; i < points; ++i)
        *out++ = vertexAt(x + radiusX * unit.x[i], y + radiusY * unit.y[i], 0.0f, color);
}

// NOLINTNEXTLINE(readability-function-size): two corners
void DisplayObsolete::drawBox(float x0, float y0, float z0, float x1, float y1, float z1)
{
    drawBox(Vector3f{x0, y0, z0}, Vector3f{x1, y1, z1});
}

void DisplayObsolete::drawBox(const Vector3f& corner0, const Vector3f& corner1)
{
    drawBox(cornersBetween(corner0, corner1));
}

void DisplayObsolete::drawBoxWire(const Vector3f& corner0, const Vector3f& corner1)
{
    drawBoxWire(cornersBetween(corner0, corner1));
}

void DisplayObsolete::drawBoxTex(const Vector3f& corner0, const Vector3f& corner1)
{
    drawBoxTex(cornersBetween(corner0, corner1));
}

DisplayObsolete::BoxCorners DisplayObsolete::boxCorners(const MatrixGL& transform,
                                                        const Vector3f& boxCentre,
                                                        const Vector3f& halfSize)
{
    const Vector3f centre = transform.multiply(boxCentre);
    const Vector3f x = transform.multiplyVector(Vector3f(halfSize.x, 0.0f, 0.0f));
    const Vector3f y = transform.multiplyVector(Vector3f(0.0f, halfSize.y, 0.0f));
    const Vector3f z = transform.multiplyVector(Vector3f(0.0f, 0.0f, halfSize.z));
    return {
        {
         centre - x - y - z,
         centre + x - y - z,
         centre - x + y - z,
         centre + x + y - z,
         centre - x - y + z,
         centre + x - y + z,
         centre - x + y + z,
         centre + x + y + z,
         }
    };
}

void DisplayObsolete::drawBox(const BoxCorners& corners)
{
    Immediate& immediate = Immediate::live();
    const auto room = immediate.append(Primitive::TRIANGLES, BOX_CORNERS, 6 * BOX_SIDES.size());
    writeBoxCorners(room.vertices, corners, immediate.color());
    Index* indices = room.indices;
    for (const auto& side : BOX_SIDES) {
        Immediate::writeQuad(indices, room.first, side);
        indices += 6;
    }
}

void DisplayObsolete::drawBoxWire(const BoxCorners& corners)
{
    Immediate& immediate = Immediate::live();
    const auto room = immediate.append(Primitive::LINES, BOX_CORNERS, 2 * BOX_EDGES.size());
    writeBoxCorners(room.vertices, corners, immediate.color());
    Index* indices = room.indices;
    for (const auto& edge : BOX_EDGES)
        for (const Index corner : edge)
            *indices++ = static_cast<Index>(room.first + corner);
}

void DisplayObsolete::drawBoxTex(const BoxCorners& corners)
{
    Immediate& immediate = Immediate::live();
    const Color& color = immediate.color();
    for (const auto& side : BOX_SIDES) {
        Immediate::Vertex* const out = immediate.appendQuad();
        for (std::size_t i = 0; i < side.size(); ++i) {
            const Vector3f& corner = corners[side[i]];
            out[i] = vertexAt(corner.x, corner.y, corner.z, color);
            out[i].u = SIDE_TEXCOORDS[i][0];
            out[i].v = SIDE_TEXCOORDS[i][1];
        }
    }
}

void DisplayObsolete::drawBoxAround(const Vector3f& centre, const Vector3f& halfSize)
{
    drawBox(centre - halfSize, centre + halfSize);
}

void DisplayObsolete::drawBoxWireAround(const Vector3f& centre, const Vector3f& halfSize)
{
    drawBoxWire(centre - halfSize, centre + halfSize);
}

void DisplayObsolete::drawLine(const Vector3f& from, const Vector3f& to)
{
    Immediate::Vertex* const ends = appendPath(2, false);
    const Color& color = Immediate::live().color();
    ends[0] = vertexAt(from.x, from.y, from.z, color);
    ends[1] = vertexAt(to.x, to.y, to.z, color);
}

// NOLINTNEXTLINE(readability-function-size): the parameters are fixed
void DisplayObsolete::drawLine(const Vector3f& from, const Vector3f& to, const Vector4f& color,
                               float width, bool dashed, int count)
{
    const float lineWidth = Immediate::live().state().lineWidth;
    const int dashes = dashed ? count : 1;
    const float parts = 2.0f * static_cast<float>(dashes) - 1.0f; // dashes and gaps
    const Vector3f part = (to - from) * (1.0f / parts);

    setLineWidth(width);
    for (int i = 0; i < dashes; ++i) {
        const Vector3f start = from + part * (2.0f * static_cast<float>(i));
        const Vertex ends[2] = {
            {start,        {}, color},
            {start + part, {}, color}
        };
        drawLines(ends, 2);
    }
    setLineWidth(lineWidth);
}

void DisplayObsolete::drawPoints(const Vertex* vertices, std::size_t count)
{
    appendShapes(Primitive::POINTS, 1, vertices, count);
}

void DisplayObsolete::drawLines(const Vertex* vertices, std::size_t count)
{
    appendShapes(Primitive::LINES, 2, vertices, count);
}

void DisplayObsolete::drawTriangles(const Vertex* vertices, std::size_t count)
{
    appendShapes(Primitive::TRIANGLES, 3, vertices, count);
}

void DisplayObsolete::drawQuads(const Vertex* vertices, std::size_t count)
{
    Immediate& immediate = Immediate::live();
    for (std::size_t first = 0; first + 4 <= count; first += 4)
        std::transform(vertices + first, vertices + first + 4, immediate.appendQuad(), vertexOf);
}

bool DisplayObsolete::drawQuadBefore(const Vertex (&corners)[4])
{
    Immediate::Vertex* const room = Immediate::live().appendQuadBefore();
    if (room)
        std::transform(std::begin(corners), std::end(corners), room, vertexOf);
    return room != nullptr;
}

void DisplayObsolete::drawLineStrip(const Vertex* vertices, std::size_t count)
{
    // A portion starts with the vertex at which the one before it ended.
    for (std::size_t first = 0; first + 1 < count; first += CHUNK - 1) {
        const std::size_t portion = std::min(CHUNK, count - first);
        std::transform(vertices + first, vertices + first + portion, appendPath(portion, false),
                       vertexOf);
    }
}

void DisplayObsolete::drawLineLoop(const Vertex* vertices, std::size_t count)
{
    if (count < 2)
        return;
    drawLineStrip(vertices, count);
    const Vertex closing[2] = {vertices[count - 1], vertices[0]};
    drawLines(closing, 2);
}

void DisplayObsolete::drawTriangleFan(const Vertex* vertices, std::size_t count)
{
    // A portion repeats the centre and starts with the vertex at which the one before it ended.
    for (std::size_t first = 1; first + 1 < count; first += CHUNK - 2) {
        const std::size_t portion = std::min(CHUNK - 1, count - first);
        Immediate::Vertex* const out = appendFan(portion + 1);
        out[0] = vertexOf(vertices[0]);
        std::transform(vertices + first, vertices + first + portion, out + 1, vertexOf);
    }
}

} // namespace zavex::display
