#pragma once

#include "vellum/vel_pressable.h"

#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"

namespace zavex::vellum {

/**
 * A field of colours in which a cross-hair is placed by clicking and dragging.
 *
 * Six columns of equal width run from red over magenta, blue, cyan, green and yellow back to red;
 * each fades to a grey at the bottom. Reports `ACTION_BUTTON_PRESSED` for the press and every move
 * while the button is held, inside the field or not. One that is inactive or hidden ignores clicks
 * and lets go.
 */
class ColorChooserWheel : public Pressable {
public:
    ColorChooserWheel();

    Control* clone() override { return new ColorChooserWheel; }

    /** Also finds the chosen colour, which depends on the size of the field. */
    void draw(Area area, Area parent, Area clip) override;

    /** Sets the grey at the bottom, in 0..1. */
    void setIntensity(float intensity);

    /**
     * The chosen colour, red, green and blue, as of the last drawing; black before the first click.
     *
     * The column whose left edge is nearest to the cross-hair decides, the last one at the right
     * end. Left of that edge its hues continue backwards, each component cut to 0..1.
     */
    mathbase::Vector3f getColor() const { return mCurrentColor; }

protected:
    void press(const Event& event) override;
    void pressOther(const Event& event) override { press(event); }
    void drag(const Event& event) override { chooseAt(event.mousePos); }
    bool isHeld() const override { return mClicked; }
    void drop() override { mClicked = false; }

    /** Any button ends what any button began. */
    bool endsOn(display::MouseButton) const override { return mClicked; }

    float mIntensity = 0.0f;
    mathbase::Vector2f mClickedPos{-1, -1}; // the cross-hair, local coordinates; (-1, -1) for none
    mathbase::Vector3f mCurrentColor{0, 0, 0};
    bool mClicked = false; // the button is held

private:
    bool isInField(mathbase::Vector2f position) const;
    void chooseAt(mathbase::Vector2f position);
    void drawColumn(const Area& area, const Area& clip, int column);
    mathbase::Vector3f colorAt(mathbase::Vector2f position, mathbase::Vector2f size) const;
    void drawCrossHair(const Area& area, mathbase::Vector2f position);
};

} // namespace zavex::vellum
