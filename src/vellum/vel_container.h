#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/** Groups children and adds nothing of its own. */
class Container : public Control {
public:
    Container();

    Control* clone() override { return new Container; }
};

} // namespace zavex::vellum
