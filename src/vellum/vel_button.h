#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/**
 * A push button, or a toggle button that stays down until it is released again.
 *
 * A push button reports `ACTION_BUTTON_PRESSED` when pressed with the left mouse button and
 * `ACTION_BUTTON_RELEASED` when released over itself. A toggle button reports nothing on a press;
 * each release over it flips its state and reports the one it came to, pressed for on.
 */
class Button : public Control {
public:
    Button();

    Control* clone() override;

    /** Reads "caption", and "toggled": "true" makes it a toggle button. */
    void load(xml::IteratorConst& element) override;

    /** Also while the button is held, so that the release is seen wherever it happens. */
    bool acceptEvents(Event& event) override;
    int handleEvent(Event& event) override;

    /** The frame runs around the visible part; the caption stays in the middle of the whole. */
    void draw(Area area, Area parent, Area clip) override;
    void letGo() override;

    virtual void setToggleMode(bool toggle);

    /** Whether a toggle button is on. */
    virtual bool getToggled() const;

protected:
    bool mClicked = false; // pressed by the left button, which is still down
    bool mToggleState = false;
    bool mToggle = false; // this is a toggle button

private:
    void press();
    void release(bool over);
    bool looksPushed() const;
    void drawFace(const Area& face);
    void drawCaption(mathbase::Vector2f center);
};

} // namespace zavex::vellum
