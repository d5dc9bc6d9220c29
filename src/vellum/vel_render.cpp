#include "vellum/vel_render.h"

#include "vellum/vel_area.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "mathbase/mb_matrix4x4col.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zavex::vellum {

using display::BlendFactor;
using display::DisplayObsolete;
using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr float SPACE_WIDTH = 3.0f; // pixels
constexpr float NO_CLIPPING = -1.0f;
constexpr int SEGMENTS_BY_SIZE = -1;
constexpr int FEWEST_SEGMENTS = 3;
constexpr int MOST_SEGMENTS = 65536; // more than the rim of a circle that fills a window has pixels
constexpr int FARTHEST_PIXEL = 65536; // more than a window is wide or high

/** What a software renderer samples, in pixels, in the time that two more arrays take it. */
constexpr float LARGEST_TEXTURED = 4096.0f;

constexpr std::size_t MOST_AREAS = 512; // that a large area is compared with

const Vector2f TEXT_SCALE(1.0f, -1.0f); // upright where y grows downwards

/** The integer that is next to `value` towards 0, in lowest..highest; `lowest` for no number. */
int truncated(float value, int lowest, int highest)
{
    if (!(value > static_cast<float>(lowest)))
        return lowest;
    return static_cast<int>(std::min(value, static_cast<float>(highest)));
}

void blendByAlpha()
{
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::SRC_ALPHA, BlendFactor::ONE_MINUS_SRC_ALPHA);
}

int segmentCount(const Render::Area& box, int segments)
{
    if (segments == SEGMENTS_BY_SIZE)
        segments = truncated((box.getWidth() + box.getHeight()) * std::numbers::pi_v<float> * 0.5f,
                             FEWEST_SEGMENTS, MOST_SEGMENTS);
    return std::clamp(segments, FEWEST_SEGMENTS, MOST_SEGMENTS);
}

bool isWhole(const Vector2f& point)
{
    return point.x == std::floor(point.x) && point.y == std::floor(point.y);
}

/** The smallest box around `from` and `to`, whichever of their coordinates is the larger. */
Render::Area boxAround(const Vector2f& from, const Vector2f& to)
{
    Render::Area box(from, from);
    box.setUnion(to);
    return box;
}

/** The pixels of a scissor rectangle, which counts from the lower edge of the window. */
Render::Area areaOf(const display::Immediate::Rectangle& scissor, float windowHeight)
{
    const auto left = static_cast<float>(scissor.x);
    const float bottom = windowHeight - static_cast<float>(scissor.y);
    return {left, bottom - static_cast<float>(scissor.height),
            left + static_cast<float>(scissor.width), bottom};
}

} // namespace

/**
 * Sets the states by which one shape can share the array of its neighbours, for as long as the
 * shape is drawn.
 *
 * What is drawn without texture goes through the solid point of the font's sheet, so that texts and
 * shapes have the same texture; large areas are left out. What lies inside the clip area as a whole
 * is not clipped, so that controls with different clip areas have the same scissor. A large area
 * that covers nothing in the array that is being filled is drawn before it, which goes on.
 */
class Render::SharedArray {
public:
    /** @param bounds  What is drawn lies inside; in pixels. */
    SharedArray(Render& render, Area bounds)
        : mRender(render), mImmediate(display::Immediate::live()),
          mArraysBefore(mImmediate.drawnArrays()), mVerticesBefore(mImmediate.waitingVertices()),
          mTexture(mImmediate.state().texture), mScissor(mImmediate.state().scissor),
          mTexturing(mImmediate.state().texturing), mScissorTest(mImmediate.state().scissorTest),
          mBlending(mImmediate.state().blending)
    {
        display::Immediate::State& state = mImmediate.change();
        const Area clip = areaOf(mScissor, render.mWindowSize.y);
        bounds.setIntersect({Vector2f(0.0f, 0.0f), render.mWindowSize});
        if (!mScissorTest || clip.isInside(bounds)) {
            state.scissor = {};
            state.scissorTest = false;
        } else {
            bounds.setIntersect(clip);
        }
        mLarge = bounds.getArea() > LARGEST_TEXTURED;
        if (render.mSolid)
            state.texturing = !mLarge;
        if (render.mSolid && !mLarge)
            state.texture = render.mSolid->texture;
        mBounds = bounds;
    }

    ~SharedArray()
    {
        if (!mDrawnBefore)
            note();
        display::Immediate::State& state = mImmediate.change();
        state.texture = mTexture;
        state.texturing = mTexturing;
        state.scissor = mScissor;
        state.scissorTest = mScissorTest;
        state.blending = mBlending;
    }

