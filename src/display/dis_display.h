#pragma once

#include "display/dis_ibo.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "mathbase/mb_vector3.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace zavex::am {
class ArchiveManager;
class Image;
} // namespace zavex::am

namespace zavex::display {

class FBO;
struct Joystick;
class Listener;
class Resource;
class Shader;
class ShaderSource;
class VBO;
class VertexDef;

/**
 * The window and everything drawn into it.
 *
 * Opens one window, hands its input to a list of listeners, asks them to draw once a frame, paces
 * the frames, and creates and owns every GPU resource. Only one display may live at a time, and all
 * of its operations belong to the thread that created it.
 */
class DisplayGL {
public:
    /** How often the contents of a buffer change. */
    enum ResourceMode : int {
        MODE_STATIC = 0,
        MODE_STREAM = 1,
        MODE_DYNAMIC = 2,
    };

    /** What every two, three or single vertices are. */
    enum DrawMode : int {
        DRAW_NONE = 0,
        DRAW_TRIANGLES = 1,
        DRAW_POINTS = 2,
        DRAW_LINES = 3,
    };

    /** A new display, owned by the caller. Throws Exception when one lives or there is no screen.
     */
    static DisplayGL* create();

    DisplayGL() = default;
    DisplayGL(const DisplayGL&) = delete;
    DisplayGL& operator=(const DisplayGL&) = delete;

    /** Closes the window and deletes the resources that were not destroyed, with a line in the log.
     */
    virtual ~DisplayGL() = default;

    /** Replaces `modes` by the screen's video modes, of which width and height are filled in. */
    virtual void getModes(std::vector<WindowMode>& modes) = 0;

    /** Names of the driver's extensions; empty until a window was open. */
    virtual const std::set<std::string>& getExtensionMap() const = 0;

    virtual bool hasExtension(const std::string& name) const = 0;

    /**
     * Opens the window, or resizes the one that is open, and tells the listeners its size.
     *
     * Throws Exception when the size is not positive or no window can be opened.
     */
    virtual void open(const WindowMode& mode) = 0;

    /** Closes the open window and disposes every resource. */
    virtual void close() = 0;

    /**
     * Runs one frame: events, drawing, pacing. A signal that asks to quit counts as the event that
     * somebody wants to close the window.
     *
     * @return Whether to go on: false once a quit was granted, or while no window is open. After a
     *     granted quit the window is still open, which `getWindowMode` and drawing may rely on.
     */
    virtual bool update() = 0;

    /** Runs frames until `update` returns false. */
    virtual void updateBlocking() = 0;

    /**
     * Appends a listener, not null and not owned, and tells it the window's size if one is open.
     *
     * Listeners use `Listener::attachToDisplay`, which also records the display.
     */
    virtual void addListener(Listener* listener) = 0;

    /** Takes a listener out; one that is not there is ignored. */
    virtual void removeListener(Listener* listener) = 0;

    /** The present mode; width and height are the window's real size. */
    virtual const WindowMode& getWindowMode() const = 0;

    /**
     * The window's picture as RGB bytes, top row first, rows not padded.
     *
     * @param buffer  width x height x 3 bytes. The window's height must be even.
     */
    virtual void getScreenShotRGB24(std::uint8_t* buffer) = 0;

    /** The window's picture, opaque. `image` must be writable and of the window's size, its height
     * even. */
    virtual void getScreenShot(am::Image& image) = 0;

    /** Where resources load from; not owned. */
    virtual void setArchive(am::ArchiveManager* archive) = 0;
    virtual am::ArchiveManager* getArchive() const = 0;

    /** Frames per second over the last second measured. */
    virtual float getFps() const = 0;

    /** Seconds since the display was created; with `FPS_DELTA` 1/fps for every frame done. */
    virtual float getTime() const = 0;

    /** Position in window pixels in x and y, the wheel's in z. */
    virtual mathbase::Vector3f getMousePosition() const = 0;

