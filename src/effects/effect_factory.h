#pragma once

#include "cadenza/cad_factory.h"
#include "effects/common_effect.h"

#include <concepts>

namespace zavex::effects {

// Included by the sources of effects alone: it takes to know the class.
template <typename EffectClass>
cadenza::EffectFactoryBase& factoryOf()
{
    static_assert(std::derived_from<EffectClass, CommonEffect>);
    static cadenza::EffectFactory<EffectClass> factory; // holds no state
    return factory;
}

} // namespace zavex::effects
