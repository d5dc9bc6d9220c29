#pragma once

#include "mathbase/mb_matrix4x4col.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace zavex::display {

class DisplayGL;
class Texture;
class VertexDef;
class WindowMode;

/** What a fragment or the picture under it is multiplied by before the two are combined. */
enum class BlendFactor {
    ZERO,
    ONE,
    SRC_COLOR,
    ONE_MINUS_SRC_COLOR,
    DST_COLOR,
    ONE_MINUS_DST_COLOR,
    SRC_ALPHA,
    ONE_MINUS_SRC_ALPHA,
    DST_ALPHA,
    ONE_MINUS_DST_ALPHA,
    SRC_ALPHA_SATURATE
};

/** How a weighted fragment and the weighted picture under it are combined. */
enum class BlendEquation { ADD, SUBTRACT, REVERSE_SUBTRACT };

/** The order in which a front face's corners appear on the screen. */
enum class Winding { CLOCKWISE, COUNTER_CLOCKWISE };

/** The projection that a frame starts with: 45 degrees high, as wide as the active area. */
mathbase::Matrix4x4Col frameProjection(const WindowMode& mode);

/**
 * Draws what is given vertex by vertex in few large arrays.
 *
 * The caller sees immediate drawing: what is appended is drawn with the state that was set when it
 * was appended, in the order in which it was appended. The driver sees one array for everything
 * that shares its state and its kind of primitive. State is set on a copy (`change`) that reaches
 * the driver together with the next array, so that setting a state and setting it back costs
 * nothing and does not end the array that is being filled. Quads and fans are triangles here, so
 * that all filled shapes share arrays.
 *
 * Whatever else touches the graphics library calls `flush` first: afterwards everything appended is
 * drawn and the driver is in the state that was asked for. That goes for textures, shaders,
 * uniforms, buffers, render targets, clearing, swapping and reading pixels. The states of `State`
 * are set here and nowhere else.
 *
 * All memory is reserved at construction; drawing never allocates. Exactly one lives at a time, in
 * the display, which owns it. Drawing and flushing need the display's context to be current.
 */
class Immediate {
public:
    enum class Primitive { POINTS, LINES, TRIANGLES };

    struct Vertex {
        float x, y, z;    // model coordinates
        float u, v;       // texture coordinates of channel 0
        float r, g, b, a; // in 0..1 on a screen; any value on a float render target
    };

    using Index = std::uint16_t;

    struct Rectangle {
        int x = 0; // pixels from the window's left edge
        int y = 0; // pixels from the window's lower edge
        int width = 0;
        int height = 0;

        bool operator==(const Rectangle&) const = default;
    };

    /** The graphics state that vertices are drawn with; defaults as after `resetStates`. */
    struct State {
        mathbase::Matrix4x4Col projection;
        mathbase::Matrix4x4Col modelView;
        Texture* texture = nullptr; // on channel 0 instead of what the display has bound; or null
        Rectangle scissor;
        float lineWidth = 1.0f; // pixels
        float pointSize = 1.0f; // pixels
        BlendFactor blendSource = BlendFactor::SRC_ALPHA;
        BlendFactor blendDestination = BlendFactor::ONE_MINUS_SRC_ALPHA;
        BlendEquation blendEquation = BlendEquation::ADD;
        Winding frontFace = Winding::COUNTER_CLOCKWISE;
        bool blending = false;
        bool texturing = false; // 2D, channel 0
        bool depthTest = false;
        bool depthWriting = true;
        bool faceCulling = false; // of back faces
        bool scissorTest = false;

        bool operator==(const State&) const = default;
    };

    /**
     * Room for vertices and indices in the array that is being filled. Indices written count from
     * `first`. Both must be filled before the next call of anything here.
     */
    struct Room {
        Vertex* vertices;
        Index* indices;
        Index first; // what index of the array `vertices[0]` has
    };

    /** What one array holds at most; a primitive must not be larger. */
    static constexpr std::size_t VERTEX_CAPACITY = 65536;
    static constexpr std::size_t INDEX_CAPACITY = 5 * VERTEX_CAPACITY;

    /**
     * Throws Exception when another one lives.
     *
     * The display's records are read whenever they matter, so that the driver need not be asked:
     *
     * @param activeChannel  The texture unit that is active.
     * @param boundTexture   What channel 0 has; null for nothing.
     */
    Immediate(DisplayGL& display, const int& activeChannel, Texture* const& boundTexture);
    ~Immediate();
    Immediate(const Immediate&) = delete;
    Immediate& operator=(const Immediate&) = delete;

    /** The one of the live display; throws Exception when there is no display. */
    static Immediate& live();
    static bool isLive();

    /** The state that the next vertices are drawn with, to be changed in place at once. */
    State& change()
    {
        mStateChanged = true;
        return mState;
    }

    const State& state() const { return mState; }

