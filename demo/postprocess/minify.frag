// Halves the picture and keeps what is bright enough to glow.

uniform sampler2D tex;
uniform float width;    // of tex, texels
uniform float cutoff;   // brightness at which everything above it glows in full

varying vec2 position;

const float ONSET = 0.3; // of cutoff: the brightness at which the glow sets in, so that nothing pops

vec3 bright(vec3 colour)
{
    float level = max(colour.r, max(colour.g, colour.b));
    return colour * smoothstep(ONSET * cutoff, cutoff, level);
}

void main()
{
    // Four linear taps a texel apart: a 4 x 4 tent, so that thin lines do not shimmer at half size.
    vec2 texel = vec2(1.0 / width, 0.5 * abs(dFdy(position.y)));
    vec3 sum = bright(texture2D(tex, position + texel * vec2(-1.0, -1.0)).rgb)
             + bright(texture2D(tex, position + texel * vec2(1.0, -1.0)).rgb)
             + bright(texture2D(tex, position + texel * vec2(-1.0, 1.0)).rgb)
             + bright(texture2D(tex, position + texel * vec2(1.0, 1.0)).rgb);
    gl_FragColor = vec4(0.25 * sum, 1.0);
}
