#include "vellum/vel_spline.h"

#include "vellum/vel_area.h"
#include "vellum/vel_attribute.h"
#include "vellum/vel_curve.h"
#include "vellum/vel_look.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>

namespace zavex::vellum {

using mathbase::Vector2f;
using Curve = mathbase::SplineFloat;
using Key = mathbase::SplineBaseKey<float>;

namespace {

constexpr float LOWEST_VALUE = -1.0f;
constexpr float HIGHEST_VALUE = 1.0f;

constexpr float HOVER_MARGIN = 1.0f;   // pixels around a key that still belong to it
constexpr float SMALL_RADIUS = 2.0f;   // pixels, of a key without the keyboard focus
constexpr float SAME_PLACE = 0.5f;     // pixels around a key that make no difference
constexpr float NAME_LEFT = 2.0f;      // pixels, of the mode's name
constexpr float NAME_MIDDLE = 4.0f;    // pixels below the top edge
constexpr float HANDLE = 0.25f;        // of a tangent, in lengths of its segment
constexpr float LONG_HANDLE = 0.5f;    // of the selected key's tangents
constexpr float SAMPLE_RESERVE = 1.2f; // lets the control grow a little before sampling again
constexpr float FEWEST_SAMPLES = 10.0f;
constexpr float MOST_SAMPLES = 65536.0f; // more than any window has columns

const style::Color HANDLE_COLOR(0.0f, 0.5f, 0.0f, 1.0f);

constexpr const char* SEPARATOR = "-------";

void addRepeatOptions(Context& repeat, const char* side)
{
    Context* const modes = repeat.addOption(side, "");
    for (const ExtrapolationWords& each : EXTRAPOLATIONS)
        modes->addOption(each.shown, "");
}

/** What follows a menu's path; empty when the action was not chosen below it. */
std::string_view below(std::string_view path, std::string_view action)
{
    return action.starts_with(path) ? action.substr(path.size()) : std::string_view();
}

std::optional<Curve::ExtrapolationMode> repeatBelow(std::string_view path, std::string_view action)
{
    return modeOf(EXTRAPOLATIONS, below(path, action), &ExtrapolationWords::shown);
}

Key halfway(const Key& a, const Key& b)
{
    return {(a.time + b.time) * 0.5f, (a.value + b.value) * 0.5f,
            (a.tangentIN + b.tangentIN) * 0.5f, (a.tangentOUT + b.tangentOUT) * 0.5f};
}

Vector2f wholePixels(Vector2f point)
{
    return {std::trunc(point.x), std::trunc(point.y)};
}

/** A line one pixel wide in the colour that is set, if any of it can be seen. */
void drawLine(Render& render, Vector2f from, Vector2f to, const Control::Area& clip)
{
    Control::Area bounds(from.min(to), from.max(to));
    bounds.expand(1.0f);
    if (isInSight(bounds, clip))
        render.drawLine(from, to);
}

void setFlatColor(Render& render, const style::Color& color)
{
    render.setColor(color, color);
}

} // namespace

std::string getModeName(Curve::InterpolationMode mode)
{
    return savedWord(INTERPOLATIONS, mode, "unknown");
}

/** Where times and values lie in the control's rectangle, whose coordinates may be anyone's. */
class Spline::Scale {
public:
    Scale(const Spline& spline, const Area& area)
        : mArea(area), mHalf(area.getHeight() / 2.0f), mStart(spline.mStartTime),
          mSpan(spline.mEndTime - spline.mStartTime)
    {}

    Vector2f toCurve(Vector2f point) const
    {
        const float width = mArea.getWidth();
        const float time = width != 0.0f ? (point.x - mArea.mMin.x) * mSpan / width : 0.0f;
        const float value = mHalf != 0.0f ? (mHalf - (point.y - mArea.mMin.y)) / mHalf : 0.0f;
        return {time - mStart, value};
    }

