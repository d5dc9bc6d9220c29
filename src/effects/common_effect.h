#pragma once

#include "cadenza/cad_effect.h"
#include "display/dis_shader.h"

namespace zavex::display {
class Texture;
}

namespace zavex::effects {

class Common;

/**
 * Base of every effect that draws: knows the one `Common` whose targets and camera they share, and
 * holds what several of them do in the same way.
 */
class CommonEffect : public cadenza::Effect {
public:
    /** @param common  Not owned; must outlive this effect. Set right after the effect was created.
     */
    void setCommon(Common* common) { mCommon = common; }

    /** Draws the middle of the span into the shared targets, then clears them. */
    void rehearse() final;

protected:
    /**
     * Draws as `draw` does for a `delta` of 0, and leaves all members of this effect that outlast a
     * frame as they are. The shared camera is put back by the caller.
     *
     * @param time  Seconds since the effect's start.
     */
    virtual void drawUnseen(float time) { draw(time, 0.0f, time / (mEnd - mStart)); }

    /** From a curve's [-1, 1] to [0, 1]. */
    static float unit(float value) { return (value + 1.0f) * 0.5f; }

    /** Sets a uniform of the shader in use. */
    template <typename Value>
    static void setUniform(display::Shader& shader, const char* name, Value value)
    {
        shader.set(shader.getUniformLocation(name), &value, 1);
    }

    /** The scenes' projection: 80 degrees high, as wide as the window, from 0.1 on. */
    void setPerspective(float farPlane) const;

    /**
     * Draws a picture pixel for pixel in the middle of the window, multiplied by a grey level.
     * Projection, camera and transform must be the identity.
     */
    void drawPictureCentred(display::Texture& picture, float brightness) const;

    Common* mCommon = nullptr; // not owned
};

} // namespace zavex::effects
