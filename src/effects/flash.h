#pragma once

#include "cadenza/cad_plugin_spline.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"

namespace zavex::effects {

/** Darkens the picture: a black layer of twice the curve's value as alpha, so 0.5 is full black. */
class Flash final : public CommonEffect {
public:
    Flash();

private:
    void drawFrame(float time, float delta, float progress) override;
    void leave(DrawingStates& left) const override { left.addLight(); }

    cadenza::Spline mSpline;
    display::DisplayObsolete ds;
};

} // namespace zavex::effects
