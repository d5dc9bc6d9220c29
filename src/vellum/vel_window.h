#pragma once

#include "vellum/vel_flow.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_frame_holder.h"

namespace zavex::vellum {

class Caption;
class Window;

/** The content of a window. A scroll area that fills it resizes the window, or this alone. */
class WindowFrame : public Frame {
public:
    /** @param window  The window around it; or null. */
    explicit WindowFrame(Window* window = nullptr);

    Control* clone() override { return new WindowFrame; }

    /** Nothing while the window is maximized. */
    bool moveCorner(mathbase::Vector2f corner) override;

private:
    Window* const mWindow; // not owned; may be null
};

/**
 * A panel with a caption bar, by which it is dragged within its parent and maximized with a double
 * click, above a frame that holds the content.
 *
 * Everything that is added goes into the frame. Bar and frame belong to the window like any child.
 */
class Window : public FrameHolder<Flow, WindowFrame> {
public:
    static constexpr float CAPTION_HEIGHT = 26.0f; // pixels

    Window();

    Control* clone() override { return new Window; }

    /** Reads "caption", and "class", the style of the frame ("windowframe" when missing); the
        caption bar takes its colours from the style "caption". */
    void load(xml::IteratorConst& element) override;

    /** The text of the caption bar. */
    void setCaption(const std::string& caption) override;
    const std::string& getCaption() const override;

    /** Moves the window, but not out of its parent. */
    void setPosition(mathbase::Vector2f position) override;

    void draw(Area area, Area parent, Area clip) override;

    /** Drags the window from where it is, by `movement` pixels. */
    void moveBy(mathbase::Vector2f movement);

    /** Switches between filling the parent and the former rectangle; reports
        `ACTION_WINDOW_RESIZE`. */
    void toggleMaximized();

    /** Sizes the window, which must not be maximized, so that the frame ends at `corner`, in local
        coordinates. */
    void resizeFrame(mathbase::Vector2f corner);

protected:
    Caption* mCaptionbar = nullptr; // owned as a child
};

} // namespace zavex::vellum
