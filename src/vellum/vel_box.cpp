#include "vellum/vel_box.h"

#include "vellum/vel_area.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_look.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float TEXT_INSET = 4.0f; // pixels between the edges and the caption

} // namespace

Box::Box()
{
    mFrame = addOwn(std::make_unique<BoxFrame>());
    mType = mId = "box";
    mStyle = widgetStyle();
}

void Box::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    setCaption(element->getValue("caption"));
    loadStyleClass(*mFrame, "boxframe");
    setArea();
}

void Box::setArea()
{
    mFrame->setArea(belowTopStrip(atOrigin(getArea()), CAPTION_HEIGHT));
}

void Box::draw(Area area, Area parent, Area clip)
{
    const Look look = mInactive ? Look::INACTIVE : Look::NORMAL;
    drawLabel(getRender(), mStyle, mCaption,
              {Vector2f(area.mMin.x + TEXT_INSET, area.mMin.y + CAPTION_HEIGHT / 2.0f),
               area.getWidth() - 2.0f * TEXT_INSET, display::Font::ALIGN_LEFT},
              look);
    Control::draw(area, parent, clip);
}

void Box::press(const Event& event)
{
    const bool onCaption = contains(topStrip(atOrigin(getArea()), CAPTION_HEIGHT), event.mousePos);
    mDragged = onCaption && mParent && mParent->letsBoxesMove();
}

void Box::drag(const Event& event)
{
    setPosition(mArea.mMin - event.mouseDelta);
}

} // namespace zavex::vellum
