#include "vellum/vel_control.h"

#include "vellum/vel_area.h"
#include "vellum/vel_callback.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control_watch.h"
#include "vellum/vel_render.h"

#include "common/zvx_system.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr std::array<std::string_view, 4> KEYBOARD_KINDS = {Event::KEY_UP, Event::KEY_DOWN,
                                                            Event::CHAR_UP, Event::CHAR_DOWN};

bool isKeyboardEvent(const Event& event)
{
    return std::ranges::find(KEYBOARD_KINDS, event.type) != KEYBOARD_KINDS.end();
}

/**
 * Calls every observer that was registered when the call began, as long as it still is and none of
 * the watched controls was destroyed by an earlier one.
 */
template <typename Call>
void notify(const std::vector<Callback*>& callbacks, const ControlWatch& self,
            const ControlWatch& source, Call call)
{
    for (Callback* callback : std::vector<Callback*>(callbacks)) {
        if (self.isGone() || source.isGone())
            return;
        if (std::ranges::find(callbacks, callback) != callbacks.end())
            call(*callback);
    }
}

/** So that inserting one more cannot fail. */
void makeRoom(std::vector<Control*>& controls)
{
    if (controls.size() == controls.capacity())
        controls.reserve(2 * controls.size() + 1);
}

} // namespace

Control::Control()
{
    mStyle.mBack.mColor1 = style::Color(0.1f, 0.1f, 0.1f, 1.0f);
    mStyle.mBack.mColor2 = style::Color(0.0f, 1.0f, 0.0f, 1.0f);
}

Control::~Control()
{
    for (ControlWatch* watch = mWatch; watch; watch = watch->mOuter)
        watch->mControl = nullptr;
    if (mOwner)
        mOwner->releaseControl(this);
    while (!mChild.empty())
        destroyControl(mChild.back());
}

Control* Control::clone()
{
    return new Control;
}

const std::string& Control::getType() const
{
    return mType;
}

display::DisplayGL* Control::getDisplay() const
{
    return mParent ? mParent->getDisplay() : nullptr;
}

void Control::setParent(Control* parent)
{
    if (parent == mParent)
        return;
    mParent = parent;
    forgetRender();
}

Control* Control::getParent() const
{
    return mParent;
}

Control* Control::getRoot()
{
    return mParent ? mParent->getRoot() : this;
}

int Control::getChildCount() const
{
    return static_cast<int>(mChild.size());
}

Control* Control::getChild(int index) const
{
    return index >= 0 && index < getChildCount() ? mChild[static_cast<std::size_t>(index)]
                                                 : nullptr;
}

Control* Control::getOrder(int index) const
{
    return index >= 0 && index < getChildCount() ? mOrder[static_cast<std::size_t>(index)]
                                                 : nullptr;
}

const std::string& Control::getId() const
{
    return mId;
}

void Control::setName(const std::string& name)
{
    mId = name;
}

const std::string& Control::getCaption() const
{
    return mCaption;
}

void Control::setCaption(const std::string& caption)
{
    mCaption = caption;
}

void Control::setInactive(bool inactive)
{
    mInactive = inactive;
}

bool Control::getInactive() const
{
    return mInactive;
}

void Control::setVisible(bool visible)
{
    const bool hiding = mVisible && !visible;
    mVisible = visible;
    if (visible)
        setFocus(nullptr);
    else if (hiding)
        letGo();
}

bool Control::getVisible() const
{
    return mVisible;
}

Control::Area Control::getArea() const
{
    if (!mParent)
        return mArea;
    if (getMaximized()) {
        const Area outer = mParent->getArea();
        return {0.0f, 0.0f, outer.getWidth(), outer.getHeight()};
    }
    return mArea - mParent->getOffset();
}

Control::Area Control::getAreaWorld() const
{
    return mParent ? getArea() + mParent->getAreaWorld().mMin : getArea();
}

void Control::setArea()
{
    for (std::size_t i = 0; i < mChild.size(); ++i)
        mChild[i]->setArea();
}

void Control::setArea(Area area)
{
    mArea = area;
    setArea();
}

void Control::setPosition(Vector2f position)
{
    mArea = {position, position + (mArea.mMax - mArea.mMin)};
}

