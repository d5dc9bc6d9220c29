#pragma once

#include "cadenza/cad_effect.h"

namespace zavex::effects {

class Common;

/** Base of every effect that draws: knows the one `Common` whose targets and camera they share. */
class CommonEffect : public cadenza::Effect {
public:
    /** @param common  Not owned; must outlive this effect. Set right after the effect was created.
     */
    void setCommon(Common* common) { mCommon = common; }

protected:
    Common* mCommon = nullptr; // not owned
};

} // namespace zavex::effects
