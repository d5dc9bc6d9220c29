#pragma once

#include "vellum/vel_control.h"

namespace zavex::display {
class Texture;
}

namespace zavex::vellum {

/**
 * A picture from the display's archives, in the middle of its rectangle: pixel for pixel where it
 * fits, else as large as fits with its proportions kept, smoothed by mipmaps below half its size.
 *
 * The file is read when the control is drawn first. One that is missing or cannot be read is logged
 * once, with its name, and leaves an empty frame. Holds its texture until it is destroyed or given
 * another file; a display that ends earlier takes it along.
 */
class Image final : public Control {
public:
    Image();
    Image(const Image&) = delete;
    Image(Image&&) = delete;
    Image& operator=(const Image&) = delete;
    Image& operator=(Image&&) = delete;
    ~Image() override;

    Control* clone() override { return new Image; }

    /** Reads "filename"; without one the picture stays as it was. */
    void load(xml::IteratorConst& element) override;

    void draw(Area area, Area parent, Area clip) override;

    /** @param name  In the display's archives; empty for no picture. */
    void setFile(const std::string& name);

private:
    void chooseTexture(const Area& area);
    void loadTexture(bool mipmaps);
    void releaseTexture();

    std::string mFile;
    bool mWanted = false;                 // the file has not been looked for yet
    display::Texture* mTexture = nullptr; // held once
};

} // namespace zavex::vellum
