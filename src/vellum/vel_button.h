#pragma once

#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/**
 * A push button, or a toggle button that stays down until it is released again.
 *
 * A push button reports `ACTION_BUTTON_PRESSED` when pressed with the left mouse button and
 * `ACTION_BUTTON_RELEASED` when released over itself. A toggle button reports nothing on a press;
 * each release over it flips its state and reports the one it came to, pressed for on.
 */
class Button : public Pressable {
public:
    Button();

    Control* clone() override { return new Button; }

    /** Reads "caption", and "toggled": "true" makes it a toggle button. */
    void load(xml::IteratorConst& element) override;

    /** The frame runs around the visible part; the caption stays in the middle of the whole. */
    void draw(Area area, Area parent, Area clip) override;

    virtual void setToggleMode(bool toggle);

    /** Whether a toggle button is on. */
    virtual bool getToggled() const;

protected:
    void press(const Event& event) override;
    bool release(const Event& event) override;
    bool isHeld() const override { return mClicked; }
    void drop() override { mClicked = false; }

    /** Also while inactive: a press that came before that ends as any. */
    bool isUsable() const override { return true; }

    bool mClicked = false; // pressed by the left button, which is still down
    bool mToggleState = false;
    bool mToggle = false; // this is a toggle button

private:
    bool looksPushed() const;
    void drawFace(const Area& face);
    void drawCaption(mathbase::Vector2f center);
};

} // namespace zavex::vellum
