#pragma once

#include "vellum/vel_callback.h"
#include "vellum/vel_flow.h"

#include "mathbase/mb_vector3.h"

namespace zavex::vellum {

class ColorChooserFrame;
class ColorChooserStatFrame;

/**
 * A colour picker: a field of hues with a cross-hair, and a slider for the grey at the bottom of
 * the field, from white at its lower end to black at its upper.
 *
 * Reports `ACTION_COLOR` for every click, drag and move of the slider. The chosen colour follows
 * with the next drawing: an observer that asks for it at once gets that of the last frame.
 */
class ColorChooser : public Flow, public Callback {
public:
    ColorChooser();

    Control* clone() override { return new ColorChooser; }

    /** As the base; the stat frame takes the colours of the style "colorchooser". */
    void load(xml::IteratorConst& element) override;

    /** Fills the background, then draws field and slider. */
    void draw(Area area, Area parent, Area clip) override;

    /** Hears of the field and the slider. */
    void controlAction(Control* control, Action action) override;

    /** The chosen colour, red, green and blue; see `ColorChooserWheel::getColor`. */
    mathbase::Vector3f getColor() const;

protected:
    /** Nothing: the parts share the area. */
    void loadChildArea(Control&, xml::IteratorConst&) override {}

    ColorChooserFrame* mFrame;         // owned as a child
    ColorChooserStatFrame* mStatFrame; // owned as a child
};

} // namespace zavex::vellum
