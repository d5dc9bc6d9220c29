#include "vellum/vel_workspace.h"

#include "vellum/vel_context.h"
#include "vellum/vel_control_watch.h"

#include "display/dis_display.h"
#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <utility>

namespace zavex::vellum {

namespace {

constexpr const char* STANDARD_FONT = "fonthelvete2.png";

/** What the tree is drawn in and clipped to: more than any window. */
constexpr float EVERYWHERE = 10000.0f; // pixels

const Control::Area ALL(0.0f, 0.0f, EVERYWHERE, EVERYWHERE);

} // namespace

Workspace::Workspace()
{
    mType = mId = "workspace";
}

void Workspace::load(xml::IteratorConst& element)
{
    Control::load(element);
    if (mParent)
        return;
    const std::string& font = element->getValue("font");
    mRender.setup(mDisplay, font.empty() ? STANDARD_FONT : font);
}

void Workspace::loadStyle(xml::XmlParser* document)
{
    mStyleTag = document;
}

xml::IteratorConst Workspace::getStyle(const std::string& name) const
{
    return mStyleTag ? std::as_const(*mStyleTag).createIterator(name) : Control::getStyle(name);
}

void Workspace::setDisplay(display::DisplayGL* display)
{
    mDisplay = display;
    mRender.setDisplay(display);
}

display::DisplayGL* Workspace::getDisplay() const
{
    return mParent ? Control::getDisplay() : mDisplay;
}

Render& Workspace::getRender()
{
    return mParent ? Control::getRender() : mRender;
}

int Workspace::handleEvent(Event& event)
{
    if (!getVisible())
        return 0;
    const std::optional<int> answer = mContext ? passToMenu(event) : std::nullopt;
    return answer ? *answer : Control::handleEvent(event);
}

void Workspace::setContext(Context* context)
{
    if (mParent) {
        Control::setContext(context);
        return;
    }
    if (!context->getParent())
        context->setParent(this);
    mContext = context;
    mContext->open();
    mContextFirst = true;
}

void Workspace::resetContext()
{
    mContext = nullptr;
    Control::resetContext();
}

Workspace* Workspace::getWorkspace()
{
    return mParent ? Control::getWorkspace() : this;
}

void Workspace::draw()
{
    if (!getVisible())
        return;
    draw(ALL, ALL, ALL);
    if (mContext)
        drawMenu();
}

void Workspace::setCopyString(const std::string& text)
{
    mCopyString = text;
}

const std::string& Workspace::getCopyString() const
{
    return mCopyString;
}

/**
 * Releases the left button where no control is: it reaches those alone that hold on to the pointer.
 * Their observers may destroy this workspace.
 */
void Workspace::letGo()
{
    if (mContext)
        resetContext();
    Event leave;
    leave.type = Event::RESET;
    Control::handleEvent(leave);
    Event release;
    release.type = Event::MOUSE_UP;
    release.button = display::MOUSE_LEFT;
    release.mousePos = release.mousePosWorld = mathbase::Vector2f(-EVERYWHERE, -EVERYWHERE);
    Control::handleEvent(release);
}

/** The answer to an event that goes no further than the menu; empty for one that does. */
std::optional<int> Workspace::passToMenu(Event& event)
{
    Context* const menu = mContext;
    const bool lettingThrough = menu->getParent()->letsEventsThrough();
    const ControlWatch self(*this);
    const ControlWatch menuWatch(*menu);
    const int handled = menu->handleEvent(event);
    if (self.isGone())
        return 0;
    if (menuWatch.isGone() && mContext == menu)
        resetContext();

    if (event.type == Event::MOUSE_UP && event.button == display::MOUSE_LEFT) {
        if (!mContextFirst)
            resetContext();
        mContextFirst = false;
    }
    if (event.type == Event::KEY_DOWN && handled != 0)
        return handled;
    const bool blocking = mContext || event.type == Event::MOUSE_DOWN;
    return blocking && !lettingThrough ? std::optional(0) : std::nullopt;
}

void Workspace::drawMenu()
{
    const display::WindowMode& window = mDisplay->getWindowMode();
    mRender.setClipArea(ALL);
    mContext->draw(
        mContext->getArea(), ALL,
        Area(0.0f, 0.0f, static_cast<float>(window.width), static_cast<float>(window.height)));
}

} // namespace zavex::vellum
