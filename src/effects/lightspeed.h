#pragma once

#include "cadenza/cad_plugin_spline.h"
#include "cadenza/cad_plugin_trigger.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"
#include "effects/star.h"
#include "mathbase/mb_random.h"
#include "mathbase/mb_vector2.h"

#include <array>
#include <memory>

namespace zavex::effects {

/**
 * A flight through a tunnel of streaks of light, then along a row of glowing plates that tumble as
 * the camera comes near, each with one line of the greetings on its top; and a picture in the
 * middle of the screen.
 *
 * Streaks fly towards the camera while time goes on by less than a second a frame, and come in
 * again at the far end. Everything else is a function of time.
 */
class Lightspeed final : public CommonEffect {
public:
    using Star = effects::Star;

    static constexpr int STREAKS = 1000;
    static constexpr int PLATES = 35; // one for each line of the greetings

    Lightspeed();

    void setup() override;

    /** `STREAKS` streaks and `PLATES` plates; null before `setup`. Sizes are not used. */
    const Star* streaks() const { return mStar.get(); }
    const Star* plates() const { return mCube.get(); }

private:
    void drawFrame(float time, float delta, float progress) override;
    void leave(DrawingStates& left) const override { left.addLight(); }

    /** A plate in sight in this frame. */
    struct Plate {
        display::DisplayObsolete::BoxCorners corners; // seen from the world
        float light;                                  // grows as the camera comes near
        int line;                                     // of the greetings
    };

    void drawStreaks(float time, float delta);
    void advance(Star& streak, float delta);
    void findPlates(float time);
    void drawPlates(float time);
    void drawPlateBodies();
    void drawGreetingsLines();

    std::unique_ptr<Star[]> mStar;
    std::array<mathbase::Vector2f, STREAKS> mDirection{}; // of each streak from the tunnel's axis
    std::unique_ptr<Star[]> mCube;
    display::Shader* mShader = nullptr;     // owned by the display
    display::Texture* mTexture = nullptr;   // the lines; owned by the display
    display::Texture* mGreetings = nullptr; // owned by the display
    cadenza::Spline mSplineGreetings;
    cadenza::Trigger mTriggerExplode; // stored with the show; not used
    mathbase::RandomBase<mathbase::RandomGen_LCG<69069, 5>> mRandom;
    display::DisplayObsolete ds;
    cadenza::Spline mNotFastEnough; // brightness of the streaks
    cadenza::Spline mSplineRotX;
    cadenza::Spline mSplineRotY;
    cadenza::Spline mExplode; // width of the tunnel
    std::array<Plate, PLATES> mVisible{};
    int mVisibleCount = 0;
};

} // namespace zavex::effects
