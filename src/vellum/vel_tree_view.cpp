#include "vellum/vel_tree_view.h"

#include "vellum/vel_area.h"
#include "vellum/vel_render.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float BORDER = 1.0f;        // pixels around the rows
constexpr float INDENT = 14.0f;       // pixels for each level, the first included
constexpr float MARKER_SIZE = 8.0f;   // pixels
constexpr int MARKER_SEGMENTS = 3;    // a triangle,
constexpr float POINTING_DOWN = 0.0f; // and where its first corner is
constexpr float POINTING_RIGHT = 0.25f;
constexpr float SELECTION_WIDTH = 2.0f;   // pixels of the mark left of the selected row
constexpr float SCROLL_MARK_WIDTH = 3.0f; // pixels
constexpr float ROWS_PER_STEP = 3.0f;     // of the wheel

} // namespace

TreeView::TreeView()
{
    mType = mId = mCaption = "treeview";
}

void TreeView::load(xml::IteratorConst& element)
{
    Widget::load(element);
    if (const float size = element->getValueFloat("size"); size > 0.0f)
        mRowHeight = std::max(size, 1.0f);

    std::vector<xml::IteratorConst> path{element.createIterator("item")};
    while (!path.empty()) {
        if (xml::IteratorConst& items = path.back(); ++items) {
            addItem(items->getValue("id"), items->getValue("text"),
                    static_cast<std::int32_t>(path.size()) - 1);
            path.push_back(items.createIterator("item"));
        } else {
            path.pop_back();
        }
    }
}

void TreeView::draw(Area area, Area parent, Area clip)
{
    drawField(area, mInactive ? Look::INACTIVE : Look::NORMAL);
    const std::int32_t first = firstRow();
    const std::int32_t end = endOfShown();
    for (std::int32_t row = first; row < end; ++row) {
        const float top = area.mMin.y + BORDER + static_cast<float>(row - first) * mRowHeight;
        if (top >= std::min(area.mMax.y - BORDER, clip.mMax.y))
            break;
        drawRow(Area(area.mMin.x + BORDER, top, area.mMax.x - BORDER,
                     std::min(top + mRowHeight, area.mMax.y - BORDER)),
                row);
    }
    drawScrollMark(area);
    Control::draw(area, parent, clip);
}

void TreeView::addItem(const std::string& id, const std::string& text, std::int32_t depth)
{
    const std::int32_t deepest = mItems.empty() ? 0 : mItems.back().depth + 1;
    mItems.push_back({id, text, std::clamp(depth, 0, deepest)});
    // Whatever follows the last row shown is folded away by it.
    const Item* last = mRows.empty() ? nullptr : &at(mRows.back());
    if (!last || !last->folded || mItems.back().depth <= last->depth)
        mRows.push_back(getItemCount() - 1);
}

void TreeView::deleteItems()
{
    mItems.clear();
    mRows.clear();
    mSelected = -1;
    mHovered = -1;
}

void TreeView::select(std::int32_t item)
{
    if (item < 0 || item >= getItemCount())
        item = -1;
    for (std::int32_t each = parentOf(item); each >= 0; each = parentOf(each))
        mItems[static_cast<std::size_t>(each)].folded = false;
    findRows();
    scrollTo(rowOf(item));
    if (item == mSelected)
        return;
    mSelected = item;
    sendAction(ACTION_TREEVIEW_CHANGED);
}

void TreeView::setFolded(std::int32_t item, bool folded)
{
    if (!hasChildren(item) || at(item).folded == folded)
        return;
    mItems[static_cast<std::size_t>(item)].folded = folded;
    findRows();
    if (folded && mSelected > item && mSelected < endOf(item))
        select(item);
}

void TreeView::hover(const Event& event)
{
    mHovered = rowAt(event.mousePos);
}

void TreeView::press(const Event& event)
{
    Widget::press(event);
    const std::int32_t row = rowAt(event.mousePos);
    if (row < 0)
        return;
    const std::int32_t item = mRows[static_cast<std::size_t>(row)];
    const float marker = BORDER + static_cast<float>(at(item).depth) * INDENT;
    const bool onMarker = event.mousePos.x >= marker && event.mousePos.x < marker + INDENT;
    if (event.doubleClick || (onMarker && hasChildren(item)))
        toggle(item);
    else
        select(item);
}

/** Nothing where all rows are shown. */
bool TreeView::turnWheel(const Event& event)
{
    const std::int32_t last = rowCount() - fittingRows();
    if (last <= 0)
        return false;
    mScrolled = std::clamp(mScrolled - event.mouseDeltaWheel * ROWS_PER_STEP, 0.0f,
                           static_cast<float>(last));
    return true;
}

bool TreeView::pressKey(const Event& event)
{
    const std::int32_t row = rowOf(mSelected);
    switch (event.key) {
        case display::KEY_UP: selectRow(row - 1); return true;
        case display::KEY_DOWN: selectRow(row + 1); return true;
        case display::KEY_PAGEUP: selectRow(row - fittingRows()); return true;
        case display::KEY_PAGEDOWN: selectRow(row + fittingRows()); return true;
        case display::KEY_HOME: selectRow(0); return true;
        case display::KEY_END: selectRow(rowCount() - 1); return true;
        case display::KEY_LEFT: foldOrLeave(); return true;
        case display::KEY_RIGHT: unfoldOrEnter(); return true;
        case display::KEY_ENTER:
        case display::KEY_SPACE: toggle(mSelected); return true;
        default: return false;
    }
}

const TreeView::Item& TreeView::selected() const
{
    static const Item none;
    return mSelected < 0 ? none : at(mSelected);
}

bool TreeView::hasChildren(std::int32_t item) const
{
    return item >= 0 && item + 1 < getItemCount() && at(item + 1).depth > at(item).depth;
}

