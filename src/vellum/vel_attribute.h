#pragma once

#include <optional>
#include <string_view>

namespace zavex::xml {
class IteratorConst;
}

namespace zavex::vellum {

/**
 * The number that an attribute begins with; empty when it is absent, is no number, or one that is
 * not finite. So what an element leaves out, or garbles, stays as a style or the class has set it.
 */
std::optional<float> numberAttribute(const xml::IteratorConst& element, std::string_view name);

} // namespace zavex::vellum
