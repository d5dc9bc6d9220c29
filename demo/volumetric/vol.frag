// The light that a body would give if it reached from the eye to this face. What the back faces give
// less what the front faces give is the light of the body: it grows with its thickness and gets lost
// in the distance.

uniform float intensity;

varying vec3 seen;
varying vec3 light;

const float REACH = 9.0;      // distance in which light falls to 1/e
const float BRIGHTEST = 4.0;  // of a component of the light; a body at the eye keeps its hue

void main()
{
    float strongest = max(max(light.r, light.g), max(light.b, BRIGHTEST));
    float depth = REACH * (1.0 - exp(-length(seen) / REACH));
    gl_FragColor = vec4(light * (BRIGHTEST / strongest * intensity * depth), 1.0);
}
