#pragma once

#include "vellum/vel_pressable.h"

#include <cstdint>

namespace zavex::vellum {

/**
 * A pop-up menu: a column of rows, each of which is itself a `Context` and may hold the rows of a
 * submenu that unfolds to the right, or to the left where it would leave the window. Rows stand in
 * the order in which they were added, whatever the focus does to the stacking order.
 *
 * Belongs to the control that opens it (`Control::setContext`) and is used again for every opening.
 * A chosen row reaches that owner as an event of type "context" whose action is the path of
 * captions, then the owner's observers, and closes the menu.
 */
class Context : public Pressable {
public:
    static constexpr float ROW_HEIGHT = 10.0f; // pixels

    Context();

    Control* clone() override { return new Context; }

    /** Adds a row for each "item" sub-element ("caption"; nested items form submenus). */
    void load(xml::IteratorConst& element) override;
    bool acceptEvents(Event& event) override;

    /** Positions are in the coordinates of the workspace, or of the menu that unfolded this one. */
    int handleEvent(Event& event) override;
    void draw(Area area, Area parent, Area clip) override;

    virtual void deleteOptions();

    /**
     * Appends a row, owned by this menu, and returns it so that it can be given rows in turn. It
     * starts with this menu's colours.
     */
    virtual Context* addOption(const std::string& caption, const std::string& id);

    /**
     * Renames a row; nothing when `index` lies past the end.
     *
     * @param index  Negative means the selected row, or the first when none is selected.
     */
    virtual void setOption(const std::string& caption, std::int32_t index);

    /** Marks the row with exactly this caption and returns its index; -1 changes nothing. */
    virtual std::int32_t setHighlight(const std::string& caption);

    /** @param width  In pixels; at most 0 lets the menu follow its longest caption. */
    virtual void setFixedWidth(float width);

    /** Adds a row for each "item" sub-element. */
    void loadItems(xml::IteratorConst& element);

    /**
     * Sizes the menu for its rows and moves it up where it would leave the window at the bottom.
     *
     * @param origin  Where the menu's coordinate system lies in the window, in pixels.
     */
    virtual void resize(mathbase::Vector2f origin);

    /**
     * Makes a pop-up ready to be shown where it was placed: takes the colours that the style
     * document has for "context" unless it was given others, sizes it and moves it left where it
     * would leave the window at the right.
     */
    void open();

    /** Puts this menu's caption before the action and passes it on, up to the owner. */
    virtual void sendContextEvent(Event& event);
    void takeChoice(Context&, Event& event) override { sendContextEvent(event); }

    /**
     * Takes over the colours of an owner, for the submenus too. Where the owner's text has none for
     * them, the marked row is written in the colour of its marks (`mCaption`), and the selected row
     * in that of its body (`mBack`) on the colours of its marks.
     */
    void setColors(const style& owner);

    /** The row under the pointer, or last chosen; -1 when there is none. */
    std::int32_t getSelected() const { return mSelected; }

protected:
    void hover(const Event& event) override;

    /** Closes the menu where no row is. */
    void press(const Event& event) override;
    void pressOther(const Event& event) override { press(event); }

    /** Chooses the row under the pointer, wherever the press was. */
    bool release(const Event& event) override;
    bool endsOn(display::MouseButton button) const override;

    /** Also when what opened the menu is hidden. */
    bool isReachable() const override { return true; }

    /** The row at a point of the menu; -1 when there is none. */
    std::int32_t rowAt(mathbase::Vector2f point) const;

    /** Reports the selected row to the owner, closes the menu and returns true. */
    bool chooseRow();

    /** Vertical distance of row `index` from the first one, in pixels. */
    float rowOffset(std::int32_t index) const;

    float mBorder = 5.0f;       // pixels inside the box
    float mUnfoldSpace = 20.0f; // pixels kept for the submenu marker
    float mRowSpacing = 5.0f;   // pixels between rows
    float mFixedWidth = -1.0f;  // pixels; the captions decide unless positive
    std::int32_t mSelected = -1;
    std::int32_t mExpanded = -1;
    std::string mHighlighted;

private:
    void takeStyle();
    float excessAtRight() const;
    float captionWidth() const;
    void hoverRow(std::int32_t index);
    void unfold(std::int32_t index);
    bool passToSubmenu(const Event& event);
    void drawRow(const Area& area, std::int32_t index);
    const style::Color& rowColor(const Control& option, std::int32_t index) const;

    mathbase::Vector2f mOrigin{0, 0}; // of the coordinates that mArea is in, pixels of the window
};

} // namespace zavex::vellum
