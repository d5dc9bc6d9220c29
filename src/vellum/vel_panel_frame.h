#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/** The content of a panel: its body without a border, so that panels in a column read as one. */
class PanelFrame : public Control {
public:
    PanelFrame();

    Control* clone() override;
    void draw(Area area, Area parent, Area clip) override;
};

} // namespace zavex::vellum
