#pragma once

#include "effects/ascii.h"
#include "effects/common.h"
#include "effects/lightspeed.h"
#include "effects/stars.h"
#include "effects/volumetric.h"

#include "mathbase/mb_vector3.h"

namespace zavex::display {
class DisplayGL;
class Shader;
class Texture;
} // namespace zavex::display

/** The scenes' formulas shape by shape: a glBegin and a glEnd each, states set for each house. */
namespace zavex::bench {

/** Curves of one value, but for the path of the road, which is straight from end to end. */
struct Curves {
    float brightness = 0.6f; // "not fast enough"
    float explode = 0.2f;
    float rotX = 0.3f;
    float rotY = -0.2f;
    float greetings = 0.5f;
    float credits = 0.6f; // "code" alone
    mathbase::Vector3f road{0.2f, 0.5f, 1.2f};
    mathbase::Vector3f houses{0.3f, 0.25f, 1.0f};
    mathbase::Vector3f pathStart{-0.2f, -0.92f, -1.0f};
    mathbase::Vector3f pathEnd{0.3f, -0.92f, 1.0f};
};

/** What the scenes load, of the same display. */
struct SceneParts {
    explicit SceneParts(display::DisplayGL& display);

    display::DisplayGL& display;
    display::Texture* ascii;
    display::Texture* greetingsLines;
    display::Texture* greetings;
    display::Texture* threads;
    display::Texture* credits;
    display::Shader* volume;
    display::Shader* body;
};

// One frame each. The state that immediate drawing believes in is the driver's before and after.

void drawStarsPlainly(const SceneParts& parts, const Curves& curves, const effects::Stars& stars,
                      const effects::Common& common);
void drawAsciiPlainly(const SceneParts& parts, const effects::Ascii& ascii, float time);
void drawLightspeedPlainly(const SceneParts& parts, const Curves& curves,
                           const effects::Lightspeed& lightspeed, float time);
void drawVolumetricPlainly(const SceneParts& parts, const Curves& curves,
                           const effects::Volumetric& volumetric, float time, float duration);

} // namespace zavex::bench
