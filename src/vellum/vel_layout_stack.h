#pragma once

#include "vellum/vel_pressable.h"

namespace zavex::vellum {

/**
 * Stacks its children one after the other. Each keeps its size along the direction and its extent
 * across it; the area that a child occupies beyond its own rectangle plays no part.
 */
class LayoutStack : public Pressable {
public:
    enum Direction : int { DIRECTION_HORISONTAL = 0, DIRECTION_VERTICAL = 1 };

    LayoutStack();

    Control* clone() override { return new LayoutStack; }

    /** Reads "direction": "horisontal" is horizontal, anything else vertical. */
    void load(xml::IteratorConst& element) override;

    /** As the base, and stacks the children again, the one inserted last first. */
    void addControl(Control* control, int index = -1) override;
    void deleteControl(unsigned index) override;

    /** Fills the rectangle with the background gradient and draws the children over it. */
    void draw(Area area, Area parent, Area clip) override;

    /** Closes the gap or makes room. */
    void childResized() override { recalculate(true); }

    virtual void setVertical();
    virtual void setHorisontal();

    /**
     * Places the children from 0 on along the direction.
     *
     * @param reverse  True takes them in reverse order of insertion, false in stacking order.
     */
    virtual void recalculate(bool reverse);

protected:
    Direction mDirection = DIRECTION_VERTICAL;

private:
    void setDirection(Direction direction);
};

} // namespace zavex::vellum
