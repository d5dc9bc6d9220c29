// The vertical half of a separable blur: a narrow and a wide Gaussian in one kernel, a bright core in
// a long skirt. Taps stand between two texels, where linear filtering averages the pair.

uniform sampler2D tex;
uniform float height;       // of tex, texels
uniform float sampleWidth;  // texels per unit of the kernel

varying vec2 position;

const int PAIRS = 24;          // on each side
const float REACH = 49.0;      // texels; where the kernel ends, at nothing
const float CORE = 4.5;        // standard deviation of the core, texels
const float SKIRT = 20.0;      // standard deviation of the skirt, texels
const float CORE_SHARE = 0.6; // weight of the core at its middle

float weight(float x)
{
    float window = 1.0 - x * x / (REACH * REACH);
    return window * (CORE_SHARE * exp(-0.5 * x * x / (CORE * CORE))
                     + (1.0 - CORE_SHARE) * exp(-0.5 * x * x / (SKIRT * SKIRT)));
}

void main()
{
    vec2 texel = vec2(0.0, sampleWidth / height);
    vec3 sum = texture2D(tex, position).rgb;
    float total = 1.0;
    for (int pair = 0; pair < PAIRS; ++pair) {
        float x = 2.0 * float(pair) + 1.5;
        float share = 2.0 * weight(x);
        sum += share * texture2D(tex, position + x * texel).rgb;
        sum += share * texture2D(tex, position - x * texel).rgb;
        total += 2.0 * share;
    }
    gl_FragColor = vec4(sum / total, 1.0);
}
