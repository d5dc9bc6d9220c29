#pragma once

// What the layout calls the controls of the colour picker that all gradients share.

namespace zavex::cadenza::picker {

inline constexpr const char* CHOOSER = "picker";
inline constexpr const char* WINDOW = "picker_window"; // hidden until a gradient needs it
inline constexpr const char* OK = "picker_ok";         // the button that closes it

} // namespace zavex::cadenza::picker
