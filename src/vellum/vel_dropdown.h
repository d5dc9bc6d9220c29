#pragma once

#include "vellum/vel_context.h"
#include "vellum/vel_widget.h"

#include <cstdint>
#include <vector>

namespace zavex::vellum {

/**
 * The rows of a drop-down that is open. Down and up move the mark, at first from the current
 * option; enter and space choose what is marked and escape closes the list.
 */
class DropdownList final : public Context {
public:
    Control* clone() override { return new DropdownList; }

    /** @param index  Where the keys start from; -1 without rows. */
    void setCurrent(std::int32_t index) { mCurrent = index; }

protected:
    void press(const Event& event) override;
    bool pressKey(const Event& event) override;

    /** Whatever has the focus below. */
    bool takesKeys() const override { return true; }

private:
    void moveMark(std::int32_t rows);

    std::int32_t mCurrent = -1;
};

/**
 * A field that shows one of several options and opens the list of all at a press, or at enter and
 * space with the keyboard focus; up and down step through them. Reports ACTION_DROPDOWN_CHANGED
 * whenever another option becomes the selected one.
 */
class Dropdown : public Widget {
public:
    Dropdown();

    Control* clone() override { return new Dropdown; }

    /**
     * Adds an option for each "option" sub-element ("id"; "name", which is shown) and selects the
     * one whose "default" is "true", the last of several; else the first option of all.
     */
    void load(xml::IteratorConst& element) override;
    void draw(Area area, Area parent, Area clip) override;

    /** Adds an option at the end. The first one becomes selected, which is not reported. */
    void addOption(const std::string& id, const std::string& name);

    /** Nothing is selected afterwards. */
    void deleteOptions();

    /** Selects and reports. @param index  Clamped to the options; nothing without any. */
    void select(std::int32_t index);

    /** Index of the selected option; -1 without options. */
    std::int32_t getSelected() const { return mSelected; }
    std::int32_t getOptionCount() const { return static_cast<std::int32_t>(mOptions.size()); }

    /** Of the selected option; empty without one. */
    const std::string& getValueId() const { return selected().id; }
    const std::string& getValueName() const { return selected().name; }

protected:
    void press(const Event& event) override;
    bool pressKey(const Event& event) override;

    /** Of what was chosen in the list. */
    void choose(const std::string& action) override;

private:
    struct Option {
        std::string id;
        std::string name;
    };

    const Option& selected() const;
    void openList();
    void fillList();

    std::vector<Option> mOptions;
    std::int32_t mSelected = -1;
    DropdownList mList; // filled whenever it opens
};

} // namespace zavex::vellum
