#pragma once

#include "display/dis_display.h"
#include "display/dis_event.h"
#include "display/dis_immediate.h"
#include "display/dis_listener.h"
#include "display/dis_listenerlist.h"

#include <array>
#include <exception>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

struct GLFWwindow;

namespace zavex::display {

/**
 * The display on the GLFW window library, the only implementation of `DisplayGL`.
 *
 * The library's callbacks end in the `on...` operations, which work without them too: an event
 * handed to one of those is delivered as if the user had caused it.
 */
class DisplayGLFW : public DisplayGL {
public:
    static constexpr int TEXTURE_CHANNELS = 8;
    static constexpr int CLEARED_FRAMES = 3; // both buffers of a window, and one more

    /** A texture that was asked for by name, with the declaration as it was asked for. */
    struct TextureKey {
        std::string identifier; // the file's name
        Texture::TextureDeclaration decl;

        bool operator<(const TextureKey& other) const
        {
            return std::tie(identifier, decl) < std::tie(other.identifier, other.decl);
        }
    };

    /** Throws Exception when a display lives or the window library finds no screen. */
    DisplayGLFW();
    DisplayGLFW(const DisplayGLFW&) = delete;
    DisplayGLFW& operator=(const DisplayGLFW&) = delete;
    ~DisplayGLFW() override;

    void getModes(std::vector<WindowMode>& modes) override;
    const std::set<std::string>& getExtensionMap() const override { return mExtensions; }
    bool hasExtension(const std::string& name) const override { return mExtensions.contains(name); }

    void open(const WindowMode& mode) override;
    void close() override;
    bool update() override;
    void updateBlocking() override;

    void addListener(Listener* listener) override;
    void removeListener(Listener* listener) override;

    const WindowMode& getWindowMode() const override { return mWindowMode; }
    void getScreenShotRGB24(std::uint8_t* buffer) override;
    void getScreenShot(am::Image& image) override;
    void setArchive(am::ArchiveManager* archive) override;
    am::ArchiveManager* getArchive() const override { return mArchiveManager; }
    float getFps() const override { return mFpsCountFinal; }
    float getTime() const override;
    mathbase::Vector3f getMousePosition() const override;
    bool readJoystick(int index, Joystick& state) const override;

    void setVBO(VBO* vbo) override;
    void setIBO(IBO* ibo) override;
    void setFBO(FBO* fbo) override;
    void setTexture(Texture* texture, int channel) override;
    void setShader(Shader* shader) override;
    void draw(DrawMode mode, int firstIndex, int numIndices, int firstVertex,
              int numVertices) override;
    void resetStates() override;
    void setDirty(bool dirty) override;
    void setActiveResolution(int width, int height) override;

    bool supportsShaders() const override;
    bool supportsFBO() const override;
    int maxNumVertexAttrib() const override;

    VBO* createVBO(int count, const VertexDef* def, ResourceMode mode) override;
    IBO* createIBO(int count, IBO::Format format, ResourceMode mode) override;
    FBO* createFBO(int width, int height, bool renderZ) override;
    Texture* createTexture(const std::string& name, bool unique) override;
    Texture* createTexture(const std::string& name, const Texture::TextureDeclaration& declaration,
                           bool unique) override;
    Texture* createTexture(am::Image& image,
                           const Texture::TextureDeclaration& declaration) override;
    Texture* createTexture(const Texture::TextureDeclaration& declaration) override;
    Shader* createShader(VertexDef* def) override;
    Shader* createShader(const std::string& vertexFile, const std::string& pixelFile,
                         VertexDef* def) override;
    ShaderSource* createVertexShader(const std::string& file, bool flag) override;
    ShaderSource* createPixelShader(const std::string& file, bool flag) override;
    void destroy(const Resource* resource) override;
    FBO* getFBO() const override { return mCurrentFBO; }

    /** Frees, or builds again, the graphics objects of all resources. The window must be open. */
    void disposeResources();
    void restoreResources();

    /**
     * The `Key` of one of the window library's key codes, -1 when it has none.
     *
     * A printable key is the character that the user's keyboard layout gives it without modifiers,
     * a letter in upper case; where that is not Latin, the character in its place on a US keyboard.
     *
     * @param scancode  The platform's code of the key, which alone tells keys without a key code.
     */
    static int translateKey(int glfwKey, int scancode);

    /** A key of the window library; `action` is its press, repeat (counts as press) or release. */
    void onKey(int glfwKey, int action, int scancode = 0);

    /**
     * The modifiers that are down on the keyboard, as bits of the window library.
     *
     * A modifier that goes down or up while another window has the focus, such as the one that a
     * full-screen switch replaces, causes no event of its own.
     */
    void onModifiers(int glfwModifiers);

