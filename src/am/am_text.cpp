#include "am/am_text.h"

#include <algorithm>

namespace zavex::am {

std::string lowerCase(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

} // namespace zavex::am
