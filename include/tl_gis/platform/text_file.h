#pragma once
// Buffered text file with the line semantics the readers rely on.
//
// Reading: LF and CR LF each end a line (so do CRs at the very end of the file); a CR
// inside a line is an ordinary character, as in text-mode reading. A bounded read returns
// at most cap - 1 characters; a longer line comes back in pieces, the first ones of exactly
// cap - 1 characters. Writing: every '\n' becomes CR LF on disk.

#include <tl_gis/export.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <tl_gis/platform/file_base.h>

class TL_GIS_API TTextFile : public TFileBase {
public:
    enum OpenMode { modeRead, modeCreate };

    TTextFile() = default;
    ~TTextFile() override;
    TTextFile(const TTextFile&) = delete;
    TTextFile& operator=(const TTextFile&) = delete;

    // Opens for reading, or creates (truncating) for writing. False on failure; see GetOpenError().
    bool Open(const char* path, OpenMode mode);
    // Reads from memory instead of a file (tests and fuzzers).
    void OpenMemory(std::string_view data);
    bool IsOpen() const { return m_pFile != nullptr || m_bMemory; }
    // Flushes and closes; false when a write could not be completed.
    bool Close();

    // fgets-like: reads at most cap - 1 characters of the current line into buf and
    // NUL-terminates it. The line end is stored as one '\n' when it fits. False at end of file.
    bool ReadLine(char* buf, std::size_t cap);
    // Reads the next line, without its end, as a view into the file's buffer that stays
    // valid until the next read. A line longer than maxLen comes back in pieces of maxLen.
    // False at end of file.
    bool ReadLineView(std::string_view& line, std::size_t maxLen = kMaxViewLine) {
        // The common case, a whole line already in the buffer, stays inline: readers of large
        // files call this once for every few bytes.
        if (m_iPos < m_iEnd && maxLen - 1 < kBufferSize / 2) {
            const char* base = m_pBuf.get() + m_iPos;
            const std::size_t window = (std::min)(m_iEnd - m_iPos, maxLen + 2);
            if (const char* nl = static_cast<const char*>(std::memchr(base, '\n', window))) {
                const char* end = nl;
                while (end > base && end[-1] == '\r') --end;
                const auto len = static_cast<std::size_t>(end - base);
                if (len <= maxLen) {
                    line = std::string_view(base, len);
                    m_iPos += static_cast<std::size_t>(nl - base) + 1;
                    m_bLastComplete = true;
                    return true;
                }
            }
        }
        return ReadLineViewSlow(line, maxLen);
    }
    // Reads a whole line without its end, at most maxLen characters; the rest of a longer
    // line is skipped. False at end of file.
    bool ReadLine(std::string& line, std::size_t maxLen = kMaxViewLine);
    // True when the last ReadLineView() or ReadLine(buf, cap) returned the end of its line, false
    // for a piece.
    bool LastLineComplete() const { return m_bLastComplete; }
    // The next byte without consuming it; -1 at end of file.
    int PeekChar();

    std::int64_t GetPosition() const override;
    // Repositions for reading to an absolute byte offset. False when out of range.
    bool Seek(std::int64_t pos);
    std::int64_t GetLength() const;

    // Writes text; each '\n' is written as CR LF.
    bool WriteString(std::string_view text);
    bool HasWriteError() const { return m_bWriteError; }

    static constexpr std::size_t kBufferSize = 1 << 20;
    static constexpr std::size_t kMaxViewLine = 1 << 16;

private:
    // Open for a path below a memory folder (tests and fuzzers): reads copy the stored bytes,
    // writes gather the text and store it on Close().
    bool OpenInMemory(const char* path, OpenMode mode);
    bool Fill();  // moves the unread tail to the front and reads more; false when nothing new came
    bool FlushWrite();
    // ReadLineView for a line that is not whole in the buffer: refills, cuts pieces, ends files.
    bool ReadLineViewSlow(std::string_view& line, std::size_t maxLen);
    // Consumes a line end at m_iPos if there is one; true when one was consumed.
    bool ConsumeLineEnd();

    std::FILE* m_pFile = nullptr;
    bool m_bMemory = false;
    bool m_bWriting = false;
    bool m_bEof = false;
    bool m_bWriteError = false;
    bool m_bLastComplete = true;
    std::unique_ptr<char[]> m_pBuf;
    std::size_t m_iBufCap = 0;
    std::size_t m_iPos = 0;        // next unread byte in m_pBuf
    std::size_t m_iEnd = 0;        // end of valid bytes in m_pBuf
    std::int64_t m_iBufStart = 0;  // file offset of m_pBuf[0]
    std::string m_strMemory;       // text written to a memory file, up to the last flush
    std::string m_strOut;
};
