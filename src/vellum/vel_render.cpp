#include "vellum/vel_render.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_font.h"
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

DisplayObsolete::Vertex corner(float x, float y, const Vector4f& color)
{
    return {Vector3f(x, y, 0.0f), Vector2f(0.0f, 0.0f), color};
}

void blendByAlpha()
{
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::SRC_ALPHA, BlendFactor::ONE_MINUS_SRC_ALPHA);
}

int segmentCount(const Render::Area& box, int segments)
{
    if (segments == SEGMENTS_BY_SIZE)
        segments =
            static_cast<int>((box.getWidth() + box.getHeight()) * std::numbers::pi_v<float> * 0.5f);
    return std::max(segments, FEWEST_SEGMENTS);
}

} // namespace

Render::Render() = default;
Render::~Render() = default;

void Render::setDisplay(display::DisplayGL* display)
{
    if (display == mDisplay)
        return;
    mDisplay = display;
    mFont = display ? std::make_unique<display::Font>(display) : nullptr;
}

void Render::setup(display::DisplayGL* display, const std::string& fontFile)
{
    ZVX_REQUIRE(display != nullptr, "display!=0");
    setDisplay(display);
    const display::WindowMode& window = display->getWindowMode();
    mFont->load(fontFile, false,
                Vector2f(static_cast<float>(window.width), static_cast<float>(window.height)));
    mFont->setSizeOfSpace(SPACE_WIDTH);
    mFont->setAlignment(display::Font::ALIGN_CENTER);
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
    mFont->setAlignment(align);
}

float Render::getFontHeight()
{
    return mFont->getHeight();
}

void Render::drawBox(const Area& box, int mode)
{
    const bool sideways = mode == GRADIENT_HORISONTAL;
    const Vector4f& topRight = sideways ? mColor2 : mColor;
    const Vector4f& bottomLeft = sideways ? mColor : mColor2;
    DisplayObsolete::drawQuad(
        {corner(box.mMin.x, box.mMin.y, mColor), corner(box.mMax.x, box.mMin.y, topRight),
         corner(box.mMax.x, box.mMax.y, mColor2), corner(box.mMin.x, box.mMax.y, bottomLeft)});
}

void Render::drawBorder(const Area& box)
{
    Area centres = box; // of the outermost pixels
    centres.expand(-0.5f);
    const DisplayObsolete::Vertex corners[] = {corner(centres.mMin.x, centres.mMin.y, mColor),
                                               corner(centres.mMax.x, centres.mMin.y, mColor),
                                               corner(centres.mMax.x, centres.mMax.y, mColor2),
                                               corner(centres.mMin.x, centres.mMax.y, mColor2)};
    DisplayObsolete::setLineWidth(1.0f);
    DisplayObsolete::drawLineLoop(corners, std::size(corners));
}

void Render::drawLine(const Vector2f& from, const Vector2f& to)
{
    const DisplayObsolete::Vertex ends[] = {corner(from.x, from.y, mColor),
                                            corner(to.x, to.y, mColor2)};
    DisplayObsolete::drawLines(ends, std::size(ends));
}

void Render::drawCircle(const Area& box, int segments, float start)
{
    const int count = segmentCount(box, segments);
    const Vector2f centre = box.getCenter();
    const Vector2f radius = box.getHalfSize();
    mFan.clear();
    mFan.push_back(corner(centre.x, centre.y, mColor));
    for (int i = 1; i <= count + 1; ++i) { // the first rim point again at the end closes the fan
        const float turns = static_cast<float>(i % count) / static_cast<float>(count) + start;
        const float angle = 2.0f * std::numbers::pi_v<float> * turns;
        mFan.push_back(corner(centre.x + radius.x * std::sin(angle),
                              centre.y + radius.y * std::cos(angle), mColor));
    }
    DisplayObsolete::drawTriangleFan(mFan.data(), mFan.size());
}

void Render::drawText(const std::string& text, Vector2f position)
{
    blendByAlpha();
    mathbase::Matrix4x4Col toPosition;
    toPosition.setTranslation(Vector3f(std::floor(position.x), std::floor(position.y), 0.0f));
    mModel.setTransform(toPosition);
    mFont->draw(text, Vector2f(1.0f, -1.0f), mColor);
    mModel.setTransform();
}

float Render::getTextLength(const std::string& text)
{
    return mFont->getLength(text, 1.0f);
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
    if (clipping)
        DisplayObsolete::setScissor(static_cast<int>(area.mMin.x - mPan.x),
                                    static_cast<int>(mWindowSize.y - area.mMax.y + mPan.y),
                                    static_cast<int>(area.getWidth()),
                                    static_cast<int>(area.getHeight()));
}

float Render::getTime()
{
    return mDisplay->getTime();
}

} // namespace zavex::vellum
