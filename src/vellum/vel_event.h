#pragma once

#include "display/dis_event.h"
#include "mathbase/mb_vector2.h"

#include <string>

namespace zavex::vellum {

/**
 * One input event on its way down the control tree.
 *
 * `mousePos` is rewritten in place while the event descends: a control receives it in its parent's
 * coordinates, and the base `Control::handleEvent` leaves it in the control's own. Keep a copy to
 * use the incoming position after the base has run.
 */
struct Event : display::Event {
    // What `type` may be.
    static constexpr const char* MOUSE_MOVE = "mousemove";
    static constexpr const char* MOUSE_DOWN = "mousedown";
    static constexpr const char* MOUSE_UP = "mouseup";
    static constexpr const char* MOUSE_WHEEL = "mousewheel";
    static constexpr const char* KEY_DOWN = "keydown";
    static constexpr const char* KEY_UP = "keyup";
    static constexpr const char* CHAR_DOWN = "keychardown";
    static constexpr const char* CHAR_UP = "keycharup";
    static constexpr const char* RESET = "reset";     // clears hover state
    static constexpr const char* CONTEXT = "context"; // an option of a menu was chosen

    Event() = default;
    Event(const Event&) = default;
    Event(Event&&) = default;
    Event& operator=(const Event&) = default;
    Event& operator=(Event&&) = default;
    virtual ~Event() = default;

    display::MouseButton button{};          // of mouse button events
    display::Key key{};                     // of key events
    int keyChar = 0;                        // Unicode character of character events
    mathbase::Vector2f mouseDelta{0, 0};    // pixels; previous position minus new position
    float mouseDeltaWheel = 0.0f;           // wheel steps
    std::string type;                       // one of the kinds above
    bool doubleClick = false;               // this press is the second of a double click
    mathbase::Vector2f mousePosWorld{0, 0}; // workspace coordinates, never localised
    std::string action;                     // option path of a "context" event, otherwise empty
};

} // namespace zavex::vellum
