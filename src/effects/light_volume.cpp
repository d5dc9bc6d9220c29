#include "effects/light_volume.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_shader.h"

namespace zavex::effects {

using display::BlendEquation;
using display::BlendFactor;
using display::DisplayObsolete;
using display::Winding;

display::Shader* createVolumeShader(display::DisplayGL& display)
{
    display::Shader* const shader = display.createShader(nullptr);
    shader->attach("volumetric/vol.vert", "volumetric/vol.frag");
    return shader;
}

void setupVolumetric(display::DisplayGL& display, display::Shader& shader, float intensity)
{
    DisplayObsolete::setDepthTest(true);
    DisplayObsolete::setDepthWriting(false);
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setFaceCulling(true);
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
    display.setShader(&shader);
    shader.set(shader.getUniformLocation("intensity"), &intensity, 1);
    repeatVolumetric();
}

void changeVolumetric()
{
    DisplayObsolete::setBlendEquation(BlendEquation::REVERSE_SUBTRACT);
    DisplayObsolete::setFrontFace(Winding::COUNTER_CLOCKWISE);
}

void repeatVolumetric()
{
    DisplayObsolete::setBlendEquation(BlendEquation::ADD);
    DisplayObsolete::setFrontFace(Winding::CLOCKWISE);
}

void endVolumetric(display::DisplayGL& display)
{
    display.setShader(nullptr);
    DisplayObsolete::setBlendEquation(BlendEquation::ADD);
    DisplayObsolete::setDepthWriting(true);
    DisplayObsolete::setDepthTest(false);
    DisplayObsolete::setFaceCulling(false);
    DisplayObsolete::setBlendFunction(BlendFactor::SRC_ALPHA, BlendFactor::ONE_MINUS_SRC_ALPHA);
    DisplayObsolete::setBlending(false);
}

} // namespace zavex::effects
