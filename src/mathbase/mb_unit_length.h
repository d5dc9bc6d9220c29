#pragma once

#include "common/zvx_system.h"

namespace zavex::mathbase {

/**
 * The factor that brings a vector of `length` to unit length. A vector of 1e-10 or less has no
 * direction to keep: that is logged, and the factor 1 leaves it as it is, so that one degenerate
 * frame does not end the show.
 */
inline float toUnitLength(long double length)
{
    if (length > 0.0000000001f)
        return static_cast<float>(1.0L / length);
    ZVX_LOG("log", "app", "length>0.0000000001f: a vector of length %Lg is not normalised", length);
    return 1.0f;
}

} // namespace zavex::mathbase
