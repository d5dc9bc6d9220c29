#include "imgui_screen.h"

#include "xml/xml_iteratorconst.h"

#include <backends/imgui_impl_opengl2.h>
#include <imgui.h>

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace zavex::bench {

using mathbase::Box2;
using mathbase::Vector2f;
using Item = ImguiScreen::Item;

namespace {

constexpr ImGuiWindowFlags WINDOW_FLAGS = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                          ImGuiWindowFlags_NoSavedSettings |
                                          ImGuiWindowFlags_NoBringToFrontOnFocus;
constexpr std::size_t SAMPLES = 180;    // of a curve of times
constexpr std::size_t LINE_WIDTH = 120; // letters in a line of filling

ImVec2 sizeOf(const Item& item)
{
    return {item.area.getWidth(), item.area.getHeight()};
}

void drawAll(std::vector<Item>& items)
{
    for (Item& item : items) {
        ImGui::PushID(&item);
        item.draw(item);
        ImGui::PopID();
    }
}

/** Children at their places below where the next widget would stand. */
void drawChildren(Item& item)
{
    const ImVec2 origin = ImGui::GetCursorPos();
    for (Item& child : item.children) {
        ImGui::PushID(&child);
        ImGui::SetCursorPos({origin.x + child.area.mMin.x, origin.y + child.area.mMin.y});
        child.draw(child);
        ImGui::PopID();
    }
}

void drawLabel(Item& item)
{
    ImGui::TextUnformatted(item.text.data(), item.text.data() + item.text.size());
}

void drawButton(Item& item)
{
    ImGui::Button(item.text.c_str(), sizeOf(item));
}

void drawCheckbox(Item& item)
{
    for (Item& row : item.rows)
        ImGui::Checkbox(row.text.c_str(), &row.checked);
}

void drawRadioButton(Item& item)
{
    for (Item& row : item.rows)
        ImGui::RadioButton(row.text.c_str(), row.checked);
}

void drawSlider(Item& item)
{
    ImGui::SetNextItemWidth(item.area.getWidth());
    ImGui::SliderFloat("##value", &item.value, 0.0f, 1.0f, "");
}

void drawTextInput(Item& item)
{
    ImGui::SetNextItemWidth(item.area.getWidth());
    ImGui::InputText("##input", item.input, sizeof(item.input));
}

void drawDropdown(Item& item)
{
    ImGui::SetNextItemWidth(item.area.getWidth());
    if (ImGui::BeginCombo("##rows", item.rows.empty() ? "" : item.rows.front().text.c_str()))
        ImGui::EndCombo();
}

void drawMenuBar(Item& item)
{
    if (!ImGui::BeginMainMenuBar())
        return;
    for (const Item& row : item.rows)
        if (ImGui::BeginMenu(row.text.c_str()))
            ImGui::EndMenu();
    ImGui::EndMainMenuBar();
}

void drawMenu(Item& item)
{
    ImGui::BeginChild("menu", sizeOf(item), true);
    for (Item& row : item.rows)
        ImGui::Selectable(row.text.c_str(), &row.checked);
    ImGui::EndChild();
}

void drawTreeRow(Item& row)
{
    if (!ImGui::TreeNodeEx(row.text.c_str(), ImGuiTreeNodeFlags_DefaultOpen))
        return;
    drawAll(row.rows);
    ImGui::TreePop();
}

void drawTree(Item& item)
{
    ImGui::BeginChild("tree", sizeOf(item), true);
    for (Item& row : item.rows)
        drawTreeRow(row);
    ImGui::EndChild();
}

void drawTabs(Item& item)
{
    ImGui::BeginChild("tabs", sizeOf(item), true);
    if (ImGui::BeginTabBar("captions")) {
        for (Item& page : item.children) {
            if (!ImGui::BeginTabItem(page.text.c_str()))
                continue;
            drawChildren(page);
            ImGui::EndTabItem();
        }
        ImGui::EndTabBar();
    }
    ImGui::EndChild();
}

void drawStatistics(Item& item)
{
    static const std::array<float, SAMPLES> times = [] {
        std::array<float, SAMPLES> curve{};
        for (std::size_t i = 0; i < curve.size(); ++i)
            curve[i] = std::sin(0.1f * static_cast<float>(i));
        return curve;
    }();
    ImGui::PlotLines("##times", times.data(), static_cast<int>(times.size()), 0, nullptr, -1.0f,
                     1.0f, sizeOf(item));
}

void drawColorChooser(Item& item)
{
    static float color[3] = {0.2f, 0.6f, 0.8f};
    ImGui::SetNextItemWidth(item.area.getHeight());
    ImGui::ColorPicker3("##color", color,
                        ImGuiColorEditFlags_PickerHueWheel | ImGuiColorEditFlags_NoSidePreview |
                            ImGuiColorEditFlags_NoInputs);
}

void drawImage(Item& item)
{
    ImGui::Image(ImGui::GetIO().Fonts->TexID, sizeOf(item));
}

void drawWindow(Item& item)
{
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    ImGui::SetNextWindowPos(corner);
    ImGui::SetNextWindowSize(sizeOf(item));
    if (ImGui::Begin(item.text.c_str(), nullptr, ImGuiWindowFlags_NoSavedSettings))
        drawChildren(item);
    ImGui::End();
}

void drawFrame(Item& item)
{
    ImGui::BeginChild("frame", sizeOf(item), true);
    if (!item.text.empty())
        drawLabel(item);
    drawChildren(item);
    ImGui::EndChild();
}

/** Has no body of its own. */
void drawScrollbars(Item& item)
{
    ImGui::PushStyleColor(ImGuiCol_ChildBg, IM_COL32_BLACK_TRANS);
    drawFrame(item);
    ImGui::PopStyleColor();
}

void drawPanel(Item& item)
{
    ImGui::BeginChild("panel", sizeOf(item), true);
    if (ImGui::CollapsingHeader(item.text.c_str(), ImGuiTreeNodeFlags_DefaultOpen))
        drawChildren(item);
    ImGui::EndChild();
}

/** What stands for a type of control; a frame for those that are not named. */
constexpr std::pair<std::string_view, Item::Draw> WIDGETS[] = {
    {"button",       drawButton      },
    {"checkbox",     drawCheckbox    },
    {"colorchooser", drawColorChooser},
    {"container",    drawChildren    },
    {"dropdown",     drawDropdown    },
    {"flow",         drawChildren    },
    {"image",        drawImage       },
    {"item",         drawTreeRow     },
    {"knob",         drawSlider      },
    {"label",        drawLabel       },
    {"layoutstack",  drawChildren    },
    {"menu",         drawMenu        },
    {"menubar",      drawMenuBar     },
    {"panel",        drawPanel       },
    {"radiobutton",  drawRadioButton },
    {"scrollbars",   drawScrollbars  },
    {"slider",       drawSlider      },
    {"stat",         drawStatistics  },
    {"tabview",      drawTabs        },
    {"textinput",    drawTextInput   },
    {"treeview",     drawTree        },
    {"window",       drawWindow      },
};

Item::Draw widgetOf(std::string_view type)
{
    for (const auto& [name, draw] : WIDGETS)
        if (name == type)
            return draw;
    return drawFrame;
}

/** The first attribute that is not empty. */
std::string captionOf(const xml::IteratorConst& element)
{
    for (const char* const name : {"caption", "text", "name"})
        if (const std::string& value = element->getValue(name); !value.empty())
            return value;
    return "";
}

Item itemOf(const xml::IteratorConst& element, Vector2f parentSize)
{
    Item item;
    item.draw = widgetOf(element->getName());
    item.text = captionOf(element);
    item.text.copy(item.input, sizeof(item.input) - 1);
    item.area = Box2({0.0f, 0.0f}, parentSize);
    for (xml::IteratorConst area = element.createIterator("area"); ++area;)
        if (area->getValueFloat("width") > 0.0f)
            item.area = Box2(area->getValueFloat("x"), area->getValueFloat("y"),
                             area->getValueFloat("x") + area->getValueFloat("width"),
                             area->getValueFloat("y") + area->getValueFloat("height"));

    const Vector2f size(item.area.getWidth(), item.area.getHeight());
    for (const char* const name : {"item", "option"})
        for (xml::IteratorConst row = element.createIterator(name); ++row;)
            item.rows.push_back(itemOf(row, size));
    for (xml::IteratorConst group = element.createIterator("child"); ++group;)
        for (xml::IteratorConst child = group.createIterator(""); ++child;)
            if (child->getType() == xml::XmlTag::NORMAL)
                item.children.push_back(itemOf(child, size));
    return item;
}

std::size_t countOf(const Item& item)
{
    std::size_t count = 1;
    for (const Item& row : item.rows)
        count += countOf(row);
    for (const Item& child : item.children)
        count += countOf(child);
    return count;
}

} // namespace

ImguiScreen::ImguiScreen(const xml::IteratorConst& workspace, Vector2f windowSize)
    : mScreen(itemOf(workspace, windowSize)), mSize(windowSize)
{
    ImGui::CreateContext();
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;
    io.DisplaySize = {windowSize.x, windowSize.y};
    io.DeltaTime = 1.0f / 60.0f;
    ImGui::GetStyle().Colors[ImGuiCol_ChildBg] = {0.1f, 0.1f, 0.12f, 1.0f}; // filled, as frames are
    ImGui_ImplOpenGL2_Init();
}

ImguiScreen::~ImguiScreen()
{
    ImGui_ImplOpenGL2_Shutdown();
    ImGui::DestroyContext();
}

void ImguiScreen::draw()
{
    ImGui_ImplOpenGL2_NewFrame();
    ImGui::NewFrame();
    ImGui::SetNextWindowPos({0.0f, 0.0f});
    ImGui::SetNextWindowSize({mSize.x, mSize.y});
    ImGui::Begin("screen", nullptr, WINDOW_FLAGS);
    ImGui::SetCursorPos({0.0f, 0.0f});
    drawChildren(mScreen);
    ImGui::SetCursorPos({0.0f, 24.0f});
    ImGui::TextUnformatted(mFilling.data(), mFilling.data() + mFilling.size());
    ImGui::End();
    ImGui::Render();
    ImGui_ImplOpenGL2_RenderDrawData(ImGui::GetDrawData());
}

std::size_t ImguiScreen::widgetCount() const
{
    return countOf(mScreen);
}

/** A letter is four vertices in a row whose texture coordinates differ; shapes have one point of
 * the sheet. */
std::size_t ImguiScreen::letterCount() const
{
    const ImDrawData& data = *ImGui::GetDrawData();
    const auto isLetter = [](const ImDrawVert* corner) {
        return corner[0].uv.x < corner[1].uv.x && corner[1].uv.y < corner[2].uv.y &&
               corner[2].uv.x == corner[1].uv.x && corner[3].uv.x == corner[0].uv.x;
    };
    std::size_t count = 0;
    for (int list = 0; list < data.CmdListsCount; ++list) {
        const ImVector<ImDrawVert>& vertices = data.CmdLists[list]->VtxBuffer;
        for (int i = 0; i + 3 < vertices.Size; ++i)
            if (isLetter(&vertices[i])) {
                ++count;
                i += 3;
            }
    }
    return count;
}

void ImguiScreen::fillUpTo(std::size_t count)
{
    const std::size_t drawn = letterCount();
    for (std::size_t i = drawn; i < count; ++i) {
        mFilling += 'x';
        if ((i - drawn) % LINE_WIDTH == LINE_WIDTH - 1)
            mFilling += '\n';
    }
}

} // namespace zavex::bench
