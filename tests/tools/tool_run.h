#pragma once
// Runs the built tlgis from a given folder as a user would, and checks what it prints and writes.

#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

struct TToolCase {
    const char* name;
    std::string args;  // already quoted for the shell
    int exit;
    std::string inOut, inErr;      // texts that stdout and stderr must contain
    std::string file{}, inFile{};  // a file written in the folder and a text it must contain
};

inline std::string InFolder(const std::string& folder, const std::string& args) {
    return InFolderCommand(folder, ShellQuote(TLGIS_EXE) + " " + args);
}

inline TCommandResult RunToolCase(const std::string& folder, const TToolCase& c) {
    const TCommandResult r = RunCommand(InFolder(folder, c.args));
    const std::string written = c.file.empty() ? "" : ReadFileBytes(folder + "/" + c.file);
    EXPECT_EQ(r.iExit, c.exit) << c.name << "\n" << r.strOut << r.strErr;
    EXPECT_NE(r.strOut.find(c.inOut), std::string::npos) << c.name << ": stdout lacks " << c.inOut << "\n"
                                                         << r.strOut;
    EXPECT_NE(r.strErr.find(c.inErr), std::string::npos) << c.name << ": stderr lacks " << c.inErr << "\n"
                                                         << r.strErr;
    EXPECT_NE(written.find(c.inFile), std::string::npos) << c.name << ": " << c.file << " lacks " << c.inFile;
    return r;
}

// What Python makes of `tlgis info --json FILE` run in the folder: the exit status, then the
// printed expression of the parsed output d (a space apart, as print puts them).
inline std::string InfoJsonInPython(const std::string& folder, const std::string& file,
                                    const std::string& printed) {
    WriteFileBytes(folder + "/check.py",
                   "import json, subprocess, sys\nr = subprocess.run(sys.argv[1:], capture_output=True)\n"
                   "d = json.loads(r.stdout)\nprint(r.returncode, " +
                       printed + ")\n");
    const TCommandResult r = RunCommand(InFolderCommand(
        folder, std::string(TL_GIS_PYTHON) + " check.py " + ShellQuote(TLGIS_EXE) + " info --json " + file));
    EXPECT_EQ(r.iExit, 0) << file << ": " << r.strErr;
    return r.strOut;
}
