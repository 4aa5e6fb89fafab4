#include "gis/shp/shp_record_reader.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <tl_gis/platform/numbers.h>
#include "gis/byte_order.h"
#include "platform/byte_file.h"

namespace {
std::string Int(long long v) {
    std::string s;
    AppendInt(s, v);
    return s;
}
}  // namespace

TShpRecordReader::TShpRecordReader(TByteFile& file, std::size_t blockSize)
    : m_File(file),
      m_iFileLength(file.GetLength() - file.GetPosition()),
      m_nBlockSize(std::max<std::size_t>(blockSize, 64)) {}

TShpRecordReader::~TShpRecordReader() = default;

bool TShpRecordReader::Ensure(std::size_t n) {
    if (m_nEnd - m_nPos >= n) return true;
    // Keep the unread tail, then fill the block with one large read.
    const std::size_t tail = m_nEnd - m_nPos;
    // Never more than what is left of the file: a small file gets a small block.
    const auto rest = static_cast<std::size_t>(std::max<std::int64_t>(Remaining(), 0));
    const std::size_t wanted = std::max(n, std::min(m_nBlockSize, rest));
    if (wanted > m_nCapacity) {
        std::unique_ptr<unsigned char[]> block(new (std::nothrow) unsigned char[wanted]);
        if (!block) return false;
        if (tail > 0) std::memcpy(block.get(), m_pBlock.get() + m_nPos, tail);
        m_pBlock = std::move(block);
        m_nCapacity = wanted;
    } else if (tail > 0 && m_nPos > 0) {
        std::memmove(m_pBlock.get(), m_pBlock.get() + m_nPos, tail);
    }
    m_nPos = 0;
    m_nEnd = tail;
    while (m_nEnd < n) {
        const std::size_t got = m_File.Read(m_pBlock.get() + m_nEnd, m_nCapacity - m_nEnd);
        if (got == 0) return false;
        m_nEnd += got;
    }
    return true;
}

bool TShpRecordReader::IsRestZero() {
    const auto zero = [](const unsigned char* p, std::size_t n) {
        return std::all_of(p, p + n, [](unsigned char c) { return c == 0; });
    };
    std::int64_t left = Remaining();
    const auto inBlock =
        static_cast<std::size_t>(std::min<std::int64_t>(left, static_cast<std::int64_t>(m_nEnd - m_nPos)));
    if (inBlock > 0 && !zero(m_pBlock.get() + m_nPos, inBlock)) return false;
    left -= static_cast<std::int64_t>(inBlock);
    unsigned char chunk[4096];
    while (left > 0) {
        const std::size_t got =
            m_File.Read(chunk, static_cast<std::size_t>(std::min<std::int64_t>(left, sizeof chunk)));
        if (got == 0) break;
        if (!zero(chunk, got)) return false;
        left -= static_cast<std::int64_t>(got);
    }
    m_nPos = m_nEnd;
    return true;
}

bool TShpRecordReader::ReadHeader(TShpHeader& header, std::string& problem) {
    if (Remaining() < static_cast<std::int64_t>(SHP_HEADER_BYTES) || !Ensure(SHP_HEADER_BYTES)) {
        problem = "the file has " + Int(m_iFileLength) + " bytes, fewer than the 100 of a shapefile header";
        return false;
    }
    header = DecodeShpHeader(m_pBlock.get() + m_nPos);
    m_nPos += SHP_HEADER_BYTES;
    m_iConsumed += SHP_HEADER_BYTES;
    return true;
}

TShpRecordReader::TStatus TShpRecordReader::Next(TShpRecord& record, std::string& problem) {
    m_strEndNote.clear();
    const std::int64_t left = Remaining();
    if (left <= 0) return READ_END;
    // A record header that the file cannot complete ends the data; zero padding after the last
    // record is common and harmless, anything else is noted.
    if (left < static_cast<std::int64_t>(SHP_RECORD_HEADER_BYTES)) {
        if (!Ensure(static_cast<std::size_t>(left))) return READ_END;
        const unsigned char* p = m_pBlock.get() + m_nPos;
        if (!std::all_of(p, p + left, [](unsigned char c) { return c == 0; }))
            m_strEndNote = "the file ends " + Int(left) +
                           " bytes into the header of the record after record " + Int(m_iLastNumber);
        return READ_END;
    }
    if (!Ensure(SHP_RECORD_HEADER_BYTES)) {
        m_strEndNote = "the file could not be read after record " + Int(m_iLastNumber);
        return READ_END;
    }
    const unsigned char* head = m_pBlock.get() + m_nPos;
    const bool numberZero = head[0] == 0 && head[1] == 0 && head[2] == 0 && head[3] == 0;
    if (numberZero &&
        (!m_bAcceptZero || std::all_of(head + 4, head + 8, [](unsigned char c) { return c == 0; })))
        return READ_END;
    if (m_eOrder == SHP_ORDER_UNKNOWN)
        m_eOrder = numberZero
                       ? DetectShpLengthOrder(head, left - static_cast<std::int64_t>(SHP_RECORD_HEADER_BYTES))
                       : DetectShpRecordOrder(head);
    const TShpRecordHeader rh = DecodeShpRecordHeader(head, m_eOrder);
    const std::int64_t length = 2 * static_cast<std::int64_t>(rh.iContentWords);
    if (rh.iContentWords < 0) {
        problem = "record " + Int(rh.iNumber) + " gives its content as " + Int(length) +
                  " bytes, but a length cannot be negative";
        return READ_DAMAGED;
    }
    // A record whose content the file cannot hold ends the data like a short read, and no memory
    // is set aside for more than the file holds.
    const std::int64_t available = left - static_cast<std::int64_t>(SHP_RECORD_HEADER_BYTES);
    if (length > available) {
        m_strEndNote = "record " + Int(rh.iNumber) + " gives its content as " + Int(length) +
                       " bytes, but only " + Int(available) + " bytes of the file follow its header";
        return READ_END;
    }
    if (length < 4) {
        problem = "record " + Int(rh.iNumber) + " has " + Int(length) +
                  " bytes of content, too few for a shape type";
        return READ_DAMAGED;
    }
    const std::size_t total = SHP_RECORD_HEADER_BYTES + static_cast<std::size_t>(length);
    if (!Ensure(total)) {
        if (m_nCapacity < total) {
            problem = "no memory for the " + Int(length) + " bytes of record " + Int(rh.iNumber);
            return READ_NO_MEMORY;
        }
        m_strEndNote = "the file could not be read inside record " + Int(rh.iNumber);
        return READ_END;
    }
    record.iNumber = rh.iNumber;
    record.pContent = m_pBlock.get() + m_nPos + SHP_RECORD_HEADER_BYTES;
    record.nLength = static_cast<std::size_t>(length);
    record.iShapeType = readLEInt32(record.pContent);
    m_nPos += total;
    m_iConsumed += static_cast<std::int64_t>(total);
    m_iLastNumber = rh.iNumber;
    return READ_RECORD;
}