    /**
     * Replaces `state` by that of a joystick; all of it is 0 when there is none.
     *
     * @param index  Number of the joystick in 0..`Joystick::MOST_JOYSTICKS` - 1.
     * @return Whether it is plugged in.
     */
    virtual bool readJoystick(int index, Joystick& state) const = 0;

    /** What `draw` takes vertices and indices from, or nothing when null; built if disposed. */
    virtual void setVBO(VBO* vbo) = 0;
    virtual void setIBO(IBO* ibo) = 0;

    /** Draws into `fbo` from now on, or into the window when null; the viewport becomes all of it.
     */
    virtual void setFBO(FBO* fbo) = 0;

    /** Binds a texture, or none when null, to a texture unit in 0..7; texturing is not switched. */
    virtual void setTexture(Texture* texture, int channel) = 0;

    /** Draws with `shader` from now on, or with the fixed pipeline when null. */
    virtual void setShader(Shader* shader) = 0;

    /**
     * Draws from the current vertex buffer, which there must be.
     *
     * @param mode         Not `DRAW_NONE`.
     * @param firstIndex   Of the current index buffer; -1 draws all its indices or, when there is
     *                     no index buffer, vertices in their order.
     * @param numIndices   From `firstIndex` on.
     * @param firstVertex  When vertices are drawn in their order; -1 draws all.
     * @param numVertices  From `firstVertex` on.
     */
    virtual void draw(DrawMode mode, int firstIndex, int numIndices, int firstVertex,
                      int numVertices) = 0;

    /** Puts every graphics state back to what a frame starts with. */
    virtual void resetStates() = 0;

    /** With `FPS_EVENT`: whether the next frame is drawn. */
    virtual void setDirty(bool dirty) = 0;

    /** The size of the area drawn into, centred in the window; -1 takes the window's. */
    virtual void setActiveResolution(int width, int height) = 0;

    virtual bool supportsShaders() const = 0;
    virtual bool supportsFBO() const = 0;
    virtual int maxNumVertexAttrib() const = 0;

    /**
     * A buffer of `count` vertices, filled with zeros. Drivers without buffer objects draw it from
     * system memory, with a line in the log.
     *
     * @param def  Not null; must outlive the buffer.
     */
    virtual VBO* createVBO(int count, const VertexDef* def, ResourceMode mode) = 0;

    /** A buffer of `count` indices, filled with zeros. @param format  Not `FORMAT_NONE`. */
    virtual IBO* createIBO(int count, IBO::Format format, ResourceMode mode) = 0;

    /** A render target of this size, not 0, in pixels; `renderZ` gives it a depth buffer of its
     * own. */
    virtual FBO* createFBO(int width, int height, bool renderZ) = 0;

    /**
     * A texture from an archive's picture, held once more for every call; give it back by
     * `destroy`.
     *
     * The picture is read at the first use. The same name and declaration give the same texture,
     * unless `unique`.
     */
    virtual Texture* createTexture(const std::string& name, bool unique) = 0;
    virtual Texture* createTexture(const std::string& name,
                                   const Texture::TextureDeclaration& declaration, bool unique) = 0;

    /** A texture from a picture, of which it keeps a handle. */
    virtual Texture* createTexture(am::Image& image,
                                   const Texture::TextureDeclaration& declaration) = 0;

    /** An empty texture of the declared size, to draw into. */
    virtual Texture* createTexture(const Texture::TextureDeclaration& declaration) = 0;

    /** A program without sources; `def`, when not null, names its attributes' indices. */
    virtual Shader* createShader(VertexDef* def) = 0;
    virtual Shader* createShader(const std::string& vertexFile, const std::string& pixelFile,
                                 VertexDef* def) = 0;

    /** A shader file, compiled with the program that it is attached to; `flag` has no effect. */
    virtual ShaderSource* createVertexShader(const std::string& file, bool flag) = 0;
    virtual ShaderSource* createPixelShader(const std::string& file, bool flag) = 0;

    /** Gives back one hold on a resource; the last one deletes it. Null is ignored. */
    virtual void destroy(const Resource* resource) = 0;

    /** What is drawn into, as `setFBO` took it. */
    virtual FBO* getFBO() const = 0;
};

} // namespace zavex::display
