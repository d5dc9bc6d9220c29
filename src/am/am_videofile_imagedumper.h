#pragma once

#include "am/am_videofile.h"

namespace zavex::am {

/**
 * Writes every frame as a picture file of its own: "NAME.000000.png" and so on.
 *
 * A frame that cannot be written is counted and leaves a gap in the numbers.
 *
 * Outside the working directory a frame takes the place of nothing but a recorded picture, so that
 * a name that leads elsewhere costs nobody a file. What was recorded is known by how it is built,
 * see `ImageCodecPNG::isEncoded`: the files carry no mark. Anything else of that name is kept,
 * links, pipes, devices and folders among it, and the frame is lost; the first time, file and
 * reason are said on standard error.
 */
class VideoFileImageDumper final : public VideoFile {
public:
    void attach(Image& image) override { mImage = image; }

    /**
     * Writes the attached picture and goes on to the next number, whatever comes of it. Loses the
     * frame unless opened; throws Exception when there is no picture or it is shared through a
     * cache.
     */
    void writeFrame() override;

    const Format& getFormat() const override { return mFormat; }
    int getWidth() const override { return mFormat.width; }
    int getHeight() const override { return mFormat.height; }

    using VideoFile::openForRead;

    /** @param name  Ends in ".png", in small letters, else nothing is opened. */
    bool openForWrite(const std::string& name, const Format& format,
                      ArchiveManager* archive) override;

    int getLostFrames() const override { return mLostFrames; }
    std::string getPath() const override;

    /** Lets go of the picture. */
    void close() { mImage = Image(); }

private:
    std::string getFrameName() const;
    void refuse(const std::string& path, const std::string& reason);

    ArchiveManager* mArchive = nullptr; // not owned
    Format mFormat;
    int mFrameNumber = 0;  // of the next frame
    std::string mFilename; // without number and extension
    std::string mExtension;
    Image mImage;
    int mLostFrames = 0;
    bool mRefused = false; // a frame was, which has been said
};

} // namespace zavex::am
