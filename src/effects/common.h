#pragma once

#include "cadenza/cad_effect.h"
#include "mathbase/mb_vector3.h"

#include <array>

namespace zavex::display {
class FBO;
class Texture;
} // namespace zavex::display

namespace zavex::effects {

/**
 * Draws nothing: holds the render targets and the camera that the other effects share.
 *
 * The targets have the size of the window at `setup` and keep it when the window is resized. They
 * belong to the display.
 */
class Common final : public cadenza::Effect {
public:
    void setup() override;
    void draw(float time, float delta, float progress) override;
    using Effect::draw;

    /** Makes all targets black and as deep as can be, and leaves drawing to the window. */
    void clearTargets();

    std::array<display::FBO*, 1> mVaddr{};             // window size, with depth
    std::array<display::Texture*, 1> mVaddr_Texture{}; // its colour
    std::array<display::FBO*, 2> mVaddrHalf{};         // half the window's size, no depth
    std::array<display::Texture*, 2> mVaddrHalf_Texture{};

    mathbase::Vector3f from{0.0f, 0.0f, -10.0f}; // shared camera: position
    mathbase::Vector3f to{0.0f, 0.0f, 0.0f};     // target
    float roll = 0.0f;                           // radians
};

} // namespace zavex::effects
