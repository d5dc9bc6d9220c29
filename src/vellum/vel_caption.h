#pragma once

#include "vellum/vel_pressable.h"

namespace zavex::vellum {

class Window;

/** The title bar of a window. Elsewhere it only shows its text. */
class Caption : public Pressable {
public:
    /** @param window  What the bar drags, around it; or null. */
    explicit Caption(Window* window = nullptr);

    Control* clone() override { return new Caption; }

    void draw(Area area, Area parent, Area clip) override;

protected:
    void press(const Event& event) override;
    void drag(const Event& event) override;
    bool isHeld() const override { return mClicked; }
    void drop() override { mClicked = false; }

    bool mClicked = false;                // a drag is in progress
    mathbase::Vector2f mClickedPos{0, 0}; // where it started, in local coordinates

private:
    Window* const mWindow; // not owned; may be null
};

} // namespace zavex::vellum
