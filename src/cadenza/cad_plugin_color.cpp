#include "cadenza/cad_plugin_color.h"

#include "cadenza/cad_picker.h"
#include "display/dis_font.h"
#include "vellum/vel_area.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_curve.h"
#include "vellum/vel_look.h"
#include "vellum/vel_render.h"
#include "xml/xml_iterator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace zavex::cadenza {

using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

using Area = vellum::Control::Area;

// All in pixels.
constexpr float NAME_HEIGHT = 15.0f; // of the row above the swatches
constexpr Vector2f NAME_OFFSET{2.0f, 6.0f};
constexpr double SWATCH_STEP = 7.0;
constexpr float SWATCH_WIDTH = 5.0f;
constexpr double MOST_SWATCHES = 16384.0; // more than any window has room for
constexpr float MARKER_RADIUS = 6.0f;
constexpr float MARKER_RIM = 1.5f;

} // namespace

Color::Color()
    : PluginBase("color"), mR(Curve::SMOOTH, true), mG(Curve::SMOOTH, true), mB(Curve::SMOOTH, true)
{
    Control::mType = PluginBase::mType;
    mArea = {0, 0, 100, 30};
    mContextAdd.addOption("add", "");
    mContextDel.addOption("edit", "");
    mContextDel.addOption("delete", "");
}

Color::~Color()
{
    for (const char* observed : {picker::CHOOSER, picker::OK})
        if (vellum::Control* control = Control::getRoot()->findControl(observed))
            control->removeCallback(*this);
}

void Color::load(xml::IteratorConst& it)
{
    std::array<std::vector<mathbase::SplineBaseKey<float>>, 3> keys;
    for (xml::IteratorConst key = it.createIterator("key"); ++key;) {
        const float time = key->getValueFloat("time");
        keys[0].push_back({time, key->getValueFloat("r"), 0.0f, 0.0f});
        keys[1].push_back({time, key->getValueFloat("g"), 0.0f, 0.0f});
        keys[2].push_back({time, key->getValueFloat("b"), 0.0f, 0.0f});
    }
    mR.addKeys(keys[0]);
    mG.addKeys(keys[1]);
    mB.addKeys(keys[2]);
}

void Color::save(xml::Iterator& it) const
{
    for (const int i : loadedOrder()) {
        xml::XmlTag key("key");
        key.setValue("time", mR[i].time);
        key.setValue("r", mR[i].value);
        key.setValue("g", mG[i].value);
        key.setValue("b", mB[i].value);
        it.addChild(key);
    }
}

/** The keys as they will stand when they are loaded; a drag may have left them out of order. */
std::vector<int> Color::loadedOrder() const
{
    std::vector<int> order(static_cast<std::size_t>(mR.getNumKeys()));
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(
        order, [this](int first, int second) { return Curve::isEarlier(mR[first], mR[second]); });
    return order;
}

void Color::setupControl(float width)
{
    fitControl(width);

    // A control keeps its observers, and this runs at every change of the bar.
    if (mHearsOk)
        return;
    if (vellum::Control* const ok = getRoot()->findControl(picker::OK)) {
        ok->setCallback(this);
        mHearsOk = true;
    }
}

vellum::Control* Color::clone()
{
    return new Color;
}

void Color::controlAction(vellum::Control* control, vellum::Action /*action*/)
{
    if (control->getId() == picker::CHOOSER) {
        mPicked = true;
        takeColor(control);
    } else if (control->getId() == picker::OK) {
        followPicker();
        mSelectedIndex = -1;
    }
}

Vector3f Color::get(float time) const
{
    return colorAt(positionAt(mArea, time));
}

bool Color::acceptEvents(vellum::Event& event)
{
    return mHighlight >= 0 || Pressable::acceptEvents(event);
}

void Color::draw(Area area, Area /*parent*/, Area clip)
{
    followPicker();
    drawSwatches(area, clip);

    vellum::Render& render = getRender();
    vellum::drawBorder(render, vellum::borderOf(mStyle.mBack), area);
    drawKeys(area, clip);

    render.setColor(mStyle.mText.mColor1, mStyle.mText.mColor1);
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText(mName, area.mMin + NAME_OFFSET);
    render.setAlign(display::Font::ALIGN_CENTER);
}

bool Color::isKey(std::int32_t index) const
{
    return index >= 0 && index < mR.getNumKeys();
}

/** The gradient at `position`, 0 at the effect's start and 1 at its end. */
Vector3f Color::colorAt(float position) const
{
    return {mR.evaluate(position), mG.evaluate(position), mB.evaluate(position)};
}

/** Where a point of the lane lies on the gradient; no number without a width. */
float Color::positionOf(float x) const
{
    return x / getArea().getWidth();
}

/** @param area  The lane's rectangle, in the coordinates of the result. */
Area Color::markerOf(std::int32_t key, const Area& area) const
{
    const float x = area.mMin.x + area.getWidth() * mR[key].time;
    const float middle = (area.mMin.y + NAME_HEIGHT + area.mMax.y) / 2.0f;
    return vellum::squareAround({x, middle}, MARKER_RADIUS);
}

/** The last key at a point of the lane; -1 for none. */
std::int32_t Color::keyAt(Vector2f point) const
{
    const Area area = vellum::atOrigin(getArea());
    std::int32_t key = mR.getNumKeys() - 1;
    while (key >= 0 && !vellum::contains(markerOf(key, area), point))
        --key;
    return key;
}

/** The key that is dragged stays marked. */
void Color::endHover()
{
    if (!mPushed)
        mHighlight = -1;
}

