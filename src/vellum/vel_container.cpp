#include "vellum/vel_container.h"

namespace zavex::vellum {

Container::Container()
{
    mType = mId = "container";
}

Control* Container::clone()
{
    return new Container;
}

} // namespace zavex::vellum
