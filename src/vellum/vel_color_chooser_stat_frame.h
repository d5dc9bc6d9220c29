#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/** Carries the colours of the style "colorchooser"; it has no extent in a colour chooser. */
class ColorChooserStatFrame : public Control {
public:
    Control* clone() override { return new ColorChooserStatFrame; }
};

} // namespace zavex::vellum
