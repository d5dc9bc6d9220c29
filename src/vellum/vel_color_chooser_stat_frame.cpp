#include "vellum/vel_color_chooser_stat_frame.h"

namespace zavex::vellum {} // namespace zavex::vellum
