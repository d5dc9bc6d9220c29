#include "cadenza/cad_gui.h"

#include "cadenza/cad_main.h"
#include "cadenza/cad_picker.h"
#include "cadenza/cad_timeline.h"
#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_event.h"
#include "display/dis_joystick.h"
#include "vellum/vel_button.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_layout_stack.h"
#include "vellum/vel_ruler.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_stat.h"
#include "vellum/vel_window.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace zavex::cadenza {

using display::Joystick;
using vellum::Control;

namespace {

// What the program and the layout call the controls.
constexpr const char* WORKSPACE = "workspace";
constexpr const char* WINDOW = "main_window";
constexpr const char* SCROLLBARS = "main_scrollbars_horisontal";
constexpr const char* RULER = "main_ruler";
constexpr const char* BODY = "main_body";
constexpr const char* TIMELINE = "effects";
constexpr const char* STAT = "main_stat";
constexpr const char* FPS = "fps";
constexpr const char* PLACE = "place."; // stands before the name of what belongs there

constexpr float TIMELINE_MARGIN = 11.0f;   // pixels behind the end of the show
constexpr float TIMELINE_HEIGHT = 1000.0f; // pixels, at least
constexpr float TIMELINE_FOOT = 40.0f;     // pixels that bars, a caption or a scroll bar may cover

constexpr float NO_TIME = -10.0f;        // demo time before the first frame, seconds
constexpr float LONGEST_FRAME = 1000.0f; // milliseconds; what is longer is a pause or a jump
constexpr float SPEED_INTERVAL = 100.0f; // milliseconds between two readings of the speed
constexpr std::size_t SPEED_LENGTH = 29; // characters
constexpr float MILLISECONDS = 1000.0f;  // in a second

constexpr std::size_t BACK_BUTTON = 8;
constexpr std::size_t BACK_AXIS = 12;
constexpr std::size_t FORTH_BUTTON = 9;
constexpr std::size_t FORTH_AXIS = 13;
constexpr float PAD_STEP = 0.1f; // seconds a frame, with the axis at rest

} // namespace

Gui::Gui(display::DisplayGL* newDisplay, Cadenza* app) : mVellum(newDisplay), mCadenza(app)
{
    mSpeed.reserve(SPEED_LENGTH);
}

/** A control that the editor cannot do without. */
template <typename ControlType>
ControlType& Gui::require(const std::string& id)
{
    Control* const control = mVellum.findControl(id);
    if (!control)
        throw Exception("%s: there is no control called '%s'", LAYOUT, id.c_str());
    auto* const found = dynamic_cast<ControlType*>(control);
    if (!found)
        throw Exception("%s: the control '%s' must be a '%s', found a '%s'", LAYOUT, id.c_str(),
                        ControlType().getType().c_str(), control->getType().c_str());
    return *found;
}

void Gui::setup()
{
    mVellum.load(LAYOUT);
    mScrollbars = &require<vellum::Scrollbars>(SCROLLBARS);
    mRuler = &require<vellum::Ruler>(RULER);
    mBody = &require<Control>(BODY);
    mStat = &require<vellum::Stat>(STAT);
    mFps = &require<Control>(FPS);
    mPickerWindow = &require<vellum::Window>(picker::WINDOW);
    auto& window = require<Control>(WINDOW);
    auto& pickerOk = require<vellum::Button>(picker::OK);
    auto& chooser = require<vellum::ColorChooser>(picker::CHOOSER);
    if (mVellum.findControl(TIMELINE))
        mTimeline = &require<vellum::LayoutStack>(TIMELINE);

    placeWindows();
    layOutTimeline();
    for (Control* observed : {static_cast<Control*>(mScrollbars), &window,
                              static_cast<Control*>(&pickerOk), static_cast<Control*>(&chooser)})
        observed->setCallback(this);
    mLastTime = NO_TIME;
    findPad();
}

void Gui::layOutTimeline()
{
    const float width = toPixels(mCadenza->getDemoLength()) + TIMELINE_MARGIN;
    mRuler->setScale(SECONDS_PER_PIXEL);
    mRuler->setArea({0.0f, 0.0f, width, mScrollbars->getArea().getHeight()});
    mBody->setArea({0.0f, 0.0f, width, TIMELINE_HEIGHT});
    mScrollbars->setArea();
}

