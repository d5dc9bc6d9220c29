#pragma once

#include "vellum/vel_frame.h"

namespace zavex::vellum {

/** One page of a `TabView`; its caption is the text of its tab. */
class TabFrame : public Frame {
public:
    TabFrame();

    Control* clone() override { return new TabFrame; }

    /** Reads "caption". */
    void load(xml::IteratorConst& element) override;
};

} // namespace zavex::vellum
