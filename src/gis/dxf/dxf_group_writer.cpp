#include "gis/dxf/dxf_group_writer.h"

#include <tl_gis/platform/numbers.h>

namespace {
constexpr std::size_t kFlushAt = 1 << 16;
}

void TDxfGroupWriter::AppendCode(int code) {
    const std::size_t start = m_strBuf.size();
    AppendInt(m_strBuf, code);
    const std::size_t digits = m_strBuf.size() - start;
    if (digits < 3) m_strBuf.insert(start, 3 - digits, ' ');
    m_strBuf += '\n';
}

void TDxfGroupWriter::EndValue(std::size_t valueStart, std::size_t maxValue) {
    if (m_strBuf.size() - valueStart > maxValue) m_strBuf.resize(valueStart + maxValue);
    m_strBuf += '\n';
    if (m_strBuf.size() >= kFlushAt) Flush();
}

void TDxfGroupWriter::WriteGroup(int code, std::string_view value) {
    AppendCode(code);
    const std::size_t start = m_strBuf.size();
    m_strBuf.append(value.substr(0, kMaxValue));
    EndValue(start);
}

void TDxfGroupWriter::WriteTextGroup(int code, std::string_view value) {
    AppendCode(code);
    const std::size_t start = m_strBuf.size();
    m_strBuf.append(value.substr(0, kMaxText));
    EndValue(start, kMaxText);
}

void TDxfGroupWriter::WriteGroup(int code, double value) {
    AppendCode(code);
    const std::size_t start = m_strBuf.size();
    AppendFixed(m_strBuf, value, 6);
    EndValue(start);
}

void TDxfGroupWriter::WriteIntGroup(int code, int value) {
    AppendCode(code);
    const std::size_t start = m_strBuf.size();
    AppendInt(m_strBuf, value);
    EndValue(start);
}

bool TDxfGroupWriter::Flush() {
    bool ok = true;
    if (!m_strBuf.empty()) ok = m_File.WriteString(m_strBuf);
    m_strBuf.clear();
    return ok && !m_File.HasWriteError();
}
