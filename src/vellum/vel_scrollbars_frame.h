#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/** Holds the content of a scroll area; its offset is what scrolls. Transparent unless styled. */
class ScrollbarsFrame : public Control {
public:
    ScrollbarsFrame();

    Control* clone() override;
    void draw(Area area, Area parent, Area clip) override;
};

} // namespace zavex::vellum
