#include "vellum/vel_caption.h"

#include "vellum/vel_area.h"
#include "vellum/vel_control_watch.h"
#include "vellum/vel_look.h"
#include "vellum/vel_window.h"

#include "display/dis_font.h"

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float TEXT_INSET = 8.0f; // pixels between the edges and the text
constexpr float MARK_WIDTH = 3.0f; // pixels of the mark at the left edge of the focused window

} // namespace

Caption::Caption()
{
    mType = mId = "caption";
    mCaption.clear();
    mStyle = widgetStyle();
}

Control* Caption::clone()
{
    return new Caption;
}

bool Caption::acceptEvents(Event& event)
{
    return Control::acceptEvents(event) || mClicked;
}

int Caption::handleEvent(Event& event)
{
    const Area area = getArea();
    const bool over = contains(area, event.mousePos) && isShown(*this);
    const Vector2f point = event.mousePos - area.mMin;
    const ControlWatch self(*this);
    const int handled = Control::handleEvent(event);
    Window* const window = self.isGone() ? nullptr : dynamic_cast<Window*>(mParent);
    if (!window || mInactive)
        return handled;

    const bool left = event.button == display::MOUSE_LEFT;
    if (event.type == Event::MOUSE_DOWN && left && over)
        press(*window, point, event.doubleClick);
    else if (event.type == Event::MOUSE_UP && left)
        mClicked = false;
    else if (event.type == Event::MOUSE_MOVE && mClicked)
        window->moveBy(point - mClickedPos);
    return handled;
}

void Caption::setInactive(bool inactive)
{
    Control::setInactive(inactive);
    mClicked = mClicked && !inactive;
}

void Caption::draw(Area area, Area parent, Area clip)
{
    Look look = mMouseOver ? Look::HOVERED : Look::NORMAL;
    if (mClicked)
        look = Look::PRESSED;
    if (mInactive)
        look = Look::INACTIVE;

    Render& render = getRender();
    fillBox(render, pick(mStyle.mBack, look), area);
    if (mParent && hasKeyboardFocus(*mParent))
        fillBox(render, pick(mStyle.mCaption, look),
                Area(area.mMin.x, area.mMin.y, area.mMin.x + MARK_WIDTH, area.mMax.y));
    drawLabel(render, mStyle, mCaption,
              {Vector2f(area.mMin.x + TEXT_INSET, area.getCenter().y),
               area.getWidth() - 2.0f * TEXT_INSET, display::Font::ALIGN_LEFT},
              look);
    Control::draw(area, parent, clip);
}

void Caption::letGo()
{
    mClicked = false;
    Control::letGo();
}

void Caption::press(Window& window, Vector2f point, bool doubleClick)
{
    if (doubleClick) {
        window.toggleMaximized();
    } else if (!window.getMaximized()) {
        mClicked = true;
        mClickedPos = point;
    }
}

} // namespace zavex::vellum
