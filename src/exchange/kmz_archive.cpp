#include "kmz_archive.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <minizip/unzip.h>
#include <minizip/zip.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/platform/numbers.h>
#include "exchange_limits.h"

namespace {
// An archive in memory as minizip's file functions see it: read from a view, or written into a
// text.
struct TMemoryStream {
    std::string_view in;
    std::string* out = nullptr;
    std::size_t pos = 0;
};

voidpf ZCALLBACK OpenMemory(voidpf opaque, const void*, int) {
    return opaque;
}

uLong ZCALLBACK ReadMemory(voidpf, voidpf stream, void* buf, uLong size) {
    auto* s = static_cast<TMemoryStream*>(stream);
    const std::size_t length = s->out != nullptr ? s->out->size() : s->in.size();
    const char* data = s->out != nullptr ? s->out->data() : s->in.data();
    const std::size_t n = s->pos < length ? std::min<std::size_t>(size, length - s->pos) : 0;
    if (n > 0) std::memcpy(buf, data + s->pos, n);
    s->pos += n;
    return static_cast<uLong>(n);
}

uLong ZCALLBACK WriteMemory(voidpf, voidpf stream, const void* buf, uLong size) {
    auto* s = static_cast<TMemoryStream*>(stream);
    if (s->out == nullptr) return 0;
    if (s->out->size() < s->pos + size) s->out->resize(s->pos + size);
    std::memcpy(s->out->data() + s->pos, buf, size);
    s->pos += size;
    return size;
}

ZPOS64_T ZCALLBACK TellMemory(voidpf, voidpf stream) {
    return static_cast<TMemoryStream*>(stream)->pos;
}

long ZCALLBACK SeekMemory(voidpf, voidpf stream, ZPOS64_T offset, int origin) {
    auto* s = static_cast<TMemoryStream*>(stream);
    const std::size_t length = s->out != nullptr ? s->out->size() : s->in.size();
    const std::size_t base = origin == ZLIB_FILEFUNC_SEEK_CUR   ? s->pos
                             : origin == ZLIB_FILEFUNC_SEEK_END ? length
                                                                : 0;
    if (offset > length || base + offset > length) return -1;
    s->pos = static_cast<std::size_t>(base + offset);
    return 0;
}

int ZCALLBACK CloseMemory(voidpf, voidpf) {
    return 0;
}

int ZCALLBACK ErrorMemory(voidpf, voidpf) {
    return 0;
}

zlib_filefunc64_def MemoryFunctions(TMemoryStream& stream) {
    zlib_filefunc64_def functions{};
    functions.zopen64_file = OpenMemory;
    functions.zread_file = ReadMemory;
    functions.zwrite_file = WriteMemory;
    functions.ztell64_file = TellMemory;
    functions.zseek64_file = SeekMemory;
    functions.zclose_file = CloseMemory;
    functions.zerror_file = ErrorMemory;
    functions.opaque = &stream;
    return functions;
}

// Whether an entry's name stays inside the archive's folder: relative, without a drive, and
// never climbing above where it starts.
bool IsSafeName(std::string_view name) {
    if (name.empty() || name[0] == '/' || name[0] == '\\' || name.find(':') != std::string_view::npos)
        return false;
    int depth = 0;
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find_first_of("/\\", start);
        if (end == std::string_view::npos) end = name.size();
        const std::string_view part = name.substr(start, end - start);
        if (part == "..") {
            if (--depth < 0) return false;
        } else if (!part.empty() && part != ".") {
            ++depth;
        }
        start = end + 1;
    }
    return true;
}

bool IsKmlName(std::string_view name) {
    return name.size() > 4 && EqualsNoCase(name.substr(name.size() - 4), ".kml");
}

struct TEntry {
    std::string strName;
    unz64_file_pos Position{};
    ZPOS64_T uSize = 0;
};

std::string Mebibytes(ZPOS64_T bytes) {
    return std::to_string(bytes >> 20) + " MiB";
}

