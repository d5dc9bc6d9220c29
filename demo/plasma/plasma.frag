// The panel's picture, dimmed by the vertex colour; black adds nothing.

uniform sampler2D tex;

void main()
{
    gl_FragColor = texture2D(tex, gl_TexCoord[0].st) * gl_Color;
}
