#include "effects/clear.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "effects/common.h"
#include "effects/effect_factory.h"

namespace zavex::effects {

Clear::Clear()
{
    addPlugin("color", mColor);
}

void Clear::drawFrame(float time, float /*delta*/, float /*progress*/)
{
    mDisplay->setFBO(mCommon->mVaddr[0]);
    const mathbase::Vector3f colour = mColor.get(time);
    display::DisplayObsolete::clear({colour.x, colour.y, colour.z, 1.0f}, 1.0f);
}

void Clear::leave(DrawingStates& left) const
{
    left.target = mCommon->mVaddr[0];
}

template cadenza::EffectFactoryBase& factoryOf<Clear>();

} // namespace zavex::effects
