#include "cadenza/cad_position_bar.h"

#include "display/dis_display_obsolete.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_vector4.h"

#include <algorithm>

namespace zavex::cadenza {

namespace {

using display::DisplayObsolete;
using mathbase::Vector4f;

// In normalised device coordinates.
constexpr float HALF_WIDTH = 0.98f;
constexpr float HALF_HEIGHT = 0.03f;
constexpr float MARK_WIDTH = 0.005f;
constexpr float MARK_HALF_HEIGHT = 0.028f;
constexpr float CENTRE = 0.9313726f; // distance of an outer location from the middle

constexpr float LINE_WIDTH = 1.0f; // pixels

void drawMark(float progress, float centre, const Vector4f& colour)
{
    const float x = HALF_WIDTH * (2.0f * progress) - HALF_WIDTH;
    DisplayObsolete::setColor(colour);
    DisplayObsolete::drawBox(x, centre - MARK_HALF_HEIGHT, x + MARK_WIDTH,
                             centre + MARK_HALF_HEIGHT, DisplayObsolete::SOLID);
}

void drawFrame(float centre, const Vector4f& colour, DisplayObsolete::FillMode mode)
{
    DisplayObsolete::setColor(colour);
    DisplayObsolete::drawBox(-HALF_WIDTH, centre - HALF_HEIGHT, HALF_WIDTH, centre + HALF_HEIGHT,
                             mode);
}

} // namespace

int osdLocation(std::string_view name)
{
    const auto* const found = std::ranges::find(OSD_LOCATIONS, name);
    return found != OSD_LOCATIONS.end() ? static_cast<int>(found - OSD_LOCATIONS.begin()) : 0;
}

void drawPositionBar(int location, float start, float now)
{
    DisplayObsolete drawing;
    DisplayObsolete::setProject(drawing.getTransform());
    drawing.setCamera();
    DisplayObsolete::setFaceCulling(false);
    DisplayObsolete::setDepthTest(false);
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setLineWidth(LINE_WIDTH);

    const float centre = static_cast<float>(location - 1) * -CENTRE;
    drawFrame(centre, {0.0f, 0.0f, 0.0f, 0.6f}, DisplayObsolete::SOLID);
    drawMark(start, centre, {0.0f, 1.0f, 0.0f, 0.6f});
    drawMark(now, centre, {1.0f, 1.0f, 1.0f, 0.8f});
    drawFrame(centre, {0.0f, 0.0f, 0.0f, 1.0f}, DisplayObsolete::WIRE);
}

} // namespace zavex::cadenza
