// A side of a house: the picture that it shows, and how strong.

varying vec2 place;
varying vec3 light;

void main()
{
    gl_Position = ftransform();
    place = gl_MultiTexCoord0.st;
    light = gl_Color.rgb;
}
