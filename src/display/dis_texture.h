#pragma once

#include "display/dis_resource.h"

#include <tuple>

namespace zavex::display {

/** A picture in graphics memory. Made by `DisplayGL::createTexture`, bound by
 * `DisplayGL::setTexture`. */
class Texture : public Resource {
public:
    enum Channels : int {
        CHAN_DEFAULT = 0, // as `CHAN_RGBA`
        CHAN_ALPHA = 1,   // refused
        CHAN_RGB = 2,
        CHAN_RGBA = 3,
        CHAN_LA = 4, // luminance and alpha
        CHAN_DEPTH = 5,
    };

    enum ChannelFormat : int {
        FORMAT_DEFAULT = 0, // as `FORMAT_UINT8`
        FORMAT_UINT8 = 1,
        FORMAT_UINT16 = 2,
        FORMAT_UINT24 = 3,
        FORMAT_UINT32 = 4,
        FORMAT_F16 = 5,
        FORMAT_F32 = 6,
        FORMAT_HDR = 7,
    };

    enum Target : int {
        TARGET_1D = 0,
        TARGET_2D = 1, // the only one that can be built
        TARGET_3D = 2,
        TARGET_CUBE = 3,
        TARGET_DEFAULT = 4, // as `TARGET_2D`
    };

    /** Axes along which a texture repeats, as bits; along the others its edge is stretched. */
    enum RepeatMode : int {
        REPEAT_X = 1,
        REPEAT_Y = 2,
        REPEAT_Z = 4,
        REPEAT_XYZ = 7,
    };

    /** What a texture is to be. Ordered field by field. */
    struct TextureDeclaration {
        int width = -1;  // texels; -1 takes it from the image
        int height = -1; // texels; -1 takes it from the image
        Channels channelType = CHAN_DEFAULT;
        ChannelFormat channelFormat = FORMAT_DEFAULT;
        Target target = TARGET_DEFAULT;
        int repeatMode = REPEAT_XYZ; // `RepeatMode` bits
        bool useMipmaps = true;      // build and sample mipmaps

        bool operator<(const TextureDeclaration& other) const
        {
            const auto fields = [](const TextureDeclaration& each) {
                return std::tie(each.width, each.height, each.channelType, each.channelFormat,
                                each.target, each.repeatMode, each.useMipmaps);
            };
            return fields(*this) < fields(other);
        }
    };

    using Resource::Resource;

    /** Builds the mipmaps anew from level 0, after drawing into the texture. Must be live, with
     * mipmaps. */
    virtual void updateMipmaps() = 0;

    /** The declaration with every default resolved; the size is known from the first use on. */
    virtual const TextureDeclaration& getDeclaration() const = 0;
};

} // namespace zavex::display
