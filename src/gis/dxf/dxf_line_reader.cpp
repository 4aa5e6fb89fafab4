#include "gis/dxf/dxf_line_reader.h"

bool TDxfLineReader::KeepLongLine(std::string_view& line) {
    // Reading the rest may move the buffer under the view, so keep a copy of the start.
    m_strLong.assign(line);
    std::string_view rest;
    while (!m_File.LastLineComplete() && m_File.ReadLineView(rest, kMaxLine)) {
    }
    line = m_strLong;
    return true;
}
