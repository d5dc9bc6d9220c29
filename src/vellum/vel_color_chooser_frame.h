#pragma once

#include "vellum/vel_flow.h"

namespace zavex::vellum {

class ColorChooserWheel;
class Slider;

/** The field of a colour chooser and, to the right of it, the slider of its intensity. */
class ColorChooserFrame : public Flow {
public:
    ColorChooserFrame();

    Control* clone() override { return new ColorChooserFrame; }

    ColorChooserWheel& getWheel() { return *mWheel; }
    Slider& getSlider() { return *mSlider; }

private:
    ColorChooserWheel* mWheel; // owned as a child
    Slider* mSlider;           // owned as a child
};

} // namespace zavex::vellum
