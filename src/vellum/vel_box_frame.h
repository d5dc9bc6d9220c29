#pragma once

#include "vellum/vel_frame.h"

namespace zavex::vellum {

/** The content of a group box. */
class BoxFrame : public Frame {
public:
    BoxFrame();

    Control* clone() override;
};

} // namespace zavex::vellum
