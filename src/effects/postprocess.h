#pragma once

#include "cadenza/cad_plugin_spline.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"

namespace zavex::display {
class Shader;
} // namespace zavex::display

namespace zavex::effects {

/**
 * Ends the picture of a frame: shows the shared target with its glow and grain on the screen, in
 * the tones of the show.
 *
 * Outside its span nothing is shown. Both curves are mapped from [-1, 1] to [0, 1].
 */
class PostProcess final : public CommonEffect {
public:
    PostProcess();

    void setup() override;

private:
    void drawFrame(float time, float delta, float progress) override;
    void drawUnseen(float time) override { present(time, 0.0f); }
    void leave(DrawingStates& left) const override;

    void present(float time, float noiseSeed);
    void drawQuad();
    void minify();
    void blur();
    void combine(float time, float noiseSeed);

    display::Shader* mGlowHor = nullptr; // owned by the display, as all four
    display::Shader* mGlowVer = nullptr;
    display::Shader* mCombineShader = nullptr;
    display::Shader* mMinifyShader = nullptr;
    cadenza::Spline mGlow;
    cadenza::Spline mGlowNoise;
    display::DisplayObsolete ds;
};

} // namespace zavex::effects
