#pragma once

#include "vellum/vel_widget.h"

#include <cstdint>

namespace zavex::vellum {

class TabView;

/**
 * The row of tabs on top of a `TabView`, one for each page, as wide as the pages' captions or all
 * equally narrow where there is no room for that. A press on a tab shows its page; with the
 * keyboard focus left and right step through them.
 */
class TabCaption : public Widget {
public:
    /** @param view  Whose pages these are; outlives this control. There are no tabs without one. */
    explicit TabCaption(TabView* view = nullptr);

    Control* clone() override { return new TabCaption; }
    void draw(Area area, Area parent, Area clip) override;

protected:
    void hover(const Event& event) override;
    void endHover() override { mHovered = -1; }
    void press(const Event& event) override;
    bool pressKey(const Event& event) override;

private:
    std::int32_t pageCount() const;
    float wantedWidth(std::int32_t page) const;
    float commonWidth() const;
    std::int32_t tabAt(mathbase::Vector2f point) const;
    void show(std::int32_t page);
    void drawTab(std::int32_t page, const Area& tab, bool selected);

    TabView* const mView;       // not owned; may be null
    std::int32_t mHovered = -1; // tab under the pointer
};

} // namespace zavex::vellum
