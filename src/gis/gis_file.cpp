#include <tl_gis/gis/gis_file.h>

#include <algorithm>
#include <cstring>
#include <new>

#include <tl_gis/platform/file_base.h>
#include <tl_gis/platform/message_box.h>
#include "platform/byte_file.h"

double TGisFile::s_dDecimationLimitM = 0.0;
int TGisFile::s_iCompatible = REDUCE_BY_TOLERANCE;
int TGisFile::s_iGisFileFormat = GISFILE_JOB_V1;
bool TGisFile::s_bCompleteProfile = false;
std::string TGisFile::s_strIdField;
std::string TGisFile::s_strValueField;
std::string TGisFile::s_strNameField;

TGisFile::~TGisFile() {
    ReleaseLocArray();
}

TGisFile::TGisFile(const TGisFile& other) {
    *this = other;
}

TGisFile& TGisFile::operator=(const TGisFile& other) {
    if (this == &other) return *this;
    tagLOC* copy = nullptr;
    if (other.m_pLocs != nullptr) {
        const std::size_t n = static_cast<std::size_t>(other.m_iLocArraySize) + 1;
        copy = new tagLOC[n];
        std::copy(other.m_pLocs, other.m_pLocs + n, copy);
    }
    ReleaseLocArray();
    m_pLayer = other.m_pLayer;
    m_pLocs = copy;
    m_iLocArraySize = copy ? other.m_iLocArraySize : 0;
    m_iNumLocs = other.m_iNumLocs;
    m_iFeatureType = other.m_iFeatureType;
    m_iBoundType = other.m_iBoundType;
    m_bJobReduced = other.m_bJobReduced;
    m_iJobPolygons = other.m_iJobPolygons;
    m_iJobVertices = other.m_iJobVertices;
    std::copy(std::begin(other.m_abJobWarnings), std::end(other.m_abJobWarnings), m_abJobWarnings);
    m_pfnProgress = other.m_pfnProgress;
    m_iProgressStep = other.m_iProgressStep;
    m_iLastProgress = other.m_iLastProgress;
    m_pLoadReport = other.m_pLoadReport;
    return *this;
}

int TGisFile::WriteFile(const char*, TMapLayer*) {
    return GISFILE_OK;
}

int TGisFile::LoadFile(const char* path, TMapLayer*, GisProgressCallback progress) {
    m_pfnProgress = progress;
    m_iProgressStep = 100000;
    std::int64_t size = 0;
    if (!TByteFile::GetStatus(path, size)) return GISFILE_ERR_UNAVAILABLE;
    // A rough percentage: one step per hundredth of the file (low 32 bits of the size).
    const auto low = static_cast<std::uint32_t>(static_cast<std::uint64_t>(size) & 0xFFFFFFFFu);
    m_iProgressStep = static_cast<int>(low / 100u);
    if (m_iProgressStep == 0) m_iProgressStep = 100000;
    return GISFILE_OK;
}

bool TGisFile::IsValidFile(const char*) {
    return false;
}

void TGisFile::UpdateProgressControl(const TFileBase& file) {
    UpdateProgressControl(file.GetPosition());
}

void TGisFile::UpdateProgressControl(std::int64_t position) {
    if (m_iProgressStep <= 0) return;
    const int value = static_cast<int>(position / static_cast<std::int64_t>(m_iProgressStep));
    if (value == m_iLastProgress) return;
    if (m_pfnProgress != nullptr) m_pfnProgress(value);
    m_iLastProgress = value;
}

bool TGisFile::AllocateLocArray(int count) {
    ReleaseLocArray();
    tagLOC* array = count >= 0 ? new (std::nothrow) tagLOC[static_cast<std::size_t>(count) + 1] : nullptr;
    if (array == nullptr) {
        ShowMessageBox("ERROR: could not allocate memory for imported polygon!", "",
                       MSGBOX_OK | MSGBOX_ICONEXCLAMATION);
        return false;
    }
    m_pLocs = array;
    m_iLocArraySize = count;
    return true;
}

bool TGisFile::AddVertex(double lat, double lon) {
    if (m_pLocs == nullptr || m_iNumLocs < 0) return false;
    if (m_iNumLocs >= m_iLocArraySize) {
        if (m_iLocArraySize > (1 << 30)) return false;
        // 300 more at a time; past 65,536 vertices half the size more, so that a line of
        // millions of vertices is not copied thousands of times over.
        const int grown = m_iLocArraySize + (m_iLocArraySize >= 65536 ? m_iLocArraySize / 2 : 300);
        // A count that a reader set beyond the array would still not fit after one step.
        if (m_iNumLocs >= grown) return false;
        tagLOC* array = new (std::nothrow) tagLOC[static_cast<std::size_t>(grown) + 1];
        if (array == nullptr) return false;
        std::copy(m_pLocs, m_pLocs + std::min(m_iNumLocs, m_iLocArraySize + 1), array);
        delete[] m_pLocs;
        m_pLocs = array;
        m_iLocArraySize = grown;
    }
    m_pLocs[m_iNumLocs++] = {lat, lon};
    return true;
}

bool TGisFile::AddVertex(const tagLOC* loc) {
    return loc != nullptr && AddVertex(loc->dLat, loc->dLon);
}

bool TGisFile::ReleaseLocArray() {
    delete[] m_pLocs;
    m_pLocs = nullptr;
    m_iLocArraySize = 0;
    return true;
}

bool HasFileExtension(const char* path, const char* ext) {
    if (path == nullptr || ext == nullptr) return false;
    const char* dot = std::strrchr(path, '.');
    if (dot == nullptr) return false;
    const char* a = dot + 1;
    const char* b = ext;
    for (; *a && *b; ++a, ++b) {
        const char ca = (*a >= 'a' && *a <= 'z') ? static_cast<char>(*a - 32) : *a;
        const char cb = (*b >= 'a' && *b <= 'z') ? static_cast<char>(*b - 32) : *b;
        if (ca != cb) return false;
    }
    return *a == '\0' && *b == '\0';
}

std::string& ChangeExtension(std::string& path, const char* ext) {
    const auto dot = path.rfind('.');
    if (dot != std::string::npos) path.erase(dot);
    if (ext == nullptr) ext = "";
    if (ext[0] != '.') path += '.';
    path += ext;
    return path;
}
