#pragma once

#include "vellum/vel_context.h"
#include "vellum/vel_pressable.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace zavex::vellum {

/**
 * A horizontal bar of titles, each of which opens a pop-up menu below itself.
 *
 * A press on a title opens its menu. Released over a title it stays open, and moving onto another
 * title opens that one's instead, until the next release of the left button; released anywhere else
 * it closes at once, after a row under the pointer was chosen. A choice arrives at the bar as an
 * event of type "context" and at its observers, with the title as the first caption of the path.
 *
 * The menus belong to the bar and start with the colours that it has when they are added.
 */
class MenuBar : public Pressable {
public:
    MenuBar();

    Control* clone() override { return new MenuBar; }

    /** Adds a menu for each "item" sub-element. */
    void load(xml::IteratorConst& element) override;

    /** Closes the bar's menu. The bar takes all events until the button that did it is released. */
    void resetContext() override;
    void draw(Area area, Area parent, Area clip) override;
    bool letsEventsThrough() const override { return true; }

    /** Adds a menu at the right end: its title is the "caption" of `item`, its rows are the "item"
        elements below that. */
    virtual void addItem(xml::IteratorConst& item);

protected:
    void hover(const Event& event) override { mark(titleAt(event.mousePos)); }
    void endHover() override { mark(-1); }
    void press(const Event& event) override;

    /** Closes what is open. */
    void pressOther(const Event& event) override;
    bool release(const Event& event) override;

    /** While a menu of the bar is open. */
    bool isHeld() const override { return mClicked; }

    /** Leaves the menu itself open. */
    void drop() override;

    /** Also while inactive, to close what is open. */
    bool isUsable() const override { return true; }

    /** The menu below one title. */
    struct ContextData : Context {
        using Control::mMouseOver; // the pointer is over the title
    };

    /** Opens the menu at `index` below its title, in the place of any that is open. */
    virtual void setMenuContext(std::int32_t index);

    bool mClicked = false;             // a menu of the bar is open, or being closed by a button
    bool mFirstHit = false;            // the next release over a title leaves the menu open
    float mBarOffset = 5.0f;           // pixels left of the first title
    float mBarSpacing = 15.0f;         // pixels between titles
    std::int32_t mMouseOverIndex = -1; // the marked title: the open one, else under the pointer
    bool mMouseInsideIndex = false;    // the pointer is over a title
    std::vector<std::unique_ptr<ContextData>> mMenu;

private:
    std::int32_t titleAt(mathbase::Vector2f point) const;
    Area titleArea(std::size_t index) const;
    void mark(std::int32_t index);
    void close();
    void drawTitle(std::size_t index, const Area& area);
};

} // namespace zavex::vellum
