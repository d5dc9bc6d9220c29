#include "vellum/vel_curve.h"

namespace zavex::vellum {

void followAddedKey(std::initializer_list<std::int32_t*> indices, std::int32_t added)
{
    for (std::int32_t* const index : indices)
        if (*index >= added)
            ++*index;
}

void followRemovedKey(std::initializer_list<std::int32_t*> indices, std::int32_t removed)
{
    for (std::int32_t* const index : indices) {
        if (*index == removed)
            *index = -1;
        else if (*index > removed)
            --*index;
    }
}

} // namespace zavex::vellum
