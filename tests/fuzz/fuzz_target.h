#pragma once

#include "support/ogg_pages.h"

#include <cstdint>
#include <span>
#include <string>

namespace zavex::fuzz {

using Bytes = std::span<const std::uint8_t>;

/**
 * A way into the program for bytes that anyone may have made.
 *
 * Each target lies in a source file of its own name. It may refuse an input; what it takes must
 * hold what the target states. Anything else ends the process, which is the finding.
 */
struct Target {
    const char* name;
    void (*run)(Bytes input);

    /** Sets check sums right, without which a reader would look no further; may be null. */
    void (*repair)(std::span<std::uint8_t> input) = nullptr;
};

void documents(Bytes input);
void jpeg(Bytes input);
void layout(Bytes input);
void png(Bytes input);
void script(Bytes input);
void sound(Bytes input);
void zip(Bytes input);
void repairPng(std::span<std::uint8_t> input);

// clang-format off
inline constexpr Target TARGETS[] = {
    {"documents", documents}, {"jpeg", jpeg}, {"layout", layout}, {"png", png, repairPng},
    {"script", script}, {"sound", sound, test::sealOggPages}, {"zip", zip},
};
// clang-format on

/** Ends the process, after a line on standard error, unless `holds`. */
void expect(bool holds, const char* what);

std::string textOf(Bytes input);

} // namespace zavex::fuzz
