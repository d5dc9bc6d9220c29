#include "display/dis_listener.h"

#include "display/dis_display.h"
#include "display/dis_event.h"

namespace zavex::display {

Listener::Listener(DisplayGL* newDisplay)
{
    attachToDisplay(newDisplay);
}

Listener::~Listener()
{
    attachToDisplay(nullptr);
}

int Listener::onMouseUp(const MouseButtonEvent&)
{
    return WHATEVER;
}

int Listener::onMouseDown(const MouseButtonEvent&)
{
    return WHATEVER;
}

int Listener::onMouseMove(const MouseMoveEvent&)
{
    return WHATEVER;
}

int Listener::onMouseWheel(const MouseMoveEvent&)
{
    return WHATEVER;
}

int Listener::onKeyDown(const KeyEvent&)
{
    return WHATEVER;
}

int Listener::onKeyUp(const KeyEvent&)
{
    return WHATEVER;
}

int Listener::onCharDown(const CharEvent&)
{
    return WHATEVER;
}

int Listener::onCharUp(const CharEvent&)
{
    return WHATEVER;
}

int Listener::onQuit()
{
    return WHATEVER;
}

void Listener::onResize(int, int) {}

void Listener::onMove() {}

void Listener::onDraw() {}

void Listener::onIconify(bool) {}

void Listener::onChangeFocus(bool) {}

void Listener::onIdle() {}

void Listener::onLost() noexcept {}

void Listener::attachToDisplay(DisplayGL* newDisplay)
{
    if (display) {
        display->removeListener(this);
        display = nullptr;
    }
    if (!newDisplay)
        return;

    display = newDisplay;
    display->addListener(this);
}

} // namespace zavex::display