    SharedArray(const SharedArray&) = delete;
    SharedArray& operator=(const SharedArray&) = delete;

    /** Says that the shape is opaque: a large one need not be blended then. */
    void setOpaque()
    {
        display::Immediate::State& state = mImmediate.change();
        if (mLarge && !state.texturing && state.blendSource == BlendFactor::SRC_ALPHA &&
            state.blendDestination == BlendFactor::ONE_MINUS_SRC_ALPHA &&
            state.blendEquation == display::BlendEquation::ADD)
            state.blending = false;
    }

    /** Draws a quad within the bounds. */
    void drawQuad(const DisplayObsolete::Vertex (&corners)[4])
    {
        mDrawnBefore = mLarge && isClear() && DisplayObsolete::drawQuadBefore(corners);
        if (!mDrawnBefore)
            DisplayObsolete::drawQuad(corners);
    }

private:
    /** Whether nothing in the array that is being filled touches the bounds. */
    bool isClear() const
    {
        const Filling& filling = mRender.mFilling;
        const bool isKnown = filling.array == mArraysBefore && filling.vertices == mVerticesBefore;
        return isKnown && filling.areas.size() < MOST_AREAS &&
               std::none_of(filling.areas.begin(), filling.areas.end(), [this](const Area& area) {
                   return area.mMin.x < mBounds.mMax.x && mBounds.mMin.x < area.mMax.x &&
                          area.mMin.y < mBounds.mMax.y && mBounds.mMin.y < area.mMax.y;
               });
    }

    /** Notes where the shape is in the array that is being filled. */
    void note()
    {
        Filling& filling = mRender.mFilling;
        const unsigned long array = mImmediate.drawnArrays();
        const bool isFirst = array != mArraysBefore; // the shape began this array
        if (array != filling.array) {
            filling.areas.clear();
            filling.vertices = 0;
            filling.array = array;
        }
        if (filling.areas.size() < MOST_AREAS)
            filling.areas.push_back(mBounds);
        filling.vertices += mImmediate.waitingVertices() - (isFirst ? 0 : mVerticesBefore);
    }

    Render& mRender;
    display::Immediate& mImmediate;
    unsigned long mArraysBefore;
    std::size_t mVerticesBefore;
    Area mBounds; // what can be seen of them
    display::Texture* mTexture;
    display::Immediate::Rectangle mScissor;
    bool mTexturing;
    bool mScissorTest;
    bool mBlending;
    bool mLarge = false; // has an array without texture
    bool mDrawnBefore = false;
};

Render::Render()
{
    mFilling.areas.reserve(MOST_AREAS);
}

Render::~Render() = default;

void Render::setDisplay(display::DisplayGL* display)
{
    if (display == mDisplay)
        return;
    mDisplay = display;
    mFont = display ? std::make_unique<display::Font>(display) : nullptr;
    mSolid.reset();
}

void Render::setup(display::DisplayGL* display, const std::string& fontFile)
{
    setDisplay(display);
    display::Font& sheet = font();
    mSolid.reset();
    const display::WindowMode& window = display->getWindowMode();
    sheet.load(fontFile, false,
               Vector2f(static_cast<float>(window.width), static_cast<float>(window.height)));
    sheet.setSizeOfSpace(SPACE_WIDTH);
    sheet.setAlignment(display::Font::ALIGN_CENTER);
    mSolid = sheet.getSolid();
}

void Render::setupDraw(Vector2f windowSize, Vector2f pan, float)
{
    mWindowSize = windowSize;
    mPan = pan;
    ZVX_REQUIRE(mDisplay, "mDisplay");

    // Also puts the viewport back to the whole window and leaves lighting off.
    mDisplay->resetStates();
    blendByAlpha();
    DisplayObsolete::setFaceCulling(false);
    DisplayObsolete::setDepthTest(false);
    DisplayObsolete::setTexturing(false);
    DisplayObsolete::setProject(0.0f, windowSize.x, windowSize.y, 0.0f);
    DisplayObsolete::setScissor(0, 0, static_cast<int>(windowSize.x),
                                static_cast<int>(windowSize.y));
    mModel.setTransform();
}

void Render::setColor(const Vector4f& first, const Vector4f& second)
{
    mColor = first;
    mColor2 = second.w < 0.0f ? first : second;
    DisplayObsolete::setColor(mColor);
}

void Render::setLineWidth(float width)
{
    DisplayObsolete::setLineWidth(width);
}

