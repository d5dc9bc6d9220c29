#pragma once

#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/**
 * An endless sheet of paper for boxes, which the user arranges by their captions. Dragging the
 * empty sheet moves the view and reports `ACTION_SCROLL_CHANGED`.
 */
class BoxView : public Pressable {
public:
    BoxView();

    Control* clone() override { return new BoxView; }

    /** Notes first whether the point is on the empty sheet: a press may remove a box. */
    int handleEvent(Event& event) override;
    void draw(Area area, Area parent, Area clip) override;
    bool letsBoxesMove() const override { return true; }

protected:
    void press(const Event&) override { mDragged = mOnSheet; }
    void drag(const Event& event) override;
    bool isHeld() const override { return mDragged; }
    void drop() override { mDragged = false; }

    bool mDragged = false; // the sheet was pressed and is held

private:
    bool isEmptyAt(mathbase::Vector2f point) const;
    void drawGrid(const Area& area, const Area& clip);

    bool mOnSheet = false; // the latest event came to the empty sheet
};

} // namespace zavex::vellum
