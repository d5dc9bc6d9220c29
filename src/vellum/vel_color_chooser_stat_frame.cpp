#include "vellum/vel_color_chooser_stat_frame.h"

namespace zavex::vellum {

Control* ColorChooserStatFrame::clone()
{
    return new ColorChooserStatFrame;
}

} // namespace zavex::vellum
