#include "test_support.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

TTempDir::TTempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tl_gis_test_XXXXXX").string();
    if (mkdtemp(pattern.data()) != nullptr) m_strPath = pattern;
}

TTempDir::~TTempDir() {
    std::error_code ec;
    if (!m_strPath.empty()) {
        // Read-only folders made by a test must not keep their contents alive.
        std::filesystem::permissions(m_strPath, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
        std::filesystem::remove_all(m_strPath, ec);
    }
}

std::string TTempDir::File(const std::string& name) const { return m_strPath + "/" + name; }

void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string ReadFileBytes(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

TScriptedMessages::TScriptedMessages(std::vector<int> answers) : m_answers(std::move(answers)) {
    m_previous = SetMessageBoxHandler([this](const TMessageBoxRequest& request) {
        m_shown.push_back(request);
        if (!request.IsQuestion()) return static_cast<int>(IDOK);
        if (m_next < m_answers.size()) return m_answers[m_next++];
        return static_cast<int>(IDYES);
    });
}

TScriptedMessages::~TScriptedMessages() { SetMessageBoxHandler(std::move(m_previous)); }

TCommandResult RunCommand(const std::string& commandLine) {
    TTempDir dir;
    const std::string out = dir.File("out"), err = dir.File("err");
    const std::string full = commandLine + " >" + ShellQuote(out) + " 2>" + ShellQuote(err) + " </dev/null";
    TCommandResult result;
    const int status = std::system(full.c_str());
    result.iExit = (status != -1 && WIFEXITED(status)) ? WEXITSTATUS(status) : -1;
    result.strOut = ReadFileBytes(out);
    result.strErr = ReadFileBytes(err);
    return result;
}

bool HaveProgram(const std::string& name) {
    if (!name.empty() && name[0] == '/') return access(name.c_str(), X_OK) == 0;
    return std::system(("command -v " + ShellQuote(name) + " >/dev/null 2>&1").c_str()) == 0;
}

std::string ShellQuote(const std::string& arg) {
    std::string q = "'";
    for (char c : arg) {
        if (c == '\'')
            q += "'\\''";
        else
            q += c;
    }
    return q + "'";
}
