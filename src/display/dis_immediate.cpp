#include "display/dis_immediate.h"

#include "common/zvx_system.h"
#include "display/dis_glinclude.h"
#include "display/dis_texture_gl.h"
#include "display/dis_vertexdef.h"
#include "display/dis_windowmode.h"

#include <numbers>

namespace zavex::display {

namespace {

constexpr float FIELD_OF_VIEW = std::numbers::pi_v<float> / 4.0f; // radians
constexpr float NEAR_PLANE = 0.1f;
constexpr float FAR_PLANE = 5000.0f;

GLenum glName(Immediate::Primitive primitive)
{
    switch (primitive) {
        case Immediate::Primitive::POINTS: return GL_POINTS;
        case Immediate::Primitive::LINES: return GL_LINES;
        case Immediate::Primitive::TRIANGLES: return GL_TRIANGLES;
    }
    return GL_TRIANGLES;
}

GLenum glName(BlendFactor factor)
{
    switch (factor) {
        case BlendFactor::ZERO: return GL_ZERO;
        case BlendFactor::ONE: return GL_ONE;
        case BlendFactor::SRC_COLOR: return GL_SRC_COLOR;
        case BlendFactor::ONE_MINUS_SRC_COLOR: return GL_ONE_MINUS_SRC_COLOR;
        case BlendFactor::DST_COLOR: return GL_DST_COLOR;
        case BlendFactor::ONE_MINUS_DST_COLOR: return GL_ONE_MINUS_DST_COLOR;
        case BlendFactor::SRC_ALPHA: return GL_SRC_ALPHA;
        case BlendFactor::ONE_MINUS_SRC_ALPHA: return GL_ONE_MINUS_SRC_ALPHA;
        case BlendFactor::DST_ALPHA: return GL_DST_ALPHA;
        case BlendFactor::ONE_MINUS_DST_ALPHA: return GL_ONE_MINUS_DST_ALPHA;
        case BlendFactor::SRC_ALPHA_SATURATE: return GL_SRC_ALPHA_SATURATE;
    }
    return GL_ONE;
}

GLenum glName(BlendEquation equation)
{
    switch (equation) {
        case BlendEquation::ADD: return GL_FUNC_ADD;
        case BlendEquation::SUBTRACT: return GL_FUNC_SUBTRACT;
        case BlendEquation::REVERSE_SUBTRACT: return GL_FUNC_REVERSE_SUBTRACT;
    }
    return GL_FUNC_ADD;
}

void enable(GLenum capability, bool enabled)
{
    if (enabled)
        GL_CHECKED(glEnable(capability));
    else
        GL_CHECKED(glDisable(capability));
}

/** Texture unit 0 is the active one while it lives. */
class FirstUnit {
public:
    /** @param active  The unit that is active before and after. */
    explicit FirstUnit(int active) : mActive(active)
    {
        if (mActive != 0)
            glActiveTexture(GL_TEXTURE0);
    }
    ~FirstUnit()
    {
        if (mActive != 0)
            glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(mActive));
    }
    FirstUnit(const FirstUnit&) = delete;
    FirstUnit& operator=(const FirstUnit&) = delete;

private:
    int mActive;
};

/** What the active unit had as its 2D texture is back after. */
class KeptTexture {
public:
    explicit KeptTexture(const Texture* bound)
        : mName(bound ? static_cast<const Texture_GL*>(bound)->getTextureGL() : 0)
    {}
    ~KeptTexture() { glBindTexture(GL_TEXTURE_2D, mName); }
    KeptTexture(const KeptTexture&) = delete;
    KeptTexture& operator=(const KeptTexture&) = delete;

private:
    GLuint mName;
};

/** What buffers and arrays were set up come back after. */
class KeptArrays {
public:
    KeptArrays() { glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT); }
    ~KeptArrays() { glPopClientAttrib(); }
    KeptArrays(const KeptArrays&) = delete;
    KeptArrays& operator=(const KeptArrays&) = delete;
};

/** Texturing is a switch of each texture unit: this is unit 0's, whichever is active. */
void enableTexturing(bool enabled, int activeUnit)
{
    const FirstUnit first(activeUnit);
    enable(GL_TEXTURE_2D, enabled);
}

/** An equation other than ADD exists only where the driver has it; ADD is every driver's own. */
void setBlendEquation(BlendEquation equation)
{
    if (glBlendEquation != nullptr)
        GL_CHECKED(glBlendEquation(glName(equation)));
}

/** From the state that the driver is in to the one that it is to be in. */
struct Changes {
    const Immediate::State& from;
    const Immediate::State& to;
    bool all; // `from` says nothing about the driver: everything changes

    template <typename Field>
    bool in(Field Immediate::State::*field) const
    {
        return all || to.*field != from.*field;
    }
};

