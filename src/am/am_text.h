#pragma once

#include <string>

namespace zavex::am {

/** ASCII letters made small, whatever the user's locale is. */
std::string lowerCase(std::string text);

} // namespace zavex::am
