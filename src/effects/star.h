#pragma once

#include "mathbase/mb_vector3.h"

namespace zavex::effects {

/** One of the many small things that an effect strews by chance. */
struct Star {
    mathbase::Vector3f mColor;
    mathbase::Vector3f mPos;
    mathbase::Vector3f mSize;
};

} // namespace zavex::effects
