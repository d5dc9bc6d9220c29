#pragma once

#include "am/am_image.h"

#include <string>

namespace zavex::am {

class ArchiveManager;

/** A stream of frames, written or read one at a time. Reading is not provided by any kind of it. */
class VideoFile {
public:
    struct Format {
        Format() = default;
        Format(int newWidth, int newHeight, int newFrameRate)
            : width(newWidth), height(newHeight), frameRate(newFrameRate)
        {}

        int width = 0;     // pixels
        int height = 0;    // pixels
        int frameRate = 0; // frames per second = frameRate / frameRateBase
        int frameRateBase = 1;
    };

    /**
     * Opens a stream for writing, by what the extension of `name` asks for. Owned by the caller.
     *
     * Throws Exception when nothing writes that.
     *
     * @param archive  Where the files go; not owned, must outlive the stream.
     */
    static VideoFile* createForWrite(const std::string& name, const Format& format,
                                     ArchiveManager* archive);

    /** Both throw Exception: nothing reads streams. */
    static VideoFile* createForRead(const std::string& name);
    static VideoFile* createForRead(const unsigned char* data, int size);

    VideoFile() = default;
    VideoFile(const VideoFile&) = delete;
    VideoFile& operator=(const VideoFile&) = delete;
    virtual ~VideoFile() = default;

    /** Shares the picture that frames are taken from. */
    virtual void attach(Image& image) = 0;

    virtual bool readFrame() { return false; }
    virtual void writeFrame() {}
    virtual const Format& getFormat() const = 0;
    virtual int getWidth() const = 0;  // pixels
    virtual int getHeight() const = 0; // pixels
    virtual bool openForRead(const std::string& name);
    virtual bool openForRead(const unsigned char* data, int size);
    virtual bool openForWrite(const std::string& name, const Format& format,
                              ArchiveManager* archive);

    /** Frames that could not be written so far. */
    virtual int getLostFrames() const { return 0; }

    /** The file that the next frame goes to; empty when it goes to none. */
    virtual std::string getPath() const { return {}; }
};

} // namespace zavex::am
