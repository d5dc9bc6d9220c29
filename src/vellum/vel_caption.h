#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

class Window;

/** The title bar of a window. Elsewhere it only shows its text. */
class Caption : public Control {
public:
    Caption();

    Control* clone() override;

    /** Also ends a drag. */
    void setInactive(bool inactive) override;

    /** Also while the window is dragged: the pointer may leave the bar at the parent's edge. */
    bool acceptEvents(Event& event) override;
    int handleEvent(Event& event) override;
    void draw(Area area, Area parent, Area clip) override;
    void letGo() override;

protected:
    bool mClicked = false;                // a drag is in progress
    mathbase::Vector2f mClickedPos{0, 0}; // where it started, in local coordinates

private:
    void press(Window& window, mathbase::Vector2f point, bool doubleClick);
};

} // namespace zavex::vellum
