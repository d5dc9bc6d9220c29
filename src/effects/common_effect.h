#pragma once

#include "cadenza/cad_effect.h"
#include "display/dis_immediate.h"
#include "display/dis_shader.h"

#include <array>

namespace zavex::cadenza {
class EffectFactoryBase;
}

namespace zavex::display {
class DisplayObsolete;
class FBO;
class Texture;
} // namespace zavex::display

namespace zavex::effects {

class Common;

/** Drawing states that the display keeps from one effect to the next. */
struct DrawingStates {
    display::Immediate::State state;
    std::array<float, 4> color; // the current one
    display::FBO* target;       // what is drawn into; null for the window

    /** Blending on, (one, one). */
    void addLight();
};

/**
 * Base of every effect that draws: knows the one `Common` whose targets and camera they share,
 * keeps their drawing states apart, and holds what several of them do in the same way.
 *
 * Whatever was drawn before, `drawFrame` may rely on this: light is added (blending (one, one),
 * equation ADD); there is no depth test and no culling, depth is written, front faces run
 * counter-clockwise; no shader, no buffers, no texture on channel 0 and no texturing; the colour is
 * white, lines and points are a pixel wide; and once `clear` has drawn, the target is the shared
 * one. Projection, camera and transform are its own to set: `beginOverlay`, or `setPerspective` and
 * a camera. It may change all of that, since everything but what `leave` names is put back after
 * it. Only the textures of the other channels stay: bind those that a shader asks for.
 */
class CommonEffect : public cadenza::Effect {
public:
    /** Creates nothing unless overridden. */
    void setup() override {}

    /** Draws one frame by `drawFrame`. What overrides this instead answers for all states itself.
     */
    void draw(float time, float delta, float progress) override;
    using Effect::draw;

    /** @param common  Not owned; must outlive this effect. Set right after the effect was created.
     */
    void setCommon(Common* common) { mCommon = common; }

    /** Draws the middle of the span into the shared targets, then clears them. */
    void rehearse() final;

protected:
    /** Draws one frame, with what `draw` is given; nothing unless overridden. */
    virtual void drawFrame([[maybe_unused]] float time, [[maybe_unused]] float delta,
                           [[maybe_unused]] float progress)
    {}

    /**
     * Draws as `drawFrame` does for a `delta` of 0, and leaves all members of this effect that
     * outlast a frame as they are. The shared camera is put back by the caller.
     *
     * @param time  Seconds since the effect's start.
     */
    virtual void drawUnseen(float time) { drawFrame(time, 0.0f, time / (mEnd - mStart)); }

    /** @param left  What `draw` found, to be changed to what it leaves: nothing else by default. */
    virtual void leave([[maybe_unused]] DrawingStates& left) const {}

    /** From a curve's [-1, 1] to [0, 1]. */
    static float unit(float value) { return (value + 1.0f) * 0.5f; }

    /** Sets a uniform of the shader in use. */
    template <typename Value>
    static void setUniform(display::Shader& shader, const char* name, Value value)
    {
        shader.set(shader.getUniformLocation(name), &value, 1);
    }

    /**
     * From here on the window reaches from (-1, -1), its lower left, to (1, 1).
     *
     * @param matrices  Its camera and transform become the identity, as the projection does.
     */
    static void beginOverlay(display::DisplayObsolete& matrices);

    /** The scenes' projection: 80 degrees high, as wide as the window, from 0.1 on. */
    void setPerspective(float farPlane) const;

    /** Width divided by height of the window. */
    float aspect() const;

    /**
     * Draws a picture pixel for pixel in the middle of the window, multiplied by a grey level. The
     * overlay must have begun.
     */
    void drawPictureCentred(display::Texture& picture, float brightness) const;

    Common* mCommon = nullptr; // not owned

private:
    static void beginStates();
    void putBack(const DrawingStates& left) const;
};

/**
 * The factory of an effect of which no more than the name of its class is known: the show needs no
 * header of it. Its source has "effects/effect_factory.h" and, after the class,
 *
 *     template cadenza::EffectFactoryBase& factoryOf<Rings>();
 */
template <typename EffectClass>
cadenza::EffectFactoryBase& factoryOf();

} // namespace zavex::effects
