#include <tl_gis/platform/text_file.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/file_system.h"
#include "platform/memory_files.h"

TTextFile::~TTextFile() {
    Close();
}

bool TTextFile::Open(const char* path, OpenMode mode) {
    Close();
    m_iOpenError = 0;
    if (path == nullptr) {
        m_iOpenError = ENOENT;
        return false;
    }
    if (IsMemoryPath(path)) return OpenInMemory(path, mode);
    // Binary on every system: the reader takes CR LF and LF itself, and the writer puts CR LF
    // itself, so a Windows text-mode stream must not add a second CR.
    std::FILE* f = OpenFileUtf8(path, mode == modeRead ? "rb" : "wb");
    if (f == nullptr) {
        m_iOpenError = errno != 0 ? errno : EIO;
        return false;
    }
    if (mode == modeRead) {
        // A directory opens on some systems but cannot be read as text.
        TFileStatus status;
        if (GetOpenFileStatus(f, status) && status.bFolder) {
            std::fclose(f);
            m_iOpenError = EISDIR;
            return false;
        }
    }
    m_pFile = f;
    m_strPath = path;
    m_bWriting = mode == modeCreate;
    m_bEof = false;
    m_bWriteError = false;
    m_iPos = m_iEnd = 0;
    m_iBufStart = 0;
    if (!m_bWriting) {
        if (!m_pBuf || m_iBufCap != kBufferSize) {
            // Only the bytes read are ever looked at: zeroing the whole block would cost more
            // than reading a small file.
            m_pBuf = std::make_unique_for_overwrite<char[]>(kBufferSize);
            m_iBufCap = kBufferSize;
        }
    } else {
        m_strOut.clear();
        m_strOut.reserve(1 << 16);
    }
    return true;
}

void TTextFile::OpenMemory(std::string_view data) {
    Close();
    m_bMemory = true;
    m_bWriting = false;
    m_bEof = true;
    m_iBufCap = data.size() + 1;
    m_pBuf = std::make_unique<char[]>(m_iBufCap);
    if (!data.empty()) std::memcpy(m_pBuf.get(), data.data(), data.size());
    m_iPos = 0;
    m_iEnd = data.size();
    m_iBufStart = 0;
    m_strPath = "<memory>";
}

bool TTextFile::OpenInMemory(const char* path, OpenMode mode) {
    if (mode == modeRead) {
        std::string bytes;
        if (!ReadMemoryFile(path, bytes)) {
            m_iOpenError = ENOENT;
            return false;
        }
        OpenMemory(bytes);
    } else {
        // Created empty at once, as on disk; the text written is stored when the file is closed.
        StoreMemoryFile(path, {});
        m_bMemory = true;
        m_bWriting = true;
        m_bWriteError = false;
        m_iPos = m_iEnd = 0;
        m_iBufStart = 0;
        m_strMemory.clear();
        m_strOut.clear();
    }
    m_strPath = path;
    return true;
}

bool TTextFile::Close() {
    bool ok = true;
    if (m_pFile != nullptr) {
        if (m_bWriting) ok = FlushWrite();
        if (std::fclose(m_pFile) != 0) ok = false;
        m_pFile = nullptr;
    }
    if (m_bMemory && m_bWriting) {
        FlushWrite();
        StoreMemoryFile(m_strPath, std::move(m_strMemory));
        m_strMemory.clear();
    }
    if (m_bWriting && !ok) m_bWriteError = true;
    m_bMemory = false;
    m_iPos = m_iEnd = 0;
    m_iBufStart = 0;
    m_strPath.clear();
    return ok && !m_bWriteError;
}

bool TTextFile::Fill() {
    if (m_bMemory || m_pFile == nullptr || m_bWriting) return false;
    if (m_iPos > 0) {
        const std::size_t tail = m_iEnd - m_iPos;
        if (tail > 0) std::memmove(m_pBuf.get(), m_pBuf.get() + m_iPos, tail);
        m_iBufStart += static_cast<std::int64_t>(m_iPos);
        m_iEnd = tail;
        m_iPos = 0;
    }
    if (m_bEof || m_iEnd == m_iBufCap) return false;
    const std::size_t got = std::fread(m_pBuf.get() + m_iEnd, 1, m_iBufCap - m_iEnd, m_pFile);
    if (got == 0) {
        m_bEof = true;
        return false;
    }
    m_iEnd += got;
    return true;
}

bool TTextFile::ConsumeLineEnd() {
    // A run of CRs followed by LF is one line end; a CR run at end of file is dropped too.
    std::size_t j = m_iPos;
    for (;;) {
        while (j < m_iEnd && m_pBuf[j] == '\r') ++j;
        if (j < m_iEnd) break;
        const std::int64_t before = m_iBufStart;
        const bool more = Fill();
        j -= static_cast<std::size_t>(m_iBufStart - before);
        if (!more) break;
    }
    if (j < m_iEnd && m_pBuf[j] == '\n') {
        m_iPos = j + 1;
        return true;
    }
    if (j == m_iEnd && j > m_iPos) {  // trailing CRs at end of file
        m_iPos = j;
        return true;
    }
    return false;
}