// Reads the current entry, at most EXCHANGE_MAX_BYTES whatever its size claims.
bool ReadEntry(unzFile zip, const TEntry& entry, TKmzKml& out) {
    const std::string name = TLoadReport::EscapeText(entry.strName);
    if (entry.uSize > EXCHANGE_MAX_BYTES) {
        out.strError =
            name + " claims " + Mebibytes(entry.uSize) + " uncompressed; at most 256 MiB of a KMZ is read";
        return false;
    }
    unz64_file_pos position = entry.Position;
    if (unzGoToFilePos64(zip, &position) != UNZ_OK || unzOpenCurrentFile(zip) != UNZ_OK) {
        out.strError = "the archive's entry " + name + " cannot be opened";
        return false;
    }
    std::string text;
    char buffer[1 << 16];
    int n = 0;
    while ((n = unzReadCurrentFile(zip, buffer, sizeof buffer)) > 0) {
        if (text.size() + static_cast<std::size_t>(n) > EXCHANGE_MAX_BYTES) {
            unzCloseCurrentFile(zip);
            out.strError = name + " holds more than 256 MiB uncompressed; at most 256 MiB of a KMZ is read";
            return false;
        }
        text.append(buffer, static_cast<std::size_t>(n));
    }
    // Unzipping never gives more than an entry claims; an entry whose content goes on beyond
    // its claim then fails its checksum.
    const bool crcOk = unzCloseCurrentFile(zip) == UNZ_OK;
    if (n < 0) {
        out.strError = "the archive's entry " + name + " is damaged (zip error " + std::to_string(n) + ")";
        return false;
    }
    if (!crcOk) {
        out.strError =
            "the archive's entry " + name + " is damaged: its content does not match its size and checksum";
        return false;
    }
    out.strKml = std::move(text);
    out.strEntry = entry.strName;
    out.bOk = true;
    return true;
}
}  // namespace

TKmzKml ReadKmzKml(std::string_view archive, TLayerImport& import) {
    TKmzKml out;
    TMemoryStream stream{archive, nullptr, 0};
    zlib_filefunc64_def functions = MemoryFunctions(stream);
    unzFile zip = unzOpen2_64("kmz", &functions);
    if (zip == nullptr) {
        out.strError = "the file is no zip archive";
        out.iResult = GISFILE_ERR_OPEN;
        return out;
    }
    std::vector<TEntry> kml;
    int status = unzGoToFirstFile(zip);
    for (std::size_t entries = 0; status == UNZ_OK; status = unzGoToNextFile(zip)) {
        // A central directory of millions of names is not walked to its end.
        if (++entries > 100000) break;
        unz_file_info64 info{};
        char name[1024] = {};
        if (unzGetCurrentFileInfo64(zip, &info, name, sizeof name - 1, nullptr, 0, nullptr, 0) != UNZ_OK)
            break;
        const std::string entryName(name, strnlen(name, sizeof name));
        if (!IsKmlName(entryName)) continue;
        if (!IsSafeName(entryName)) {
            import.Skip(LOAD_KMZ_UNSAFE_NAME, 0, entryName);
            continue;
        }
        TEntry entry{entryName, {}, info.uncompressed_size};
        unzGetFilePos64(zip, &entry.Position);
        kml.push_back(std::move(entry));
    }
    if (kml.empty()) {
        out.strError = "the archive holds no KML file";
        out.iResult = GISFILE_ERR_DATA;
        unzClose(zip);
        return out;
    }
    const auto doc = std::find_if(kml.begin(), kml.end(),
                                  [](const TEntry& e) { return EqualsNoCase(e.strName, "doc.kml"); });
    const TEntry& chosen = doc != kml.end() ? *doc : kml.front();
    for (const TEntry& other : kml)
        if (&other != &chosen) import.Skip(LOAD_KMZ_OTHER_KML, 0, other.strName);
    if (!ReadEntry(zip, chosen, out)) out.iResult = GISFILE_ERR_DATA;
    unzClose(zip);
    return out;
}

bool WriteKmzArchive(std::string_view kml, std::string& archive) {
    archive.clear();
    TMemoryStream stream{{}, &archive, 0};
    zlib_filefunc64_def functions = MemoryFunctions(stream);
    zipFile zip = zipOpen2_64("kmz", APPEND_STATUS_CREATE, nullptr, &functions);
    if (zip == nullptr) return false;
    // A fixed date (1 January 1980, the first a zip can hold), so that the same layer always
    // gives the same archive.
    zip_fileinfo info{};
    info.tmz_date.tm_mday = 1;
    info.tmz_date.tm_year = 1980;
    bool ok = zipOpenNewFileInZip64(zip, "doc.kml", &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                    Z_DEFAULT_COMPRESSION, 0) == ZIP_OK;
    ok = ok && zipWriteInFileInZip(zip, kml.data(), static_cast<unsigned>(kml.size())) == ZIP_OK;
    ok = zipCloseFileInZip(zip) == ZIP_OK && ok;
    ok = zipClose(zip, nullptr) == ZIP_OK && ok;
    return ok;
}
