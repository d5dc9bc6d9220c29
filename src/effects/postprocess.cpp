#include "effects/postprocess.h"

#include "display/dis_display.h"
#include "display/dis_fbo.h"
#include "display/dis_shader.h"
#include "effects/common.h"
#include "effects/effect_factory.h"
#include "effects/picture_quad.h"
#include "mathbase/mb_random.h"

namespace zavex::effects {

using display::DisplayObsolete;

namespace {

constexpr float CUTOFF = 1.0f;       // brightness from which a picture glows in full
constexpr float SAMPLE_WIDTH = 1.0f; // texels

} // namespace

PostProcess::PostProcess()
{
    addPlugin("glow", mGlow);
    addPlugin("glownoise", mGlowNoise);
}

void PostProcess::setup()
{
    const char* const glow = "postprocess/glow.vert";
    mGlowHor = mDisplay->createShader(glow, "postprocess/glow_hor.frag", nullptr);
    mGlowVer = mDisplay->createShader(glow, "postprocess/glow_vertical.frag", nullptr);
    mCombineShader =
        mDisplay->createShader("postprocess/combine.vert", "postprocess/combine.frag", nullptr);
    mMinifyShader =
        mDisplay->createShader("postprocess/minify.vert", "postprocess/minify.frag", nullptr);
}

/**
 * The grain begins elsewhere in each frame, as the C generator says. That one frame is like another
 * of the same seed rests on the editor: the constructor of `Vellum` seeds it with `initialSeed`.
 */
void PostProcess::drawFrame(float time, float /*delta*/, float /*progress*/)
{
    present(time, mathbase::RandomGen_Rand().nextFloat());
}

void PostProcess::present(float time, float noiseSeed)
{
    beginOverlay(ds);
    DisplayObsolete::setBlending(false);

    minify();
    blur();
    combine(time, noiseSeed);
}

void PostProcess::leave(DrawingStates& left) const
{
    left.state.depthTest = false;
    left.state.faceCulling = false;
    left.state.blending = false;
    left.target = nullptr;
}

/** The texture's first row lands at the top: every pass mirrors its picture. */
void PostProcess::drawQuad()
{
    drawPicture(-1.0f, 1.0f, 1.0f, -1.0f, 1.0f);
}

void PostProcess::minify()
{
    mDisplay->setFBO(mCommon->mVaddrHalf[0]);
    mDisplay->setTexture(mCommon->mVaddr_Texture[0], 0);
    mDisplay->setShader(mMinifyShader);
    setUniform(*mMinifyShader, "width", static_cast<float>(mCommon->mVaddr[0]->getWidth()));
    setUniform(*mMinifyShader, "cutoff", CUTOFF);
    setUniform(*mMinifyShader, "tex", 0);
    drawQuad();
}

void PostProcess::blur()
{
    display::FBO* const half = mCommon->mVaddrHalf[0];

    mDisplay->setShader(mGlowHor);
    setUniform(*mGlowHor, "width", static_cast<float>(half->getWidth()));
    setUniform(*mGlowHor, "sampleWidth", SAMPLE_WIDTH);
    mDisplay->setFBO(mCommon->mVaddrHalf[1]);
    mDisplay->setTexture(mCommon->mVaddrHalf_Texture[0], 0);
    drawQuad();

    mDisplay->setShader(mGlowVer);
    setUniform(*mGlowVer, "height", static_cast<float>(half->getHeight()));
    setUniform(*mGlowVer, "sampleWidth", SAMPLE_WIDTH);
    mDisplay->setFBO(half);
    mDisplay->setTexture(mCommon->mVaddrHalf_Texture[1], 0);
    drawQuad();
}

/** @param noiseSeed  Where the grain starts; 0..1. */
void PostProcess::combine(float time, float noiseSeed)
{
    mDisplay->setShader(mCombineShader);
    mDisplay->setFBO(nullptr);
    mDisplay->setTexture(mCommon->mVaddr_Texture[0], 0);
    setUniform(*mCombineShader, "originalTexture", 0);
    mDisplay->setTexture(mCommon->mVaddrHalf_Texture[0], 1);
    setUniform(*mCombineShader, "glowTexture", 1);
    setUniform(*mCombineShader, "time", time);
    setUniform(*mCombineShader, "r", noiseSeed);
    setUniform(*mCombineShader, "glow", unit(mGlow.get(time)));
    setUniform(*mCombineShader, "glownoise", unit(mGlowNoise.get(time)));
    drawQuad();
}

template cadenza::EffectFactoryBase& factoryOf<PostProcess>();

} // namespace zavex::effects
