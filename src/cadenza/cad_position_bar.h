#pragma once

#include <array>
#include <string_view>

namespace zavex::cadenza {

/** Where the position bar may be, from above, in the words of the settings. */
inline constexpr std::array OSD_LOCATIONS = {"top", "middle", "bottom"};

/** The index of the location of that name; 0 for any other text. */
int osdLocation(std::string_view name);

/**
 * Draws the position bar with two marks. Sets matrices, tests, blending and width of lines.
 *
 * @param location    Index of one of `OSD_LOCATIONS`.
 * @param start, now  Where the show starts and where it is, as parts of the song's length.
 */
void drawPositionBar(int location, float start, float now);

} // namespace zavex::cadenza
