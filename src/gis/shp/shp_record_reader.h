#pragma once
// Reads a shapefile's main file front to back in large blocks and hands out one record at a
// time, with no seek per record. Every record length is checked against what is left of the
// file before any memory is set aside for it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "gis/shp/shp_codec.h"

class TByteFile;

struct TShpRecord {
    std::int32_t iNumber = 0;
    std::int32_t iShapeType = 0;
    const unsigned char* pContent = nullptr;  // valid until the next call of Next
    std::size_t nLength = 0;                  // bytes of content, shape type included
};

class TShpRecordReader {
public:
    enum TStatus {
        READ_RECORD,     // a record came
        READ_END,        // no further record: end of file, a record number of zero, or a record
                         // header or content that the file cannot complete (GetEndNote says which)
        READ_DAMAGED,    // the file cannot go on; the problem says why
        READ_NO_MEMORY,  // a block for a record that the file can hold could not be had
    };

    // Reads from the file's current position, which must be its start.
    explicit TShpRecordReader(TByteFile& file, std::size_t blockSize = 1 << 20);
    ~TShpRecordReader();
    TShpRecordReader(const TShpRecordReader&) = delete;
    TShpRecordReader& operator=(const TShpRecordReader&) = delete;

    // Reads the 100-byte file header; false with the problem when the file is shorter.
    bool ReadHeader(TShpHeader& header, std::string& problem);
    // Takes a record numbered 0 as a record rather than as the end of the data (the system's own
    // programs end there); only a record header of eight zero bytes then ends it.
    void AcceptRecordZero() { m_bAcceptZero = true; }
    TStatus Next(TShpRecord& record, std::string& problem);

    // Bytes handed out so far, for progress.
    std::int64_t GetPosition() const { return m_iConsumed; }
    // Why the last READ_END came before the file's end: a cut or unreadable record, or bytes
    // after the last record that are not zero padding. Empty for a clean end.
    const std::string& GetEndNote() const { return m_strEndNote; }
    // Bytes of the file not handed out, and the number of the last record that was.
    std::int64_t GetBytesLeft() const { return Remaining(); }
    std::int32_t GetLastNumber() const { return m_iLastNumber; }
    // Whether every byte not handed out is zero, as the padding some writers leave after the
    // last record is. Reads the rest of the file: for after the last record only.
    bool IsRestZero();

private:
    // Makes n bytes from the current position available in the block; false when memory fails
    // or the file yields fewer. The caller has checked that the file holds them.
    bool Ensure(std::size_t n);
    std::int64_t Remaining() const { return m_iFileLength - m_iConsumed; }

    TByteFile& m_File;
    std::int64_t m_iFileLength = 0;
    std::int64_t m_iConsumed = 0;
    std::unique_ptr<unsigned char[]> m_pBlock;
    std::size_t m_nBlockSize = 0;
    std::size_t m_nCapacity = 0;
    std::size_t m_nPos = 0;  // next unread byte of the block
    std::size_t m_nEnd = 0;  // end of the bytes read into the block
    TShpByteOrder m_eOrder = SHP_ORDER_UNKNOWN;
    bool m_bAcceptZero = false;
    std::int32_t m_iLastNumber = 0;
    std::string m_strEndNote;
};
