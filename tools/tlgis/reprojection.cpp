#include "reprojection.h"

#include <tl_gis/gis/coordinates.h>
#include "proj_transform.h"
#include "session.h"
#include "source_crs.h"

TFileReprojection::TFileReprojection() = default;
TFileReprojection::~TFileReprojection() = default;

bool TFileReprojection::Prepare(const std::string& path, int type, const TToolOptions& options,
                                std::string& error) {
    m_Use.bReproject = true;
    TSourceCrs crs;
    if (!FindSourceCrs(path, type, options.Get("crs"), crs, error)) return false;
    // Nothing names the CRS: the file loads as it does without reprojection, and Judge tells
    // whether its coordinates needed one.
    if (crs.strDefinition.empty()) return true;
    std::string why;
    TCrsTransform* transform = GetCrsTransform(crs.strDefinition, why);
    if (transform == nullptr) {
        error = (crs.strFrom == "--crs" ? "--crs " + options.Get("crs") : crs.strFrom) + ": " + why;
        return false;
    }
    m_Use.strName = transform->GetName().strName;
    m_Use.iEpsg = transform->GetName().iEpsg;
    m_Use.strFrom = crs.strFrom;
    // Longitude and latitude on WGS 84 are what the readers take: they read such files
    // exactly as they do without reprojection.
    if (!transform->IsWgs84())
        m_pHook = std::make_unique<TScopedCoordinateTransform>(MapThroughCrsTransform, transform);
    return true;
}

bool TFileReprojection::Judge(const std::string& path, const TLoadReport& report, std::string& error) const {
    if (m_Use.strName.empty() && SawProjectedCoordinates()) {
        error = "reading " + path +
                " stopped: its coordinates look projected, but the file names no CRS: give --crs";
        return false;
    }
    const long long unmapped = report.GetCount(LOAD_COORD_UNMAPPED);
    if (unmapped > 0) {
        for (const TLoadReport::TSkipped& s : report.GetSkipped()) {
            if (s.eCause != LOAD_COORD_UNMAPPED) continue;
            error = "reading " + path + ": " + std::to_string(unmapped) +
                    (unmapped == 1 ? " coordinate pair" : " coordinate pairs") +
                    " could not be mapped from " + m_Use.strName + " to WGS 84 (first: " + s.strFirst +
                    "); is the CRS right?";
        }
        return false;
    }
    return true;
}
