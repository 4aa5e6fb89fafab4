#pragma once
// Helpers shared by the test programs: scratch folders, files, scripted message boxes, and
// running the tool or a peer program.

#include <string>
#include <utility>
#include <vector>

#include <tl_gis/platform/message_box.h>

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
// Runs a shell command line with no input, capturing stdout and stderr.
TCommandResult RunCommand(const std::string& commandLine);
// True when a program is on PATH (or an absolute path that exists).
bool HaveProgram(const std::string& name);
std::string ShellQuote(const std::string& arg);
