#pragma once

#include "vellum/vel_pressable.h"

#include <map>

namespace zavex::vellum {

/**
 * Divides its rectangle among its children in order of insertion. Each has either a fixed extent
 * along the direction or a share of what the fixed ones leave, and is as wide as the flow across
 * it.
 */
class Flow : public Pressable {
public:
    enum Direction : int { DIRECTION_HORISONTAL = 0, DIRECTION_VERTICAL = 1 };

    Flow();

    Control* clone() override { return new Flow; }

    /** Reads "direction": "horisontal" is horizontal, anything else vertical. */
    void load(xml::IteratorConst& element) override;

    /** As the base; the child starts with a fixed extent of 10 pixels. */
    void addControl(Control* control, int index = -1) override;

    using Pressable::setArea;

    /** Places the children. */
    void setArea() override;

    /** Gives a child a fixed extent in pixels. Takes effect with the next layout. */
    void setSize(Control* child, float size);

    /** Gives a child a share; shares are weights that need not add up to 100. */
    void setPercent(Control* child, float percent);

protected:
    /** Reads "size" and "percent" of a child's area. */
    void loadChildArea(Control& child, xml::IteratorConst& area) override;

    Direction mDirection = DIRECTION_VERTICAL;

private:
    float extentOf(Control* child) const;

    std::map<Control*, float> mExtent; // pixels when positive, else the negated share
};

} // namespace zavex::vellum
