#pragma once

namespace zavex::display {

class DisplayGL;
struct CharEvent;
struct KeyEvent;
struct MouseButtonEvent;
struct MouseMoveEvent;

/**
 * Receives a display's input, its window's changes and the call to draw.
 *
 * Input reaches the listener added last first; drawing, sizes and window changes reach the one
 * added first first. A listener may add and remove listeners, itself included, from any of its
 * operations. It must be detached, or destroyed, before its display is.
 */
class Listener {
public:
    /** What an input handler wants done, combined as bits. */
    enum Action : int {
        WHATEVER = 0,
        BLOCK = 1, // no further listener sees the event; as an answer to `onQuit`: do not quit
        QUIT = 2,  // ask every listener whether the program may end
        DIRTY = 4, // draw again
    };

    Listener() = default;

    /** Attaches to `display`, as `attachToDisplay` does. */
    explicit Listener(DisplayGL* display);

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    virtual ~Listener();

    virtual int onMouseUp(const MouseButtonEvent& event);
    virtual int onMouseDown(const MouseButtonEvent& event);
    virtual int onMouseMove(const MouseMoveEvent& event);
    virtual int onMouseWheel(const MouseMoveEvent& event);
    virtual int onKeyDown(const KeyEvent& event);
    virtual int onKeyUp(const KeyEvent& event);
    virtual int onCharDown(const CharEvent& event);
    virtual int onCharUp(const CharEvent& event);

    /** Somebody wants to end the program; `BLOCK` in the answer refuses. */
    virtual int onQuit();

    /** The window is `width` x `height` pixels large. */
    virtual void onResize(int width, int height);

    virtual void onMove();

    /** Draw one frame. The display's states are reset before and after. */
    virtual void onDraw();

    virtual void onIconify(bool iconified);
    virtual void onChangeFocus(bool focused);

    /** In place of `onDraw`, some hundred times a second, while the window is iconified. */
    virtual void onIdle();

    /**
     * The screen is gone: the process ends with status 1 right after, out of whatever request to
     * the display is under way. The display must not be used.
     */
    virtual void onLost() noexcept;

    /** Leaves the present display, if any, and becomes the last listener of `newDisplay`, if not
     * null. */
    void attachToDisplay(DisplayGL* newDisplay);

    DisplayGL* display = nullptr; // not owned; null while not attached
};

} // namespace zavex::display