/** -1 for an item at the top, and for none. */
std::int32_t TreeView::parentOf(std::int32_t item) const
{
    std::int32_t parent = item - 1;
    while (parent >= 0 && at(parent).depth >= at(item).depth)
        --parent;
    return std::max(parent, -1);
}

/** The first item after all those below `item`. */
std::int32_t TreeView::endOf(std::int32_t item) const
{
    std::int32_t end = item + 1;
    while (end < getItemCount() && at(end).depth > at(item).depth)
        ++end;
    return end;
}

void TreeView::findRows()
{
    mRows.clear();
    for (std::int32_t item = 0; item < getItemCount();) {
        mRows.push_back(item);
        item = at(item).folded ? endOf(item) : item + 1;
    }
}

/** -1 for an item that is folded away, and for none. */
std::int32_t TreeView::rowOf(std::int32_t item) const
{
    const auto found = std::ranges::lower_bound(mRows, item);
    return found != mRows.end() && *found == item ? static_cast<std::int32_t>(found - mRows.begin())
                                                  : -1;
}

/** The row at a point of the control; -1 when there is none. */
std::int32_t TreeView::rowAt(Vector2f point) const
{
    Area rows(Vector2f(0.0f, 0.0f), getArea().getSize());
    rows.expand(-BORDER);
    if (!contains(rows, point))
        return -1;
    const float row = static_cast<float>(firstRow()) + (point.y - BORDER) / mRowHeight;
    return row < static_cast<float>(endOfShown()) ? static_cast<std::int32_t>(row) : -1;
}

/** How many rows there is room for, in 1..row count, or 1. */
std::int32_t TreeView::fittingRows() const
{
    const float rows = (getArea().getHeight() - 2.0f * BORDER) / mRowHeight;
    return std::max(static_cast<std::int32_t>(std::min(rows, static_cast<float>(rowCount()))), 1);
}

std::int32_t TreeView::firstRow() const
{
    const auto last = static_cast<float>(std::max(rowCount() - fittingRows(), 0));
    return static_cast<std::int32_t>(std::lround(std::clamp(mScrolled, 0.0f, last)));
}

/** The row after the last one that is shown; rows that do not fit whole are not. */
std::int32_t TreeView::endOfShown() const
{
    return std::min(firstRow() + fittingRows(), rowCount());
}

/** Scrolls no further than it takes to show a row whole; nothing for -1. */
void TreeView::scrollTo(std::int32_t row)
{
    if (row < 0)
        return;
    const std::int32_t top = std::clamp(firstRow(), row - fittingRows() + 1, row);
    mScrolled = static_cast<float>(top);
}

/** Selects the row, or the one at the end that it lies beyond. */
void TreeView::selectRow(std::int32_t row)
{
    if (!mRows.empty())
        select(mRows[static_cast<std::size_t>(std::clamp(row, 0, rowCount() - 1))]);
}

void TreeView::foldOrLeave()
{
    if (hasChildren(mSelected) && !at(mSelected).folded)
        setFolded(mSelected, true);
    else if (const std::int32_t parent = parentOf(mSelected); parent >= 0)
        select(parent);
}

void TreeView::unfoldOrEnter()
{
    if (!hasChildren(mSelected))
        return;
    if (at(mSelected).folded)
        setFolded(mSelected, false);
    else
        select(mSelected + 1);
}

void TreeView::toggle(std::int32_t item)
{
    if (hasChildren(item))
        setFolded(item, !at(item).folded);
}

void TreeView::drawRow(const Area& area, std::int32_t row)
{
    Render& render = getRender();
    const std::int32_t item = mRows[static_cast<std::size_t>(row)];
    const bool marked = item == mSelected;
    if (marked || (row == mHovered && !mInactive))
        fillBox(render, pick(mStyle.mBack, marked ? Look::PRESSED : Look::HOVERED), area);

    const ColorPair mark = pick(mStyle.mCaption, mInactive ? Look::INACTIVE : Look::NORMAL);
    render.setColor(mark.first, mark.second);
    if (marked)
        render.drawBox(Area(area.mMin.x, area.mMin.y, area.mMin.x + SELECTION_WIDTH, area.mMax.y),
                       Render::GRADIENT_VERTICAL);
    const float middle = area.mMin.y + mRowHeight / 2.0f;
    const float left = area.mMin.x + static_cast<float>(at(item).depth) * INDENT;
    if (hasChildren(item)) {
        const Vector2f centre(left + INDENT / 2.0f, middle);
        const Vector2f half(MARKER_SIZE / 2.0f, MARKER_SIZE / 2.0f);
        render.drawCircle(Area(centre - half, centre + half), MARKER_SEGMENTS,
                          at(item).folded ? POINTING_RIGHT : POINTING_DOWN);
    }
    const float textLeft = left + INDENT;
    drawLabel(at(item).text,
              {Vector2f(textLeft, middle), area.mMax.x - SCROLL_MARK_WIDTH - textLeft,
               display::Font::ALIGN_LEFT},
              mInactive ? Look::INACTIVE : Look::NORMAL);
}

/** Shows which part of the rows is seen, when that is not all of them. */
void TreeView::drawScrollMark(const Area& area)
{
    const auto rows = static_cast<float>(rowCount());
    const auto fitting = static_cast<float>(fittingRows());
    if (fitting >= rows)
        return;
    const float height = area.getHeight() - 2.0f * BORDER;
    const float top = area.mMin.y + BORDER + height * static_cast<float>(firstRow()) / rows;
    const float right = area.mMax.x - BORDER;
    fillBox(getRender(), pick(mStyle.mCaption, Look::INACTIVE),
            {right - SCROLL_MARK_WIDTH, top, right, top + height * fitting / rows});
}

} // namespace zavex::vellum
