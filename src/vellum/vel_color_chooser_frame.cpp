#include "vellum/vel_color_chooser_frame.h"

#include "vellum/vel_color_chooser_wheel.h"
#include "vellum/vel_slider.h"

#include <memory>

namespace zavex::vellum {

namespace {

constexpr float SLIDER_WIDTH = 16.0f; // pixels

} // namespace

ColorChooserFrame::ColorChooserFrame()
    : mWheel(addOwn(std::make_unique<ColorChooserWheel>())),
      mSlider(addOwn(std::make_unique<Slider>()))
{
    mType = mId = "colorchooserframe";
    mDirection = DIRECTION_HORISONTAL;
    setPercent(mWheel, 100.0f);
    setSize(mSlider, SLIDER_WIDTH);
    mSlider->setValue(1.0f, true);
}

} // namespace zavex::vellum
