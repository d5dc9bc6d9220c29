#pragma once

#include "vellum/probe.h"

namespace zavex::vellum::test {

/** A mouse over the top of a tree, as the root of a GUI sees it. Each call sends one event. */
class Mouse {
public:
    explicit Mouse(Control& root) : mRoot(root) {}

    int moveTo(Vector2f position, int modifiers = display::KEYMOD_NONE)
    {
        Event event = eventAt(Event::MOUSE_MOVE, position);
        event.control = modifiers;
        event.mouseDelta = mPosition - position;
        mPosition = position;
        return mRoot.handleEvent(event);
    }

    int press(display::MouseButton button = display::MOUSE_LEFT, bool doubleClick = false)
    {
        Event event = eventAt(Event::MOUSE_DOWN, mPosition);
        event.button = button;
        event.doubleClick = doubleClick;
        return mRoot.handleEvent(event);
    }

    int release(display::MouseButton button = display::MOUSE_LEFT)
    {
        Event event = eventAt(Event::MOUSE_UP, mPosition);
        event.button = button;
        return mRoot.handleEvent(event);
    }

    int turnWheel(float notches, int modifiers = display::KEYMOD_NONE)
    {
        Event event = eventAt(Event::MOUSE_WHEEL, mPosition);
        event.mouseDeltaWheel = notches;
        event.control = modifiers;
        return mRoot.handleEvent(event);
    }

    /** Move, press and release. */
    void click(Vector2f position)
    {
        moveTo(position);
        press();
        release();
    }

    void doubleClick(Vector2f position)
    {
        click(position);
        press(display::MOUSE_LEFT, true);
        release();
    }

    /** Press at one point and move to another, with the button held. */
    void drag(Vector2f from, Vector2f to)
    {
        moveTo(from);
        press();
        moveTo(to);
    }

private:
    Control& mRoot;
    Vector2f mPosition{0, 0};
};

} // namespace zavex::vellum::test
