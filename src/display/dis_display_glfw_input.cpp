#include "display/dis_display_glfw.h"

#include "common/zvx_system.h"
#include "display/dis_joystick.h"

#include <GLFW/glfw3.h>

#include <algorithm>
#include <utility>

namespace zavex::display {

namespace {

constexpr int NO_KEY = -1;
constexpr float DOUBLE_CLICK_TIME = 0.8f; // seconds between the presses, at most
constexpr float NO_CLICK = -1.0f;
constexpr int LATIN_CHARACTERS = 256; // characters that a key may stand for

/** The window library's codes first..last mean the keys from `key` on. */
struct KeyRange {
    int first;
    int last;
    int key;
};

constexpr KeyRange KEY_RANGES[] = {
    {GLFW_KEY_ESCAPE,        GLFW_KEY_ESCAPE,        KEY_ESC        },
    {GLFW_KEY_ENTER,         GLFW_KEY_ENTER,         KEY_ENTER      },
    {GLFW_KEY_TAB,           GLFW_KEY_TAB,           KEY_TAB        },
    {GLFW_KEY_BACKSPACE,     GLFW_KEY_BACKSPACE,     KEY_BACKSPACE  },
    {GLFW_KEY_INSERT,        GLFW_KEY_INSERT,        KEY_INSERT     },
    {GLFW_KEY_DELETE,        GLFW_KEY_DELETE,        KEY_DEL        },
    {GLFW_KEY_RIGHT,         GLFW_KEY_RIGHT,         KEY_RIGHT      },
    {GLFW_KEY_LEFT,          GLFW_KEY_LEFT,          KEY_LEFT       },
    {GLFW_KEY_DOWN,          GLFW_KEY_DOWN,          KEY_DOWN       },
    {GLFW_KEY_UP,            GLFW_KEY_UP,            KEY_UP         },
    {GLFW_KEY_PAGE_UP,       GLFW_KEY_PAGE_UP,       KEY_PAGEUP     },
    {GLFW_KEY_PAGE_DOWN,     GLFW_KEY_PAGE_DOWN,     KEY_PAGEDOWN   },
    {GLFW_KEY_HOME,          GLFW_KEY_HOME,          KEY_HOME       },
    {GLFW_KEY_END,           GLFW_KEY_END,           KEY_END        },
    {GLFW_KEY_F1,            GLFW_KEY_F25,           KEY_F1         },
    {GLFW_KEY_KP_0,          GLFW_KEY_KP_9,          KEY_KP_0       },
    {GLFW_KEY_KP_DECIMAL,    GLFW_KEY_KP_DECIMAL,    KEY_KP_DECIMAL },
    {GLFW_KEY_KP_DIVIDE,     GLFW_KEY_KP_DIVIDE,     KEY_KP_DIVIDE  },
    {GLFW_KEY_KP_MULTIPLY,   GLFW_KEY_KP_MULTIPLY,   KEY_KP_MULTIPLY},
    {GLFW_KEY_KP_SUBTRACT,   GLFW_KEY_KP_SUBTRACT,   KEY_KP_SUBTRACT},
    {GLFW_KEY_KP_ADD,        GLFW_KEY_KP_ADD,        KEY_KP_ADD     },
    {GLFW_KEY_KP_ENTER,      GLFW_KEY_KP_ENTER,      KEY_KP_ENTER   },
    {GLFW_KEY_KP_EQUAL,      GLFW_KEY_KP_EQUAL,      KEY_KP_EQUAL   },
    {GLFW_KEY_LEFT_SHIFT,    GLFW_KEY_LEFT_SHIFT,    KEY_LSHIFT     },
    {GLFW_KEY_LEFT_CONTROL,  GLFW_KEY_LEFT_CONTROL,  KEY_LCTRL      },
    {GLFW_KEY_LEFT_ALT,      GLFW_KEY_LEFT_ALT,      KEY_LALT       },
    {GLFW_KEY_RIGHT_SHIFT,   GLFW_KEY_RIGHT_SHIFT,   KEY_RSHIFT     },
    {GLFW_KEY_RIGHT_CONTROL, GLFW_KEY_RIGHT_CONTROL, KEY_RCTRL      },
    {GLFW_KEY_RIGHT_ALT,     GLFW_KEY_RIGHT_ALT,     KEY_RALT       },
};

/** A modifier: its two keys, their bits in an event, and the window library's one bit for both. */
struct Modifier {
    Key leftKey;
    Key rightKey;
    KeyMod leftBit;
    KeyMod rightBit;
    int glfwBit;
};

constexpr Modifier MODIFIERS[] = {
    {KEY_LSHIFT, KEY_RSHIFT, KEYMOD_LSHIFT, KEYMOD_RSHIFT, GLFW_MOD_SHIFT  },
    {KEY_LCTRL,  KEY_RCTRL,  KEYMOD_LCTRL,  KEYMOD_RCTRL,  GLFW_MOD_CONTROL},
    {KEY_LALT,   KEY_RALT,   KEYMOD_LALT,   KEYMOD_RALT,   GLFW_MOD_ALT    },
};

constexpr bool isPrintable(int glfwKey)
{
    return (glfwKey > GLFW_KEY_SPACE && glfwKey <= GLFW_KEY_WORLD_2) || glfwKey == GLFW_KEY_UNKNOWN;
}

/** The one character of a key's name, in UTF-8; -1 when it is not one character of Latin-1. */
int latinCharacter(const char* name)
{
    const auto byte = [name](int i) { return static_cast<unsigned char>(name[i]); };
    if (!name || byte(0) == 0)
        return NO_KEY;
    if (byte(0) < 0x80)
        return byte(1) == 0 ? byte(0) : NO_KEY;

    const bool twoBytes = (byte(0) & 0xe0) == 0xc0 && (byte(1) & 0xc0) == 0x80 && byte(2) == 0;
    const int character = twoBytes ? (byte(0) & 0x1f) << 6 | (byte(1) & 0x3f) : LATIN_CHARACTERS;
    return character < LATIN_CHARACTERS ? character : NO_KEY;
}

bool isPressed(int action)
{
    return action != GLFW_RELEASE;
}

/** How many of a joystick's buttons or axes are read; it may be unplugged at any moment. */
int controlsOf(const void* values, int count)
{
    return values ? std::clamp(count, 0, static_cast<int>(Joystick::CONTROLS)) : 0;
}

} // namespace

/**
 * What the window library calls.
 *
 * It must not be left by an exception: the first one is kept, and thrown once the library is done.
 * What belongs to a window that a listener has closed meanwhile is dropped.
 */
struct DisplayGLFW::Callbacks {
    template <typename Action>
    static void guarded(GLFWwindow* window, Action action)
    {
        DisplayGLFW* const display = Live::sDisplay;
        if (!display || display->mWindow != window || display->mCallbackFailure)
            return;
        try {
            action(*display);
        } catch (...) {
            display->mCallbackFailure = std::current_exception();
        }
    }