/** The matrix mode is that of the model-view matrix, always. */
void applyMatrices(const Changes& changes)
{
    if (changes.in(&Immediate::State::projection)) {
        GL_CHECKED(glMatrixMode(GL_PROJECTION));
        GL_CHECKED(glLoadMatrixf(changes.to.projection.mData));
        GL_CHECKED(glMatrixMode(GL_MODELVIEW));
    }
    if (changes.in(&Immediate::State::modelView))
        GL_CHECKED(glLoadMatrixf(changes.to.modelView.mData));
}

void applyBlending(const Changes& changes)
{
    const Immediate::State& to = changes.to;
    if (changes.in(&Immediate::State::blending))
        enable(GL_BLEND, to.blending);
    if (changes.in(&Immediate::State::blendSource) ||
        changes.in(&Immediate::State::blendDestination))
        GL_CHECKED(glBlendFunc(glName(to.blendSource), glName(to.blendDestination)));
    if (changes.in(&Immediate::State::blendEquation))
        setBlendEquation(to.blendEquation);
}

/** What becomes of the corners of a shape: its lines' width, its points' size, its faces. */
void applyShapes(const Changes& changes)
{
    const Immediate::State& to = changes.to;
    if (changes.in(&Immediate::State::lineWidth))
        GL_CHECKED(glLineWidth(to.lineWidth));
    if (changes.in(&Immediate::State::pointSize))
        GL_CHECKED(glPointSize(to.pointSize));
    if (changes.in(&Immediate::State::frontFace))
        GL_CHECKED(glFrontFace(to.frontFace == Winding::CLOCKWISE ? GL_CW : GL_CCW));
    if (changes.in(&Immediate::State::faceCulling))
        enable(GL_CULL_FACE, to.faceCulling);
}

/** Which pixels are drawn at all. */
void applyTests(const Changes& changes)
{
    const Immediate::State& to = changes.to;
    const Immediate::Rectangle& box = to.scissor;
    if (changes.in(&Immediate::State::scissor))
        GL_CHECKED(glScissor(box.x, box.y, box.width, box.height));
    if (changes.in(&Immediate::State::scissorTest))
        enable(GL_SCISSOR_TEST, to.scissorTest);
    if (changes.in(&Immediate::State::depthTest))
        enable(GL_DEPTH_TEST, to.depthTest);
    if (changes.in(&Immediate::State::depthWriting))
        GL_CHECKED(glDepthMask(to.depthWriting ? GL_TRUE : GL_FALSE));
}

} // namespace

mathbase::Matrix4x4Col frameProjection(const WindowMode& mode)
{
    const float aspect =
        static_cast<float>(mode.getActiveWidth()) / static_cast<float>(mode.getActiveHeight());
    mathbase::Matrix4x4Col projection;
    projection.setProject(FIELD_OF_VIEW, aspect, NEAR_PLANE, FAR_PLANE);
    return projection;
}

Immediate* Immediate::sLive = nullptr;

Immediate::Immediate(DisplayGL& display, const int& activeChannel, Texture* const& boundTexture)
    : mDisplay(display), mActiveChannel(activeChannel), mBoundTexture(boundTexture),
      mVertices(std::make_unique<Vertex[]>(VERTEX_CAPACITY)),
      mIndices(std::make_unique<Index[]>(INDEX_CAPACITY))
{
    ZVX_REQUIRE(sLive == nullptr, "sLive==0");
    for (std::size_t quad = 0; quad < QUADS_BEFORE; ++quad)
        writeQuad(&mBeforeIndices[6 * quad], static_cast<Index>(4 * quad), {0, 1, 2, 3});
    sLive = this;
}

Immediate::~Immediate()
{
    sLive = nullptr;
}

Immediate& Immediate::live()
{
    ZVX_REQUIRE(sLive != nullptr, "display");
    return *sLive;
}

bool Immediate::isLive()
{
    return sLive != nullptr;
}

void Immediate::makeRoom(Primitive primitive, std::size_t vertices, std::size_t indices)
{
    ZVX_REQUIRE(vertices <= VERTEX_CAPACITY && indices <= INDEX_CAPACITY,
                "vertices<=VERTEX_CAPACITY && indices<=INDEX_CAPACITY");

    const bool stateDiffers = mStateChanged && !(mState == mArrayState);
    const bool full =
        mVertexCount + vertices > VERTEX_CAPACITY || mIndexCount + indices > INDEX_CAPACITY;
    if (stateDiffers || primitive != mPrimitive || full)
        draw();
    if (stateDiffers)
        mArrayState = mState;
    mStateChanged = false;
    mPrimitive = primitive;
}

