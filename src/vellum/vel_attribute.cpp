#include "vellum/vel_attribute.h"

#include "xml/xml_iteratorconst.h"

#include <charconv>
#include <cmath>
#include <string>

namespace zavex::vellum {

std::optional<float> numberAttribute(const xml::IteratorConst& element, std::string_view name)
{
    const std::string_view text = element->getValue(name);
    const std::size_t start = text.find_first_not_of(" +");
    if (start == std::string_view::npos)
        return std::nullopt;
    float number = 0.0f;
    const auto [stop, error] =
        std::from_chars(text.data() + start, text.data() + text.size(), number);
    if (error != std::errc() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

} // namespace zavex::vellum
