#pragma once

namespace zavex::effects {

/**
 * Draws a rectangle in the plane z = 0 that shows all of the texture in use.
 *
 * @param x0, y0      Where the first texel of the first row stands.
 * @param x1, y1      The opposite corner.
 * @param brightness  What the texture is multiplied by; alpha is 1.
 */
void drawPicture(float x0, float y0, float x1, float y1, float brightness);

} // namespace zavex::effects