Vector2f Control::getOffset() const
{
    return mOffset;
}

void Control::setOffset(Vector2f offset)
{
    mOffset = offset;
}

bool Control::getMaximized() const
{
    return mMaximized;
}

void Control::setMaximized(bool maximized)
{
    mMaximized = maximized;
}

Control::Area Control::getOccupiedArea() const
{
    Area occupied = getArea();
    for (Control* child : mChild)
        occupied = boundingArea(occupied, child->getArea());
    return occupied;
}

void Control::addControl(Control* control, int index)
{
    ZVX_REQUIRE(control != nullptr, "control!=0");
    ZVX_REQUIRE(index >= -1 && index <= getChildCount(), "index<=getChildCount()");
    makeRoom(mChild);
    makeRoom(mOrder);
    if (control->mOwner)
        control->mOwner->releaseControl(control);
    const int end = getChildCount(); // one less than before when the control only moves
    index = index == -1 ? end : std::min(index, end);

    mChild.insert(mChild.begin() + index, control);
    mOrder.insert(mOrder.begin() + index, control);
    control->mOwner = this;
    control->clearFocus();
    control->setParent(this);
    setFocus(control);
}

void Control::deleteControl(unsigned index)
{
    if (index >= mChild.size())
        return;
    Control* child = mChild[index];
    std::erase(mOrder, child);
    if (child == mFocus)
        setFocus(nullptr);
    destroyControl(child);
}

void Control::deleteControls()
{
    while (!mChild.empty())
        destroyControl(mChild.front());
}

Control* Control::findControl(const std::string& name)
{
    if (mId == name)
        return this;
    for (Control* child : mChild)
        if (Control* found = child->findControl(name))
            return found;
    return nullptr;
}

void Control::clearCallbacks()
{
    mCallback.clear();
}

void Control::setCallback(Callback* callback)
{
    mCallback.push_back(callback);
}

void Control::removeCallback(const Callback& callback)
{
    std::erase(mCallback, &callback);
}

bool Control::isObservedBy(const Callback& callback) const
{
    return std::ranges::find(mCallback, &callback) != mCallback.end();
}

void Control::sendAction(Action action, Control* source)
{
    Control* reported = source ? source : this;
    if (!mCallback.empty()) {
        const ControlWatch self(*this);
        const ControlWatch origin(*reported);
        notify(mCallback, self, origin,
               [&](Callback& callback) { callback.controlAction(reported, action); });
        return;
    }
    if (mParent)
        mParent->sendAction(action, reported);
}

void Control::sendContextAction(Context* context, const std::string& action)
{
    const ControlWatch self(*this);
    const ControlWatch menu(context ? static_cast<Control&>(*context) : *this);
    notify(mCallback, self, menu,
           [&](Callback& callback) { callback.contextAction(context, action); });
}

bool Control::acceptEvents(Event& event)
{
    if (mMouseOver)
        return true;
    Event local = event;
    local.mousePos = event.mousePos - getArea().mMin;
    return std::ranges::any_of(
        mChild, [&](Control* child) { return child->acceptEvents(local) && child->getVisible(); });
}

int Control::handleEvent(Event& event)
{
    if (mFocus && mFocus != this && isKeyboardEvent(event))
        return mFocus->handleEvent(event);

    if (event.type == Event::RESET) {
        mMouseOver = false;
        resetChildren(event);
        return 0;
    }
    if (event.type == Event::MOUSE_MOVE && !hover(event))
        return 0;

    const Area area = getArea();
    const bool inside = contains(area, event.mousePos);
    event.mousePos = event.mousePos - area.mMin;
    if (event.type == Event::MOUSE_DOWN)
        focusChildAt(event);

    Control* receiver = receiverOf(event, inside);
    return receiver ? receiver->handleEvent(event) : 0;
}

Render& Control::getRender()
{
    if (!mRenderCache) {
        ZVX_REQUIRE(mParent != nullptr, "mParent!=0");
        mRenderCache = &mParent->getRender();
    }
    return *mRenderCache;
}

const Render& Control::getRender() const
{
    ZVX_REQUIRE(mParent != nullptr, "mParent!=0");
    return mParent->getRender();
}

