#pragma once

#include "vellum/vel_frame.h"
#include "vellum/vel_frame_holder.h"
#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/** The content of a group box. */
class BoxFrame : public Frame {
public:
    BoxFrame() { mType = mId = "boxframe"; }

    Control* clone() override { return new BoxFrame; }
};

/**
 * A group box: a caption above a frame that holds the content.
 *
 * Everything that is added goes into the frame, which belongs to the box like any child. On a
 * `BoxView` the box is moved by its caption.
 */
class Box : public FrameHolder<Pressable, BoxFrame> {
public:
    static constexpr float CAPTION_HEIGHT = 20.0f; // pixels

    Box();

    Control* clone() override { return new Box; }

    /** Reads "caption"; the frame takes its colours from the style "boxframe". */
    void load(xml::IteratorConst& element) override;

    using Pressable::setArea;

    /** Gives the frame what the caption leaves. */
    void setArea() override;
    void draw(Area area, Area parent, Area clip) override;

protected:
    void press(const Event& event) override;
    void drag(const Event& event) override;
    bool isHeld() const override { return mDragged; }
    void drop() override { mDragged = false; }

    bool mDragged = false; // the caption was pressed and is held
};

} // namespace zavex::vellum
