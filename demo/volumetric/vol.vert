// A face of a body of light: where it is seen from the eye, and the light of the body.

varying vec3 seen;
varying vec3 light;

void main()
{
    gl_Position = ftransform();
    seen = (gl_ModelViewMatrix * gl_Vertex).xyz;
    light = gl_Color.rgb;
}
