#include "vellum/vel_image.h"

#include "vellum/vel_look.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_immediate.h"
#include "display/dis_texture.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zavex::vellum {

using display::Texture;
using mathbase::Vector2f;

namespace {

constexpr float MIPMAPS_BELOW = 0.5f; // of a picture's size

Vector2f sizeOf(const Texture& texture)
{
    const Texture::TextureDeclaration& declaration = texture.getDeclaration();
    return {static_cast<float>(declaration.width), static_cast<float>(declaration.height)};
}

/** By how much a picture shrinks to fit into `area`; 1 where it need not. */
float fittingScale(const Render::Area& area, Vector2f picture)
{
    return std::min({1.0f, area.getWidth() / picture.x, area.getHeight() / picture.y});
}

/** The rectangle of a picture in the middle of `area`. */
Render::Area fittedArea(const Render::Area& area, Vector2f picture)
{
    const Vector2f size = picture * fittingScale(area, picture);
    // On whole pixels, so that what is shown pixel for pixel is sharp.
    const Vector2f corner(std::floor(area.getCenter().x - size.x / 2.0f),
                          std::floor(area.getCenter().y - size.y / 2.0f));
    return {corner, corner + size};
}

} // namespace

Image::Image()
{
    mType = mId = mCaption = "image";
    mStyle = widgetStyle();
}

Image::~Image()
{
    releaseTexture();
}

void Image::load(xml::IteratorConst& element)
{
    Control::load(element);
    if (element->hasValue("filename"))
        setFile(element->getValue("filename"));
}

void Image::draw(Area area, Area parent, Area clip)
{
    chooseTexture(area);
    Render& render = getRender();
    if (mTexture) {
        const style::Color white(1.0f, 1.0f, 1.0f, 1.0f);
        render.setColor(white, white);
        render.drawImage(*mTexture, fittedArea(area, sizeOf(*mTexture)));
    } else
        drawField(render, mStyle, area, Look::NORMAL, false);
    Control::draw(area, parent, clip);
}

void Image::setFile(const std::string& name)
{
    if (name == mFile)
        return;
    releaseTexture();
    mFile = name;
    mWanted = !name.empty();
}

/** Looks for the file, once, and sees to mipmaps where they help: they blur what is not shrunk. */
void Image::chooseTexture(const Area& area)
{
    if (mWanted && getDisplay())
        loadTexture(false);
    if (!mTexture)
        return;
    const bool mipmaps = fittingScale(area, sizeOf(*mTexture)) < MIPMAPS_BELOW;
    if (mipmaps != mTexture->getDeclaration().useMipmaps)
        loadTexture(mipmaps);
}

void Image::loadTexture(bool mipmaps)
{
    releaseTexture();
    mWanted = false;
    Texture::TextureDeclaration declaration;
    declaration.repeatMode = 0;
    declaration.useMipmaps = mipmaps; // which stretch the picture to powers of two
    mTexture = getDisplay()->createTexture(mFile, declaration, false);
    try {
        if (mTexture->isDisposed())
            mTexture->restoreResource();
    } catch (const Exception&) { // which has logged the file's name
        releaseTexture();
    }
}

void Image::releaseTexture()
{
    Texture* const texture = std::exchange(mTexture, nullptr);
    if (texture && display::Immediate::isLive())
        texture->destroy();
}

} // namespace zavex::vellum
