#include "vellum/vel_menu.h"

#include "vellum/vel_menu_frame.h"

#include "xml/xml_iteratorconst.h"

#include <memory>

namespace zavex::vellum {

Menu::Menu() : mFrame(addOwn(std::make_unique<MenuFrame>()))
{
    mType = mId = "menu";
    setPercent(mFrame, 100.0f);
    Menu::setCaption("menu");
}

void Menu::load(xml::IteratorConst& element)
{
    const std::string& styleClass = element->getValue("class");
    loadStyleClass(*mFrame, styleClass.empty() ? mFrame->getType() : styleClass);
    Flow::load(element);
    getRows().loadItems(element);
}

void Menu::loadStyle(xml::IteratorConst& element)
{
    Flow::loadStyle(element);
    mFrame->loadStyle(element);
}

void Menu::setCaption(const std::string& caption)
{
    Flow::setCaption(caption);
    getRows().setCaption(caption);
}

Context& Menu::getRows()
{
    return mFrame->getRows();
}

} // namespace zavex::vellum
