#include "vellum/vel_container.h"

namespace zavex::vellum {

Container::Container()
{
    mType = mId = "container";
}

} // namespace zavex::vellum