void Render::setAlign(int align)
{
    font().setAlignment(align);
}

float Render::getFontHeight() const
{
    return font().getHeight();
}

void Render::drawBox(const Area& box, int mode)
{
    const bool sideways = mode == GRADIENT_HORISONTAL;
    fill(box, {mColor, sideways ? mColor2 : mColor, mColor2, sideways ? mColor : mColor2});
}

/** Boxes on whole pixels are drawn as four bars, which cover what the lines do. */
void Render::drawBorder(const Area& box)
{
    DisplayObsolete::setLineWidth(1.0f);
    const bool hasInside = box.getWidth() >= 2.0f && box.getHeight() >= 2.0f;
    if (!hasInside || !isWhole(box.mMin) || !isWhole(box.mMax)) {
        drawBorderAsLines(box);
        return;
    }

    // The gradient runs between the middles of the top and the bottom pixels.
    const Area inside(box.mMin.x + 1.0f, box.mMin.y + 1.0f, box.mMax.x - 1.0f, box.mMax.y - 1.0f);
    const Vector4f half = (mColor2 - mColor) * (0.5f / (box.getHeight() - 1.0f));
    const Vector4f high = mColor + half;
    const Vector4f low = mColor2 - half;
    fill({box.mMin.x, box.mMin.y, box.mMax.x, inside.mMin.y}, {mColor, mColor, mColor, mColor});
    fill({inside.mMax.x, inside.mMin.y, box.mMax.x, inside.mMax.y}, {high, high, low, low});
    fill({box.mMin.x, inside.mMax.y, box.mMax.x, box.mMax.y}, {mColor2, mColor2, mColor2, mColor2});
    fill({box.mMin.x, inside.mMin.y, inside.mMin.x, inside.mMax.y}, {high, high, low, low});
}

void Render::drawLine(const Vector2f& from, const Vector2f& to)
{
    Area bounds = boxAround(from, to);
    bounds.expand(display::Immediate::live().state().lineWidth);
    const SharedArray shared(*this, bounds);
    const DisplayObsolete::Vertex ends[] = {corner(from.x, from.y, mColor),
                                            corner(to.x, to.y, mColor2)};
    DisplayObsolete::drawLines(ends, std::size(ends));
}

void Render::drawCircle(const Area& box, int segments, float start)
{
    const Area bounds = boxAround(box.mMin, box.mMax);
    if (isCutAway(bounds))
        return;
    const SharedArray shared(*this, bounds);
    const Vector2f centre = box.getCenter();
    const Vector2f radius = box.getHalfSize();
    mFan.clear();
    mFan.push_back(corner(centre.x, centre.y, mColor));
    for (const Vector2f& point : unitRim(segmentCount(box, segments), start))
        mFan.push_back(
            corner(centre.x + radius.x * point.x, centre.y + radius.y * point.y, mColor));
    DisplayObsolete::drawTriangleFan(mFan.data(), mFan.size());
}

void Render::drawImage(display::Texture& texture, const Area& box)
{
    const auto place = [&](float x, float y, float u, float v) {
        return DisplayObsolete::Vertex{Vector3f(x, y, 0.0f), Vector2f(u, v), mColor};
    };
    const SharedArray shared(*this, boxAround(box.mMin, box.mMax));
    display::Immediate::State& state = display::Immediate::live().change();
    state.texture = &texture;
    state.texturing = true;
    DisplayObsolete::drawQuad(
        {place(box.mMin.x, box.mMin.y, 0.0f, 0.0f), place(box.mMax.x, box.mMin.y, 1.0f, 0.0f),
         place(box.mMax.x, box.mMax.y, 1.0f, 1.0f), place(box.mMin.x, box.mMax.y, 0.0f, 1.0f)});
}

void Render::drawText(const std::string& text, Vector2f position)
{
    blendByAlpha();
    const Vector2f origin(std::floor(position.x), std::floor(position.y));
    const SharedArray shared(*this, font().getBounds(text, TEXT_SCALE) + origin);
    mathbase::Matrix4x4Col toOrigin;
    toOrigin.setTranslation(Vector3f(origin.x, origin.y, 0.0f));
    mModel.setTransform(toOrigin);
    font().draw(text, TEXT_SCALE, mColor);
    mModel.setTransform();
}

float Render::getTextLength(const std::string& text) const
{
    return font().getLength(text, 1.0f);
}