    /** A Unicode character, pressed or released. */
    void onChar(int character, int action);

    /** A mouse button of the window library; those above 2 are ignored. */
    void onMouseButton(int button, int action);

    /** The mouse is at (x, y), in window pixels from the top-left corner. */
    void onMouseMove(float x, float y);

    /** The wheel is at `position`, in notches from where it was when the program started. */
    void onMouseWheel(float position);

    /** The user has resized the window. */
    void onWindowSize(int width, int height);

    /** The user wants to close the window; returns whether the library may do so itself. */
    bool onWindowClose();

    /** Does what a listener's answer asks for; returns whether delivery stops. */
    bool shallStop(int action);

private:
    /** Records the one live display, also for as long as its construction lasts. */
    class Live {
    public:
        explicit Live(DisplayGLFW* display);
        ~Live() { sDisplay = nullptr; }
        Live(const Live&) = delete;
        Live& operator=(const Live&) = delete;

        static DisplayGLFW* sDisplay;
    };

    /** A character that is down, and the key that typed it. */
    struct TypedChar {
        int scancode;
        int character;
    };

    /** What the window library calls; lives beside the input operations. */
    struct Callbacks;

    /** What the X library calls when it cannot go on. */
    struct LostScreen;

    void init();
    static void watchScreen();
    void openWindow();
    void loadExtensions();
    void showWindow();
    void installCallbacks();
    void dropWindow();
    void toggleFullscreen();

    void pumpEvents();
    void obeySignal();
    void readWindowState();
    void drawFrame();
    void idle();
    void setLetterbox();
    void pace();
    void countFrame();
    void markDirty();

    void requestQuit();
    void fillEvent(Event& event) const;
    void recordPressed(int key, int action);
    void rememberTyped(int character);
    void releaseTyped(int scancode);
    template <typename EventType>
    bool deliver(int (Listener::*handler)(const EventType&), const EventType& event);
    void notifyResize();

    void resetBindings();
    void forgetTextures();
    void forget(const Resource* resource);
    template <typename ResourceType>
    ResourceType* registered(std::unique_ptr<ResourceType> resource);
    void requireAskedSize() const;
    void readPixels(unsigned int format, std::size_t bytesPerPixel, std::uint8_t* pixels);

    Live mLive{this};
    std::set<Resource*> mResources; // every live one, owned
    std::map<TextureKey, Texture*> mTextureCache;
    Shader* mCurrentShader = nullptr;
    VBO* mCurrentVBO = nullptr;
    IBO* mCurrentIBO = nullptr;
    FBO* mCurrentFBO = nullptr;
    int mActiveTextureChannel = 0;
    std::array<Texture*, TEXTURE_CHANNELS> mTextureChannels{};
    int mClearFrames = 0; // frames still to be cleared to black
    bool mInited = false; // the window library is initialised
    bool mOpened = false; // a window is open
    bool mDirty = false;  // a redraw is wanted
    bool mIconified = false;
    bool mFocused = false;
    WindowMode mWindowMode;
    float mMouseX = 0.0f;     // window pixels
    float mMouseY = 0.0f;     // window pixels
    float mMouseWheel = 0.0f; // notches
    ListenerList mListeners;
    std::array<bool, KEY_LAST> mPressed{};
    float mFpsLastTime = 0.0f;       // seconds
    float mLastClickTime = -1.0f;    // seconds; -1 when no click waits for its second
    bool mQuittingBlocking = false;  // a quit has been granted
    bool mSignalObeyed = false;      // listeners were asked whether the program may end by it
    bool mPushedStates = false;      // a GL attribute push is outstanding
    float mFpsCountFinal = 0.0f;     // frames per second
    float mFpsCountFinalTime = 0.0f; // seconds
    float mFpsCountFrames = 0.0f;
    am::ArchiveManager* mArchiveManager = nullptr; // not owned
    std::set<std::string> mExtensions;

    Immediate mImmediate{*this, mActiveTextureChannel, mTextureChannels.front()};
    GLFWwindow* mWindow = nullptr;
    std::vector<GLFWwindow*> mClosedWindows; // closed by a listener; destroyed after the event pump
    bool mPumping = false;                   // the library is calling back
    std::exception_ptr mCallbackFailure;     // to be thrown once the library has returned
    std::vector<TypedChar> mTypedChars;
    int mTypingScancode = 0; // key whose characters are arriving
    int mAskedWidth = 0;     // pixels; what a full screen may have overruled
    int mAskedHeight = 0;    // pixels
    std::thread::id mThread = std::this_thread::get_id();
};

} // namespace zavex::display
