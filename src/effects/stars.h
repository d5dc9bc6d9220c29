#pragma once

#include "cadenza/cad_plugin_spline.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"
#include "effects/star.h"

#include <memory>
#include <vector>

namespace zavex::effects {

/**
 * A dome of faint points over the scene, seen through the shared camera. No star stands below the
 * horizon; where they stand is drawn once, at `setup`.
 */
class Stars final : public CommonEffect {
public:
    using Star = effects::Star;

    static constexpr int COUNT = 10000;

    Stars();

    void setup() override;

    /** `COUNT` stars; null before `setup`. Sizes are not used. */
    const Star* stars() const { return mStar.get(); }

private:
    void drawFrame(float time, float delta, float progress) override;
    void leave(DrawingStates& left) const override;

    std::unique_ptr<Star[]> mStar;
    display::DisplayObsolete ds;
    cadenza::Spline mNotFastEnough;                          // brightness
    std::vector<display::DisplayObsolete::Vertex> mVertices; // one a star; only colours change
};

} // namespace zavex::effects
