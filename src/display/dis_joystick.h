#pragma once

#include <array>
#include <cstddef>

namespace zavex::display {

/** What is held and moved on a joystick or game pad. What the device does not have reads as 0. */
struct Joystick {
    static constexpr int MOST_JOYSTICKS = 16; // that can be plugged in, numbered from 0
    static constexpr std::size_t CONTROLS = 28;

    std::array<bool, CONTROLS> buttons{}; // true while held
    std::array<float, CONTROLS> axes{};   // in -1..1
};

} // namespace zavex::display
