varying vec2 position;

void main()
{
    gl_Position = ftransform();
    position = gl_MultiTexCoord0.st;
}
