#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/**
 * An endless sheet of paper for boxes, which the user arranges by their captions. Dragging the
 * empty sheet moves the view and reports `ACTION_SCROLL_CHANGED`.
 */
class BoxView : public Control {
public:
    BoxView();

    Control* clone() override;

    /** Also while the sheet is dragged. */
    bool acceptEvents(Event& event) override;
    int handleEvent(Event& event) override;
    void draw(Area area, Area parent, Area clip) override;
    void letGo() override;

protected:
    bool mDragged = false; // the sheet was pressed and is held

private:
    bool isEmptyAt(mathbase::Vector2f point) const;
    void drawGrid(const Area& area, const Area& clip);
};

} // namespace zavex::vellum
