#include "vellum/vel_pressable.h"

#include "vellum/vel_area.h"
#include "vellum/vel_control_watch.h"
#include "vellum/vel_look.h"

#include "display/dis_listener.h"

namespace zavex::vellum {

void Pressable::setInactive(bool inactive)
{
    Control::setInactive(inactive);
    if (!isUsable())
        drop();
}

bool Pressable::acceptEvents(Event& event)
{
    return isHeld() || Control::acceptEvents(event);
}

int Pressable::handleEvent(Event& event)
{
    if (event.type == Event::CONTEXT) {
        if (isReachable())
            choose(event.action);
        return 0;
    }

    const mathbase::Vector2f point = event.mousePos - getArea().mMin;
    const ControlWatch self(*this);
    const int handled = Control::handleEvent(event);
    if (self.isGone())
        return handled;
    event.mousePos = point;
    return route(event, handled);
}

void Pressable::letGo()
{
    drop();
    Control::letGo();
}

bool Pressable::release(const Event&)
{
    drop();
    return false;
}

bool Pressable::endsOn(display::MouseButton button) const
{
    return isHeld() && button == display::MOUSE_LEFT;
}

bool Pressable::isReachable() const
{
    return isShown(*this);
}

bool Pressable::takesKeys() const
{
    return hasKeyboardFocus(*this);
}

bool Pressable::isInside(const Event& event) const
{
    return contains(atOrigin(getArea()), event.mousePos);
}

int Pressable::route(const Event& event, int handled)
{
    const bool reachable = isReachable();
    if (!reachable || !isUsable())
        drop();
    bool used = false;
    if (event.type == Event::RESET)
        endHover();
    else if (!reachable)
        return handled;
    else if (event.type == Event::MOUSE_MOVE)
        isHeld() ? drag(event) : hover(event);
    else if (event.type == Event::MOUSE_UP)
        used = endsOn(event.button) && release(event);
    else if (handled == 0 && isUsable())
        used = begin(event);
    return used ? display::Listener::BLOCK : handled;
}

/** Whether the control uses up an event that no child used. */
bool Pressable::begin(const Event& event)
{
    if (event.type == Event::MOUSE_DOWN) {
        event.button == display::MOUSE_LEFT ? press(event) : pressOther(event);
        return false;
    }
    if (event.type == Event::MOUSE_WHEEL)
        return turnWheel(event);
    if (event.type == Event::KEY_DOWN)
        return takesKeys() && pressKey(event);
    return event.type == Event::CHAR_DOWN && takesKeys() && typeCharacter(event);
}

} // namespace zavex::vellum
