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

/** The rectangle of a picture of this size, in pixels, in the middle of `area`. */
Render::Area fittedArea(const Render::Area& area, float width, float height)
{
    const float scale = std::min({1.0f, area.getWidth() / width, area.getHeight() / height});
    const Vector2f size(width * scale, height * scale);
    // On whole pixels, so that what is shown pixel for pixel is sharp.
    const Vector2f corner(std::floor(area.getCenter().x - size.x / 2.0f),
                          std::floor(area.getCenter().y - size.y / 2.0f));
    return {corner, corner + size};
}

} // namespace

Image::Image()
{
    mType = "image";
    mId = "image";
    mCaption = "image";
    mStyle = widgetStyle();
}

Image::~Image()
{
    releaseTexture();
}

Control* Image::clone()
{
    return new Image;
}

void Image::load(xml::IteratorConst& element)
{
    Control::load(element);
    if (element->hasValue("filename"))
        setFile(element->getValue("filename"));
}

void Image::draw(Area area, Area parent, Area clip)
{
    loadTexture();
    Render& render = getRender();
    if (mTexture) {
        const Texture::TextureDeclaration& size = mTexture->getDeclaration();
        const style::Color white(1.0f, 1.0f, 1.0f, 1.0f);
        render.setColor(white, white);
        render.drawImage(*mTexture, fittedArea(area, static_cast<float>(size.width),
                                               static_cast<float>(size.height)));
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

/** Looks for the file, once. */
void Image::loadTexture()
{
    display::DisplayGL* const display = getDisplay();
    if (!mWanted || !display)
        return;
    mWanted = false;
    Texture::TextureDeclaration declaration;
    declaration.repeatMode = 0;
    declaration.useMipmaps = false; // they would stretch the picture to powers of two
    mTexture = display->createTexture(mFile, declaration, false);
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
