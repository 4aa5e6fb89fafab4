#include "test_support.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "scratch_folder.h"

namespace fs = std::filesystem;

TTempDir::TTempDir() : m_strPath(MakeScratchFolder("tl_gis_test_")) {}

TTempDir::~TTempDir() {
    std::error_code ec;
    if (m_strPath.empty()) return;
    // Read-only folders made by a test must not keep their contents alive.
    fs::permissions(m_strPath, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(m_strPath, ec);
}

void UseUtcAsLocalTime() {
#ifdef _WIN32
    _putenv_s("TZ", "UTC0");
    _tzset();
#else
    setenv("TZ", "UTC", 1);
    tzset();
#endif
}

fs::path Utf8Path(const std::string& name) {
    return fs::path(std::u8string(name.begin(), name.end()));
}

void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(Utf8Path(path), std::ios::binary | std::ios::trunc) << bytes;
}

std::string ReadFileBytes(const std::string& path) {
    std::ostringstream s;
    s << std::ifstream(Utf8Path(path), std::ios::binary).rdbuf();
    return s.str();
}

TScriptedMessages::TScriptedMessages(std::vector<int> answers) : m_answers(std::move(answers)) {
    m_previous = SetMessageBoxHandler([this](const TMessageBoxRequest& request) {
        m_shown.push_back(request);
        if (!request.IsQuestion()) return static_cast<int>(ANSWER_OK);
        if (m_answers.empty()) return static_cast<int>(ANSWER_YES);
        const int answer = m_answers.front();
        m_answers.erase(m_answers.begin());
        return answer;
    });
}

#ifdef _WIN32
namespace {
// A program's text output ends its lines with CR LF on Windows; the tests compare lines.
std::string WithLineFeeds(std::string text) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!(text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')) text[kept++] = text[i];
    text.resize(kept);
    return text;
}
}  // namespace

// cmd.exe runs the line: it strips the outer pair of quotes added here and keeps the rest as it
// stands, the program's own quotes included. Its exit code is what _wsystem returns; the line
// goes as UTF-16, so that names keep their non-ASCII letters.
TCommandResult RunCommand(const std::string& commandLine) {
    TTempDir dir;
    const std::string out = dir.File("out"), err = dir.File("err");
    const int status = _wsystem(
        Utf8Path("\"" + commandLine + " >" + ShellQuote(out) + " 2>" + ShellQuote(err) + " <NUL\"").c_str());
    return {status, WithLineFeeds(ReadFileBytes(out)), WithLineFeeds(ReadFileBytes(err))};
}

// The peers are Linux programs; a Windows test finds none of them.
bool HaveProgram(const std::string&) {
    return false;
}

std::string ShellQuote(const std::string& arg) {
    return "\"" + arg + "\"";
}

std::string InFolderCommand(const std::string& folder, const std::string& command) {
    return "cd /d " + ShellQuote(folder) + " && " + command;
}
#else
TCommandResult RunCommand(const std::string& commandLine) {
    TTempDir dir;
    const std::string out = dir.File("out"), err = dir.File("err");
    const int status =
        std::system((commandLine + " >" + ShellQuote(out) + " 2>" + ShellQuote(err) + " </dev/null").c_str());
    return {(status != -1 && WIFEXITED(status)) ? WEXITSTATUS(status) : -1, ReadFileBytes(out),
            ReadFileBytes(err)};
}

bool HaveProgram(const std::string& name) {
    if (!name.empty() && name[0] == '/') return access(name.c_str(), X_OK) == 0;
    return std::system(("command -v " + ShellQuote(name) + " >/dev/null 2>&1").c_str()) == 0;
}

std::string ShellQuote(const std::string& arg) {
    std::string q = "'";
    for (char c : arg) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

std::string InFolderCommand(const std::string& folder, const std::string& command) {
    return "cd " + ShellQuote(folder) + " && " + command;
}
#endif
