#pragma once

namespace zavex::vellum {

/** What a control reports through `Callback::controlAction`. The values are stored and compared. */
enum Action : int {
    ACTION_BUTTON_PRESSED = 0,
    ACTION_BUTTON_RELEASED = 1,
    ACTION_CHECKBOX_ON = 2,
    ACTION_CHECKBOX_OFF = 3,
    ACTION_COLOR = 4,
    ACTION_CONTEXT = 5,
    ACTION_DROPDOWN_CHANGED = 6,
    ACTION_KNOB_CHANGED = 7,
    ACTION_RADIOBUTTON_CHANGED = 8,
    ACTION_SCROLL_CHANGED = 9,
    ACTION_SLIDER_CHANGED = 10,
    ACTION_SPLINE_CHANGED = 11,
    ACTION_SPLINE_ADD = 12,
    ACTION_SPLINE_DELETE = 13,
    ACTION_TEXT_CHANGED = 14,
    ACTION_TREEVIEW_CHANGED = 15,
    ACTION_WINDOW_RESIZE = 16
};

} // namespace zavex::vellum