    /** The colour that the shapes of DisplayObsolete take, and `flushWithColor` the driver. */
    void setColor(float r, float g, float b, float a) { mColor = {r, g, b, a}; }
    const std::array<float, 4>& color() const { return mColor; }

    /**
     * Makes room for `vertices` vertices and `indices` indices of a primitive, at most the
     * capacities. Draws what is waiting first when it is of another kind or state, or when there is
     * no room left.
     */
    Room append(Primitive primitive, std::size_t vertices, std::size_t indices)
    {
        if (mStateChanged || primitive != mPrimitive || mVertexCount + vertices > VERTEX_CAPACITY ||
            mIndexCount + indices > INDEX_CAPACITY)
            makeRoom(primitive, vertices, indices);
        const Room room{&mVertices[mVertexCount], &mIndices[mIndexCount],
                        static_cast<Index>(mVertexCount)};
        mVertexCount += vertices;
        mIndexCount += indices;
        return room;
    }

    /** Makes room for the four corners of a quad, in their order around it. */
    Vertex* appendQuad()
    {
        const Room room = append(Primitive::TRIANGLES, 4, 6);
        writeQuad(room.indices, room.first, {0, 1, 2, 3});
        return room.vertices;
    }

    /**
     * Makes room for the four corners of a quad that is drawn before everything in the array that
     * is being filled, with the present state. That is what the caller sees too where nothing in
     * the array lies over the quad.
     *
     * @return null when the quad has to be appended: it can share the array, nothing is waiting, or
     *         no more quads of this state can go before it.
     */
    Vertex* appendQuadBefore();

    /**
     * Writes the six indices of a quad whose corners are counted from `first`: two triangles that
     * meet in the first and the third corner. Quads are not left to the driver, which may cut an
     * indexed one along the other diagonal than one drawn corner by corner.
     */
    static void writeQuad(Index* indices, Index first, const std::array<Index, 4>& corners)
    {
        for (const std::size_t corner : {0, 1, 2, 0, 2, 3})
            *indices++ = static_cast<Index>(first + corners[corner]);
    }

    /** Draws everything appended and puts the driver into the present state. */
    void flush();

    /** As `flush`; what the driver is given next without a colour of its own has `color()`. */
    void flushWithColor();

    /**
     * Draws everything appended, then makes `state` the present one and sets every single state of
     * it and the colour in the driver, whatever the driver was in before.
     */
    void reset(const State& state);

    /** Forgets what is waiting, as when the context it was meant for goes away. */
    void discard();

    /** How many arrays were handed to the driver so far. */
    unsigned long drawnArrays() const { return mDrawnArrays; }

    /** How many vertices the array that is being filled holds. */
    std::size_t waitingVertices() const { return mVertexCount; }

    /**
     * Tells which vertex attributes are bound to a buffer, so that they do not stand in the way of
     * the arrays that are drawn here. @param format  Null for none; must live while it is bound.
     */
    void setBoundVertices(const VertexDef* format) { mBoundVertices = format; }

    DisplayGL& display() const { return mDisplay; }

private:
    /** What the driver gets with one call. */
    struct Array {
        Primitive primitive;
        const Vertex* vertices;
        std::size_t vertexCount;
        const Index* indices;
        std::size_t indexCount;
    };

    static constexpr std::size_t QUADS_BEFORE = 256;

    void drawArray(const Array& array) const;
    void drawArrayWith(Texture& texture, const Array& array) const;

    void makeRoom(Primitive primitive, std::size_t vertices, std::size_t indices);
    void draw();
    void handOver(const State& state, const Array& array);
    void apply(const State& state);
    void applyColor();

    static Immediate* sLive;

    DisplayGL& mDisplay;
    const int& mActiveChannel;
    Texture* const& mBoundTexture;
    std::unique_ptr<Vertex[]> mVertices;
    std::unique_ptr<Index[]> mIndices;
    std::size_t mVertexCount = 0;
    std::size_t mIndexCount = 0;
    std::array<Vertex, 4 * QUADS_BEFORE> mBefore{};       // quads drawn before the array
    std::array<Index, 6 * QUADS_BEFORE> mBeforeIndices{}; // of all of them
    std::size_t mBeforeCount = 0;                         // quads
    Primitive mPrimitive = Primitive::TRIANGLES;
    std::array<float, 4> mColor{1.0f, 1.0f, 1.0f, 1.0f};
    std::optional<std::array<float, 4>> mDriverColor; // empty: arrays have left any
    bool mStateChanged = false;                       // mState may differ from mArrayState
    bool mDrawing = false;                            // an array is being handed over
    bool mDriverKnown = false;                        // mDriverState is what the driver is in
    State mState;                                     // for what is appended next
    State mArrayState;                                // for what is waiting
    State mBeforeState;                               // for the quads before it
    State mDriverState;
    unsigned long mDrawnArrays = 0;
    const VertexDef* mBoundVertices = nullptr; // not owned
};

} // namespace zavex::display
