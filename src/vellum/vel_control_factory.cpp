#include "vellum/vel_control_factory.h"

#include "vellum/vel_control.h"

#include <memory>
#include <vector>

namespace zavex::vellum {

namespace {

std::vector<std::unique_ptr<Control>>& prototypes()
{
    static std::vector<std::unique_ptr<Control>> registered;
    return registered;
}

} // namespace

ControlFactory controlFactory;

void ControlFactory::addControlType(Control* prototype)
{
    prototypes().emplace_back(prototype);
}

Control* ControlFactory::create(const std::string& type)
{
    for (const std::unique_ptr<Control>& prototype : prototypes())
        if (prototype->getType() == type)
            return prototype->clone();
    return nullptr;
}

} // namespace zavex::vellum
