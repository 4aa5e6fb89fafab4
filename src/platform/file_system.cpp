#include "platform/file_system.h"

#include <sys/stat.h>
#include <cerrno>

#ifdef _WIN32
#include <windows.h>
#endif

#ifdef _WIN32
std::wstring WidePath(const char* path) {
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, nullptr, 0);
    if (length <= 0) return {};
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, wide.data(), length);
    wide.pop_back();  // the terminating NUL counted above
    return wide;
}

namespace {
using TStat = struct _stat64;

bool StatOf(const char* path, TStat& st) {
    const std::wstring wide = WidePath(path);
    if (wide.empty()) return false;
    return _wstat64(wide.c_str(), &st) == 0;
}

bool StatOf(std::FILE* file, TStat& st) {
    return _fstat64(_fileno(file), &st) == 0;
}
}  // namespace

std::FILE* OpenFileUtf8(const char* path, const char* mode) {
    const std::wstring wide = WidePath(path);
    if (wide.empty()) {
        errno = ENOENT;
        return nullptr;
    }
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    errno = 0;
    std::FILE* file = _wfopen(wide.c_str(), wideMode.c_str());
    // Windows refuses to open a folder with EACCES; say what it is, as elsewhere.
    if (file == nullptr && errno == EACCES) {
        TStat st{};
        if (StatOf(path, st) && (st.st_mode & S_IFMT) == S_IFDIR) errno = EISDIR;
    }
    return file;
}

bool SeekFileTo(std::FILE* file, std::int64_t pos) {
    return _fseeki64(file, pos, SEEK_SET) == 0;
}

bool SeekFileHere(std::FILE* file) {
    return _fseeki64(file, 0, SEEK_CUR) == 0;
}

std::int64_t TellFile(std::FILE* file) {
    return _ftelli64(file);
}
#else
namespace {
using TStat = struct stat;

bool StatOf(const char* path, TStat& st) {
    return stat(path, &st) == 0;
}

bool StatOf(std::FILE* file, TStat& st) {
    return fstat(fileno(file), &st) == 0;
}
}  // namespace

std::FILE* OpenFileUtf8(const char* path, const char* mode) {
    return std::fopen(path, mode);
}

bool SeekFileTo(std::FILE* file, std::int64_t pos) {
    return fseeko(file, static_cast<off_t>(pos), SEEK_SET) == 0;
}

bool SeekFileHere(std::FILE* file) {
    return fseeko(file, 0, SEEK_CUR) == 0;
}

std::int64_t TellFile(std::FILE* file) {
    return static_cast<std::int64_t>(ftello(file));
}
#endif

namespace {
bool StatusFrom(const TStat& st, TFileStatus& status) {
    status.iSize = static_cast<std::int64_t>(st.st_size);
    status.bFolder = (st.st_mode & S_IFMT) == S_IFDIR;
    return true;
}
}  // namespace

bool GetPathStatus(const char* path, TFileStatus& status) {
    status = {};
    TStat st{};
    return path != nullptr && StatOf(path, st) && StatusFrom(st, status);
}

bool GetOpenFileStatus(std::FILE* file, TFileStatus& status) {
    status = {};
    TStat st{};
    return file != nullptr && StatOf(file, st) && StatusFrom(st, status);
}
