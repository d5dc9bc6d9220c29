#include "vellum/vel_window.h"

#include "vellum/vel_caption.h"
#include "vellum/vel_look.h"

#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

WindowFrame::WindowFrame(Window* window) : mWindow(window)
{
    mType = mId = "windowframe";
}

bool WindowFrame::moveCorner(Vector2f corner)
{
    if (mWindow && mWindow->getMaximized())
        return false;
    if (mWindow)
        mWindow->resizeFrame(corner);
    else
        setArea(Area(getArea().mMin, corner));
    return true;
}

Window::Window() : mCaptionbar(addOwn(std::make_unique<Caption>(this)))
{
    mFrame = addOwn(std::make_unique<WindowFrame>(this));
    mType = mId = "window";
    mStyle.mBack.mBorder1 = mStyle.mBack.mBorder2 = style::Color(0.0f, 0.0f, 0.0f, 1.0f);
    mStyle.mBack.mColor1 = style::Color(0.4f, 1.1f, 0.4f, 1.0f);
    mStyle.mBack.mColor2 = style::Color(0.3f, 0.0f, 0.2f, 1.0f);
    setSize(mCaptionbar, CAPTION_HEIGHT);
    setPercent(mFrame, 100.0f);
}

void Window::load(xml::IteratorConst& element)
{
    Flow::load(element);
    setCaption(element->getValue("caption"));
    const std::string frameClass = element->getValue("class");
    loadStyleClass(*mFrame, frameClass.empty() ? "windowframe" : frameClass);
    loadStyleClass(*mCaptionbar, "caption");
}

void Window::setCaption(const std::string& caption)
{
    mCaptionbar->setCaption(caption);
}

const std::string& Window::getCaption() const
{
    return mCaptionbar->getCaption();
}

void Window::setPosition(Vector2f position)
{
    if (mParent) {
        const Vector2f room = mParent->getArea().getSize() - mArea.getSize();
        position.x = std::max(std::min(position.x, room.x), 0.0f);
        position.y = std::max(std::min(position.y, room.y), 0.0f);
    }
    Flow::setPosition(position);
}

void Window::draw(Area area, Area parent, Area clip)
{
    Render& render = getRender();
    fillBox(render, pairOf(mStyle.mBack), area);
    Flow::draw(area, parent, clip);
    // Bar and frame reach to the edges: the border goes over them.
    render.setClipArea(clip);
    drawBorder(render, borderOf(mStyle.mBack), area);
}

void Window::moveBy(Vector2f movement)
{
    setPosition(mArea.mMin + movement);
}

void Window::toggleMaximized()
{
    setMaximized(!getMaximized());
    setArea();
    sendAction(ACTION_WINDOW_RESIZE);
}

void Window::resizeFrame(Vector2f corner)
{
    setArea(Area(mArea.mMin, mArea.mMax + corner - mFrame->getArea().mMax));
}

} // namespace zavex::vellum
