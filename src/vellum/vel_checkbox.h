#pragma once

#include "vellum/vel_radio_button.h"

namespace zavex::vellum {

/**
 * A list of options of which any number is checked. Each is switched by itself, with the mouse or
 * by space and enter; the other keys only move between them.
 *
 * Reports `ACTION_CHECKBOX_ON` or `ACTION_CHECKBOX_OFF` whenever the user switches an option;
 * `getCurrent` says which.
 */
class Checkbox final : public RadioButton {
public:
    Checkbox();

    Control* clone() override { return new Checkbox; }
    void setChecked(int index, bool checked) override;

protected:
    void chooseOption(int index) override;
    void moveOn(int) override {}
    void drawMark(const Area& box, Look look, bool checked, bool focused) override;
};

} // namespace zavex::vellum
