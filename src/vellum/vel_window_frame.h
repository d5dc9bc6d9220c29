#pragma once

#include "vellum/vel_frame.h"

namespace zavex::vellum {

/** The content of a window. */
class WindowFrame : public Frame {
public:
    WindowFrame();

    Control* clone() override;
};

} // namespace zavex::vellum
