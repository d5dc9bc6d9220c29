#include "e2e/program.h"

#include "support/case_name.h"

#include <gtest/gtest.h>

#include <ostream>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

/** What `./package` makes, with sections added to its setup file. */
class PackagedShow : public TemporaryFolder {
public:
    explicit PackagedShow(const std::string& sections, const Environment& environment = {})
    {
        fs::remove(path());
        runProgram({CADENZA_SOURCE_DIR "/package", path().string()}, environment);
        const std::string setup = read("setup.xml");
        write("setup.xml", setup.substr(0, setup.rfind("</demo>")) + sections + "</demo>");
    }
};

TEST(Package, ShowsTheSameWithItsScriptsBesideOneArchive)
{
    const std::string sections =
        R"(<display width="160" height="120" title="package"/>)"
        R"(<dump name="frames/shot.png" rate="0.05" length="160"/><music/>)";
    const PackagedShow package(sections);
    EXPECT_EQ(package.files().size(), filesIn(package, "script").size() + 2);
    const PackagedShow elsewhere("", variable("TZ", "XYZ-9"));
    EXPECT_TRUE(package.read("demo.zip") == elsewhere.read("demo.zip"));
    constexpr std::size_t DATE = 12; // offset of the first file's date in the archive
    EXPECT_EQ(package.read("demo.zip").substr(DATE, 2),
              "\x21" + std::string(1, '\0')); // 1980-01-01

    const VirtualScreen screen;
    const ShowCopy folder("");
    folder.write("setup.xml", package.read("setup.xml")); // its archive is not there
    const Files expected = record(folder, screen);
    const Files found = record(package, screen);
    ASSERT_EQ(expected.size(), 8u);
    EXPECT_EQ(expected.front().first, "shot.000000.png");
    EXPECT_EQ(expected.back().first, "shot.000007.png");
    EXPECT_NE(expected.front().second, expected.back().second);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t index = 0; index < found.size(); ++index)
        EXPECT_TRUE(found[index] == expected[index]) << expected[index].first;
}

TEST(Package, PlaysTheArchivesSongButNotItsScripts)
{
    const PackagedShow package(R"(<display width="160" height="120" title="package"/>)");
    fs::remove(package.path("script/flash.flash.xml"));
    const VirtualScreen screen;
    Program program(package.path(), screen, variable("ALSOFT_DRIVERS", "null"));
    ASSERT_GE(program.waitForLine("---"), 0) << program.output();
    const Keyboard keyboard(screen, "package");
    keyboard.press("Escape");
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
    EXPECT_EQ(program.output().find("Could not open"), std::string::npos) << program.output();
    const std::string script = package.read("script/flash.flash.xml");
    EXPECT_NE(script.find(R"(<time start="0" end="10"/>)"), std::string::npos) << script;
}

/** What the commands need, in a folder whose name no shell may read twice. */
class Clone : public TemporaryFolder {
public:
    explicit Clone(const std::string& prepare)
    {
        fs::create_directory(path(ROOT));
        for (const char* part : {"package", "film", "cmake", "tools", "demo"})
            fs::copy(fs::path(CADENZA_SOURCE_DIR) / part, path(ROOT + part),
                     fs::copy_options::recursive);
        fs::remove(path(ROOT + "demo/setup.local.xml"));
        write(ROOT + "afterglow.mp4", "good");
        EXPECT_EQ(run("cd demo\n" + prepare).first, 0);
    }

    /** Runs lines of a shell's in the clone. @return Status and output. */
    std::pair<int, std::string> run(const std::string& lines) const
    {
        write("run", "#!/bin/sh\n" + lines);
        fs::permissions(path("run"), fs::perms::owner_all);
        fs::create_directory(path(SCRATCH));
        const Environment places{
            std::pair("TMPDIR", path(SCRATCH)),
            {"OUT",     path(ROOT + "o")},
            {"PROGRAM", CADENZA_PROGRAM }
        };
        Program program(path(ROOT), places, std::nullopt, path("run"));
        const int status = program.waitForEnd();
        EXPECT_TRUE(fs::is_empty(path(SCRATCH))) << program.output();
        return {status, program.output()};
    }

    static inline const std::string ROOT = "-a 'b\"$(touch run)`id`&|\n /";
    static inline const std::string SCRATCH = " t'\"$(touch run)\n";
};

struct Refusal {
    const char* name;
    const char* prepare; // by a shell, in demo/
    const char* command;
    int status;
    const char* said;

    friend void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }
};

