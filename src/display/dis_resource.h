#pragma once

#include "am/am_file.h"
#include "am/am_image.h"

#include <cstddef>
#include <string>

namespace zavex::display {

class DisplayGL;

/**
 * An object in graphics memory, created and owned by the display.
 *
 * A resource can lose its graphics object (it is then disposed) and build it again: it keeps what
 * it needs for that, a file's name or an image. It starts disposed, held once. Holders never delete
 * it: `destroy` gives one hold back, and the last one deletes the resource.
 */
class Resource {
public:
    /** @param display  Owner; must not be null. */
    explicit Resource(DisplayGL* display);

    Resource(const Resource&) = delete;
    Resource& operator=(const Resource&) = delete;
    virtual ~Resource() = default;

    virtual DisplayGL* getDisplay() { return mDisplay; }
    virtual const DisplayGL* getDisplay() const { return mDisplay; }

    /**
     * Frees the graphics object; must not be disposed.
     *
     * @param lost  The context is gone already, and the graphics object with it.
     */
    virtual void disposeResource(bool lost) = 0;

    /** Builds the graphics object; must be disposed. Needs the display's context. */
    virtual void restoreResource() = 0;

    /** Gives back the holds on other resources. */
    virtual void dettachAll() {}

    bool isDisposed() const { return mDisposed; }

    /** Gives one hold back to the display, which deletes the resource with the last one. */
    void destroy();

    void incRef() { ++mReferences; }
    void decRef() { --mReferences; }
    int getRef() const { return mReferences; }

    /** The display has an archive to load from. */
    bool canLoad() const;

    /** The bytes of an archive's file. Throws Exception when there is no archive or no such file.
     */
    am::File loadFile(const std::string& name) const;

    /**
     * A picture of the archives; with `uncached` a writable copy of its own.
     *
     * Throws Exception when there is no archive, no such file or no picture in it.
     */
    am::Image loadImage(const std::string& name, bool uncached) const;

    /**
     * A picture decoded from `size` bytes that the caller keeps, cached under `name`, whose
     * extension selects the codec. Throws Exception as the other form does.
     */
    am::Image loadImage(const std::string& name, const unsigned char* data, std::size_t size) const;

protected:
    DisplayGL* mDisplay = nullptr; // never null
    bool mDisposed = true;

private:
    int mReferences = 1;
};

} // namespace zavex::display
