#pragma once

#include "vellum/vel_range.h"
#include "vellum/vel_widget.h"

namespace zavex::vellum {

/**
 * A dial for a value in 0..1: dragged up and down, stepped with the arrow keys, page keys, home,
 * end or the wheel.
 *
 * Turns through three quarters of a circle, clockwise, from the lower left to the lower right. Fits
 * itself as a circle into the middle of its rectangle. Reports `ACTION_KNOB_CHANGED` whenever the
 * user changes the value, not when the program does.
 */
class Knob : public Widget {
public:
    Knob();

    Control* clone() override { return new Knob; }

    /** Reads "value", cut to 0..1; what is no number is as if absent. */
    void load(xml::IteratorConst& element) override;

    void draw(Area area, Area parent, Area clip) override;

    /** Cut to 0..1. */
    void setValue(float value);
    float getValue() const;

protected:
    void press(const Event& event) override;
    void drag(const Event& event) override;
    bool turnWheel(const Event& event) override;
    bool pressKey(const Event& event) override;

private:
    void moveTo(float value);

    Range mRange;
    float mPressedY = 0.0f;     // where the knob was taken, pixels
    float mPressedValue = 0.0f; // when the knob was taken
};

} // namespace zavex::vellum
