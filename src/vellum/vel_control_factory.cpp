#include "vellum/vel_control_factory.h"

#include "vellum/vel_box.h"
#include "vellum/vel_box_view.h"
#include "vellum/vel_button.h"
#include "vellum/vel_caption.h"
#include "vellum/vel_checkbox.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_container.h"
#include "vellum/vel_context.h"
#include "vellum/vel_dropdown.h"
#include "vellum/vel_flow.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_image.h"
#include "vellum/vel_knob.h"
#include "vellum/vel_label.h"
#include "vellum/vel_layout_stack.h"
#include "vellum/vel_menu.h"
#include "vellum/vel_menu_bar.h"
#include "vellum/vel_panel.h"
#include "vellum/vel_radio_button.h"
#include "vellum/vel_ruler.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_slider.h"
#include "vellum/vel_spline.h"
#include "vellum/vel_stat.h"
#include "vellum/vel_tab_caption.h"
#include "vellum/vel_tab_frame.h"
#include "vellum/vel_tab_view.h"
#include "vellum/vel_text_input.h"
#include "vellum/vel_tree_view.h"
#include "vellum/vel_window.h"
#include "vellum/vel_workspace.h"

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

template <typename... Controls>
void registerPrototypes(ControlFactory& factory)
{
    (factory.addControlType(new Controls), ...);
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

/** The registry is the program's: the first call fills it for all. */
void registerControls()
{
    [[maybe_unused]] static const bool registered = [] {
        registerPrototypes<Box, BoxFrame, BoxView, Button, Caption, Checkbox, ColorChooser,
                           Container, Context, Dropdown, Flow, Frame, Image, Knob, Label,
                           LayoutStack, Menu, MenuBar, Panel, PanelFrame, RadioButton, Ruler,
                           Scrollbars, Slider, Spline, Stat, TabView, TabCaption, TabFrame,
                           TextInput, TreeView, Window, WindowFrame, Workspace>(controlFactory);
        return true;
    }();
}

} // namespace zavex::vellum