const std::string& Render::fittingText(const std::string& text, float width)
{
    if (getTextLength(text) <= width)
        return text;
    mFitting.clear();
    float length = 0.0f;
    for (const char character : text) {
        length += getTextLength(std::string(1, character));
        if (length > width)
            break;
        mFitting.push_back(character);
    }
    return mFitting;
}

void Render::setClipArea(Area area)
{
    mClipArea = area;
    const bool clipping = area.mMin.x != NO_CLIPPING;
    DisplayObsolete::setScissorTest(clipping);
    if (!clipping)
        return;
    const auto place = [](float value) {
        return truncated(value, -FARTHEST_PIXEL, FARTHEST_PIXEL);
    };
    const auto size = [](float value) { return truncated(value, 0, FARTHEST_PIXEL); };
    DisplayObsolete::setScissor(place(area.mMin.x - mPan.x),
                                place(mWindowSize.y - area.mMax.y + mPan.y), size(area.getWidth()),
                                size(area.getHeight()));
}

float Render::getTime() const
{
    return mDisplay->getTime();
}

/** @param colors  Of the corners, clockwise from the top left one. */
void Render::fill(const Area& wholeBox, const std::array<Vector4f, 4>& colors)
{
    const auto isFirst = [&](const Vector4f& color) { return color == colors[0]; };
    const bool plain = std::all_of(colors.begin(), colors.end(), isFirst);
    const Area box = plain ? visiblePart(wholeBox) : wholeBox;

    SharedArray shared(*this, boxAround(box.mMin, box.mMax));
    const auto isOpaque = [](const Vector4f& color) { return color.w == 1.0f; };
    if (std::all_of(colors.begin(), colors.end(), isOpaque))
        shared.setOpaque();
    shared.drawQuad(
        {corner(box.mMin.x, box.mMin.y, colors[0]), corner(box.mMax.x, box.mMin.y, colors[1]),
         corner(box.mMax.x, box.mMax.y, colors[2]), corner(box.mMin.x, box.mMax.y, colors[3])});
}

/**
 * What the clip area leaves of a box of one colour: one that is cut here need not be cut by the
 * driver. A box with its corners the wrong way round stays as it is.
 */
Render::Area Render::visiblePart(Area box) const
{
    const display::Immediate::State& state = display::Immediate::live().state();
    if (state.scissorTest && box.getWidth() >= 0.0f && box.getHeight() >= 0.0f) {
        box.setIntersect(areaOf(state.scissor, mWindowSize.y));
        box.mMax.maxi(box.mMin);
    }
    return box;
}

/** Whether the clip area leaves nothing of the shapes inside `bounds`. */
bool Render::isCutAway(const Area& bounds) const
{
    const display::Immediate::State& state = display::Immediate::live().state();
    return state.scissorTest && !isInSight(bounds, areaOf(state.scissor, mWindowSize.y));
}

/**
 * The rim of a circle of radius 1 around (0, 0), from the second point on and closed by the first.
 * Circles of one size mostly follow each other.
 */
const std::vector<Vector2f>& Render::unitRim(int segments, float start)
{
    if (mRim.size() == static_cast<std::size_t>(segments) + 1 && mRimStart == start)
        return mRim;
    mRimStart = start;
    mRim.clear();
    for (int i = 1; i <= segments + 1; ++i) {
        const float turns = static_cast<float>(i % segments) / static_cast<float>(segments) + start;
        const float angle = 2.0f * std::numbers::pi_v<float> * turns;
        mRim.emplace_back(std::sin(angle), std::cos(angle));
    }
    return mRim;
}

/** A corner that is drawn through the solid point of the font's sheet. */
DisplayObsolete::Vertex Render::corner(float x, float y, const Vector4f& color) const
{
    return {Vector3f(x, y, 0.0f), mSolid ? mSolid->texcoord : Vector2f(0.0f, 0.0f), color};
}

/** Text needs a display. */
display::Font& Render::font() const
{
    ZVX_REQUIRE(mFont, "mFont");
    return *mFont;
}

void Render::drawBorderAsLines(const Area& box)
{
    Area centres = box; // of the outermost pixels
    centres.expand(-0.5f);
    const SharedArray shared(*this, boxAround(box.mMin, box.mMax));
    const DisplayObsolete::Vertex corners[] = {corner(centres.mMin.x, centres.mMin.y, mColor),
                                               corner(centres.mMax.x, centres.mMin.y, mColor),
                                               corner(centres.mMax.x, centres.mMax.y, mColor2),
                                               corner(centres.mMin.x, centres.mMax.y, mColor2)};
    DisplayObsolete::drawLineLoop(corners, std::size(corners));
}

} // namespace zavex::vellum
