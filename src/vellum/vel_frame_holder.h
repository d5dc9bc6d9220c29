#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/**
 * A `Base` around a frame that holds the content: everything that is added goes into the frame,
 * which belongs to this control like any child.
 *
 * The constructor of the subclass makes the frame (`addOwn`). Nothing else may be called before.
 */
template <typename Base, typename Content>
class FrameHolder : public Base {
public:
    /** Forwarded to the frame. */
    void addControl(Control* control, int index = -1) override
    {
        mFrame->addControl(control, index);
    }
    void deleteControl(unsigned index) override { mFrame->deleteControl(index); }
    void deleteControls() override { mFrame->deleteControls(); }

protected:
    Content* mFrame = nullptr; // owned as a child
};

} // namespace zavex::vellum
