#pragma once

#include "mathbase/mb_splinebase.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string_view>

// What everything that shows, edits or stores a curve has in common.

namespace zavex::vellum {

/** What a mode of a curve is called. */
template <typename Mode>
struct ModeWords {
    Mode mode;
    const char* saved; // in files
    const char* shown; // in menus
};

using InterpolationWords = ModeWords<mathbase::SplineFloat::InterpolationMode>;
using ExtrapolationWords = ModeWords<mathbase::SplineFloat::ExtrapolationMode>;

/** In the order of the menu. */
inline constexpr InterpolationWords INTERPOLATIONS[] = {
    {mathbase::SplineFloat::SQUARE, "square", "square"},
    {mathbase::SplineFloat::LINEAR, "linear", "linear"},
    {mathbase::SplineFloat::SMOOTH, "smooth", "smooth"},
};

/** In the order of the menu. */
inline constexpr ExtrapolationWords EXTRAPOLATIONS[] = {
    {mathbase::SplineFloat::EXT_CONSTANT,   "constant", "none"     },
    {mathbase::SplineFloat::EXT_REPEAT,     "repeat",   "identical"},
    {mathbase::SplineFloat::EXT_REPEAT_ADD, "add",      "added"    },
};

/** The mode of this word; empty for any other text. @param column  Which of its words it is. */
template <typename Mode, std::size_t COUNT>
std::optional<Mode> modeOf(const ModeWords<Mode> (&table)[COUNT], std::string_view word,
                           const char* ModeWords<Mode>::*column = &ModeWords<Mode>::saved)
{
    const auto* const found = std::ranges::find(table, word, column);
    return found != std::end(table) ? std::optional(found->mode) : std::nullopt;
}

/** What a mode is called in files; `otherwise` for what is none of the table's. */
template <typename Mode, std::size_t COUNT>
const char* savedWord(const ModeWords<Mode> (&table)[COUNT], Mode mode, const char* otherwise = "")
{
    const auto* const found = std::ranges::find(table, mode, &ModeWords<Mode>::mode);
    return found != std::end(table) ? found->saved : otherwise;
}

/** Makes indices of keys, -1 for none, stay with theirs when one was added. */
void followAddedKey(std::initializer_list<std::int32_t*> indices, std::int32_t added);

/** Makes indices of keys stay with theirs when one was removed; that one's become -1. */
void followRemovedKey(std::initializer_list<std::int32_t*> indices, std::int32_t removed);

} // namespace zavex::vellum
