#pragma once

#include "vellum/vel_flow.h"

#include <cstdint>

namespace zavex::vellum {

class TabCaption;

/**
 * Pages that share one place, with a row of tabs on top to choose the one that is seen.
 *
 * Every control that is added becomes a page, normally a `TabFrame`; its caption is the text of its
 * tab. Pages that are not seen are hidden and nothing else: they keep their size and their state.
 */
class TabView : public Flow {
public:
    static constexpr float CAPTION_HEIGHT = 20.0f; // pixels

    TabView();

    Control* clone() override { return new TabView; }

    /** As the base; then shows the first page. */
    void load(xml::IteratorConst& element) override;

    /** As the base. The first page is shown, further ones are hidden. */
    void addControl(Control* control, int index = -1) override;

    /** Nothing when `index` is that of the row of tabs. */
    void deleteControl(unsigned index) override;

    /** Destroys the pages; the row of tabs stays. */
    void deleteControls() override;

    using Flow::setArea;

    /** Gives every page the whole area below the row of tabs. */
    void setArea() override;

    std::int32_t getPageCount() const;

    /** Pages are numbered in the order in which they were added; null when out of range. */
    Control* getPage(std::int32_t page) const;

    /** The page that is seen, the topmost visible one; -1 without one. */
    std::int32_t getSelected() const;

    /** Shows a page and hides the others; nothing when out of range. */
    void select(std::int32_t page);

private:
    TabCaption* mTabs; // owned, as the first child
};

} // namespace zavex::vellum
