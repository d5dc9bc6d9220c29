#pragma once

#include "display/dis_immediate.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "mathbase/mb_vector4.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace zavex::display {

/**
 * Immediate drawing: shapes, matrices and graphics states.
 *
 * The shapes and states belong to the one live display and need no object; an object holds a camera
 * and a transform. What is drawn takes the colour, texture, matrices and states of the moment of
 * the call, in the order of the calls, and is handed to the driver in few large arrays
 * (`Immediate`). Everything here throws Exception when there is no display. Colours are red, green,
 * blue and alpha in 0..1.
 */
class DisplayObsolete {
public:
    using MatrixGL = mathbase::Matrix4x4Col;

    enum FillMode : int {
        SOLID = 0,
        WIRE = 1,
    };

    /** Corner c takes the larger x with bit 0 of c, the larger y with bit 1, the larger z with
     * bit 2. */
    using BoxCorners = std::array<mathbase::Vector3f, 8>;

    /** A corner of a shape that is not of one colour. */
    struct Vertex {
        mathbase::Vector3f position;
        mathbase::Vector2f texcoord;
        mathbase::Vector4f color;
    };

    // The current colour, which every shape without colours of its own takes, and every buffer that
    // `DisplayGL::draw` draws without an attribute for it.

    static void setColor(float red, float green, float blue, float alpha);
    static void setColor(const mathbase::Vector4f& color);
    static void setColor(const mathbase::Vector3f& color); // alpha 1
    static void setColor(float grey);                      // alpha 1

    /**
     * The colour written as two hexadecimal digits each for red, green, blue and alpha, such as
     * "ff8000" or "FF800080", without a leading mark.
     *
     * What is missing stays opaque black; a missing second digit and a character that is no digit
     * count as 0.
     */
    static mathbase::Vector4f hex2vec(std::string_view text);

    // The projection.

    static void setProject(const MatrixGL& projection);

    /** The projection that a frame starts with, see `frameProjection`. */
    static void setProject();

    /** Orthographic, from z = -1 to z = 1; a `bottom` above `top` lets y grow downwards. */
    static void setProject(float left, float right, float bottom, float top);

    // The camera and the transform of this object. Each loads the model-view matrix at once.

    void setCamera(const MatrixGL& camera);

    /** Looks from `eye` at `target`, turned by `roll` radians; the two must differ. */
    void setCamera(const mathbase::Vector3f& eye, const mathbase::Vector3f& target, float roll);

    void setCamera(); // identity

    void setTransform(const MatrixGL& transform);
    void setTransform(); // identity

    /** Loads camera * transform as the model-view matrix. */
    void setModelView() const;

    const MatrixGL& getCamera() const { return mCameraMatrix; }
    const MatrixGL& getTransform() const { return mTransformMatrix; }

    // Graphics states. They hold until they are set again or `DisplayGL::resetStates`.

    static void setBlending(bool enabled);
    static void setBlendFunction(BlendFactor source, BlendFactor destination);
    static void setBlendEquation(BlendEquation equation);
    static void setDepthTest(bool enabled);
    static void setDepthWriting(bool enabled);
    static void setFaceCulling(bool enabled); // of back faces
    static void setFrontFace(Winding winding);
    static void setTexturing(bool enabled); // 2D, channel 0; shaders sample without it
    static void setLineWidth(float pixels);
    static void setPointSize(float pixels);
    static void setScissorTest(bool enabled);

    /** The rectangle that drawing is cut to; x and y from the window's lower left, in pixels. */
    static void setScissor(int x, int y, int width, int height);

    /** Clears colour and depth of what is drawn into, within the scissor rectangle if tested. */
    static void clear(const mathbase::Vector4f& color, float depth);

    // Shapes in the plane z = 0.

    static void drawLine(float x0, float y0, float x1, float y1);

    /** The rectangle (x0, y0), (x1, y0), (x1, y1), (x0, y1), in this order. */
    static void drawBox(float x0, float y0, float x1, float y1, FillMode mode);

    /** 32 segments; nothing when the radius is 0 or less. */
    static void drawCircle(float x, float y, float radius, FillMode mode);

    /** An ellipse of 32 segments; nothing when either radius is 0 or less. */
    static void drawCircle(float x, float y, float radiusX, float radiusY, FillMode mode);

    // Axis-aligned boxes. Six quads whose corners run counter-clockwise seen from outside (with
    // `corner0` the smaller on every axis), in the order -z, +z, -y, +y, -x, +x; or twelve lines,
    // the four along x, then along y, then along z. A box with a texture shows all of it on each
    // side, upright on the four sides around the y axis.

    static void drawBox(float x0, float y0, float z0, float x1, float y1, float z1);
    static void drawBox(const mathbase::Vector3f& corner0, const mathbase::Vector3f& corner1);
    static void drawBoxWire(const mathbase::Vector3f& corner0, const mathbase::Vector3f& corner1);
    static void drawBoxTex(const mathbase::Vector3f& corner0, const mathbase::Vector3f& corner1);
    static void drawBoxAround(const mathbase::Vector3f& centre, const mathbase::Vector3f& halfSize);
    static void drawBoxWireAround(const mathbase::Vector3f& centre,
                                  const mathbase::Vector3f& halfSize);

    // Boxes that were turned, sheared or mirrored by whoever places them, which lets boxes with
    // different transforms share an array.

    /** Where `transform`, which is affine, takes the corners of the box around `centre`. */
    static BoxCorners boxCorners(const MatrixGL& transform, const mathbase::Vector3f& centre,
                                 const mathbase::Vector3f& halfSize);
    static void drawBox(const BoxCorners& corners);
    static void drawBoxWire(const BoxCorners& corners);
    static void drawBoxTex(const BoxCorners& corners);

    // Lines, points and surfaces of any shape.

    static void drawLine(const mathbase::Vector3f& from, const mathbase::Vector3f& to);

    /**
     * A line of a colour and a width of its own; colour and line width are as before afterwards.
     *
     * @param width   Pixels.
     * @param dashed  Draw `count` dashes, with gaps of their length between them, instead of all.
     * @param count   Dashes; a dashed line with fewer than 1 draws nothing.
     */
    static void drawLine(const mathbase::Vector3f& from, const mathbase::Vector3f& to,
                         const mathbase::Vector4f& color, float width, bool dashed, int count);

    // From `count` vertices, of which those that do not complete a shape are left out.

    static void drawPoints(const Vertex* vertices, std::size_t count);
    static void drawLines(const Vertex* vertices, std::size_t count);     // two each
    static void drawTriangles(const Vertex* vertices, std::size_t count); // three each
    static void drawQuads(const Vertex* vertices, std::size_t count);     // four each
    static void drawLineStrip(const Vertex* vertices, std::size_t count);
    static void drawLineLoop(const Vertex* vertices, std::size_t count);
    static void drawTriangleFan(const Vertex* vertices, std::size_t count);

    /** One quad of four vertices. */
    static void drawQuad(const Vertex (&corners)[4]) { drawQuads(corners, 4); }

    /**
     * As `drawQuad`, drawn before what waits to be handed over (`Immediate::appendQuadBefore`).
     *
     * @return false when nothing was drawn.
     */
    static bool drawQuadBefore(const Vertex (&corners)[4]);

    /** Hands everything drawn so far to the driver. Display operations that need it do it. */
    static void flush() { Immediate::live().flush(); }

private:
    MatrixGL mCameraMatrix;
    MatrixGL mTransformMatrix;
};

} // namespace zavex::display
