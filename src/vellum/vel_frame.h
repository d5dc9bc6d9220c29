#pragma once

#include "vellum/vel_pressable.h"

#include <string>

namespace zavex::vellum {

/** A filled rectangle with a border, for other controls to stand on. */
class Frame : public Pressable {
public:
    Frame();

    Control* clone() override { return new Frame; }

    /** Fills the rectangle with the background gradient and the border, then draws the children. */
    void draw(Area area, Area parent, Area clip) override;
};

/**
 * Gives a control the colours of the first style element called `styleClass`, as loading does for
 * the controls of a layout. Nothing without such an element, or without a workspace above.
 */
void loadStyleClass(Control& control, const std::string& styleClass);

} // namespace zavex::vellum
