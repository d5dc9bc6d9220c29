#pragma once

namespace zavex::display {
class DisplayGL;
class Shader;
} // namespace zavex::display

namespace zavex::effects {

// Bodies of light: a shader gives each face of a closed body a light that grows with its distance
// from the eye. What the faces turned away add, less what those turned to the eye take, grows with
// the way that a ray goes through the body.
//
// Light is added and taken in any order, but a render target of half floats keeps few digits of a
// large sum: bodies that cover each other are best added and taken one soon after the other.

/**
 * The program that gives the light ("volumetric/vol.vert" and "volumetric/vol.frag"); owned by the
 * display.
 */
display::Shader* createVolumeShader(display::DisplayGL& display);

/** From here on what is drawn adds the light of the faces turned away. */
void setupVolumetric(display::DisplayGL& display, display::Shader& shader, float intensity);

/** From here on what is drawn takes away the light of the faces turned to the eye. */
void changeVolumetric();

/** Back from `changeVolumetric` to what `setupVolumetric` has set, to draw the next bodies. */
void repeatVolumetric();

/** No shader, no depth test, no culling, no blending; the blend function is the one for glass. */
void endVolumetric(display::DisplayGL& display);

} // namespace zavex::effects