    /** Without a span of time everything is at the left edge. */
    Vector2f toArea(Vector2f timeAndValue) const
    {
        const float along = mArea.getWidth() * (timeAndValue.x + mStart);
        return {mArea.mMin.x + (mSpan != 0.0f ? along / mSpan : 0.0f),
                mArea.mMin.y + mHalf - mHalf * timeAndValue.y};
    }

private:
    Area mArea;
    float mHalf;  // height, pixels
    float mStart; // time
    float mSpan;  // time
};

Spline::Spline()
{
    mType = mId = "spline";
    mStyle = style{};
    mStyle.mBack.mBorder1 = style::Color(0.55f, 0.51f, 0.51f, 1.0f);
    mStyle.mBack.mBorder2 = style::Color(0.31f, 0.31f, 0.41f, 1.0f);
    mStyle.mBack.mColor1 = style::Color(0.01f, 0.01f, 0.01f, 0.91f);
    mStyle.mBack.mColor2 = style::Color(0.05f, 0.15f, 0.31f, 0.91f);
    mStyle.mBack.mHighlight1 = style::Color(0.5f, 0.5f, 1.0f, 1.0f);
    mStyle.mBack.mPushed1 = style::Color(0.5f, 0.5f, 1.0f, 1.0f);
    mStyle.mBack.mPushed2 = style::Color(1.0f, 1.0f, 1.0f, 1.0f);
    mStyle.mText.mColor1 = style::Color(0.6f, 0.6f, 0.6f, 1.0f);

    mContext.setCaption("spline");
    mContext.addOption("add key", "");
    mContext.addOption(SEPARATOR, "");
    Context* const type = mContext.addOption("type", "");
    for (const InterpolationWords& each : INTERPOLATIONS)
        type->addOption(each.shown, "");
    Context* const repeat = mContext.addOption("repeat", "");
    addRepeatOptions(*repeat, "before");
    addRepeatOptions(*repeat, "after");
    mContext.addOption(SEPARATOR, "");
    Context* const tangents = mContext.addOption("tangents", "");
    tangents->addOption("show", "");
    tangents->addOption("hide", "");

    mContext2.setCaption("spline");
    mContext2.addOption("delete key", "");
}

Spline::~Spline()
{
    if (m_ownSplineMemory)
        delete m_spline;
}

void Spline::load(xml::IteratorConst& element)
{
    setSpline(new Curve(Curve::SMOOTH, true), true);
    Pressable::load(element);
    setSplineType(element->getValue("type"));
    for (xml::IteratorConst item = element.createIterator("item"); ++item;)
        m_spline->addKey({numberAttribute(item, "x").value_or(0.0f),
                          numberAttribute(item, "y").value_or(0.0f), 0.0f, 0.0f});
}

void Spline::draw(Area area, Area, Area clip)
{
    if (!m_spline)
        return;
    Render& render = getRender();
    fillBox(render, pairOf(mStyle.mBack), area);
    drawBorder(render, borderOf(mStyle.mBack), area);

    setFlatColor(render, mStyle.mText.mColor1);
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText(getModeName(m_spline->getInterpolation()),
                    wholePixels(area.mMin + Vector2f(NAME_LEFT, NAME_MIDDLE)));
    render.setAlign(display::Font::ALIGN_CENTER);

    render.setLineWidth(1.0f);
    updateSamples(area.getWidth());
    drawCurve(clip);
    drawKeys(clip);
}

void Spline::setSplineType(const std::string& type)
{
    mDirty = true;
    if (!m_spline)
        return;
    if (const auto mode = modeOf(INTERPOLATIONS, type))
        m_spline->setInterpolation(*mode);
}

void Spline::setSpline(Curve* spline, bool own)
{
    if (m_ownSplineMemory && m_spline != spline)
        delete m_spline;
    m_spline = spline;
    m_ownSplineMemory = own;
    mSelection = mClicked = mDeleteIndex = -1;
    mDirty = true;
}

void Spline::setTimeInterval(float start, float end)
{
    mStartTime = start;
    mEndTime = end;
    mDirty = true;
}

void Spline::setValueInterval(float lowest, float)
{
    mMinValue = lowest;
    mDirty = true;
}

Vector2f Spline::getSplineSpace(const Vector2f& point) const
{
    return Scale(*this, getArea()).toCurve(point);
}

Vector2f Spline::getWorldSpace(const Vector2f& timeAndValue) const
{
    return Scale(*this, getAreaWorld()).toArea(timeAndValue);
}

bool Spline::isKey(std::int32_t index) const
{
    return m_spline && index >= 0 && index < m_spline->getNumKeys();
}

bool Spline::isFocusedChild() const
{
    return mParent && mParent->getFocus() == this;
}

Vector2f Spline::placeOf(std::int32_t key, const Scale& scale) const
{
    return scale.toArea({(*m_spline)[key].time, (*m_spline)[key].value});
}

/** The first key at a local point; -1 for none. */
std::int32_t Spline::keyAt(Vector2f point) const
{
    if (!m_spline)
        return -1;
    const Area world = getAreaWorld();
    const Scale scale(*this, world);
    const Area reach = squareAround(point + world.mMin, mPointSize + HOVER_MARGIN);
    for (std::int32_t i = 0; i < m_spline->getNumKeys(); ++i)
        if (contains(reach, placeOf(i, scale)))
            return i;
    return -1;
}

void Spline::hover(const Event& event)
{
    mMouseOverX = event.mousePos.x;
    mMouseOverIndex = keyAt(event.mousePos);
}

/** Moves the key that is being dragged and reports it, after which this control may be gone. */
void Spline::drag(const Event& event)
{
    if (!isKey(mClicked)) {
        hover(event);
        return;
    }
    mMouseOverX = event.mousePos.x;
    const Vector2f target = getSplineSpace(event.mousePos + getArea().mMin);
    Key& key = (*m_spline)[mClicked];
    key.time = std::min(std::max(target.x, mStartTime), mEndTime);
    key.value = std::clamp(target.y, LOWEST_VALUE, HIGHEST_VALUE);
    mClicked = m_spline->updateKey(mClicked);
    mSelection = mMouseOverIndex = mClicked;
    mDirty = true;
    sendAction(ACTION_SPLINE_CHANGED);
}

void Spline::press(const Event&)
{
    mClicked = mSelection = isKey(mMouseOverIndex) ? mMouseOverIndex : -1;
}

bool Spline::release(const Event&)
{
    drop();
    mMouseOverIndex = -1;
    return false;
}

void Spline::pressOther(const Event& event)
{
    drop(); // the release goes to the menu
    const bool onKey = isKey(mMouseOverIndex);
    if (onKey)
        mDeleteIndex = mMouseOverIndex;
    else
        mAddPosition = event.mousePos + getArea().mMin;
    Context& menu = onKey ? mContext2 : mContext;
    menu.setPosition(event.mousePos + getAreaWorld().mMin);
    setContext(&menu);
}

/** Others may hear of the key as well. */
bool Spline::pressKey(const Event& event)
{
    if (!m_spline)
        return false;
    switch (event.key) {
        case display::KEY_LEFT: moveSelection(-1); break;
        case display::KEY_RIGHT: moveSelection(1); break;
        case display::KEY_DEL: removeSelected(); break;
        case display::KEY_INSERT: insertKey(); break;
        default: break;
    }
    return false;
}

void Spline::choose(const std::string& action)
{
    mDirty = true;
    if (action == "spline.add key") {
        const Vector2f place = getSplineSpace(mAddPosition);
        addKey({place.x, place.y, 0.0f, 0.0f});
    } else if (action == "spline.delete key") {
        std::puts("hallo was deleting spline key");
        removeKey(mDeleteIndex);
    } else if (action == "spline.tangents.show" || action == "spline.tangents.hide")
        mShowTangents = action == "spline.tangents.show";
    else
        chooseMode(action);
}

void Spline::chooseMode(const std::string& action)
{
    if (!m_spline)
        return;
    if (const std::string_view type = below("spline.type.", action); !type.empty())
        setSplineType(std::string(type));
    if (const auto mode = repeatBelow("spline.repeat.before.", action))
        m_spline->setExtrapolationBefore(*mode);
    if (const auto mode = repeatBelow("spline.repeat.after.", action))
        m_spline->setExtrapolationAfter(*mode);
}

void Spline::moveSelection(std::int32_t keys)
{
    mSelection = std::min(std::max(mSelection + keys, 0), m_spline->getNumKeys() - 1);
}

void Spline::addKey(const Key& key)
{
    if (!m_spline)
        return;
    const std::int32_t added = m_spline->addKey(key);
    followAddedKey({&mMouseOverIndex, &mSelection, &mClicked, &mDeleteIndex}, added);
    mDirty = true;
}

void Spline::insertKey()
{
    const Curve& curve = *m_spline;
    if (isKey(mSelection) && isKey(mSelection + 1))
        addKey(halfway(curve[mSelection], curve[mSelection + 1]));
    else if (curve.hasKeys())
        addKey({1.0f, curve[curve.getNumKeys() - 1].value, 0.0f, 0.0f});
    else
        addKey({});
}

/** Nothing when there is no such key. */
void Spline::removeKey(std::int32_t removed)
{
    if (!isKey(removed))
        return;
    m_spline->removeKey(removed);
    followRemovedKey({&mMouseOverIndex, &mSelection, &mClicked, &mDeleteIndex}, removed);
    mDirty = true;
}

/** The next key is selected then, or the last. */
void Spline::removeSelected()
{
    const std::int32_t selection = mSelection;
    removeKey(selection);
    mSelection = std::min(selection, m_spline->getNumKeys() - 1);
}

void Spline::updateSamples(float width)
{
    const float needed = std::min(std::max(std::round(width / 2.0f), FEWEST_SAMPLES), MOST_SAMPLES);
    if (!mDirty && static_cast<float>(m_cachedValues.size()) >= needed)
        return;
    m_cachedValues.resize(static_cast<std::size_t>(std::round(needed * SAMPLE_RESERVE)));
    const float last = static_cast<float>(m_cachedValues.size() - 1);
    for (std::size_t i = 0; i < m_cachedValues.size(); ++i) {
        const float time = mStartTime + (mEndTime - mStartTime) * (static_cast<float>(i) / last);
        m_cachedValues[i] = {time, m_spline->evaluate(time)};
    }
    mDirty = false;
}

/** Samples that are too many for the width share pixels, to which no lines are drawn. */
void Spline::drawCurve(const Area& clip)
{
    Render& render = getRender();
    const Scale scale(*this, getAreaWorld());
    setFlatColor(render, mStyle.mCaption.mColor2);
    Vector2f from = wholePixels(scale.toArea(m_cachedValues.front()));
    for (const Vector2f& sample : m_cachedValues) {
        const Vector2f to = wholePixels(scale.toArea(sample));
        if (to != from)
            drawLine(render, from, to, clip);
        from = to;
    }
}

/** Keys that can hardly be told from the one drawn before, in place and colour, are left out. */
void Spline::drawKeys(const Area& clip)
{
    Render& render = getRender();
    const Scale scale(*this, getAreaWorld());
    const bool focused = isFocusedChild();
    const bool withTangents = mShowTangents && m_spline->getInterpolation() == Curve::SMOOTH;
    Area samePlace(0.0f, 0.0f, -1.0f, -1.0f); // as the circle drawn last
    const style::Color* lastColor = nullptr;
    for (std::int32_t i = 0; i < m_spline->getNumKeys(); ++i) {
        if (withTangents)
            drawTangents(i, scale, clip);
        const Vector2f place = placeOf(i, scale);
        const Area circle = squareAround(place, focused ? mPointSize : SMALL_RADIUS);
        const style::Color& color = keyColor(i, focused);
        if (!isInSight(circle, clip) || (&color == lastColor && contains(samePlace, place)))
            continue;
        fillCircle(render, {color, color}, circle);
        samePlace = squareAround(place, SAME_PLACE);
        lastColor = &color;
    }
}

/** Tangents are changes of value over a whole segment; keys at one time have no handle between. */
void Spline::drawTangents(std::int32_t key, const Scale& scale, const Area& clip)
{
    Render& render = getRender();
    const Curve& curve = *m_spline;
    const float length = key == mSelection ? LONG_HANDLE : HANDLE;
    const auto drawHandle = [&](float time, float value) {
        drawLine(render, placeOf(key, scale),
                 scale.toArea({curve[key].time + time, curve[key].value + value}), clip);
    };
    setFlatColor(render, HANDLE_COLOR);
    if (isKey(key - 1) && curve[key - 1].time < curve[key].time)
        drawHandle(-length * (curve[key].time - curve[key - 1].time),
                   -length * curve[key].tangentIN);
    if (isKey(key + 1) && curve[key].time < curve[key + 1].time)
        drawHandle(length * (curve[key + 1].time - curve[key].time),
                   length * curve[key].tangentOUT);
}

const style::Color& Spline::keyColor(std::int32_t key, bool focused) const
{
    const style::colorInfo& marks = mStyle.mCaption;
    if (key == mMouseOverIndex)
        return mClicked >= 0 ? marks.mPushed1 : marks.mHighlight1;
    return key == mSelection && focused ? marks.mPushed2 : marks.mColor1;
}

} // namespace zavex::vellum
