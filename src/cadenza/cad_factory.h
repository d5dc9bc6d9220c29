#pragma once

namespace zavex::cadenza {

class Effect;

/** Makes effects of one class. Holds no state; the program owns it. */
class EffectFactoryBase {
public:
    /** A new effect, owned by the caller. */
    virtual Effect* create() = 0;

protected:
    EffectFactoryBase() = default;
    EffectFactoryBase(const EffectFactoryBase&) = default;
    EffectFactoryBase(EffectFactoryBase&&) = default;
    EffectFactoryBase& operator=(const EffectFactoryBase&) = default;
    EffectFactoryBase& operator=(EffectFactoryBase&&) = default;
    ~EffectFactoryBase() = default; // not virtual: nothing is deleted through the base
};

/** The factory of the effect class `EffectClass`. */
template <typename EffectClass>
class EffectFactory final : public EffectFactoryBase {
public:
    EffectClass* create() override { return new EffectClass; }
};

} // namespace zavex::cadenza
