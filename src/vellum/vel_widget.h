#pragma once

#include "vellum/vel_control.h"
#include "vellum/vel_look.h"

namespace zavex::vellum {

/**
 * What controls share that the user presses, drags or types into.
 *
 * Routes the events that reach an active control to one function each. One that is inactive,
 * hidden or below a hidden one gets none and lets go of what it holds. A press of the left button
 * is held until its release, wherever the pointer goes. Keys and characters are taken only with the
 * keyboard focus. Those that were used, and turns of the wheel, reach nothing around the control
 * and no further listener of the display.
 *
 * Each of these functions may report an action as the last thing it does: an observer may destroy
 * the control.
 */
class Widget : public Control {
public:
    /** Starts with `widgetStyle`. */
    Widget();

    /** Reads "inactive": "true" greys the control out. */
    void load(xml::IteratorConst& element) override;

    /** Lets go of what is held. */
    void setInactive(bool inactive) override;

    /** As the base, and everything while the control is held. */
    bool acceptEvents(Event& event) override;
    int handleEvent(Event& event) override;
    void letGo() override;

protected:
    // Positions are in the control's own coordinates, (0, 0) at its top-left corner.

    /** The pointer moved, inside the control or, seldom, beyond it. */
    virtual void hover([[maybe_unused]] const Event& event) {}

    virtual void press([[maybe_unused]] const Event& event) {}

    /** The pointer moved while the control is held. */
    virtual void drag([[maybe_unused]] const Event& event) {}

    /** The button was released, anywhere; `mPressed` is false again. */
    virtual void release([[maybe_unused]] const Event& event) {}

    /** @return whether the wheel means anything to the control: then nothing around it turns. */
    virtual bool turnWheel([[maybe_unused]] float steps) { return false; }

    /** @return whether the key means anything to the control. */
    virtual bool pressKey([[maybe_unused]] const Event& event) { return false; }

    /** @return whether the character means anything to the control. */
    virtual bool typeCharacter([[maybe_unused]] const Event& event) { return false; }

    Look look() const;

    /** Whether the position of an event that was made local lies inside the control. */
    bool isInside(const Event& event) const;

    // In the control's colours; the border of a body shows the keyboard focus.

    void drawField(const Area& area, Look look);
    void drawLabel(const std::string& text, const TextPlace& place, Look look);

    bool mPressed = false; // the left button was pressed on the control and is held
};

} // namespace zavex::vellum
