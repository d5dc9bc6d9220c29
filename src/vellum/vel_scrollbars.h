#pragma once

#include "vellum/vel_frame_holder.h"
#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/** Holds the content of a scroll area; its offset is what scrolls. Transparent unless styled. */
class ScrollbarsFrame : public Control {
public:
    ScrollbarsFrame();

    Control* clone() override { return new ScrollbarsFrame; }
    void draw(Area area, Area parent, Area clip) override;
};

/**
 * A scroll area: content in an inner frame, a bar along the right and the bottom edge, and a corner
 * between them that resizes the window whose content this is.
 *
 * Everything that is added goes into the frame, which belongs to this control like any child. The
 * handles have a fixed length. Scrolling reports `ACTION_SCROLL_CHANGED`, dragging the corner
 * `ACTION_WINDOW_RESIZE`.
 */
class Scrollbars : public FrameHolder<Pressable, ScrollbarsFrame> {
public:
    Scrollbars();

    Control* clone() override { return new Scrollbars; }

    /** Reads "direction": "horisontal" or "vertical" keeps only that bar. The frame takes its
        colours from the style "scrollbarsframe". */
    void load(xml::IteratorConst& element) override;

    using Pressable::setArea;

    /** Places the bars and the frame, and scrolls anew. */
    void setArea() override;
    void draw(Area area, Area parent, Area clip) override;

    /** Clamps the scroll position, places the handles and moves the content. */
    virtual void buildScrollbars();
    virtual void setVertical(bool vertical);
    virtual void setHorisontal(bool horisontal);

    /** How far the handles are along their tracks, in pixels: horizontally x, vertically y. */
    virtual mathbase::Vector2f getScrollPosition() const;

    /** Clamped to what the tracks allow; reports nothing. */
    virtual void setScrollPosition(mathbase::Vector2f position);

protected:
    void hover(const Event& event) override;
    void endHover() override;
    void press(const Event& event) override;
    void drag(const Event& event) override;
    bool release(const Event& event) override;
    bool turnWheel(const Event& event) override;
    bool isHeld() const override { return mVerticalDown || mHorisontalDown || mResize; }
    void drop() override { mVerticalDown = mHorisontalDown = mResize = false; }

    /** The wheel scrolls also while inactive. */
    bool isUsable() const override { return true; }

    bool mVertical = true;
    bool mHorisontal = true;
    mathbase::Vector2f mScrollPosition{0, 0}; // pixels along the tracks
    float mBarWidth = 12.0f;                  // pixels
    float mBarLength = 30.0f;                 // pixels, of a handle
    bool mVerticalDown = false;               // its handle is being dragged
    bool mHorisontalDown = false;
    bool mResize = false;                    // the corner is being dragged
    mathbase::Vector2f mResizePercent{0, 0}; // scroll position as fractions of its ranges
    Area mVerticalArea;                      // the track; all areas in local coordinates
    Area mHorisontalArea;
    Area mFillerArea; // the corner
    Area mVerticalBarArea;
    Area mHorisontalBarArea;
    mathbase::Vector2f mMousePos{0, 0};   // where the corner was pressed, workspace coordinates
    mathbase::Vector2f mOldAreaMax{0, 0}; // the parent's bottom-right corner at that time
    bool mVerticalBarHighlight = false;   // the pointer is over its handle
    bool mHorisontalBarHighlight = false;

private:
    enum Axis : int { AXIS_X = 0, AXIS_Y = 1 };
    struct Bar;

    Bar barOf(int axis);
    float rangeOf(int axis);
    mathbase::Vector2f contentSize();
    void scroll(int axis, float contentPixels);
    void reportScroll();
    void beginResize(mathbase::Vector2f pointer);
    void resizeParent(mathbase::Vector2f pointer);
    void drawBar(int axis, mathbase::Vector2f origin);
    void drawCorner(mathbase::Vector2f origin);
};

} // namespace zavex::vellum