Immediate::Vertex* Immediate::appendQuadBefore()
{
    if (mIndexCount == 0 || mBeforeCount == QUADS_BEFORE || mState == mArrayState)
        return nullptr;
    if (mBeforeCount == 0)
        mBeforeState = mState;
    else if (!(mBeforeState == mState))
        return nullptr;
    return &mBefore[4 * mBeforeCount++];
}

void Immediate::flush()
{
    if (mDrawing)
        return;
    draw();
    if (!mStateChanged && mDriverKnown)
        return;
    apply(mState);
    mArrayState = mState;
    mStateChanged = false;
}

void Immediate::flushWithColor()
{
    flush();
    applyColor();
}

void Immediate::applyColor()
{
    if (mDriverColor == mColor)
        return;
    GL_CHECKED(glColor4fv(mColor.data()));
    mDriverColor = mColor;
}

void Immediate::reset(const State& state)
{
    draw();
    mState = state;
    mDriverKnown = false;
    mStateChanged = true;
    mDriverColor.reset();
    flushWithColor();
}

void Immediate::discard()
{
    mVertexCount = 0;
    mIndexCount = 0;
    mBeforeCount = 0;
}

void Immediate::draw()
{
    if (mIndexCount == 0)
        return;

    /** Leaves an empty array behind, also when the driver refuses what was in it. */
    struct Drawing {
        explicit Drawing(Immediate& immediate) : owner(immediate) { owner.mDrawing = true; }
        ~Drawing()
        {
            owner.mDrawing = false;
            owner.discard();
        }
        Drawing(const Drawing&) = delete;
        Drawing& operator=(const Drawing&) = delete;

        Immediate& owner;
    };
    const Drawing drawing(*this);

    if (mBeforeCount > 0)
        handOver(mBeforeState, {Primitive::TRIANGLES, mBefore.data(), 4 * mBeforeCount,
                                mBeforeIndices.data(), 6 * mBeforeCount});
    handOver(mArrayState, {mPrimitive, mVertices.get(), mVertexCount, mIndices.get(), mIndexCount});
}

void Immediate::handOver(const State& state, const Array& array)
{
    apply(state);
    mDriverColor.reset();
    if (state.texture == nullptr)
        drawArray(array);
    else
        drawArrayWith(*state.texture, array);
    ++mDrawnArrays;
}

/** Hands the array over as client memory. */
void Immediate::drawArray(const Array& array) const
{
    const Vertex* const vertices = array.vertices;

    const KeptArrays kept;
    GL_REPORT_ERROR(__FILE__, __LINE__, "glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT)");
    if (glBindBuffer != nullptr) {
        GL_CHECKED(glBindBuffer(GL_ARRAY_BUFFER, 0));
        GL_CHECKED(glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0));
    }
    if (mBoundVertices)
        for (const VertexAttribute& attribute : mBoundVertices->getAttributes())
            GL_CHECKED(glDisableVertexAttribArray(static_cast<GLuint>(attribute.index)));
    GL_CHECKED(glClientActiveTexture(GL_TEXTURE0));
    GL_CHECKED(glEnableClientState(GL_VERTEX_ARRAY));
    GL_CHECKED(glEnableClientState(GL_TEXTURE_COORD_ARRAY));
    GL_CHECKED(glEnableClientState(GL_COLOR_ARRAY));
    GL_CHECKED(glVertexPointer(3, GL_FLOAT, sizeof(Vertex), &vertices->x));
    GL_CHECKED(glTexCoordPointer(2, GL_FLOAT, sizeof(Vertex), &vertices->u));
    GL_CHECKED(glColorPointer(4, GL_FLOAT, sizeof(Vertex), &vertices->r));
    GL_CHECKED(glDrawRangeElements(
        glName(array.primitive), 0, static_cast<GLuint>(array.vertexCount - 1),
        static_cast<GLsizei>(array.indexCount), GL_UNSIGNED_SHORT, array.indices));
}

/** What the display has bound to channel 0 comes back after, so that its records stay true. */
void Immediate::drawArrayWith(Texture& texture, const Array& array) const
{
    const FirstUnit first(mActiveChannel);
    const KeptTexture kept(mBoundTexture);
    static_cast<Texture_GL&>(texture).bind();
    drawArray(array);
}

void Immediate::apply(const State& state)
{
    const Changes changes{mDriverState, state, !mDriverKnown};

    // What the driver is in is unknown while the calls are made: one of them may throw.
    mDriverKnown = false;
    applyMatrices(changes);
    applyBlending(changes);
    applyShapes(changes);
    if (changes.in(&State::texturing))
        enableTexturing(state.texturing, mActiveChannel);
    applyTests(changes);
    mDriverState = state;
    mDriverKnown = true;
}

} // namespace zavex::display
