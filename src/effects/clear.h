#pragma once

#include "cadenza/cad_plugin_color.h"
#include "effects/common_effect.h"

namespace zavex::effects {

/** Begins the picture of a frame: binds the shared target and clears it to an animated colour. */
class Clear final : public CommonEffect {
public:
    Clear();

private:
    void drawFrame(float time, float delta, float progress) override;
    void leave(DrawingStates& left) const override;

    cadenza::Color mColor;
};

} // namespace zavex::effects
