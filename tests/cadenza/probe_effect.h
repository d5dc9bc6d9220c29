#pragma once

#include "cadenza/cad_effect.h"
#include "cadenza/cad_plugin_color.h"
#include "cadenza/cad_plugin_spline.h"
#include "cadenza/cad_plugin_trigger.h"

#include <cstdint>

namespace zavex::test {

/** An effect with a plugin of every kind that notes when it is drawn. */
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
    void draw(float time, float delta, float progress) override
    {
        ++draws;
        last = {time, delta, progress, curve.get(time), beat.get(time)};
    }
    using Effect::draw;

    int setups = 0;
    int draws = 0;
    Drawn last;
    cadenza::Spline curve;
    cadenza::Trigger beat;
    cadenza::Color color;
};

} // namespace zavex::test
