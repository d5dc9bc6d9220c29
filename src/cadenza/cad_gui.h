#pragma once

#include "display/dis_listener.h"
#include "vellum/vel_callback.h"
#include "vellum/vel_vellum.h"

#include <string>

namespace zavex::vellum {
class LayoutStack;
class Ruler;
class Scrollbars;
class Stat;
class Window;
} // namespace zavex::vellum

namespace zavex::cadenza {

class Cadenza;

/**
 * The editor: a screen of controls over the running show, described by "layout.xml".
 *
 * Keeps the ruler's markers on the start point and the play head, shows how long frames take, shows
 * and hides itself with TAB, and moves through the show with a game pad. Owns the controls,
 * and with them the effects that were added to its timeline. Must be destroyed before the display.
 *
 * A control directly in the workspace whose identifier is X is as large as the control "place.X"
 * is, where the layout has one, and again whenever the window has another size: a layout of flows
 * says where windows stand that the user then moves at will.
 */
class Gui : public vellum::Callback, public display::Listener {
public:
    static constexpr const char* LAYOUT = "layout.xml";

    /**
     * @param newDisplay  Must not be null; receives the listener that drives the controls.
     * @param app         Not owned; must outlive this object.
     */
    Gui(display::DisplayGL* newDisplay, Cadenza* app);

    /**
     * Builds the screen; call once. The timeline is as long as the show lasts then. It is 1000
     * pixels high, or as high as its bars need.
     *
     * Throws `Exception` when the layout is missing or malformed, or when it has no control, or one
     * of another kind, of the name of one that the editor works with. Without a "workspace" TAB
     * does nothing; without "effects" there is no timeline.
     */
    void setup();

    /** What effects are added to; null when the layout has none. */
    vellum::LayoutStack* getTimeline() const { return mTimeline; }

    vellum::Vellum& getVellum() { return mVellum; }

    /** Fits the ruler to the window or scroll area that has another size; closes the picker. */
    void controlAction(vellum::Control* control, vellum::Action action) override;

    /** TAB shows or hides the editor. Always `WHATEVER`: others see the key, too. */
    int onKeyDown(const display::KeyEvent& event) override;
    void onResize(int width, int height) override;
    void onDraw() override;

    /** Seeks back while button 8 of the game pad is held, and forth while button 9 is. */
    virtual void updatePad();

private:
    static constexpr int NO_PAD = -1;

    template <typename ControlType>
    ControlType& require(const std::string& id);
    void layOutTimeline();
    void fitTimeline();
    void placeWindows();
    void fitRuler(vellum::Control& outer);
    void findPad();
    void countFrame(float time);
    void showSpeed();

    vellum::Vellum mVellum;
    Cadenza* mCadenza; // not owned
    // Of the tree, which owns them; null before `setup`.
    vellum::Ruler* mRuler = nullptr;
    vellum::Stat* mStat = nullptr;
    vellum::Control* mFps = nullptr;
    vellum::Scrollbars* mScrollbars = nullptr;
    vellum::Control* mBody = nullptr;
    vellum::LayoutStack* mTimeline = nullptr; // stays null when the layout has none
    vellum::Window* mPickerWindow = nullptr;
    float mLastTime = -10.0f; // demo time of the frame before, seconds
    float mFrames = 0.0f;     // drawn since the speed was shown
    float mCount = 0.0f;      // demo time that passed in them, milliseconds
    std::string mSpeed;       // kept, so that showing it allocates nothing
    int mPadIndex = NO_PAD;
};

} // namespace zavex::cadenza
