#include "display/dis_display.h"

#include "display/dis_display_glfw.h"

namespace zavex::display {

DisplayGL* DisplayGL::create()
{
    return new DisplayGLFW;
}

} // namespace zavex::display