Control* Control::getFocus() const
{
    return mFocus;
}

void Control::setFocus(Control* control)
{
    clearFocus();
    if (mOwner)
        mOwner->setFocus(this);
    mFocus = control;
    if (!control || control == this)
        return;
    const auto place = std::ranges::find(mChild, control);
    if (place != mChild.end())
        std::rotate(place, place + 1, mChild.end());
}

void Control::clearFocus()
{
    // Focus leads down a single path, most often by the topmost child.
    Control* const focused = std::exchange(mFocus, nullptr);
    if (std::find(mChild.rbegin(), mChild.rend(), focused) != mChild.rend())
        focused->clearFocus();
}

void Control::setContext(Context* context)
{
    if (!context->getParent())
        context->setParent(this);
    if (mParent)
        mParent->setContext(context);
}

void Control::resetContext()
{
    if (mParent)
        mParent->resetContext();
}

void Control::draw(Area, Area parent, Area clip)
{
    const Area world = getArea() + parent.mMin;
    for (std::size_t i = 0; i < mChild.size(); ++i) {
        Control* child = mChild[i];
        const Area childWorld = child->getArea() + world.mMin;
        Area visible = sharedArea(childWorld, clip);
        if (visible.getWidth() < 0.0f || visible.getHeight() < 0.0f)
            visible = Area(0.0f, 0.0f, 0.0f, 0.0f);
        getRender().setClipArea(visible);

        const bool showing = visible.getWidth() >= 1.0f && visible.getHeight() >= 1.0f;
        if ((showing || drawsAllChildren()) && child->getVisible())
            child->draw(childWorld, world, visible);
    }
}

void Control::letGo()
{
    for (Control* child : mChild)
        child->letGo();
}

Workspace* Control::getWorkspace()
{
    return mParent ? mParent->getWorkspace() : nullptr;
}

void Control::takeChoice(Context& menu, Event& event)
{
    const std::string action = event.action;
    const ControlWatch self(*this);
    const ControlWatch menuWatch(menu);
    handleEvent(event);
    if (!self.isGone() && !menuWatch.isGone())
        sendContextAction(&menu, action);
}

/** False when a child's handling of the event destroyed this control. */
bool Control::resetChildren(Event& event)
{
    const ControlWatch self(*this);
    for (std::size_t i = 0; !self.isGone() && i < mChild.size(); ++i)
        mChild[i]->handleEvent(event);
    return !self.isGone();
}

/** Renews the hover state of this subtree; false when that destroyed this control. */
bool Control::hover(const Event& event)
{
    mMouseOver = contains(getArea(), event.mousePos);
    Event reset;
    reset.type = Event::RESET;
    return resetChildren(reset);
}

/** Focuses the topmost visible child that the event, in this control's coordinates, is meant for.
 */
void Control::focusChildAt(Event& event)
{
    for (std::size_t i = mChild.size(); i-- > 0;) {
        Control* child = mChild[i];
        const bool wanted =
            contains(child->getArea(), event.mousePos) || child->acceptEvents(event);
        if (wanted && child->getVisible()) {
            setFocus(child);
            return;
        }
    }
}

/**
 * The topmost child that gets the event, which is in this control's coordinates. A hidden child
 * under the point gets it too, as long as the point lies inside this control.
 */
Control* Control::receiverOf(Event& event, bool inside)
{
    for (std::size_t i = mChild.size(); i-- > 0;) {
        Control* child = mChild[i];
        if ((inside && contains(child->getArea(), event.mousePos)) ||
            (child->acceptEvents(event) && child->getVisible()))
            return child;
    }
    return nullptr;
}

void Control::forgetRender()
{
    mRenderCache = nullptr;
    for (Control* child : mChild)
        child->forgetRender();
}

/** Takes a child out of the lists without destroying it. */
void Control::releaseControl(Control* control)
{
    std::erase(mChild, control);
    std::erase(mOrder, control);
    if (mFocus == control)
        mFocus = nullptr;
    if (mControlClicked == control)
        mControlClicked = nullptr;
    control->mOwner = nullptr;
}

void Control::destroyControl(Control* control)
{
    releaseControl(control);
    delete control;
}

} // namespace zavex::vellum
