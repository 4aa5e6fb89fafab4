#pragma once
// Helpers shared by the test programs: scratch folders, files, scripted message boxes, and
// running the tool or a peer program.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <tl_gis/platform/message_box.h>

// GDAL, PROJ, pyshp and ezdxf, the peers that check files against an independent reader or
// writer, are installed on the Linux side only: a test that needs them all is skipped on Windows.
#ifdef _WIN32
#define SKIP_WITHOUT_LINUX_PEERS() GTEST_SKIP() << "GDAL, PROJ, pyshp and ezdxf exist on the Linux side only"
#else
#define SKIP_WITHOUT_LINUX_PEERS() static_cast<void>(0)
#endif

// A fresh folder under the system's temporary folder, removed with the object.
class TTempDir {
public:
    TTempDir();
    ~TTempDir();
    TTempDir(const TTempDir&) = delete;
    TTempDir& operator=(const TTempDir&) = delete;
    const std::string& Path() const { return m_strPath; }
    std::string File(const std::string& name) const { return m_strPath + "/" + name; }

private:
    std::string m_strPath;
};

// Makes local time UTC for the rest of the program (the TZ variable, read again at once).
void UseUtcAsLocalTime();

// The path of a UTF-8 name, as the library takes names: on Windows a std::string path would be
// read in the ANSI code page instead.
std::filesystem::path Utf8Path(const std::string& name);
void WriteFileBytes(const std::string& path, const std::string& bytes);
std::string ReadFileBytes(const std::string& path);

// Records every message box and answers questions from a script (Yes when it runs out).
class TScriptedMessages {
public:
    explicit TScriptedMessages(std::vector<int> answers = {});
    ~TScriptedMessages() { SetMessageBoxHandler(std::move(m_previous)); }
    TScriptedMessages(const TScriptedMessages&) = delete;
    TScriptedMessages& operator=(const TScriptedMessages&) = delete;
    const std::vector<TMessageBoxRequest>& Shown() const { return m_shown; }

private:
    std::vector<int> m_answers;
    std::vector<TMessageBoxRequest> m_shown;
    TMessageBoxHandler m_previous;
};

struct TCommandResult {
    int iExit = -1;
    std::string strOut, strErr;
};
// Runs a command line (UTF-8) with no input through the system's shell (sh, or cmd.exe on
// Windows), capturing stdout and stderr.
TCommandResult RunCommand(const std::string& commandLine);
// True when a program is on PATH (or an absolute path that exists); false on Windows, where the
// peer programs do not exist.
bool HaveProgram(const std::string& name);
// One argument quoted for the system's shell.
std::string ShellQuote(const std::string& arg);
// The command line that runs a command in a folder (on another drive too, on Windows).
std::string InFolderCommand(const std::string& folder, const std::string& command);