bool TTextFile::ReadLine(char* buf, std::size_t cap) {
    if (buf == nullptr || cap == 0 || !IsOpen() || m_bWriting) return false;
    if (m_iPos == m_iEnd && !Fill()) {
        buf[0] = '\0';
        return false;
    }
    std::size_t n = 0;
    const std::size_t room = cap - 1;
    m_bLastComplete = false;
    while (n < room) {
        if (m_iPos == m_iEnd && !Fill()) break;
        const char c = m_pBuf[m_iPos];
        if (c == '\n' || c == '\r') {
            if (ConsumeLineEnd()) {
                buf[n++] = '\n';
                m_bLastComplete = true;
                break;
            }
            // A CR inside a line is kept as an ordinary character.
        }
        buf[n++] = c;
        ++m_iPos;
    }
    buf[n] = '\0';
    return true;
}

bool TTextFile::ReadLineViewSlow(std::string_view& line, std::size_t maxLen) {
    line = {};
    m_bLastComplete = true;
    if (!IsOpen() || m_bWriting) return false;
    maxLen = std::clamp<std::size_t>(maxLen, 1, kBufferSize / 2);
    for (;;) {
        const char* base = m_pBuf.get() + m_iPos;
        const std::size_t avail = m_iEnd - m_iPos;
        const std::size_t window = std::min(avail, maxLen + 2);
        const char* nl = window ? static_cast<const char*>(std::memchr(base, '\n', window)) : nullptr;
        if (nl != nullptr) {
            const char* end = nl;
            while (end > base && end[-1] == '\r') --end;
            const std::size_t len = static_cast<std::size_t>(end - base);
            if (len <= maxLen) {
                line = std::string_view(base, len);
                m_iPos += static_cast<std::size_t>(nl - base) + 1;
                return true;
            }
        }
        if (avail >= maxLen + 2 || (nl != nullptr)) {
            line = std::string_view(base, maxLen);
            m_iPos += maxLen;
            m_bLastComplete = false;
            return true;
        }
        if (!Fill()) {
            // End of file: the last line has no line end.
            if (m_iPos == m_iEnd) return false;
            base = m_pBuf.get() + m_iPos;
            std::size_t len = std::min(m_iEnd - m_iPos, maxLen);
            const bool whole = len == m_iEnd - m_iPos;
            std::size_t shown = len;
            if (whole)
                while (shown > 0 && base[shown - 1] == '\r') --shown;
            line = std::string_view(base, shown);
            m_iPos += len;
            m_bLastComplete = whole;
            return true;
        }
    }
}

bool TTextFile::ReadLine(std::string& line, std::size_t maxLen) {
    std::string_view v;
    if (!ReadLineView(v, maxLen)) {
        line.clear();
        return false;
    }
    line.assign(v);
    // Views are limited to half the buffer: gather the pieces up to maxLen, then skip the rest.
    while (!m_bLastComplete) {
        const std::size_t room = maxLen > line.size() ? maxLen - line.size() : 0;
        if (!ReadLineView(v, room > 0 ? room : kMaxViewLine)) break;
        if (room > 0) line.append(v);
    }
    return true;
}

int TTextFile::PeekChar() {
    if (!IsOpen() || m_bWriting) return -1;
    if (m_iPos == m_iEnd && !Fill()) return -1;
    return static_cast<unsigned char>(m_pBuf[m_iPos]);
}

std::int64_t TTextFile::GetPosition() const {
    if (m_bWriting) {
        return m_iBufStart + static_cast<std::int64_t>(m_strOut.size());
    }
    return m_iBufStart + static_cast<std::int64_t>(m_iPos);
}

bool TTextFile::Seek(std::int64_t pos) {
    if (!IsOpen() || m_bWriting || pos < 0) return false;
    if (pos >= m_iBufStart && pos <= m_iBufStart + static_cast<std::int64_t>(m_iEnd)) {
        m_iPos = static_cast<std::size_t>(pos - m_iBufStart);
        return true;
    }
    if (m_bMemory || pos > GetLength()) return false;
    if (!SeekFileTo(m_pFile, pos)) return false;
    m_iBufStart = pos;
    m_iPos = m_iEnd = 0;
    m_bEof = false;
    return true;
}

std::int64_t TTextFile::GetLength() const {
    if (m_bMemory) return static_cast<std::int64_t>(m_iEnd);
    if (m_pFile == nullptr) return 0;
    TFileStatus status;
    return GetOpenFileStatus(m_pFile, status) ? status.iSize : 0;
}

bool TTextFile::WriteString(std::string_view text) {
    if ((m_pFile == nullptr && !m_bMemory) || !m_bWriting) return false;
    std::size_t start = 0;
    while (start < text.size()) {
        const void* hit = std::memchr(text.data() + start, '\n', text.size() - start);
        if (hit == nullptr) {
            m_strOut.append(text.substr(start));
            break;
        }
        const std::size_t nl = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
        m_strOut.append(text.substr(start, nl - start));
        m_strOut.append("\r\n", 2);
        start = nl + 1;
    }
    if (m_strOut.size() >= kBufferSize) return FlushWrite();
    return !m_bWriteError;
}

bool TTextFile::FlushWrite() {
    if (m_strOut.empty()) return !m_bWriteError;
    if (m_bMemory) {
        m_strMemory.append(m_strOut);
        m_iBufStart += static_cast<std::int64_t>(m_strOut.size());
        m_strOut.clear();
        return true;
    }
    const std::size_t put = std::fwrite(m_strOut.data(), 1, m_strOut.size(), m_pFile);
    if (put != m_strOut.size()) m_bWriteError = true;
    m_iBufStart += static_cast<std::int64_t>(m_strOut.size());
    m_strOut.clear();
    return !m_bWriteError;
}
