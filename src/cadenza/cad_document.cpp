#include "cadenza/cad_document.h"

#include "am/am_atomicwrite.h"
#include "am/am_diskfile.h"
#include "common/zvx_process.h"
#include "common/zvx_system.h"
#include "xml/xml_parser.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace zavex::cadenza {

namespace {

/**
 * `base`, or `base` with a number, for a file of these bytes; `taken` when there is one already. A
 * link is never the one, wherever it leads.
 */
std::string nameBeside(const std::string& base, std::string_view bytes, bool& taken)
{
    for (int number = 1;; ++number) {
        std::string name = number == 1 ? base : base + "." + std::to_string(number);
        std::error_code error;
        if (std::filesystem::is_symlink(name, error))
            continue;
        const am::DiskRead found = am::readDiskFile(name, name);
        taken = !found.file.isNull() && found.file->bytes() == bytes;
        if (taken || found.isMissing())
            return name;
    }
}

/** Adds a file beside `path` unless there is one of these bytes. */
void addBeside(const std::string& path, const char* suffix, std::string_view bytes,
               const char* said, am::SaveSet& set)
{
    bool taken = false;
    const std::string name = nameBeside(path + suffix, bytes, taken);
    if (!taken)
        set.add(name, bytes);
    ZVX_LOG("log", "app", "'%s' %s '%s'\n", path.c_str(), said, name.c_str());
}

std::uint64_t mixed(std::uint64_t place, std::string_view text)
{
    constexpr std::uint64_t spread = 0x9e3779b97f4a7c15; // 2^64 by the golden ratio
    return (place ^ std::hash<std::string_view>{}(text)) * spread + (place >> 29);
}

/** A number as it is saved, other text as it is. */
std::string asSaved(const std::string& value)
{
    double number = 0.0;
    const char* const end = value.data() + value.size();
    const auto [rest, error] = std::from_chars(value.data(), end, number);
    if (error != std::errc() || rest != end || value.empty())
        return value;
    xml::XmlTag tag;
    tag.setValue("", double{static_cast<float>(number)});
    return tag.getValue("");
}

/** A number for each element and each attribute below a root, by where it stands; sorted. */
std::vector<std::uint64_t> statementsOf(const xml::XmlParser& document)
{
    std::vector<std::uint64_t> found;
    std::vector<std::pair<const xml::XmlNode*, std::uint64_t>> open{
        {document.createIterator("").getContext(), 0}
    };
    while (!open.empty()) {
        const auto [node, parent] = open.back();
        open.pop_back();
        const std::uint64_t place = mixed(parent, node->getTag().getName());
        found.push_back(place);
        for (const xml::XmlTag::Argument& each : node->getTag().getArg())
            found.push_back(mixed(mixed(place, each.name), asSaved(each.value)));
        for (int child = 0; child < node->getNumChildren(); ++child)
            open.emplace_back(node->getChildren(child), place);
    }
    std::ranges::sort(found);
    return found;
}

} // namespace

void DocumentFile::setPath(const std::string& path)
{
    if (path == mPath)
        return;
    *this = DocumentFile();
    mPath = path;
}

bool DocumentFile::read(xml::XmlParser& document, Links links)
{
    mKnown = Known::UNREADABLE;
    const std::string where = links == Links::INSIDE ? am::leadsOutside(mPath) : "";
    if (!where.empty())
        throw Exception("%s: it leads out of the show's folder, to '%s'", mPath.c_str(),
                        where.c_str());
    const am::DiskRead found = am::readDiskFile(mPath, mPath);
    if (!found.failure.empty())
        throw Exception("%s: %s", mPath.c_str(), found.failure.c_str());
    if (found.isMissing()) {
        mKnown = Known::MISSING;
        return false;
    }
    document.parse(found.file->bytes(), mPath);
    mRead = found.file->bytes();
    mKnown = Known::BYTES;
    return true;
}

void DocumentFile::save(const xml::XmlParser& document, am::SaveSet& set)
{
    if (mKnown == Known::UNREADABLE)
        return set.refuse(mPath, "it was not read");
    if (const std::string where = am::leadsOutside(mPath); !where.empty())
        return set.refuse(mPath, "it leads out of the show's folder, to '" + where + "'");
    try {
        std::string text;
        document.write(text, "\t");
        replace(text, set);
    } catch (const Exception& exception) {
        set.refuse(mPath, exception.what());
    }
}

/** Whether what the file holds is known here, so that it may be replaced. */
bool DocumentFile::isOurs(std::string_view bytes) const
{
    return mKnown == Known::NOTHING || (!mWritten.empty() && bytes == mWritten) ||
           (mKnown == Known::BYTES && bytes == mRead);
}

void DocumentFile::replace(const std::string& text, am::SaveSet& set)
{
    const am::DiskRead found = am::readDiskFile(mPath, mPath);
    if (!found.failure.empty())
        return set.refuse(mPath, found.failure);
    const std::string_view bytes = found.isMissing() ? "" : found.file->bytes();
    if (!found.isMissing() && bytes == text)
        return;
    if (!found.isMissing() && !isOurs(bytes))
        return addBeside(mPath, ".mine", text, "was changed by another program; ours is", set);

    if (mKeepsCopy) {
        am::SaveSet copy;
        addBeside(mPath, ".bak", found.isMissing() ? mRead : bytes,
                  "holds what will not be saved; it is kept as", copy);
        if (const auto failures = copy.commit(); !failures.empty())
            return set.refuse(mPath, failures[0].path + ": " + failures[0].reason);
        mKeepsCopy = false;
    }
    mWritten = text;
    set.add(mPath, text);
}

bool saysAll(const xml::XmlParser& kept, const xml::XmlParser& original)
{
    return !original.hasContentOutside() &&
           std::ranges::includes(statementsOf(kept), statementsOf(original));
}

bool commitSave(am::SaveSet& set)
{
    const std::vector<am::SaveFailure> failures = set.commit();
    for (const am::SaveFailure& each : failures) {
        ZVX_LOG("error", "Cadenza", "Could not save '%s': %s\n", each.path.c_str(),
                each.reason.c_str());
        reportFailure("could not save '%s': %s", each.path.c_str(), each.reason.c_str());
    }
    return failures.empty();
}

} // namespace zavex::cadenza
