#include "vellum/vel_menu_frame.h"

#include "vellum/vel_look.h"

#include "display/dis_key.h"

#include <cstdint>
#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

/** The rows of a menu that stays open: its submenus open as pop-ups, at a press. */
class Rows final : public Context {
public:
    Control* clone() override { return new Rows; }

protected:
    void hover(const Event& event) override { mSelected = rowAt(event.mousePos); }
    void endHover() override { mSelected = -1; }
    void press(const Event& event) override;
    void pressOther(const Event&) override {}
    bool release(const Event& event) override;

private:
    void openSubmenu(Context& submenu);

    std::int32_t mPressed = -1; // the row that the left button went down on
};

void Rows::press(const Event&)
{
    mPressed = -1;
    auto* row = dynamic_cast<Context*>(getOrder(mSelected));
    if (!row)
        return;
    if (row->getChildCount() > 0)
        openSubmenu(*row);
    else
        mPressed = mSelected;
}

bool Rows::release(const Event&)
{
    const bool chosen = getOrder(mSelected) && mSelected == mPressed;
    mPressed = -1;
    return chosen && chooseRow();
}

void Rows::openSubmenu(Context& submenu)
{
    const Area world = getAreaWorld();
    submenu.setPosition(world.mMin + Vector2f(world.getWidth() + 1.0f, rowOffset(mSelected)));
    setContext(&submenu);
}

} // namespace

MenuFrame::MenuFrame() : mRows(addOwn(std::make_unique<Rows>()))
{
    mType = mId = "menuframe";
    mStyle = widgetStyle();
    mRows->setColors(mStyle);
    mRows->setMaximized(true);
}

void MenuFrame::loadStyle(xml::IteratorConst& element)
{
    Frame::loadStyle(element);
    mRows->setColors(mStyle);
}

void MenuFrame::choose(const std::string& action)
{
    if (!mParent)
        return;
    Event choice;
    choice.type = Event::CONTEXT;
    choice.action = action;
    mParent->handleEvent(choice);
}

void MenuFrame::sendContextAction(Context* context, const std::string& action)
{
    if (mParent)
        mParent->sendContextAction(context, action);
}

void MenuFrame::draw(Area area, Area parent, Area clip)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the rows have body and border of their own
    Control::draw(area, parent, clip);
}

} // namespace zavex::vellum
