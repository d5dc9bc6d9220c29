#include "cadenza/editor_files.h"

#include "cadenza/scratch.h"

#include <filesystem>

namespace zavex::test {

std::string editorLayout(const std::string& inFront, const std::string& without)
{
    std::string layout = readText(CADENZA_TEST_SOURCE_DIR "/layout.xml");
    const std::string children = "<child>";
    layout.insert(layout.find(children) + children.size(), inFront);
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
