#include "vellum/vel_panel.h"

#include "vellum/vel_area.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_look.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float TEXT_INSET = 8.0f;  // pixels between the edges and the caption
constexpr float MARK_SPACE = 12.0f; // pixels kept for the fold mark at the right

} // namespace

PanelFrame::PanelFrame()
{
    mType = mId = "panelframe";
    mStyle = widgetStyle();
}

void PanelFrame::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pick(mStyle.mBack, Look::NORMAL), area);
    Control::draw(area, parent, clip);
}

Panel::Panel()
{
    mFrame = addOwn(std::make_unique<PanelFrame>());
    mType = mId = "panel";
    mStyle = widgetStyle();
}

void Panel::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    setCaption(element->getValue("caption"));
    loadStyleClass(*mFrame, "panelframe");
    setArea();
}

void Panel::setArea()
{
    const Area own = atOrigin(getArea());
    // Hidden content still gets events where it is, so folded content is nowhere.
    mFrame->setArea(mFolded ? belowTopStrip(own, own.getHeight())
                            : belowTopStrip(own, CAPTION_HEIGHT));
}

void Panel::draw(Area area, Area parent, Area clip)
{
    const Look look = mInactive ? Look::INACTIVE : Look::NORMAL;
    const Area bar = topStrip(area, CAPTION_HEIGHT);
    const float middle = bar.getCenter().y;
    Render& render = getRender();
    drawField(render, mStyle, bar, mCaptionHovered && !mInactive ? Look::HOVERED : look, false);
    drawLabel(render, mStyle, mCaption,
              {Vector2f(bar.mMin.x + TEXT_INSET, middle),
               bar.getWidth() - 2.0f * TEXT_INSET - MARK_SPACE, display::Font::ALIGN_LEFT},
              look);
    drawLabel(render, mStyle, mFolded ? "+" : "-",
              {Vector2f(bar.mMax.x - TEXT_INSET, middle), MARK_SPACE, display::Font::ALIGN_RIGHT},
              look);
    Control::draw(area, parent, clip);
}

void Panel::setFolded(bool folded)
{
    if (folded == mFolded)
        return;
    mFolded = folded;
    if (folded)
        mUnfoldedHeight = mArea.getHeight();
    mFrame->setVisible(!folded);
    mArea.mMax.y = mArea.mMin.y + (folded ? CAPTION_HEIGHT : mUnfoldedHeight);
    setArea();
    if (mParent)
        mParent->childResized();
    sendAction(ACTION_WINDOW_RESIZE);
}

bool Panel::getFolded() const
{
    return mFolded;
}

void Panel::hover(const Event& event)
{
    mCaptionHovered = isOnCaption(event);
}

void Panel::press(const Event& event)
{
    if (isOnCaption(event))
        setFolded(!mFolded);
}

bool Panel::isOnCaption(const Event& event) const
{
    return contains(topStrip(atOrigin(getArea()), CAPTION_HEIGHT), event.mousePos);
}

} // namespace zavex::vellum
