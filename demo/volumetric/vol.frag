// The light that a body would give if it reached from the eye to this face. What the back faces give
// less what the front faces give is the light of the body: it grows with its thickness, gets lost in
// the distance, and does not blind an eye that passes through it.

uniform float intensity;

varying vec3 seen;
varying vec3 light;

const float REACH = 9.0;      // distance in which light falls to 1/e
const float NEAR = 1.5;       // distance within which a body gives less and less light
const float BRIGHTEST = 4.0;  // of a component of the light; a body at the eye keeps its hue

// The integral of exp(-x / REACH) (1 - exp(-x / NEAR)) from the eye to `far`.
float depthOf(float far)
{
    float both = REACH * NEAR / (REACH + NEAR);
    return REACH * (1.0 - exp(-far / REACH)) - both * (1.0 - exp(-far / both));
}

void main()
{
    float strongest = max(max(light.r, light.g), max(light.b, BRIGHTEST));
    gl_FragColor = vec4(light * (BRIGHTEST / strongest * intensity * depthOf(length(seen))), 1.0);
}
