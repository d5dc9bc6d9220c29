#pragma once

#include "vellum/vel_flow.h"

namespace zavex::vellum {

class Context;
class MenuFrame;

/**
 * A menu that is always visible, with the rows of a `Context`.
 *
 * A row is chosen by a click. One that has rows of its own opens them to its right at a press, as a
 * pop-up. A choice arrives here as an event of type "context" and at the observers of this control;
 * the path begins with this control's caption.
 */
class Menu : public Flow {
public:
    Menu();

    Control* clone() override { return new Menu; }

    /**
     * Adds a row for each "item" sub-element ("caption"; nested items form submenus). "class" names
     * the style element of the rows, "menuframe" without one.
     */
    void load(xml::IteratorConst& element) override;

    /** Colours of the menu's own element are those of the rows. */
    void loadStyle(xml::IteratorConst& element) override;
    void setCaption(const std::string& caption) override;

    /** The rows, to which more can be added; owned by this menu. */
    Context& getRows();

protected:
    /** Nothing: the rows have the whole area. */
    void loadChildArea(Control&, xml::IteratorConst&) override {}

private:
    MenuFrame* mFrame; // owned, as a child
};

} // namespace zavex::vellum
