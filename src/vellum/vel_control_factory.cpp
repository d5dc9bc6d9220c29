#include "vellum/vel_control_factory.h"

#include "vellum/vel_control.h"

#include <memory>
#include <utility>
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
    std::unique_ptr<Control> owned(prototype);
    prototypes().push_back(std::move(owned));
}

Control* ControlFactory::create(const std::string& type)
{
    for (const std::unique_ptr<Control>& prototype : prototypes())
        if (prototype->getType() == type)
            return prototype->clone();
    return nullptr;
}

} // namespace zavex::vellum
