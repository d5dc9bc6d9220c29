#pragma once

#include "vellum/vel_frame_holder.h"
#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/** The content of a panel: its body without a border, so that panels in a column read as one. */
class PanelFrame : public Control {
public:
    PanelFrame();

    Control* clone() override { return new PanelFrame; }
    void draw(Area area, Area parent, Area clip) override;
};

/**
 * A captioned section of a screen. A click on the caption folds the content away and brings it
 * back; in a column of panels the others close up.
 *
 * Everything that is added goes into the frame below the caption, which belongs to the panel like
 * any child. Folding reports `ACTION_WINDOW_RESIZE`.
 */
class Panel : public FrameHolder<Pressable, PanelFrame> {
public:
    static constexpr float CAPTION_HEIGHT = 20.0f; // pixels

    Panel();

    Control* clone() override { return new Panel; }

    /** Reads "caption"; the frame takes its colours from the style "panelframe". */
    void load(xml::IteratorConst& element) override;

    using Pressable::setArea;

    /** Gives the frame what the caption leaves. */
    void setArea() override;
    void draw(Area area, Area parent, Area clip) override;

    /** A folded panel is as high as its caption, unless it is maximized. */
    virtual void setFolded(bool folded);
    virtual bool getFolded() const;

protected:
    void hover(const Event& event) override;
    void endHover() override { mCaptionHovered = false; }
    void press(const Event& event) override;

    bool mFolded = false;
    bool mCaptionHovered = false;
    float mUnfoldedHeight = 0.0f; // pixels; of the rectangle before it was folded

private:
    bool isOnCaption(const Event& event) const;
};

} // namespace zavex::vellum
