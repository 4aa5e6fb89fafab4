// The tlgis tool as a user runs it: help, exit statuses, and the result codes it reports.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

std::string Tool() {
    return ShellQuote(TLGIS_EXE);
}

struct TToolCase {
    const char* name;
    std::string args;  // already quoted for the shell
    int exit;
    std::vector<std::string> inOut;  // texts that stdout must contain
    std::vector<std::string> inErr;  // texts that stderr must contain
};

void RunCases(const std::vector<TToolCase>& cases) {
    for (const TToolCase& c : cases) {
        const TCommandResult r = RunCommand(Tool() + " " + c.args);
        EXPECT_EQ(r.iExit, c.exit) << c.name << "\nstdout: " << r.strOut << "\nstderr: " << r.strErr;
        for (const std::string& text : c.inOut)
            EXPECT_NE(r.strOut.find(text), std::string::npos)
                << c.name << ": stdout lacks '" << text << "':\n"
                << r.strOut;
        for (const std::string& text : c.inErr)
            EXPECT_NE(r.strErr.find(text), std::string::npos)
                << c.name << ": stderr lacks '" << text << "':\n"
                << r.strErr;
    }
}

TEST(TlgisTool, HelpAndUsage) {
    RunCases({
        {"--help", "--help", 0, {"Usage: tlgis", "\n  info FILE", "\n  convert IN OUT"}, {}},
        {"-h", "-h", 0, {"\n  info FILE", "\n  convert IN OUT"}, {}},
        {"help command", "help", 0, {"\n  info FILE", "\n  convert IN OUT"}, {}},
        {"help convert", "help convert", 0, {"Usage: tlgis convert IN OUT"}, {}},
        {"no command", "", 2, {}, {"Usage: tlgis"}},
        {"unknown command", "frobnicate", 2, {}, {"unknown command 'frobnicate'"}},
    });
}

TEST(TlgisTool, BadOptionsExitWithTwo) {
    RunCases({
        {"answer that does not exist",
         "--projected maybe info -",
         2,
         {},
         {"--projected takes stop, skip or ask"}},
        {"option value missing", "info - --config", 2, {}, {"option --config needs a value"}},
        {"value given to a flag", "info - --quiet=yes", 2, {}, {"option --quiet takes no value"}},
        {"misspelt flag", "info - --jsno", 2, {}, {"unknown option --jsno"}},
        {"unknown language", "--lang klingon info -", 2, {}, {"unknown language 'klingon'"}},
        {"info without a file", "info", 2, {}, {"usage: tlgis info FILE"}},
        {"info with two files", "info a.job b.job", 2, {}, {"usage: tlgis info FILE"}},
        {"convert with one file", "convert a.job", 2, {}, {"usage: tlgis convert IN OUT"}},
    });
}

TEST(TlgisTool, ResultCodesOfFailedLoads) {
    TTempDir dir;
    WriteFileBytes(dir.File("notes.txt"), "not a map\r\n");
    RunCases({
        {"missing file",
         "info " + ShellQuote(dir.File("missing.job")),
         1,
         {"Result:   6002"},
         {"no such file", "(6002)"}},
        {"missing file, no known extension",
         "info " + ShellQuote(dir.File("missing.xyz")),
         1,
         {},
         {"(6002)"}},
        {"folder given as a file", "info " + ShellQuote(dir.Path() + "/"), 1, {}, {"not a file", "(6002)"}},
        {"no format for the name",
         "info " + ShellQuote(dir.File("notes.txt")),
         1,
         {"Result:   6001"},
         {"no format for", "(6001)"}},
        {"convert to a name no format takes",
         "convert - " + ShellQuote(dir.File("out.xyz")),
         1,
         {},
         {"(6001)"}},
    });
}

// The JSON report parses, also for an empty layer ('-' loads nothing) and for a failed load.
TEST(TlgisTool, ProgressOnAPipe) {
    TTempDir dir;
    const std::string job = ShellQuote(std::string(TL_GIS_SOURCE_DIR) + "/examples/field.job");
    RunCases({
        {"load and write with --progress",
         "convert " + job + " " + ShellQuote(dir.File("field.mif")) + " --progress",
         0,
         {},
         {"0...10...20...30...40...50...60...70...80...90...100 - done.\n", "writing ",
          "field.mif ... done in "}},
    });
}

TEST(TlgisTool, JsonReports) {
    const std::string python = TL_GIS_PYTHON;
    if (!HaveProgram(python)) GTEST_SKIP() << python << " is not installed";
    TTempDir dir;
    const std::string check = dir.File("check.py");
    WriteFileBytes(check,
                   "import json, sys\n"
                   "d = json.load(sys.stdin)\n"
                   "print(d['type'], d['result'], len(d['elements']), d['layer']['centroids'], "
                   "d['layer']['llb'] == '')\n");
    struct TCase {
        const char* name;
        std::string args;
        int exit;
        std::string parsed;
    };
    const std::vector<TCase> cases = {
        {"empty layer", "info - --json", 0, "0 0 0 [] True\n"},
        {"missing file", "info " + ShellQuote(dir.File("gone.job")) + " --json", 1, "1 6002 0 [] True\n"},
    };
    for (const TCase& c : cases) {
        const std::string json = dir.File("out.json");
        // The tool's report goes to a file, the parser's answer to the captured output.
        const TCommandResult r = RunCommand("(" + Tool() + " " + c.args + " > " + ShellQuote(json) +
                                            "; status=$?; " + ShellQuote(python) + " " + ShellQuote(check) +
                                            " < " + ShellQuote(json) + " && exit $status)");
        EXPECT_EQ(r.iExit, c.exit) << c.name << ": " << r.strErr;
        EXPECT_EQ(r.strOut, c.parsed) << c.name << ": " << ReadFileBytes(json);
    }
}

}  // namespace