// clang-format off
constexpr Refusal REFUSALS[] = {
    {"PackageLinkToElsewhere", "ln -s /etc/hostname link", "./package out", 1, "link is a link to /etc/hostname"},
    {"PackageLinkToFolder", "ln -s script link", "./package out", 1, "link is not a file"},
    {"PackagePipe", "mkfifo script/pipe", "./package out", 1, "script/pipe is not a file"},
    {"PackagePipeAsSetup", "rm setup.xml; mkfifo setup.xml", "./package out", 1, "setup.xml is not a file"},
    {"PackageBrokenSetup", "echo '<demo>' >setup.xml", "./package out/below", 1, "setup.xml:2: ends before"},
    {"PackageInTheShow", "", "./package demo/out", 1, "lies in the show itself"},
    {"PackageNowhere", "", "./package ''", 2, "usage: "},
    {"FilmPipe", "mkfifo script/pipe", "python3 -B tools/film.py 2 64 48 5 /bin/true", 1, "script/pipe is not a file"},
    {"FilmWithoutSetup", "rm setup.xml", "python3 -B tools/film.py 2 64 48 5 /bin/true", 1, "neither demo/setup.local.xml"},
    {"FilmLostFrames", "", "python3 -B tools/film.py 2 64 48 5 /bin/true", 1, "only 0 of 2 frames"},
    {"FilmFailed", "", "python3 -B tools/film.py 2 64 48 5 /bin/false", 1, "did not end well"},
    {"FilmFullDisk", "", "ulimit -f 9; python3 -B tools/film.py 2 64 48 5 /bin/true", 1, "File too large"},
    {"FilmToldToEnd", "", "printf '#!/bin/sh\nkill -TERM $PPID; sleep 99' >p; chmod +x p; exec python3 -B tools/film.py 2 64 48 5 ./p", 143, ""},
    {"FilmLongNumber", "", "./film 1$(printf %0400d)", 2, "SECONDS must be"},
    {"FilmNoFrame", "", "./film 0.009 64x48", 2, "must last for a frame"},
    {"FilmSubscript", "", "./film 1 'a[$(touch run)]x2'", 2, "width and height"},
    {"FilmWideScreen", "", "./film 1 99999999999x2", 2, "width and height"},
    {"FilmRate", "", "./film 1 64x48 1e3", 2, "FPS must be"},
};
// clang-format on

class Refusals : public testing::TestWithParam<Refusal> {};

TEST_P(Refusals, AreOneClearErrorAndLeaveNothing)
{
    const Clone clone(GetParam().prepare);
    const auto [status, said] = clone.run(GetParam().command);
    EXPECT_EQ(status, GetParam().status) << said;
    EXPECT_NE(said.find(GetParam().said), std::string::npos) << said;
    EXPECT_EQ(clone.read(Clone::ROOT + "afterglow.mp4"), "good");
    for (const auto& entry : fs::directory_iterator(clone.path(Clone::ROOT))) {
        const std::string name = entry.path().filename();
        EXPECT_FALSE(name.starts_with(".") || name == "out" || name == "run") << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, Refusals, testing::ValuesIn(REFUSALS), caseName);

TEST(Package, TakesNoValueForAProgram)
{
    const Clone clone(R"end(cat >setup.local.xml <<'X'
<?xml version="1.0"?> <!-- </demo> --> <demo a='>'> <dump name="../x" rate="1"/>
<time start="0; print 7 > 12; $(touch run)"/><music filename=' "s$(touch run):&|.ogg'/>
<display width=1 height=2 title="'$(touch run)`touch run`&|\"/></demo>
X
cp setup.local.xml setup.xml; mv afterglow.ogg ' "s$(touch run):&|.ogg'; cp style.xml '
 n'; ln -s style.xml link)end");
    const auto [status, said] =
        clone.run("./package \"$OUT\" && exec python3 -B tools/film.py 2 64 48 5 \"$PROGRAM\"");
    EXPECT_EQ(status, 0) << said;
    EXPECT_NE(said.find("afterglow.mp4: 0.400000 seconds"), std::string::npos) << said;
    EXPECT_EQ(said.find("no sound"), std::string::npos) << said;
    const std::string archive = clone.read(Clone::ROOT + "o/demo.zip");
    for (const char* name : {"\n n<?xml", "link<?xml"})
        EXPECT_NE(archive.find(name), std::string::npos) << name;
    EXPECT_FALSE(fs::exists(clone.path(Clone::ROOT + "run")));
    EXPECT_FALSE(fs::exists(clone.path(Clone::ROOT + "12")));
}

} // namespace
} // namespace zavex::test
