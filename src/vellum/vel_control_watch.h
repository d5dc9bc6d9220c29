#pragma once

namespace zavex::vellum {

class Control;

/**
 * Tells whether a control was destroyed.
 *
 * Stands around a call that may delete the control, or around all the time that somebody else owns
 * it. Watches of one control are released in the reverse order of their making, which automatic
 * storage gives by itself.
 */
class ControlWatch {
public:
    explicit ControlWatch(Control& control);
    ControlWatch(const ControlWatch&) = delete;
    ControlWatch(ControlWatch&&) = delete;
    ControlWatch& operator=(const ControlWatch&) = delete;
    ControlWatch& operator=(ControlWatch&&) = delete;
    ~ControlWatch();

    bool isGone() const { return mControl == nullptr; }

private:
    friend class Control;

    Control* mControl;    // null once destroyed
    ControlWatch* mOuter; // the watch of the same control that was made before this one
};

} // namespace zavex::vellum
