#pragma once

#include <string>
#include <string_view>

namespace zavex::am {

/**
 * Writes a file so that it is, at every moment, either the old one or the new one, whole.
 *
 * The bytes go to a file beside it, which is renamed over it. A file that replaces another reaches
 * the disk before the old one goes; one that replaces nothing is not waited for. Missing
 * directories are created; a symbolic link stays one. A device or a pipe gets the bytes as it is.
 * A write-protected file is not replaced.
 *
 * @param reason  Receives why it failed, as the system words it; left alone on success.
 * @return False when the file could not be written; the old one is whole then.
 */
bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& reason);

} // namespace zavex::am
