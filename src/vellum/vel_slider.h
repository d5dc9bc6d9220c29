#pragma once

#include "vellum/vel_range.h"
#include "vellum/vel_widget.h"

namespace zavex::vellum {

/**
 * A handle that is moved along a track: dragged, pressed to where it shall go, stepped with the
 * arrow keys, page keys, home, end or the wheel.
 *
 * Runs upwards, from the lower bound at the bottom to the upper at the top, unless it is horizontal
 * and runs to the right; 16 pixels across serve it well. Reports `ACTION_SLIDER_CHANGED` whenever
 * the user changes the value, not when the program does. The value survives hiding and resizing.
 */
class Slider : public Widget {
public:
    Slider();

    Control* clone() override { return new Slider; }

    /**
     * Reads "min" and "max" (bounds, 0 and 1 without them, in either order), "percent" (start value
     * in 0..100 of the way), "size" (length of the handle in pixels, at least 4) and "direction"
     * ("horisontal" is horizontal, anything else vertical). What is no number is as if absent.
     */
    void load(xml::IteratorConst& element) override;

    void draw(Area area, Area parent, Area clip) override;

    /** Bounds in either order; the handle stays where it is. */
    void setBounds(float first, float second);

    /** @param unit  Whether `value` is in 0..1 of the way instead of between the bounds. */
    void setValue(float value, bool unit);

    /** @param unit  Whether the value is wanted in 0..1 of the way instead of between the bounds.
     */
    float getValue(bool unit) const;

protected:
    void press(const Event& event) override;
    void drag(const Event& event) override;
    bool turnWheel(const Event& event) override;
    bool pressKey(const Event& event) override;

private:
    float along(mathbase::Vector2f point) const;
    float trackLength() const;
    float handleLength() const;
    float handleStart() const;
    void moveTo(float unit);
    Area stretch(const Area& area, float from, float to) const;

    Range mRange;
    float mSize = 12.0f;      // of the handle, pixels
    bool mHorisontal = false; // runs to the right instead of upwards
    float mGrip = 0.0f;       // from the handle's start to where it was taken, pixels
};

} // namespace zavex::vellum
