#include "am/am.h"
#include "am/am_archivedirectory.h"
#include "am/am_atomicwrite.h"
#include "am/am_fixture.h"

#include "support/log_capture.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <minizip/zip.h>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zavex::am {
namespace {

using test::makeFile;
using test::textOf;

/** A zip file of one deflated entry, "inside.txt". */
class Archives : public testing::Test, protected test::TemporaryFolder {
protected:
    void writeZip(const std::string& name, const std::string& content) const
    {
        const zipFile zip = zipOpen(path(name).c_str(), APPEND_STATUS_CREATE);
        ASSERT_NE(zip, nullptr);
        const zip_fileinfo info{};
        ASSERT_EQ(zipOpenNewFileInZip(zip, "inside.txt", &info, nullptr, 0, nullptr, 0, nullptr,
                                      Z_DEFLATED, Z_DEFAULT_COMPRESSION),
                  ZIP_OK);
        ASSERT_EQ(zipWriteInFileInZip(zip, content.data(), static_cast<unsigned>(content.size())),
                  ZIP_OK);
        zipCloseFileInZip(zip);
        zipClose(zip, nullptr);
    }

    std::string readInside(const std::string& zip, const std::string& name = "inside.txt") const
    {
        ArchiveManager manager;
        EXPECT_EQ(manager.addArchive(path(zip)), 0);
        return textOf(manager.readFile(name, -1));
    }
};

TEST_F(Archives, AFileIsFreedByItsLastHandle)
{
    File first = makeFile("a", "bytes");
    File second = first;
    File third = second;
    EXPECT_EQ(third.getRefCount(), 3u);
    first.release();
    second = File();
    EXPECT_EQ(third.getRefCount(), 1u);
    EXPECT_EQ(textOf(third), "bytes");
    third.attach(nullptr);
    EXPECT_TRUE(third.isNull());
}

TEST_F(Archives, TheKindOfAnArchiveFollowsFromItsPath)
{
    for (const char* known : {"data", "data/", "./", "dir.old/sub", "a.zip", "A.ZIP", "zip://a.pak",
                              "ZIP://a.pak", "a/zip://b"})
        EXPECT_EQ(ArchiveManager().addArchive(known), 0) << known;
    for (const char* unknown : {"", "a.rar", "dir.old", "ftp://a.zip"})
        EXPECT_EQ(ArchiveManager().addArchive(unknown), -1) << unknown;
}

TEST_F(Archives, TheFirstArchiveThatHasAFileAnswersUnlessAnotherIsAskedFirst)
{
    write("one/a.txt", "from one");
    write("two/a.txt", "from two");
    write("two/b.txt", "only two");
    writeZip("pack.zip", "packed");
    ArchiveManager manager;
    manager.addArchive(path("one"));
    manager.addArchive(path("two/"));
    manager.addArchive(path("pack.zip"));

    EXPECT_EQ(textOf(manager.readFile("a.txt", -1)), "from one");
    EXPECT_EQ(textOf(manager.readFile("a.txt", 1)), "from two");
    EXPECT_EQ(textOf(manager.readFile("b.txt", 0)), "only two");
    EXPECT_EQ(textOf(manager.readFile("./inside.txt", -1)), "packed");
    EXPECT_TRUE(manager.readFile("gone.txt", -1).isNull());
    EXPECT_TRUE(manager.readFile("", -1).isNull());
    EXPECT_EQ(manager.describeSearch(),
              path("one") + "/, " + path("two") + "/, " + path("pack.zip"));
}

TEST_F(Archives, WritingGoesToTheFirstArchiveAndCreatesFolders)
{
    ArchiveManager empty;
    EXPECT_FALSE(empty.writeFile(makeFile("a", "x"), -1));

    ArchiveManager manager;
    manager.addArchive(path(""));
    EXPECT_TRUE(manager.writeFile(makeFile("script/sub/x.xml", "text"), -1));
    EXPECT_EQ(read("script/sub/x.xml"), "text");
    EXPECT_FALSE(manager.writeFile(makeFile("script", "a folder has this name"), -1));
    EXPECT_EQ(files(), std::vector<std::string>{"script/sub/x.xml"});

    writeZip("pack.zip", "packed");
    ArchiveManager zipFirst;
    zipFirst.addArchive(path("pack.zip"));
    zipFirst.addArchive(path(""));
    EXPECT_FALSE(zipFirst.writeFile(makeFile("y.txt", "text"), -1));
}

TEST_F(Archives, WhatIsNoRegularFileIsNeitherReadNorWrittenNorWaitedFor)
{
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(path("folder"));
    std::filesystem::create_symlink("/dev/zero", path("device"));
    EXPECT_FALSE(CreateDirectory(path("pipe")));
    EXPECT_TRUE(CreateDirectory(path("folder")));
    test::clearLog();
    ArchiveManager manager;
    manager.addArchive(path(""));
    for (const char* name : {"pipe", "folder", "device"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(manager.readFile(name, 0).isNull());
        EXPECT_EQ(test::countLogged("log", "'" + path(name) + "' cannot be read: "), 1);
        EXPECT_FALSE(manager.writeFile(makeFile(name, "text"), 0));
    }
    EXPECT_TRUE(files().empty());
    write("file", "in the way");
    EXPECT_FALSE(manager.writeFile(makeFile("file/x", "text"), 0));
    EXPECT_FALSE(manager.writeFile(File(), 0));
}

TEST_F(Archives, AFailedWriteLeavesTheOldFileWholeAndNotTheOthersUnsaved)
{
    write("saved.xml", "the old file");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{4, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    SaveSet set;
    set.add(path("saved.xml"), "a longer text");
    set.add(path("new.xml"), "text");
    EXPECT_FALSE(std::filesystem::exists(path("new.xml")));
    const std::vector<SaveFailure> failures = set.commit();
    setrlimit(RLIMIT_FSIZE, &before);

    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].path, path("saved.xml"));
    EXPECT_EQ(failures[0].reason, "File too large");
    EXPECT_EQ(read("saved.xml"), "the old file");
    EXPECT_EQ(read("new.xml"), "text");
    EXPECT_EQ(files(), (std::vector<std::string>{"new.xml", "saved.xml"}));
}

/** Nothing is forbidden to root: acts as another user while it lives. */
class CommonUser {
public:
    CommonUser() : mChanged(geteuid() == 0 && seteuid(NOBODY) == 0) {}
    CommonUser(const CommonUser&) = delete;
    CommonUser& operator=(const CommonUser&) = delete;
    ~CommonUser() { EXPECT_TRUE(!mChanged || seteuid(0) == 0); }

private:
    static constexpr uid_t NOBODY = 65534;
    bool mChanged;
};

TEST_F(Archives, WhatIsWriteProtectedStaysAndWhatIsNotIsWrittenWhateverItsFolderRefuses)
{
    namespace fs = std::filesystem;
    constexpr auto READ = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    constexpr auto ENTER = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    write("open/file", "old");
    write("closed/file", "old");
    fs::permissions(path("open/file"), READ);
    fs::permissions(path("open"), fs::perms::all);
    for (const char* name : {"sticky", "foreign"}) {
        write(std::string(name) + "/file", "older");
        fs::permissions(path(std::string(name) + "/file"), fs::perms::all);
        fs::permissions(path(name), fs::perms::all);
    }
    fs::permissions(path("sticky"), fs::perms::sticky_bit, fs::perm_options::add);
    fs::permissions(path("closed/file"), fs::perms::all);
    fs::permissions(path("closed"), READ | ENTER);
    fs::permissions(path(), fs::perms::all);
    {
        const CommonUser user;
        std::string reason;
        for (const char* name : {"open/file", "closed/new", "closed/a/b/new"}) {
            EXPECT_FALSE(writeFileAtomically(path(name), "new", reason)) << name;
            EXPECT_EQ(reason, "Permission denied") << name;
        }
        for (const char* text : {"longer", "new"})
            EXPECT_TRUE(writeFileAtomically(path("closed/file"), text, reason)) << reason;
        // Only the owner may rename within such a folder, or give a file to somebody else.
        EXPECT_TRUE(writeFileAtomically(path("sticky/file"), "new", reason)) << reason;
        EXPECT_TRUE(writeFileAtomically(path("foreign/file"), "new", reason)) << reason;
    }
    fs::permissions(path("closed"), fs::perms::all);
    EXPECT_EQ(read("open/file"), "old");
    struct stat status {};
    for (const char* name : {"closed/file", "sticky/file", "foreign/file"}) {
        EXPECT_EQ(read(name), "new") << name;
        EXPECT_EQ(stat(path(name).c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, geteuid()) << name;
    }
    EXPECT_EQ(files(), (std::vector<std::string>{"closed/file", "foreign/file", "open/file",
                                                 "sticky/file"}));
}

TEST_F(Archives, ReplacingKeepsPermissionsAndLinks)
{
    namespace fs = std::filesystem;
    write("real.xml", "old");
    fs::permissions(path("real.xml"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.xml", path("link.xml"));
    std::string reason;
    ASSERT_TRUE(writeFileAtomically(path("link.xml"), "new", reason)) << reason;
    EXPECT_TRUE(fs::is_symlink(path("link.xml")));
    EXPECT_EQ(read("real.xml"), "new");
    fs::create_symlink("gone.xml", path("dangling.xml"));
    ASSERT_TRUE(writeFileAtomically(path("dangling.xml"), "newer", reason)) << reason;
    EXPECT_TRUE(fs::is_symlink(path("dangling.xml")));
    EXPECT_EQ(read("gone.xml"), "newer");
    fs::create_symlink("circle.xml", path("circle.xml"));
    EXPECT_FALSE(writeFileAtomically(path("circle.xml"), "lost", reason));
    EXPECT_EQ(reason, "Too many levels of symbolic links");
    EXPECT_EQ(fs::status(path("real.xml")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Archives, ReplacingLeavesItsNeighboursAloneUntilTheyAreRemoved)
{
    const std::string longest(255, 'n'); // as long as a name may be
    write(longest, "old");
    const std::string part = "." + std::string(239, 'n') + ".part";
    write(part + "0", "left behind");
    write(part + "0x", "somebody's");
    std::string reason;
    ASSERT_TRUE(writeFileAtomically(path(longest), "new", reason)) << reason;
    EXPECT_EQ(read(longest), "new");
    EXPECT_EQ(read(part + "0"), "left behind");
    removeLeftovers(path(longest));
    EXPECT_EQ(files(), (std::vector<std::string>{part + "0x", longest}));
}

TEST_F(Archives, AZipGivesTheWholeFileByItsNameOrNone)
{
    const std::string content(3000, 'c');
    writeZip("whole.zip", content);
    for (const char* name : {"inside.txt", "./inside.txt", "/inside.txt", ".\\inside.txt"})
        EXPECT_EQ(readInside("whole.zip", name), content) << name;
    for (const char* name : {"../inside.txt", "Inside.txt", "inside.TXT"})
        EXPECT_EQ(readInside("whole.zip", name), "(null)") << name;
    const std::string zip = read("whole.zip");
    for (std::size_t size = 0; size < zip.size(); ++size) { // cut anywhere
        write("cut.zip", zip.substr(0, size));
        const std::string found = readInside("cut.zip");
        EXPECT_TRUE(found == "(null)" || found == content) << size;
    }
}

TEST_F(Archives, AnEntryThatLiesGivesNoFileAndSaysWhy)
{
    writeZip("whole.zip", std::string(3000, 'c'));
    const std::string zip = read("whole.zip");
    const std::size_t entry = zip.find("PK\1\2"); // the central directory's record
    ASSERT_NE(entry, std::string::npos);
    // A field, where it lies, its value, little-endian, and why it is refused.
    const std::tuple<const char*, std::size_t, std::uint32_t, std::string> rows[] = {
        {"flags",     8,  1,           "It is encrypted"                              },
        {"method",    10, 99,          "It is damaged"                                },
        {"deflated",  20, 0x7ffffff,   "It claims 3000 bytes in 134217727, in a file "},
        {"size",      24, 0,           "It is damaged"                                },
        {"size",      24, 2999,        "It is damaged"                                },
        {"size",      24, 3001,        "It is damaged"                                },
        {"size",      24, 1U << 29U,   "It claims 536870912 bytes in "                },
        {"size",      24, 536870913U,  "It has 536870913 bytes, expected at most 5368"},
        {"size",      24, 0xfffffff0U, "It has 4294967280 bytes, expected at most "   },
        {"beginning", 42, 0x7fffffff,  "It is damaged"                                },
    };
    for (const auto& [field, offset, value, reason] : rows) {
        SCOPED_TRACE(field + std::to_string(value));
        std::string lying = zip;
        for (std::size_t byte = 0; byte < (offset < 20 ? 2 : 4); ++byte)
            lying[entry + offset + byte] = static_cast<char>(value >> 8 * byte & 0xff);
        write("lying.zip", lying);
        test::clearLog();
        EXPECT_EQ(readInside("lying.zip"), "(null)");
        EXPECT_EQ(test::countLogged("log", "lying.zip' cannot be read: " + reason), 1);
    }
}

TEST_F(Archives, AZipThatIsNoFileIsNotWaitedForAndSaysSo)
{
    ASSERT_EQ(mkfifo(path("pipe.zip").c_str(), 0600), 0);
    std::filesystem::create_directory(path("folder.zip"));
    std::filesystem::create_symlink("/dev/zero", path("device.zip"));
    write("text.zip", "text");
    test::clearLog();
    for (const char* name : {"pipe.zip", "folder.zip", "device.zip", "text.zip", "missing.zip"})
        EXPECT_EQ(readInside(name), "(null)") << name;
    EXPECT_EQ(test::countLogged("log", ".zip' cannot be read: Not a regular file"), 2);
    EXPECT_EQ(test::countLogged("log", "folder.zip' cannot be read: Is a directory"), 1);
    EXPECT_EQ(test::countLogged("log", "text.zip' cannot be read: It is damaged, or no zip"), 1);
    EXPECT_EQ(test::countLogged("log", "missing.zip' cannot be read"), 0);
}

} // namespace
} // namespace zavex::am
