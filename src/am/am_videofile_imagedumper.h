#pragma once

#include "am/am_videofile.h"

namespace zavex::am {

/**
 * Writes every frame as a picture file of its own: "NAME.000000.png" and so on.
 *
 * A frame that cannot be written is counted and leaves a gap in the numbers.
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

    /** Lets go of the picture. */
    void close() { mImage = Image(); }

private:
    ArchiveManager* mArchive = nullptr; // not owned
    Format mFormat;
    int mFrameNumber = 0;  // of the next frame
    std::string mFilename; // without number and extension
    std::string mExtension;
    Image mImage;
    int mLostFrames = 0;
};

} // namespace zavex::am
