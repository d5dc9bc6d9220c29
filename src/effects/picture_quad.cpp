#include "effects/picture_quad.h"

#include "display/dis_display_obsolete.h"

namespace zavex::effects {

using display::DisplayObsolete;
using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

void drawPicture(float x0, float y0, float x1, float y1, float brightness)
{
    const Vector4f opaque(brightness, brightness, brightness, 1.0f);
    DisplayObsolete::drawQuad({
        {Vector3f(x0, y0, 0.0f), Vector2f(0.0f, 0.0f), opaque},
        {Vector3f(x1, y0, 0.0f), Vector2f(1.0f, 0.0f), opaque},
        {Vector3f(x1, y1, 0.0f), Vector2f(1.0f, 1.0f), opaque},
        {Vector3f(x0, y1, 0.0f), Vector2f(0.0f, 1.0f), opaque},
    });
}

} // namespace zavex::effects
