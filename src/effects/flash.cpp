#include "effects/flash.h"

#include "effects/effect_factory.h"

namespace zavex::effects {

using display::BlendFactor;
using display::DisplayObsolete;

Flash::Flash()
{
    addPlugin("flash", mSpline);
}

void Flash::drawFrame(float time, float /*delta*/, float /*progress*/)
{
    beginOverlay(ds);
    DisplayObsolete::setBlendFunction(BlendFactor::SRC_ALPHA, BlendFactor::ONE_MINUS_SRC_ALPHA);
    DisplayObsolete::setColor(0.0f, 0.0f, 0.0f, 2.0f * mSpline.get(time));
    DisplayObsolete::drawBox(-1.0f, -1.0f, 1.0f, 1.0f, DisplayObsolete::SOLID);
}

template cadenza::EffectFactoryBase& factoryOf<Flash>();

} // namespace zavex::effects
