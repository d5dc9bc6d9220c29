// Threads of light on the sides of a house, with glints that climb them.

uniform sampler2D texture;
uniform float percent;  // seconds since the start of the scene

varying vec2 place;
varying vec3 light;

const float CLIMB = 0.35;  // sides a second
const float GAIN = 4.0;

void main()
{
    vec3 threads = texture2D(texture, place).rgb;
    // Each thread has its own pace and beginning.
    float thread = floor(place.s * 24.0);
    float start = fract(thread * 0.61803);
    float height = fract(1.0 - place.t - CLIMB * percent * (0.6 + start) + start);
    float glint = exp(-14.0 * min(height, 1.0 - height));
    float foot = 0.35 + 0.65 * place.t;  // brighter towards the ground
    gl_FragColor = vec4(GAIN * light * threads * (0.55 * foot + 0.9 * glint), 1.0);
}
