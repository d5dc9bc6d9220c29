#pragma once

#include "vellum/vel_widget.h"

#include <cstdint>
#include <vector>

namespace zavex::vellum {

/**
 * A list of texts that stand below one another as a tree.
 *
 * A press on a row selects it; a press on the marker before a row that has others below it, and a
 * double click, fold those away or unfold them. With the keyboard focus up, down, page up, page
 * down, home and end move the selection, left folds or goes to the parent, right unfolds or goes to
 * the first child, enter and space do either. The wheel scrolls whole rows when there are more
 * than fit. Reports ACTION_TREEVIEW_CHANGED whenever the selection changes.
 *
 * Items are numbered from 0 in the order of the unfolded tree.
 */
class TreeView : public Widget {
public:
    TreeView();

    Control* clone() override { return new TreeView; }

    /**
     * Adds an item for each "item" sub-element ("id", "text"), unfolded, and those nested in it
     * below it. "size" is the height of a row in pixels; one that is not positive changes nothing.
     */
    void load(xml::IteratorConst& element) override;
    void draw(Area area, Area parent, Area clip) override;

    /** Adds an item at the end. @param depth  0 at the top; clamped to one below the item before.
     */
    void addItem(const std::string& id, const std::string& text, std::int32_t depth);

    /** Nothing is selected afterwards. */
    void deleteItems();

    /** Selects, unfolds what hides the item, scrolls to it and reports. Out of range means none. */
    void select(std::int32_t item);

    /** Nothing for an item with none below it. Folding away the selected item selects `item`. */
    void setFolded(std::int32_t item, bool folded);

    std::int32_t getItemCount() const { return static_cast<std::int32_t>(mItems.size()); }

    /** The selected item; -1 when there is none. */
    std::int32_t getSelected() const { return mSelected; }

    /** Of the selected item; empty without one. */
    const std::string& getValueId() const { return selected().id; }
    const std::string& getValueText() const { return selected().text; }

protected:
    void hover(const Event& event) override;
    void endHover() override { mHovered = -1; }
    void press(const Event& event) override;
    bool turnWheel(const Event& event) override;
    bool pressKey(const Event& event) override;

private:
    struct Item {
        std::string id;
        std::string text;
        std::int32_t depth = 0;
        bool folded = false;
    };

    const Item& at(std::int32_t item) const { return mItems[static_cast<std::size_t>(item)]; }
    const Item& selected() const;
    bool hasChildren(std::int32_t item) const;
    std::int32_t parentOf(std::int32_t item) const;
    std::int32_t endOf(std::int32_t item) const;

    void findRows();
    std::int32_t rowOf(std::int32_t item) const;
    std::int32_t rowCount() const { return static_cast<std::int32_t>(mRows.size()); }
    std::int32_t rowAt(mathbase::Vector2f point) const;
    std::int32_t fittingRows() const;
    std::int32_t firstRow() const;
    std::int32_t endOfShown() const;
    void scrollTo(std::int32_t row);
    void selectRow(std::int32_t row);
    void foldOrLeave();
    void unfoldOrEnter();
    void toggle(std::int32_t item);
    void drawRow(const Area& area, std::int32_t row);
    void drawScrollMark(const Area& area);

    std::vector<Item> mItems;        // in the order of the unfolded tree
    std::vector<std::int32_t> mRows; // the items that are not folded away
    std::int32_t mSelected = -1;
    std::int32_t mHovered = -1; // row under the pointer
    float mScrolled = 0.0f;     // rows above the area; clamped and rounded by `firstRow`
    float mRowHeight = 16.0f;   // pixels
};

} // namespace zavex::vellum
