#pragma once

#include "cadenza/cad_plugin_color.h"
#include "cadenza/cad_plugin_spline.h"
#include "cadenza/cad_plugin_trigger.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"
#include "effects/plasma_field.h"

#include <array>

namespace zavex::display {
class Shader;
class Texture;
} // namespace zavex::display

namespace zavex::effects {

/**
 * The opening scene: a cube of additive boxes that follow an interference pattern and swell on
 * every beat, two picture panels beside it and a picture in the middle of the screen.
 *
 * Levels, phase and the time of the latest beat persist when time jumps.
 */
class Plasma final : public CommonEffect {
public:
    Plasma();

    void setup() override;

private:
    void drawFrame(float time, float delta, float progress) override;
    void drawUnseen(float time) override;
    void leave(DrawingStates& left) const override;

    float beat(float time);
    void advanceCells(float time, float delta);
    void drawScene(float time, float beat);
    void placeCamera(float time);
    void drawCells(float time, float beat);
    void drawPanels(float time);
    void drawInvitation(float time);

    PlasmaField mPlasma;
    cadenza::Color mColor;
    std::array<display::Texture*, 2> mLogoTexture{}; // owned by the display
    display::Texture* mInvite = nullptr;             // owned by the display
    cadenza::Spline mSplineInvite;
    display::Shader* mShader = nullptr; // owned by the display
    cadenza::Spline mStop;
    cadenza::Spline mCamera;
    cadenza::Spline mLogo1;
    cadenza::Spline mLogo2;
    cadenza::Spline mDrop;
    float mCurrent = 0.0f; // phase of the pattern, radians
    cadenza::Spline mBeatSpline;
    float mBeatTime = 0.0f; // of the latest beat, seconds since the effect's start
    cadenza::Trigger mBeatTrigger;
    cadenza::Spline mHammertime;
    display::DisplayObsolete ds;
};

} // namespace zavex::effects
