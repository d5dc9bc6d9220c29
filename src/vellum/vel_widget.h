#pragma once

#include "vellum/vel_look.h"
#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/**
 * What the controls share in which the user presses, drags or types a value.
 *
 * A press of the left button is held until its release, wherever the pointer goes, unless `press`
 * is overridden without a call of the base.
 */
class Widget : public Pressable {
public:
    /** Starts with `widgetStyle`. */
    Widget();

    /** Reads "inactive": "true" greys the control out. */
    void load(xml::IteratorConst& element) override;

protected:
    void press(const Event& event) override;
    bool isHeld() const override { return mPressed; }
    void drop() override { mPressed = false; }

    Look look() const;

    // In the control's colours; the border of a body shows the keyboard focus.

    void drawField(const Area& area, Look look);
    void drawLabel(const std::string& text, const TextPlace& place, Look look);

    bool mPressed = false; // the left button was pressed on the control and is held
};

} // namespace zavex::vellum
