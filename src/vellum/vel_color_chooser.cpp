#include "vellum/vel_color_chooser.h"

#include "vellum/vel_color_chooser_frame.h"
#include "vellum/vel_color_chooser_stat_frame.h"
#include "vellum/vel_color_chooser_wheel.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_look.h"
#include "vellum/vel_slider.h"

#include <memory>

namespace zavex::vellum {

ColorChooser::ColorChooser()
    : mFrame(addOwn(std::make_unique<ColorChooserFrame>())),
      mStatFrame(addOwn(std::make_unique<ColorChooserStatFrame>()))
{
    mType = mId = "colorchooser";
    mStyle = widgetStyle();
    setPercent(mFrame, 100.0f);
    setSize(mStatFrame, 0.0f);
    mFrame->setCallback(this);
}

void ColorChooser::load(xml::IteratorConst& element)
{
    Flow::load(element);
    loadStyleClass(*mStatFrame, "colorchooser");
}

void ColorChooser::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pairOf(mStyle.mBack), area);
    Flow::draw(area, parent, clip);
}

void ColorChooser::controlAction(Control* control, Action)
{
    const Slider& slider = mFrame->getSlider();
    if (control == &slider)
        mFrame->getWheel().setIntensity(1.0f - slider.getValue(true));
    else if (control != &mFrame->getWheel())
        return;
    sendAction(ACTION_COLOR);
}

mathbase::Vector3f ColorChooser::getColor() const
{
    return mFrame->getWheel().getColor();
}

} // namespace zavex::vellum