/** Makes the timeline high enough for its bars: there may be more of them, or lanes unfolded. */
void Gui::fitTimeline()
{
    if (!mTimeline)
        return;
    float height = TIMELINE_HEIGHT;
    for (int i = 0; i < mTimeline->getChildCount(); ++i)
        height = std::max(height, mTimeline->getChild(i)->getArea().mMax.y + TIMELINE_FOOT);
    const Control::Area body = mBody->getArea();
    if (height == body.getHeight())
        return;
    mBody->setArea({0.0f, 0.0f, body.getWidth(), height});
    mScrollbars->setArea();
}

void Gui::placeWindows()
{
    Control* const workspace = mRuler->getRoot();
    for (int i = 0; i < workspace->getChildCount(); ++i) {
        Control* const window = workspace->getChild(i);
        if (Control* const place = mVellum.findControl(PLACE + window->getId()))
            window->setArea(place->getAreaWorld());
    }
}

/** Makes the ruler as high as what it lies in, and lays that out again. */
void Gui::fitRuler(Control& outer)
{
    const float width = mRuler->getArea().getWidth();
    mRuler->setArea({0.0f, 0.0f, width, outer.getArea().getHeight()});
    outer.setArea();
}

void Gui::controlAction(Control* control, vellum::Action)
{
    const std::string& id = control->getId();
    if (id == SCROLLBARS || id == WINDOW)
        fitRuler(*control);
    else if (id == picker::OK)
        mPickerWindow->setVisible(false);
}

int Gui::onKeyDown(const display::KeyEvent& event)
{
    if (event.key != display::KEY_TAB)
        return WHATEVER;

    std::printf("key tab\n");
    if (Control* const workspace = mVellum.findControl(WORKSPACE))
        workspace->setVisible(!workspace->getVisible());
    return WHATEVER;
}

void Gui::onResize(int, int)
{
    if (!mRuler)
        return;
    placeWindows();
    fitRuler(*mScrollbars);
}

void Gui::onDraw()
{
    const float time = mCadenza->getSystemTime();
    mRuler->setShadow(toPixels(mCadenza->getStartTime()));
    mRuler->setShadow2(toPixels(time));
    countFrame(time);
    updatePad();
    fitTimeline();
}

void Gui::countFrame(float time)
{
    const float passed = (time - mLastTime) * MILLISECONDS;
    mLastTime = time;
    mFrames += 1.0f;
    if (!(passed > 0.0f && passed < LONGEST_FRAME))
        return;

    mCount += passed;
    if (mCount > SPEED_INTERVAL)
        showSpeed();
}

void Gui::showSpeed()
{
    const float milliseconds = mCount / mFrames;
    char text[SPEED_LENGTH + 1];
    std::snprintf(text, sizeof(text), "Speed: %.02fms (%.0f fps)", double{milliseconds},
                  double{MILLISECONDS / milliseconds});
    mStat->addValue(milliseconds);
    if (mSpeed != text) {
        mSpeed = text;
        mFps->setCaption(mSpeed);
    }
    mCount = 0.0f;
    mFrames = 0.0f;
}

void Gui::findPad()
{
    Joystick state;
    mPadIndex = 0;
    while (mPadIndex < Joystick::MOST_JOYSTICKS && !mVellum.display->readJoystick(mPadIndex, state))
        ++mPadIndex;
    if (mPadIndex == Joystick::MOST_JOYSTICKS)
        mPadIndex = NO_PAD;
}

void Gui::updatePad()
{
    if (mPadIndex == NO_PAD)
        return;

    Joystick pad;
    mVellum.display->readJoystick(mPadIndex, pad);
    const float now = mCadenza->getSystemTime();
    if (pad.buttons[BACK_BUTTON])
        mCadenza->setTime(now - (1.0f + pad.axes[BACK_AXIS]) * PAD_STEP);
    if (pad.buttons[FORTH_BUTTON])
        mCadenza->setTime(now + (1.0f - pad.axes[FORTH_AXIS]) * PAD_STEP);
}

} // namespace zavex::cadenza
