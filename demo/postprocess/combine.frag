// The picture, its glow over it, toned, darker towards the corners, and film grain over all.
//
// Every pass before this one mirrored its picture: the original has been drawn once, bottom row
// first, and the glow three more times, so only the original is turned over here.

uniform sampler2D originalTexture;
uniform sampler2D glowTexture;
uniform float time;       // seconds
uniform float r;          // in [0, 1), another one each frame
uniform float glow;       // in 0..1
uniform float glownoise;  // in 0..1

varying vec2 position;

const float GLOW_GAIN = 1.5;
const float GRAIN = 0.16;      // amplitude of full noise where the picture is half bright
const float SHOULDER = 0.75;   // brightness from which highlights are rolled off

const vec3 SHADE = vec3(0.30, 0.26, 1.0);   // hue that a faint light without one takes: indigo
const vec3 SHINE = vec3(0.22, 0.84, 1.0);   // and a bright one: cyan; the brightest stay white
const float AMBER = 0.6;                    // share of its red that a warm light has as green
const float CORNER = 0.4;                   // share of the light that is lost in the corners

// Where a change begins and where it is complete.
const vec2 SHINES = vec2(0.05, 0.7);   // brightness: from SHADE to SHINE
const vec2 BURNS = vec2(0.6, 0.88);    // brightness: to white
const vec2 WARMS = vec2(0.1, 0.5);     // red over blue, of the brightness: to amber
const vec2 COLOURS = vec2(0.05, 0.4);  // saturation: from toned to as it is
const vec2 DARKENS = vec2(0.5, 2.0);   // squared distance from the middle; a corner has 2

float ramp(vec2 edges, float x)
{
    return smoothstep(edges.x, edges.y, x);
}

// A hash without sine, so that every driver draws the same grain.
float noise(vec2 cell, float seed)
{
    vec3 p = fract(vec3(cell.xyx) * 0.1031 + seed);
    p += dot(p, p.yzx + 33.33);
    return fract((p.x + p.y) * p.z);
}

// Triangular in -1..1: the sum of two even distributions.
float grain(vec2 cell, float seed)
{
    return noise(cell, seed) + noise(cell + 17.0, seed + 0.37) - 1.0;
}

vec3 rollOff(vec3 colour)
{
    vec3 over = max(colour - SHOULDER, 0.0);
    return min(colour, SHOULDER) + (1.0 - SHOULDER) * (1.0 - exp(-over / (1.0 - SHOULDER)));
}

// Gives light without a hue one of the show's, and makes amber of what has more red than blue.
vec3 tone(vec3 colour)
{
    float peak = max(colour.r, max(colour.g, colour.b));
    float low = min(colour.r, min(colour.g, colour.b));
    float hue = (peak - low) / max(peak, 1.0e-4);
    vec3 tint = mix(SHADE, SHINE, ramp(SHINES, peak));
    tint = mix(tint, vec3(1.0), ramp(BURNS, peak));
    colour.g = mix(colour.g, AMBER * colour.r, ramp(WARMS, (colour.r - colour.b) / max(peak, 1.0e-4)));
    return mix(peak * tint, colour, ramp(COLOURS, hue));
}

void main()
{
    vec3 colour = texture2D(originalTexture, vec2(position.x, 1.0 - position.y)).rgb;
    colour += GLOW_GAIN * max(glow, 0.0) * texture2D(glowTexture, position).rgb;
    vec2 aside = 2.0 * position - 1.0;
    colour *= 1.0 - CORNER * ramp(DARKENS, dot(aside, aside));
    colour = tone(rollOff(max(colour, 0.0)));

    // Grain lives in the light; the last term dithers away the banding of eight bits. Both leave
    // black alone.
    float seed = r + fract(time * 0.61803);
    float level = dot(colour, vec3(0.299, 0.587, 0.114));
    float amount = GRAIN * max(glownoise, 0.0) * sqrt(level) * (1.0 - 0.5 * level);
    colour += amount * grain(floor(gl_FragCoord.xy), seed) * (colour + 0.15);
    colour += min(colour, 1.0 / 255.0) * grain(floor(gl_FragCoord.xy) + 101.0, seed);
    gl_FragColor = vec4(colour, 1.0);
}
