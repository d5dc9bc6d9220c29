#pragma once

#include "display/dis_key.h"
#include "mathbase/mb_vector2.h"

namespace zavex::display {

/** What every input event carries. */
struct Event {
    mathbase::Vector2f mousePos;     // window pixels, origin at the top-left corner
    mathbase::Vector2f mousePosUnit; // `mousePos` divided by the window's width and height
    float mouseWheel = 0.0f;         // absolute wheel position in notches
    int control = KEYMOD_NONE;       // `KeyMod` bits

    bool leftCtrl() const { return (control & KEYMOD_LCTRL) != 0; }
    bool rightCtrl() const { return (control & KEYMOD_RCTRL) != 0; }
    bool ctrl() const { return leftCtrl() || rightCtrl(); }
    bool leftShift() const { return (control & KEYMOD_LSHIFT) != 0; }
    bool rightShift() const { return (control & KEYMOD_RSHIFT) != 0; }
    bool shift() const { return leftShift() || rightShift(); }
    bool leftAlt() const { return (control & KEYMOD_LALT) != 0; }
    bool rightAlt() const { return (control & KEYMOD_RALT) != 0; }
    bool alt() const { return leftAlt() || rightAlt(); }
    bool numLock() const { return (control & KEYMOD_NUMLOCK) != 0; }
    bool capsLock() const { return (control & KEYMOD_CAPSLOCK) != 0; }
};

struct KeyEvent : Event {
    Key key = KEY_UNKNOWN; // -1 for a key that has no `Key`
};

struct CharEvent : Event {
    int key = 0; // Unicode character
};

struct MouseButtonEvent : Event {
    MouseButton button = MOUSE_LEFT;
    bool doubleClick = false; // only ever true on a press of the left button
};

struct MouseMoveEvent : Event {
    mathbase::Vector2f mouseDelta; // previous minus new position: a move right has a negative x
    float mouseDeltaWheel = 0.0f;  // new minus previous wheel position
};

} // namespace zavex::display
