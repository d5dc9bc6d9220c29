#include "display/dis_display_glfw.h"

#include "common/zvx_process.h"
#include "common/zvx_system.h"
#include "display/dis_glinclude.h"

#include <GLFW/glfw3.h>

#include <algorithm>
#include <chrono>
#include <sstream>
#include <thread>
#include <utility>

namespace zavex::display {

namespace {

constexpr int MAX_MODES = 10000;
constexpr int DEPTH_BITS = 16;

constexpr std::chrono::milliseconds IDLE_TIME{10}; // between two calls while iconified

constexpr float SLEEP_MARGIN = 0.005f; // seconds that a sleep may overrun, spent spinning

void logLibraryError(int code, const char* description)
{
    ZVX_LOG("warning", "display", "Window library error 0x%x: %s", static_cast<unsigned>(code),
            description);
}

/** Seconds that a frame lasts; 0, which paces nothing, for a rate that makes no sense. */
float frameDuration(const WindowMode& mode)
{
    return mode.fps > 0.0f ? 1.0f / mode.fps : 0.0f;
}

/** Teardown goes on after a failure, which the exception's constructor has logged. */
template <typename Action>
void withoutThrowing(Action action)
{
    try {
        action();
    } catch (const std::exception&) {
    }
}

} // namespace

DisplayGLFW* DisplayGLFW::Live::sDisplay = nullptr;

DisplayGLFW::Live::Live(DisplayGLFW* display)
{
    if (sDisplay)
        throw Exception{"Can not open more than one GLFW-device"};
    sDisplay = display;
}

DisplayGLFW::DisplayGLFW()
{
    init();
}

void DisplayGLFW::init()
{
    glfwSetErrorCallback(logLibraryError);
    watchScreen();
    if (glfwInit() == GLFW_FALSE)
        throw Exception{"DisplayGLFW: Could not initialize GLFW!"};
    glfwSetTime(0.0);
    mInited = true;
}

// Resources free their graphics objects while the context is current, so they go before the window.
DisplayGLFW::~DisplayGLFW()
{
    if (mOpened)
        withoutThrowing([this] { DisplayGLFW::resetStates(); });
    if (!mResources.empty())
        ZVX_LOG("log", "app",
                "When destructing glfw-display, there was %d resources not destroyed.",
                static_cast<int>(mResources.size()));

    // Letting go of one resource may delete others, so each step looks for the next one again.
    for (auto next = mResources.begin(); next != mResources.end();) {
        Resource* const resource = *next;
        withoutThrowing([resource] { resource->dettachAll(); });
        next = mResources.upper_bound(resource);
    }
    while (!mResources.empty())
        delete mResources.extract(mResources.begin()).value();
    mTextureCache.clear();

    if (mOpened)
        withoutThrowing([this] { DisplayGLFW::close(); });
    glfwTerminate();
}

void DisplayGLFW::getModes(std::vector<WindowMode>& modes)
{
    modes.clear();
    GLFWmonitor* const monitor = glfwGetPrimaryMonitor();
    if (!monitor)
        return;

    int count = 0;
    const GLFWvidmode* const videoModes = glfwGetVideoModes(monitor, &count);
    for (int i = 0; i < std::min(count, MAX_MODES); ++i) {
        WindowMode mode;
        mode.title.clear();
        mode.width = videoModes[i].width;
        mode.height = videoModes[i].height;
        modes.push_back(mode);
    }
}

void DisplayGLFW::open(const WindowMode& mode)
{
    if (mode.width <= 0 || mode.height <= 0)
        throw Exception{
            "DisplayGLFW: Can not open a window of %d x %d pixels, both must be positive",
            mode.width, mode.height};
    if (!mInited)
        init();

    const bool wasFullscreen = mWindowMode.fullscreen;
    mWindowMode = mode;
    mAskedWidth = mode.width;
    mAskedHeight = mode.height;
    if (mOpened) {
        mWindowMode.fullscreen = wasFullscreen;
        glfwSetWindowAttrib(mWindow, GLFW_RESIZABLE, mode.canResize ? GLFW_TRUE : GLFW_FALSE);
        glfwSetWindowSize(mWindow, mode.width, mode.height);
    } else {
        openWindow();
    }
    showWindow();
}

void DisplayGLFW::openWindow()
{
    glfwDefaultWindowHints();
    glfwWindowHint(GLFW_RESIZABLE, mWindowMode.canResize ? GLFW_TRUE : GLFW_FALSE);
    glfwWindowHint(GLFW_RED_BITS, GLFW_DONT_CARE);
    glfwWindowHint(GLFW_GREEN_BITS, GLFW_DONT_CARE);
    glfwWindowHint(GLFW_BLUE_BITS, GLFW_DONT_CARE);
    glfwWindowHint(GLFW_ALPHA_BITS, 0);
    glfwWindowHint(GLFW_DEPTH_BITS, DEPTH_BITS);
    glfwWindowHint(GLFW_STENCIL_BITS, 0);
    // A show on the wall must not vanish when another window takes the focus.
    glfwWindowHint(GLFW_AUTO_ICONIFY, GLFW_FALSE);

    GLFWmonitor* const monitor = mWindowMode.fullscreen ? glfwGetPrimaryMonitor() : nullptr;
    mWindow = glfwCreateWindow(mWindowMode.width, mWindowMode.height, mWindowMode.title.c_str(),
                               monitor, nullptr);
    watchScreen(); // the library has put its own way to handle errors in between
    if (!mWindow)
        throw Exception{"Could not open window"};
    glfwMakeContextCurrent(mWindow);
    glfwGetWindowSize(mWindow, &mWindowMode.width, &mWindowMode.height);

    try {
        if (glewInit() != GLEW_OK)
            throw Exception{"DisplayGLFW: Could not initialize GLEW!"};
        completeEntryPoints();
        loadExtensions();
    } catch (...) {
        dropWindow();
        throw;
    }
    glfwSetInputMode(mWindow, GLFW_STICKY_KEYS, GLFW_TRUE);
    mOpened = true;
}

void DisplayGLFW::loadExtensions()
{
    // Looking entry points up may leave an error behind that is nobody's.
    while (glGetError() != GL_NO_ERROR) {
    }

    mExtensions.clear();
    const GLubyte* const names = GL_CHECKED(glGetString(GL_EXTENSIONS));
    std::istringstream words{names ? reinterpret_cast<const char*>(names) : ""};
    for (std::string word; std::getline(words, word, ' ');)
        mExtensions.insert(word);

    if (!hasExtension("GL_ARB_shading_language_100"))
        return;
    const GLubyte* version = glGetString(GL_SHADING_LANGUAGE_VERSION);
    if (glGetError() == GL_INVALID_ENUM || !version)
        version = reinterpret_cast<const GLubyte*>("1.00");
    ZVX_LOG("info", "display", "GL_SHADING_LANGUAGE_VERSION: '%s'\n",
            reinterpret_cast<const char*>(version));
}

void DisplayGLFW::showWindow()
{
    int major = 0;
    int minor = 0;
    int revision = 0;
    glfwGetVersion(&major, &minor, &revision);
    ZVX_LOG("info", "display", "Opened window of resolution %dx%d (glfw version: %d.%d.%d)\n",
            mWindowMode.width, mWindowMode.height, major, minor, revision);
    glfwSetWindowTitle(mWindow, mWindowMode.title.c_str());
    mClearFrames = CLEARED_FRAMES;

    mWindowMode.activeWidth = mWindowMode.width;
    mWindowMode.activeHeight = mWindowMode.height;
    notifyResize();
    if (!mOpened) // by a listener
        return;
    markDirty();

    installCallbacks();
    mQuittingBlocking = false;
    resetStates();

    mIconified = glfwGetWindowAttrib(mWindow, GLFW_ICONIFIED) != GLFW_FALSE;
    mFocused = glfwGetWindowAttrib(mWindow, GLFW_FOCUSED) != GLFW_FALSE;
    mFpsLastTime = 0.0f;
    if (mWindowMode.fpsMode == WindowMode::FPS_EVENT)
        markDirty();
    else
        mDirty = false;
    glfwSwapInterval(mWindowMode.fpsMode == WindowMode::FPS_VARIABLE ? 0 : 1);
}

void DisplayGLFW::close()
{
    ZVX_REQUIRE(mOpened, "mOpened");
    ZVX_LOG("info", "display", "closing display");
    DisplayGLFW::resetStates();
    glfwSwapInterval(0);
    for (int i = 0; i < CLEARED_FRAMES; ++i) {
        GL_CHECKED(glClearColor(0.0f, 0.0f, 0.0f, 0.0f));
        GL_CHECKED(glClear(GL_COLOR_BUFFER_BIT));
        glfwSwapBuffers(mWindow);
    }

    // The context goes with the window, and graphics objects can only be deleted while it is there.
    disposeResources();
    mImmediate.discard();
    mTypedChars.clear();
    mPushedStates = false;
    mOpened = false;
    dropWindow();
}

/** The library forbids destroying a window inside one of its callbacks. */
void DisplayGLFW::dropWindow()
{
    GLFWwindow* const window = std::exchange(mWindow, nullptr);
    if (!mPumping) {
        glfwDestroyWindow(window);
        return;
    }
    glfwHideWindow(window);
    mClosedWindows.push_back(window);
}

void DisplayGLFW::toggleFullscreen()
{
    ZVX_LOG("log", "app", "DisplayGLFW - ALT+ENTER");
    disposeResources();
    close();

    // A full screen may have overruled the size that was asked for; the window gets it back.
    WindowMode mode = mWindowMode;
    mode.width = mAskedWidth;
    mode.height = mAskedHeight;
    mode.fullscreen = !mode.fullscreen;
    open(mode);
    restoreResources();
}

bool DisplayGLFW::update()
{
    pumpEvents();
    if (!mOpened)
        return false;
    obeySignal();
    if (std::exchange(mQuittingBlocking, false))
        return false;

    bool draw = true;
    if (mWindowMode.fpsMode == WindowMode::FPS_EVENT)
        draw = std::exchange(mDirty, false);

    readWindowState();
    draw = draw && mOpened && !mIconified;
    if (draw)
        drawFrame();
    else if (mOpened && mIconified)
        idle();
    pace();
    if (draw && mOpened)
        glfwSwapBuffers(mWindow);
    countFrame();
    return mOpened;
}

void DisplayGLFW::updateBlocking()
{
    while (update()) {
    }
}

void DisplayGLFW::pumpEvents()
{
    mPumping = true;
    if (mOpened && mWindowMode.fpsMode == WindowMode::FPS_EVENT)
        glfwWaitEvents();
    else
        glfwPollEvents();
    mPumping = false;

    for (GLFWwindow* const window : mClosedWindows)
        glfwDestroyWindow(window);
    mClosedWindows.clear();
    if (mCallbackFailure)
        std::rethrow_exception(std::exchange(mCallbackFailure, nullptr));
}

/** A refused signal is over; the next one ends the process, whoever is asked. */
void DisplayGLFW::obeySignal()
{
    if (isQuitSignalled() && !std::exchange(mSignalObeyed, true))
        requestQuit();
}

void DisplayGLFW::readWindowState()
{
    const bool iconified = glfwGetWindowAttrib(mWindow, GLFW_ICONIFIED) != GLFW_FALSE;
    const bool focused = glfwGetWindowAttrib(mWindow, GLFW_FOCUSED) != GLFW_FALSE;
    if (std::exchange(mIconified, iconified) != iconified)
        mListeners.forEach([=](Listener& listener) { listener.onIconify(iconified); });
    if (std::exchange(mFocused, focused) != focused)
        mListeners.forEach([=](Listener& listener) { listener.onChangeFocus(focused); });
}

void DisplayGLFW::drawFrame()
{
    resetStates();
    if (mClearFrames > 0) {
        GL_CHECKED(glClearColor(0.0f, 0.0f, 0.0f, 0.0f));
        GL_CHECKED(glClear(GL_COLOR_BUFFER_BIT));
        --mClearFrames;
    }
    setLetterbox();
    mListeners.forEach([this](Listener& listener) {
        if (mOpened)
            listener.onDraw();
    });
    if (mOpened)
        resetStates();
}

/** Nothing that is drawn holds the loop up, so it is held up here. */
void DisplayGLFW::idle()
{
    mListeners.forEach([](Listener& listener) { listener.onIdle(); });
    std::this_thread::sleep_for(IDLE_TIME);
}

void DisplayGLFW::setLetterbox()
{
    const int dx = mWindowMode.width - mWindowMode.activeWidth;
    const int dy = mWindowMode.height - mWindowMode.activeHeight;
    if (dx == 0 && dy == 0)
        return;

    const Immediate::Rectangle area{dx / 2, dy / 2, mWindowMode.activeWidth,
                                    mWindowMode.activeHeight};
    GL_CHECKED(glViewport(area.x, area.y, area.width, area.height));
    Immediate::State& state = mImmediate.change();
    state.scissor = area;
    state.scissorTest = true;
}

void DisplayGLFW::pace()
{
    const float duration = frameDuration(mWindowMode);
    if (mWindowMode.fpsMode == WindowMode::FPS_DELTA)
        mFpsLastTime += duration;
    if (mWindowMode.fpsMode != WindowMode::FPS_FIXED)
        return;

    const float target = mFpsLastTime + duration;
    const float remaining = target - getTime() - SLEEP_MARGIN;
    if (remaining > SLEEP_MARGIN)
        std::this_thread::sleep_for(std::chrono::duration<float>{remaining});
    while (getTime() < target) {
    }
    mFpsLastTime = getTime();
}

void DisplayGLFW::countFrame()
{
    mFpsCountFrames += 1.0f;
    const float now = getTime();
    if (now < mFpsCountFinalTime + 1.0f)
        return;

    mFpsCountFinal = mFpsCountFrames / (now - mFpsCountFinalTime);
    mFpsCountFrames = 0.0f;
    mFpsCountFinalTime = now;
}

float DisplayGLFW::getTime() const
{
    if (mWindowMode.fpsMode == WindowMode::FPS_DELTA)
        return mFpsLastTime;
    return static_cast<float>(glfwGetTime());
}

/** A display that waits for events is woken, since a wanted redraw is no event of the library's. */
void DisplayGLFW::markDirty()
{
    mDirty = true;
    if (mOpened && mWindowMode.fpsMode == WindowMode::FPS_EVENT)
        glfwPostEmptyEvent();
}

void DisplayGLFW::setDirty(bool dirty)
{
    if (dirty)
        markDirty();
    else
        mDirty = false;
}

void DisplayGLFW::setActiveResolution(int width, int height)
{
    mWindowMode.activeWidth = width == -1 ? mWindowMode.width : width;
    mWindowMode.activeHeight = height == -1 ? mWindowMode.height : height;
    mClearFrames = CLEARED_FRAMES;
    markDirty();
}

void DisplayGLFW::addListener(Listener* listener)
{
    ZVX_REQUIRE(listener, "listener!=0");
    mListeners.add(listener);
    if (mOpened)
        listener->onResize(mWindowMode.width, mWindowMode.height);
}

void DisplayGLFW::removeListener(Listener* listener)
{
    mListeners.remove(listener);
}

void DisplayGLFW::notifyResize()
{
    const int width = mWindowMode.width;
    const int height = mWindowMode.height;
    mListeners.forEach([=](Listener& listener) { listener.onResize(width, height); });
}

void DisplayGLFW::resetStates()
{
    ZVX_REQUIRE(mOpened, "mOpened");
    mImmediate.flush();
    // A render target has no draw buffer of the window's, which the attributes would bring back.
    DisplayGLFW::setFBO(nullptr);
    if (std::exchange(mPushedStates, false)) {
        GL_CHECKED(glPopAttrib());
        forgetTextures();
    }
    GL_CHECKED(glPushAttrib(GL_ALL_ATTRIB_BITS));
    mPushedStates = true;

    GL_CHECKED(glMatrixMode(GL_TEXTURE));
    GL_CHECKED(glLoadIdentity());
    GL_CHECKED(glShadeModel(GL_SMOOTH));
    GL_CHECKED(glClearDepth(1.0));
    GL_CHECKED(glDepthFunc(GL_LEQUAL));
    GL_CHECKED(glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST));
    GL_CHECKED(glDisable(GL_LIGHTING));
    mImmediate.setColor(1.0f, 1.0f, 1.0f, 0.5f);
    glViewport(0, 0, mWindowMode.width, mWindowMode.height);
    GL_REPORT_ERROR(__FILE__, __LINE__, "glViewport(0,0,mWindowMode.width, mWindowMode.height)");

    // The colour, the matrices and the switches that drawing changes: all of them have their
    // defaults there.
    Immediate::State state;
    state.projection = frameProjection(mWindowMode);
    state.scissor = {0, 0, mWindowMode.width, mWindowMode.height};
    mImmediate.reset(state);
    resetBindings();
}

} // namespace zavex::display