    static void key(GLFWwindow* window, int key, int scancode, int action, int modifiers)
    {
        guarded(window, [=](DisplayGLFW& display) {
            const int translated = translateKey(key, scancode);
            if (translated < KEY_LSHIFT || translated > KEY_RALT)
                display.onModifiers(modifiers);
            display.mTypingScancode = scancode;
            display.onKey(key, action, scancode);
            if (!isPressed(action))
                display.releaseTyped(scancode);
        });
    }

    static void character(GLFWwindow* window, unsigned int codepoint)
    {
        guarded(window, [=](DisplayGLFW& display) {
            display.rememberTyped(static_cast<int>(codepoint));
            display.onChar(static_cast<int>(codepoint), GLFW_PRESS);
        });
    }

    static void mouseButton(GLFWwindow* window, int button, int action, int modifiers)
    {
        guarded(window, [=](DisplayGLFW& display) {
            display.onModifiers(modifiers);
            display.onMouseButton(button, action);
        });
    }

    static void cursorPosition(GLFWwindow* window, double x, double y)
    {
        guarded(window, [=](DisplayGLFW& display) {
            display.onMouseMove(static_cast<float>(x), static_cast<float>(y));
        });
    }

    /** A wheel that is tilted, or a sideways swipe, does not turn it. */
    static void scroll(GLFWwindow* window, double, double notches)
    {
        guarded(window, [=](DisplayGLFW& display) {
            if (notches != 0.0)
                display.onMouseWheel(display.mMouseWheel + static_cast<float>(notches));
        });
    }

    /** A size that `open` asked for is reported only later: it is known, and no resize. */
    static void windowSize(GLFWwindow* window, int width, int height)
    {
        guarded(window, [=](DisplayGLFW& display) {
            if (width != display.mWindowMode.width || height != display.mWindowMode.height)
                display.onWindowSize(width, height);
        });
    }

