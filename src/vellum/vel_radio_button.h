#pragma once

#include "vellum/vel_widget.h"

#include <string>
#include <vector>

namespace zavex::vellum {

/**
 * A list of options of which at most one is chosen, a row of 20 pixels each from the top.
 *
 * An option is chosen by pressing and releasing its row, or with the keyboard: up and down move to
 * the previous and the next one, home and end to the first and the last, space or enter choose the
 * one that is marked by the focus border. Reports `ACTION_RADIOBUTTON_CHANGED` whenever the user
 * changes the choice.
 */
class RadioButton : public Widget {
public:
    RadioButton();

    Control* clone() override { return new RadioButton; }

    /**
     * Reads the sub-elements "option": "name" is the text, "checked" = "true" chooses it (the last
     * one wins). An element with any replaces those from before.
     */
    void load(xml::IteratorConst& element) override;

    void draw(Area area, Area parent, Area clip) override;

    void addOption(const std::string& name, bool checked);
    int getOptionCount() const;

    /** Text of the option at `index`; empty when out of range. */
    std::string getOption(int index) const;

    /** False when out of range. */
    bool isChecked(int index) const;

    /** Checks or clears an option; nothing when out of range. */
    virtual void setChecked(int index, bool checked);

    /** The first option that is checked; -1 when none is. */
    int getSelected() const;

    /** The option that the user pressed or moved to last; -1 before. */
    int getCurrent() const { return mCurrent; }

protected:
    void hover(const Event& event) override;
    void press(const Event& event) override;
    bool release(const Event& event) override;
    bool pressKey(const Event& event) override;

    /** What the user's choice of the option at `index`, which is valid, does; may report it. */
    virtual void chooseOption(int index);

    /** The keyboard moved to the option at `index`, which is valid. */
    virtual void moveOn(int index) { chooseOption(index); }

    /** Draws the mark of one option, in its square. */
    virtual void drawMark(const Area& box, Look look, bool checked, bool focused);

    /** Checks or clears one option and no other; nothing when out of range. */
    void switchOption(int index, bool checked);

private:
    struct Option {
        std::string name;
        bool checked = false;
    };

    bool isOption(int index) const { return index >= 0 && index < getOptionCount(); }
    int rowAt(const Event& event) const;
    int cursor() const;
    void moveTo(int index);
    Look rowLook(int index) const;
    void drawRow(const Area& row, int index);

    std::vector<Option> mOptions;
    int mCurrent = -1;    // the user pressed or moved to it last
    int mPointed = -1;    // under the pointer when it moved last
    int mPressedRow = -1; // where the button was pressed
};

} // namespace zavex::vellum
