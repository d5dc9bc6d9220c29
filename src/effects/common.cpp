#include "effects/common.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_fbo.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"

namespace zavex::effects {

using display::FBO;
using display::Texture;

void Common::setup()
{
    Texture::TextureDeclaration declaration;
    declaration.width = mDisplay->getWindowMode().width;
    declaration.height = mDisplay->getWindowMode().height;
    declaration.channelType = Texture::CHAN_RGB;
    declaration.channelFormat = Texture::FORMAT_F16;
    declaration.target = Texture::TARGET_2D;
    declaration.repeatMode = 0;
    declaration.useMipmaps = false;

    mVaddr_Texture[0] = mDisplay->createTexture(declaration);
    mVaddr[0] = mDisplay->createFBO(declaration.width, declaration.height, true);
    mVaddr[0]->attach(FBO::COLOR0, mVaddr_Texture[0]);

    declaration.width /= 2;
    declaration.height /= 2;
    for (std::size_t half = 0; half < mVaddrHalf.size(); ++half) {
        mVaddrHalf_Texture[half] = mDisplay->createTexture(declaration);
        mVaddrHalf[half] = mDisplay->createFBO(declaration.width, declaration.height, false);
        mVaddrHalf[half]->attach(FBO::COLOR0, mVaddrHalf_Texture[half]);
    }
}

void Common::clearTargets()
{
    for (FBO* const target : {mVaddr[0], mVaddrHalf[0], mVaddrHalf[1]}) {
        mDisplay->setFBO(target);
        display::DisplayObsolete::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
    }
    mDisplay->setFBO(nullptr);
}

void Common::draw(float /*time*/, float /*delta*/, float /*progress*/) {}

} // namespace zavex::effects
