#pragma once

#include "cadenza/cad_effect.h"
#include "cadenza/cad_plugin_color.h"
#include "cadenza/cad_plugin_spline.h"
#include "cadenza/cad_plugin_trigger.h"

#include <cstdint>
#include <functional>

namespace zavex::test {

/** An effect with a plugin of every kind that notes what is asked of it. */
class ProbeEffect final : public cadenza::Effect {
public:
    struct Drawn {
        float time = 0.0f;
        float delta = 0.0f;
        float progress = 0.0f;
        float curve = 0.0f;
        std::uint32_t beats = 0;

        bool operator==(const Drawn&) const = default;
    };

    ProbeEffect()
    {
        addPlugin("curve", curve);
        addPlugin("beat", beat);
        addPlugin("color", color);
    }

    void setup() override { ++setups; }
    void rehearse() override { rehearsals += draws == 0 && setups == 1 ? 1 : 100; }
    void draw(float time, float delta, float progress) override
    {
        ++draws;
        last = {time, delta, progress, curve.get(time), beat.get(time)};
        if (onDraw)
            onDraw();
    }
    using Effect::draw;

    int setups = 0;
    int rehearsals = 0; // in their time, between the set-up and the first frame
    int draws = 0;
    Drawn last;
    std::function<void()> onDraw;
    cadenza::Spline curve;
    cadenza::Trigger beat;
    cadenza::Color color;
};

} // namespace zavex::test
