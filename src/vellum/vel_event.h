#pragma once

#include "display/dis_event.h"
#include "mathbase/mb_vector2.h"

#include <string>

namespace zavex::vellum {

/**
 * One input event on its way down the control tree.
 *
 * `type` is "mousemove", "mousedown", "mouseup", "mousewheel", "keydown", "keyup", "keychardown",
 * "keycharup", "reset" (clears hover state) or "context" (a menu option was chosen).
 *
 * `mousePos` is rewritten in place while the event descends: a control receives it in its parent's
 * coordinates, and the base `Control::handleEvent` leaves it in the control's own. Keep a copy to
 * use the incoming position after the base has run.
 */
struct Event : display::Event {
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
    std::string type;                       // event kind, see above
    bool doubleClick = false;               // this press is the second of a double click
    mathbase::Vector2f mousePosWorld{0, 0}; // workspace coordinates, never localised
    std::string action;                     // option path of a "context" event, otherwise empty
};

} // namespace zavex::vellum
