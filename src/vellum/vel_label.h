#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/**
 * A line of text, its caption, at a place in its rectangle: to the left and at the top unless it is
 * told otherwise. Text that is wider than the rectangle loses its last characters.
 *
 * Has no body until `mBack` is given a colour. Takes part in no input.
 */
class Label final : public Control {
public:
    enum class Align { START, MIDDLE, END };

    Label();

    Control* clone() override { return new Label; }

    /**
     * Reads "text" (the caption), "align" ("center", "right", anything else left), "valign"
     * ("center" or "middle", "bottom", anything else top) and "inactive" ("true"). What is absent
     * stays as it was.
     */
    void load(xml::IteratorConst& element) override;

    void draw(Area area, Area parent, Area clip) override;

    /** Where the text stands, from left to right and from top to bottom. */
    void setAlign(Align across, Align down);

private:
    Align mAcross = Align::START;
    Align mDown = Align::START;
};

} // namespace zavex::vellum
