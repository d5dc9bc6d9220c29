#pragma once

#include "cadenza/cad_plugin_color.h"
#include "cadenza/cad_plugin_spline.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"
#include "effects/star.h"
#include "mathbase/mb_vector3.h"

#include <array>
#include <memory>
#include <vector>

namespace zavex::effects {

/**
 * A flight along a road of light through a field of houses. As the camera comes near, a house is
 * first a glow, then gets a body and then an outline. Moves the shared camera; four credits are
 * shown at the right edge.
 *
 * The path is (20 x, 20 y, 100 z) of three curves. Houses are placed along it once, at `setup`, and
 * stay where they are when it is edited. Everything else is a function of time, but for the camera,
 * which rests at the end of the span.
 */
class Volumetric final : public CommonEffect {
public:
    using Star = effects::Star;

    static constexpr int HOUSES = 600;

    Volumetric();

    /** Throws Exception when the driver has no blend equations. */
    void setup() override;

    /** `HOUSES` houses; null before `setup`. Their size is their scale. */
    const Star* houses() const { return mHouse.get(); }

    /** How far the three stages of a house's build-up have come, each in 0..1. */
    struct Stages {
        float volume;
        float body;
        float outline;

        bool operator==(const Stages&) const = default;
    };

    /** @param closeness  At most 1; nothing is built at 0 or less. */
    static Stages stagesAt(float closeness);

    /** Where x lies between a and b: 0 up to a, 1 from b on. */
    static float getSlice(float x, float a, float b);

private:
    void drawFrame(float time, float delta, float progress) override;
    void drawUnseen(float time) override;
    void leave(DrawingStates& left) const override { left.addLight(); }

    /** A piece of the road in this frame: both lanes, seen from the world. */
    struct Segment {
        display::DisplayObsolete::MatrixGL transform;
        mathbase::Vector3f color;
        float fade; // with the distance, in 0..1
    };

    /** A house in sight in this frame. */
    struct House {
        display::DisplayObsolete::MatrixGL transform;
        display::DisplayObsolete::BoxCorners corners; // of its body
        Stages stages;
    };

    mathbase::Vector3f pathAt(float time) const;
    void placeHouses();
    void moveCamera(float time);

    void findRoad();
    void drawRoad();
    void drawRoadLight(std::size_t first, std::size_t end) const;
    void drawRoadOutline() const;
    void drawGrid();

    void findHouses(float time);
    void drawHouses();
    void drawHouseLight();
    void drawVolumes(std::size_t group);
    void drawBodies();
    void drawOutlines();

    void drawCredits(float time);

    std::unique_ptr<Star[]> mHouse;
    cadenza::Color mColorRoad;
    cadenza::Color mColorHouse; // over the build-up of a house
    cadenza::Spline mX;
    cadenza::Spline mY;
    cadenza::Spline mZ;
    display::DisplayObsolete ds;
    display::Shader* mShader = nullptr;          // light; owned by the display
    display::Shader* mTexShader = nullptr;       // bodies; owned by the display
    display::Texture* mIce = nullptr;            // owned by the display
    std::array<display::Texture*, 4> mCredits{}; // owned by the display
    std::array<cadenza::Spline, 4> mCreditsSpline{};
    std::vector<display::DisplayObsolete::Vertex> mGrid; // two a line
    std::vector<float> mShyness; // of each house: how much later it is built
    std::vector<Segment> mRoad;  // reused in every frame
    std::vector<House> mNear;    // reused in every frame

    static float mTime; // of the latest `draw` of any, seconds since its start
};

} // namespace zavex::effects
