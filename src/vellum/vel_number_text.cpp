#include "vellum/vel_number_text.h"

#include <cstdio>

namespace zavex::vellum {

const std::string& NumberText::write(float value, int decimals)
{
    char buffer[LONGEST + 1];
    std::snprintf(buffer, sizeof(buffer), "%.*f", decimals, static_cast<double>(value));
    mText.assign(buffer);
    return mText;
}

} // namespace zavex::vellum
