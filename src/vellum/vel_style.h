#pragma once

#include "mathbase/mb_vector4.h"

namespace zavex::vellum {

/** The colours of a control, RGBA with components in 0..1. Each pair is the two ends of a gradient.
 */
struct style { // NOLINT(readability-identifier-naming): reads as a member of Control
    using Color = mathbase::Vector4f;

    /** One set of colour pairs; all zero unless the control's class says otherwise. */
    struct colorInfo { // NOLINT(readability-identifier-naming)
        Color mBorder1{0, 0, 0, 0};
        Color mBorder2{0, 0, 0, 0};
        Color mColor1{0, 0, 0, 0};
        Color mColor2{0, 0, 0, 0};
        Color mHighlight1{0, 0, 0, 0}; // under the pointer
        Color mHighlight2{0, 0, 0, 0};
        Color mPushed1{0, 0, 0, 0}; // pressed or focused
        Color mPushed2{0, 0, 0, 0};
        Color mInactive1{0, 0, 0, 0};
        Color mInactive2{0, 0, 0, 0};

        bool operator==(const colorInfo&) const = default;
    };

    bool operator==(const style&) const = default;

    colorInfo mBack;    // background and frame
    colorInfo mCaption; // caption bar or title
    colorInfo mText;
};

} // namespace zavex::vellum
