#include "platform/byte_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/file_system.h"
#include "platform/memory_files.h"

TByteFile::~TByteFile() {
    Close();
}

bool TByteFile::Open(const char* path, OpenMode mode) {
    Close();
    m_iOpenError = 0;
    if (path == nullptr) {
        m_iOpenError = ENOENT;
        return false;
    }
    if (IsMemoryPath(path)) return OpenInMemory(path, mode);
    std::FILE* f = OpenFileUtf8(path, mode == modeRead ? "rb" : "w+b");
    if (f == nullptr) {
        m_iOpenError = errno != 0 ? errno : EIO;
        return false;
    }
    TFileStatus status;
    if (GetOpenFileStatus(f, status) && status.bFolder) {
        std::fclose(f);
        m_iOpenError = EISDIR;
        return false;
    }
    if (mode == modeRead) std::setvbuf(f, nullptr, _IOFBF, 1 << 16);
    m_pFile = f;
    m_strPath = path;
    m_bWriting = mode == modeCreate;
    m_bWriteError = false;
    m_iPos = 0;
    m_strOut.clear();
    return true;
}

void TByteFile::OpenMemory(std::string_view data) {
    Close();
    m_bMemory = true;
    m_bWriting = false;
    m_strMemory.assign(data);
    m_iPos = 0;
    m_strPath = "<memory>";
}

bool TByteFile::OpenInMemory(const char* path, OpenMode mode) {
    std::string bytes;
    if (mode == modeRead && !ReadMemoryFile(path, bytes)) {
        m_iOpenError = ENOENT;
        return false;
    }
    // A created file exists, empty, from now on, as on disk; what is written is stored on Close().
    if (mode == modeCreate) StoreMemoryFile(path, {});
    m_bMemory = true;
    m_bWriting = mode == modeCreate;
    m_bWriteError = false;
    m_strMemory = std::move(bytes);
    m_iPos = 0;
    m_strPath = path;
    return true;
}

bool TByteFile::Close() {
    bool ok = true;
    if (m_pFile != nullptr) {
        if (m_bWriting) ok = FlushWrite();
        if (std::fclose(m_pFile) != 0) ok = false;
        m_pFile = nullptr;
    }
    if (m_bMemory && m_bWriting) StoreMemoryFile(m_strPath, std::move(m_strMemory));
    if (!ok) m_bWriteError = true;
    m_bMemory = false;
    m_strMemory.clear();
    m_strPath.clear();
    m_iPos = 0;
    return ok;
}

std::size_t TByteFile::Read(void* dst, std::size_t n) {
    if (m_bMemory) {
        const auto size = static_cast<std::int64_t>(m_strMemory.size());
        if (m_iPos >= size) return 0;
        const std::size_t got = std::min<std::size_t>(n, static_cast<std::size_t>(size - m_iPos));
        std::memcpy(dst, m_strMemory.data() + m_iPos, got);
        m_iPos += static_cast<std::int64_t>(got);
        return got;
    }
    if (m_pFile == nullptr) return 0;
    // A stream that was written must be flushed before it is read.
    if (m_bWriting && (!FlushWrite() || std::fflush(m_pFile) != 0)) return 0;
    return std::fread(dst, 1, n, m_pFile);
}

namespace {
// Output is gathered in blocks of this size; a larger piece is written straight through.
constexpr std::size_t kWriteBlockBytes = 256 * 1024;
}  // namespace

bool TByteFile::Write(const void* src, std::size_t n) {
    if (m_pFile == nullptr || !m_bWriting) return m_bMemory && m_bWriting && WriteMemory(src, n);
    if (m_strOut.size() + n > kWriteBlockBytes && !FlushWrite()) return false;
    if (n >= kWriteBlockBytes) {
        if (!SeekFileHere(m_pFile) || std::fwrite(src, 1, n, m_pFile) != n) m_bWriteError = true;
        return !m_bWriteError;
    }
    if (m_strOut.capacity() < kWriteBlockBytes) m_strOut.reserve(kWriteBlockBytes);
    m_strOut.append(static_cast<const char*>(src), n);
    return !m_bWriteError;
}

bool TByteFile::WriteMemory(const void* src, std::size_t n) {
    // Past the end, the gap reads as zeros, as a file written beyond its end does.
    const auto at = static_cast<std::size_t>(m_iPos);
    if (at > m_strMemory.size()) m_strMemory.resize(at, '\0');
    m_strMemory.replace(at, std::min(n, m_strMemory.size() - at), static_cast<const char*>(src), n);
    m_iPos += static_cast<std::int64_t>(n);
    return true;
}

bool TByteFile::FlushWrite() {
    if (m_strOut.empty()) return !m_bWriteError;
    // A stream that was read needs a seek before it is written; this one keeps the position.
    if (!SeekFileHere(m_pFile)) m_bWriteError = true;
    if (std::fwrite(m_strOut.data(), 1, m_strOut.size(), m_pFile) != m_strOut.size()) m_bWriteError = true;
    m_strOut.clear();
    return !m_bWriteError;
}

bool TByteFile::Seek(std::int64_t pos) {
    if (pos < 0) return false;
    if (m_bMemory) {
        m_iPos = pos;
        return true;
    }
    if (m_pFile == nullptr) return false;
    if (m_bWriting && !FlushWrite()) return false;
    return SeekFileTo(m_pFile, pos);
}

std::int64_t TByteFile::GetPosition() const {
    if (m_bMemory) return m_iPos;
    if (m_pFile == nullptr) return 0;
    const std::int64_t at = TellFile(m_pFile);
    return (at < 0 ? 0 : at) + static_cast<std::int64_t>(m_strOut.size());
}

std::int64_t TByteFile::GetLength() const {
    if (m_bMemory) return static_cast<std::int64_t>(m_strMemory.size());
    if (m_pFile == nullptr) return 0;
    TFileStatus status;
    if (!GetOpenFileStatus(m_pFile, status)) return 0;
    return std::max(status.iSize, GetPosition());
}

bool TByteFile::GetStatus(const char* path, std::int64_t& size) {
    TFileStatus status;
    size = 0;
    if (path != nullptr && IsMemoryPath(path)) return GetMemoryFileSize(path, size);
    if (!GetPathStatus(path, status) || status.bFolder) return false;
    size = status.iSize;
    return true;
}
