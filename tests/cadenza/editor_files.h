#pragma once

#include <string>

namespace zavex::test {

/**
 * A small editor, without colours of its own, in a window of 400 x 300 pixels: "main_window" at
 * (0, 100) is 400 x 200 large, and its scroll area 400 x 174.
 *
 * @param inFront  Elements that are found before those of the editor.
 * @param without  Identifier of a control that is called something else.
 */
std::string editorLayout(const std::string& inFront = "", const std::string& without = "");

/** Writes a layout as "layout.xml", and the font sheet of the show, into the working directory. */
void writeEditor(const std::string& layout = editorLayout());

} // namespace zavex::test