void Color::drag(const vellum::Event& event)
{
    const float time = positionOf(event.mousePos.x);
    if (!isKey(mHighlight) || !(time > 0.0f && time < 1.0f))
        return;
    for (Curve* const curve : {&mR, &mG, &mB})
        (*curve)[mHighlight].time = time;

    if (isKey(mHighlight + 1) && time > mR[mHighlight + 1].time)
        ++mHighlight;
    else if (isKey(mHighlight - 1) && time < mR[mHighlight - 1].time)
        --mHighlight;
}

void Color::press(const vellum::Event& event)
{
    if (!isKey(mHighlight))
        return;
    if (event.doubleClick) {
        openPicker();
        return;
    }
    mPushed = true;
    mPushedPos = event.mousePos;
}

void Color::pressOther(const vellum::Event& event)
{
    drop(); // the release goes to the menu
    mContextPos = event.mousePos;
    vellum::Context& menu = isKey(mHighlight) ? mContextDel : mContextAdd;
    menu.setPosition(event.mousePos + getAreaWorld().mMin);
    setContext(&menu);
}

void Color::choose(const std::string& action)
{
    if (action == "context.add")
        addKey();
    else if (action == "context.edit")
        openPicker();
    else if (action == "context.delete")
        removeKey(mHighlight);
}

/** Adds a key where the menu was opened, in the colour that the gradient has there. */
void Color::addKey()
{
    const float time = positionOf(mContextPos.x);
    if (!std::isfinite(time))
        return;
    std::int32_t added = 0;
    for (Curve* const curve : {&mR, &mG, &mB})
        added = curve->addKey({time, curve->evaluate(time), 0.0f, 0.0f});
    vellum::followAddedKey({&mHighlight, &mSelectedIndex}, added);
}

/** Nothing when there is no such key. */
void Color::removeKey(std::int32_t removed)
{
    if (!isKey(removed))
        return;
    for (Curve* const curve : {&mR, &mG, &mB})
        curve->removeKey(removed);
    vellum::followRemovedKey({&mHighlight, &mSelectedIndex}, removed);
}

/** Shows the picker for the key under the pointer; it keeps its colour until the user changes it.
 */
void Color::openPicker()
{
    vellum::Control* const chooser = getRoot()->findControl(picker::CHOOSER);
    if (!isKey(mHighlight) || chooser == nullptr)
        return;
    mSelectedIndex = mHighlight;
    mPicked = false;
    chooser->clearCallbacks();
    chooser->setCallback(this);
    if (vellum::Control* window = getRoot()->findControl(picker::WINDOW))
        window->setVisible(true);
}

/**
 * Gives the key its colour. Tangents follow at once, so that the gradient plays as it will when it
 * is loaded again.
 *
 * @param source  Where the colour is; nothing happens unless it is a colour chooser.
 */
void Color::takeColor(vellum::Control* source)
{
    const auto* chooser = dynamic_cast<vellum::ColorChooser*>(source);
    if (chooser == nullptr || !isKey(mSelectedIndex))
        return;
    const Vector3f color = chooser->getColor();
    mR[mSelectedIndex].value = color.x;
    mG[mSelectedIndex].value = color.y;
    mB[mSelectedIndex].value = color.z;
    for (Curve* const curve : {&mR, &mG, &mB})
        curve->updateTangents(mSelectedIndex, 1, 1);
}

/**
 * Takes up the colour that the picker reached after its last report: it reports a click before it
 * is drawn, and knows the colour there only afterwards.
 */
void Color::followPicker()
{
    if (!mPicked || !isKey(mSelectedIndex))
        return;
    vellum::Control* const chooser = getRoot()->findControl(picker::CHOOSER);
    if (chooser != nullptr && chooser->isObservedBy(*this))
        takeColor(chooser);
}

/** Only the swatches that the clip shows: a lane is many times as long as the window is wide. */
void Color::drawSwatches(const Area& area, const Area& clip)
{
    vellum::Render& render = getRender();
    const double origin = std::trunc(area.mMin.x);
    const double hidden = std::floor((clip.mMin.x - SWATCH_WIDTH - origin) / SWATCH_STEP) + 1.0;
    const double first = origin + SWATCH_STEP * std::max(0.0, hidden);
    const double end = std::min(area.mMax.x, clip.mMax.x);
    // Compared so that what is no number draws nothing.
    const double count =
        std::min(std::max(0.0, std::ceil((end - first) / SWATCH_STEP)), MOST_SWATCHES);

    for (int i = 0; i < static_cast<int>(count); ++i) {
        const auto x = static_cast<float>(first + SWATCH_STEP * i);
        const Vector4f color(colorAt((x - area.mMin.x) / area.getWidth()), 1.0f);
        render.setColor(color, color);
        render.drawBox(Area(x, area.mMin.y + NAME_HEIGHT, x + SWATCH_WIDTH, area.mMax.y),
                       vellum::Render::GRADIENT_VERTICAL);
    }
}

void Color::drawKeys(const Area& area, const Area& clip)
{
    vellum::Render& render = getRender();
    for (std::int32_t key = 0; key < mR.getNumKeys(); ++key) {
        Area marker = markerOf(key, area);
        if (!vellum::isInSight(marker, clip))
            continue;
        const vellum::style::Color& rim = mStyle.mCaption.mColor1;
        vellum::fillCircle(render, {rim, rim}, marker);
        marker.expand(-MARKER_RIM);
        vellum::fillCircle(render, {keyColor(key), keyColor(key)}, marker);
    }
}

const vellum::style::Color& Color::keyColor(std::int32_t key) const
{
    const vellum::style::colorInfo& marks = mStyle.mCaption;
    if (key == mSelectedIndex)
        return marks.mHighlight2;
    return key == mHighlight ? marks.mHighlight1 : marks.mColor2;
}

} // namespace zavex::cadenza
