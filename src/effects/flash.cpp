#include "effects/flash.h"

namespace zavex::effects {

using display::BlendFactor;
using display::DisplayObsolete;

Flash::Flash()
{
    addPlugin("flash", mSpline);
}

void Flash::draw(float time, float /*delta*/, float /*progress*/)
{
    DisplayObsolete::setProject(mathbase::Matrix4x4Col());
    ds.setCamera();
    ds.setTransform();

    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::SRC_ALPHA, BlendFactor::ONE_MINUS_SRC_ALPHA);
    DisplayObsolete::setColor(0.0f, 0.0f, 0.0f, 2.0f * mSpline.get(time));
    DisplayObsolete::drawBox(-1.0f, -1.0f, 1.0f, 1.0f, DisplayObsolete::SOLID);
    // The effects that follow add their light.
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
}

} // namespace zavex::effects
