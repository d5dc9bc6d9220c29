#include "vellum/vel_caption.h"

#include "vellum/vel_look.h"
#include "vellum/vel_window.h"

#include "display/dis_font.h"

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float TEXT_INSET = 8.0f; // pixels between the edges and the text
constexpr float MARK_WIDTH = 3.0f; // pixels of the mark at the left edge of the focused window

} // namespace

Caption::Caption(Window* window) : mWindow(window)
{
    mType = mId = "caption";
    mCaption.clear();
    mStyle = widgetStyle();
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

void Caption::press(const Event& event)
{
    if (!mWindow || !isInside(event))
        return;
    if (event.doubleClick) {
        mWindow->toggleMaximized();
    } else if (!mWindow->getMaximized()) {
        mClicked = true;
        mClickedPos = event.mousePos;
    }
}

void Caption::drag(const Event& event)
{
    if (mWindow)
        mWindow->moveBy(event.mousePos - mClickedPos);
}

} // namespace zavex::vellum