    static void close(GLFWwindow* window)
    {
        guarded(window, [=](DisplayGLFW& display) {
            if (!display.onWindowClose())
                glfwSetWindowShouldClose(window, GLFW_FALSE);
        });
    }

    static void refresh(GLFWwindow* window)
    {
        guarded(window, [](DisplayGLFW& display) { display.markDirty(); });
    }
};

void DisplayGLFW::installCallbacks()
{
    const bool waitsForEvents = mWindowMode.fpsMode == WindowMode::FPS_EVENT;
    glfwSetWindowSizeCallback(mWindow, mWindowMode.canResize ? &Callbacks::windowSize : nullptr);
    glfwSetKeyCallback(mWindow, &Callbacks::key);
    glfwSetCharCallback(mWindow, &Callbacks::character);
    glfwSetCursorPosCallback(mWindow, &Callbacks::cursorPosition);
    glfwSetMouseButtonCallback(mWindow, &Callbacks::mouseButton);
    glfwSetScrollCallback(mWindow, &Callbacks::scroll);
    glfwSetWindowCloseCallback(mWindow, &Callbacks::close);
    glfwSetWindowRefreshCallback(mWindow, waitsForEvents ? &Callbacks::refresh : nullptr);
}

int DisplayGLFW::translateKey(int glfwKey, int scancode)
{
    for (const KeyRange& range : KEY_RANGES)
        if (glfwKey >= range.first && glfwKey <= range.last)
            return range.key + glfwKey - range.first;
    if (glfwKey == GLFW_KEY_SPACE)
        return KEY_SPACE;
    if (!isPrintable(glfwKey))
        return NO_KEY;

    const int character = latinCharacter(glfwGetKeyName(glfwKey, scancode));
    if (character == NO_KEY)
        return glfwKey < LATIN_CHARACTERS ? glfwKey : NO_KEY;
    return character >= 'a' && character <= 'z' ? character - 'a' + KEY_a : character;
}

void DisplayGLFW::onKey(int glfwKey, int action, int scancode)
{
    if (!mOpened)
        return;

    const int key = translateKey(glfwKey, scancode);
    recordPressed(key, action);
    KeyEvent event;
    fillEvent(event);
    event.key = static_cast<Key>(key);

    if (isPressed(action)) {
        deliver(&Listener::onKeyDown, event);
        return;
    }
    if (deliver(&Listener::onKeyUp, event))
        return;
    if (key == KEY_ENTER && event.alt() && mOpened)
        toggleFullscreen();
    if (key == KEY_ESC) {
        ZVX_LOG("log", "app", "DisplayGLFW - ESC");
        requestQuit();
    }
}

void DisplayGLFW::onChar(int character, int action)
{
    if (!mOpened)
        return;

    recordPressed(character, action);
    CharEvent event;
    fillEvent(event);
    event.key = character;
    deliver(isPressed(action) ? &Listener::onCharDown : &Listener::onCharUp, event);
}

void DisplayGLFW::onMouseButton(int button, int action)
{
    if (!mOpened || button < GLFW_MOUSE_BUTTON_1 || button > GLFW_MOUSE_BUTTON_3)
        return;

    MouseButtonEvent event;
    fillEvent(event);
    event.button = static_cast<MouseButton>(button);
    if (isPressed(action) && event.button == MOUSE_LEFT) {
        const float now = getTime();
        event.doubleClick = now - mLastClickTime < DOUBLE_CLICK_TIME;
        mLastClickTime = event.doubleClick ? NO_CLICK : now;
    }
    deliver(isPressed(action) ? &Listener::onMouseDown : &Listener::onMouseUp, event);
}

void DisplayGLFW::onMouseMove(float x, float y)
{
    if (!mOpened)
        return;

    const mathbase::Vector2f delta{mMouseX - x, mMouseY - y};
    mMouseX = x;
    mMouseY = y;
    mLastClickTime = NO_CLICK;
    MouseMoveEvent event;
    fillEvent(event);
    event.mouseDelta = delta;
    deliver(&Listener::onMouseMove, event);
}

void DisplayGLFW::onMouseWheel(float position)
{
    if (!mOpened)
        return;

    MouseMoveEvent event;
    event.mouseDeltaWheel = position - mMouseWheel;
    mMouseWheel = position;
    fillEvent(event);
    deliver(&Listener::onMouseWheel, event);
}

void DisplayGLFW::onWindowSize(int width, int height)
{
    if (!mOpened)
        return;

    mWindowMode.width = mWindowMode.activeWidth = width;
    mWindowMode.height = mWindowMode.activeHeight = height;
    if (!mWindowMode.fullscreen) {
        mAskedWidth = width;
        mAskedHeight = height;
    }
    mClearFrames = CLEARED_FRAMES;
    notifyResize();
    markDirty();
}

bool DisplayGLFW::onWindowClose()
{
    if (!mOpened)
        return true;
    requestQuit();
    return false;
}

mathbase::Vector3f DisplayGLFW::getMousePosition() const
{
    return {mMouseX, mMouseY, mMouseWheel};
}

bool DisplayGLFW::readJoystick(int index, Joystick& state) const
{
    state = Joystick{};
    if (index < 0 || index >= Joystick::MOST_JOYSTICKS || glfwJoystickPresent(index) == GLFW_FALSE)
        return false;

    int count = 0;
    const unsigned char* const buttons = glfwGetJoystickButtons(index, &count);
    std::transform(buttons, buttons + controlsOf(buttons, count), state.buttons.begin(),
                   [](unsigned char button) { return button == GLFW_PRESS; });
    const float* const axes = glfwGetJoystickAxes(index, &count);
    std::copy_n(axes, controlsOf(axes, count), state.axes.begin());
    return true;
}

/** Modifier bits are taken from the keys that are down, the one being pressed among them. */
void DisplayGLFW::fillEvent(Event& event) const
{
    event.mousePos = {mMouseX, mMouseY};
    event.mousePosUnit = {mMouseX / static_cast<float>(mWindowMode.width),
                          mMouseY / static_cast<float>(mWindowMode.height)};
    event.mouseWheel = mMouseWheel;
    event.control = KEYMOD_NONE;
    for (const Modifier& modifier : MODIFIERS) {
        if (mPressed[modifier.leftKey])
            event.control |= modifier.leftBit;
        if (mPressed[modifier.rightKey])
            event.control |= modifier.rightBit;
    }
}

void DisplayGLFW::recordPressed(int key, int action)
{
    if (key >= 0 && key < KEY_LAST)
        mPressed[static_cast<std::size_t>(key)] = isPressed(action);
}

/** Which of a modifier's two keys is down the library does not say: the left one is taken. */
void DisplayGLFW::onModifiers(int glfwModifiers)
{
    for (const Modifier& modifier : MODIFIERS) {
        const bool down = (glfwModifiers & modifier.glfwBit) != 0;
        bool& left = mPressed[modifier.leftKey];
        bool& right = mPressed[modifier.rightKey];
        if (!down)
            left = right = false;
        else if (!left && !right)
            left = true;
    }
}

/** The library reports characters as they are typed, right after the key that types them. */
void DisplayGLFW::rememberTyped(int character)
{
    for (const TypedChar& typed : mTypedChars)
        if (typed.scancode == mTypingScancode && typed.character == character)
            return;
    mTypedChars.push_back({mTypingScancode, character});
}

void DisplayGLFW::releaseTyped(int scancode)
{
    for (;;) {
        const auto found = std::ranges::find(mTypedChars, scancode, &TypedChar::scancode);
        if (found == mTypedChars.end())
            return;
        const int character = found->character;
        mTypedChars.erase(found);
        onChar(character, GLFW_RELEASE);
    }
}

template <typename EventType>
bool DisplayGLFW::deliver(int (Listener::*handler)(const EventType&), const EventType& event)
{
    return mListeners.askFromLast(
        [&](Listener& listener) { return shallStop((listener.*handler)(event)); });
}

bool DisplayGLFW::shallStop(int action)
{
    if ((action & Listener::DIRTY) != 0)
        markDirty();
    if ((action & Listener::BLOCK) != 0)
        return true;
    if ((action & Listener::QUIT) == 0)
        return false;

    requestQuit();
    return !mOpened;
}

/** Every listener is asked, also after one has refused; a display that waits is woken to end. */
void DisplayGLFW::requestQuit()
{
    bool refused = false;
    if (mOpened)
        mListeners.askFromLast([&](Listener& listener) {
            refused |= (listener.onQuit() & Listener::BLOCK) != 0;
            return false;
        });
    if (refused)
        return;

    mQuittingBlocking = true;
    if (mOpened && mWindowMode.fpsMode == WindowMode::FPS_EVENT)
        glfwPostEmptyEvent();
}

} // namespace zavex::display
