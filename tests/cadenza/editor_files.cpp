#include "cadenza/editor_files.h"

#include "cadenza/scratch.h"

#include <filesystem>

namespace zavex::test {

std::string editorLayout(const std::string& inFront, const std::string& without)
{
    std::string layout = R"(<vellum><workspace id="workspace"><child>)" + inFront + R"(
        <window id="main_window"><area y="100" width="400" height="200"/><child>
            <scrollbars id="main_scrollbars_horisontal" direction="horisontal"><child>
                <ruler id="main_ruler"><area width="1" height="1"/>
                    <color name="caption.highlight" first="00ff00" second="00ff00"/>
                    <color name="caption.pushed" first="ff0000" second="ff0000"/>
                    <child><container id="main_body"><area width="1" height="1"/><child>
                        <layoutstack id="effects"/>
                    </child></container></child>
                </ruler>
            </child></scrollbars>
        </child></window>
        <stat id="main_stat"><area width="100" height="50"/></stat>
        <label id="fps" text=""><area x="100" width="100" height="50"/></label>
        <window id="picker_window"><area x="200" width="200" height="100"/><child>
            <colorchooser id="picker"><area width="200" height="40"/></colorchooser>
            <button id="picker_ok"><area y="40" width="200" height="20"/></button>
        </child></window>
    </child></workspace></vellum>)";
    if (!without.empty()) {
        const std::string id = "id=\"" + without + "\"";
        layout.replace(layout.find(id), id.size(), "id=\"other\"");
    }
    return layout;
}

void writeEditor(const std::string& layout)
{
    constexpr const char* font = "fonthelvete2.png";
    writeText("layout.xml", layout);
    std::filesystem::copy_file(CADENZA_TEST_SOURCE_DIR "/../../demo/" + std::string(font), font,
                               std::filesystem::copy_options::overwrite_existing);
}

} // namespace zavex::test
