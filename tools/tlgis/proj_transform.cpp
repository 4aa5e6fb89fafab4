#include "proj_transform.h"

#ifndef TLGIS_WITH_PROJ

bool BuiltWithProj() {
    return false;
}

TCrsTransform* GetCrsTransform(const std::string&, std::string& error) {
    error = "this tlgis was built without PROJ, so it cannot reproject";
    return nullptr;
}

bool MapThroughCrsTransform(void*, double, double, double*, double*) {
    return false;
}

#else

#include <dlfcn.h>
#include <proj.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>

namespace {

// The PROJ functions the tool calls, looked up by name in PROJ's shared library.
#define TLGIS_PROJ_FUNCTIONS(X)                                          \
    X(proj_context_create)                                               \
    X(proj_context_destroy)                                              \
    X(proj_log_func)                                                     \
    X(proj_cleanup)                                                      \
    X(proj_create)                                                       \
    X(proj_destroy)                                                      \
    X(proj_is_crs)                                                       \
    X(proj_get_type)                                                     \
    X(proj_get_name)                                                     \
    X(proj_get_id_auth_name)                                             \
    X(proj_get_id_code)                                                  \
    X(proj_get_source_crs)                                               \
    X(proj_crs_get_geodetic_crs)                                         \
    X(proj_crs_get_datum_forced)                                         \
    X(proj_is_equivalent_to_with_ctx)                                    \
    X(proj_identify)                                                     \
    X(proj_list_get_count)                                               \
    X(proj_list_get)                                                     \
    X(proj_list_destroy)                                                 \
    X(proj_int_list_destroy)                                             \
    X(proj_create_operation_factory_context)                             \
    X(proj_operation_factory_context_destroy)                            \
    X(proj_operation_factory_context_set_allow_ballpark_transformations) \
    X(proj_operation_factory_context_set_spatial_criterion)              \
    X(proj_operation_factory_context_set_grid_availability_use)          \
    X(proj_create_operations)                                            \
    X(proj_create_crs_to_crs_from_pj)                                    \
    X(proj_normalize_for_visualization)                                  \
    X(proj_trans)                                                        \
    X(proj_errno_reset)                                                  \
    X(proj_context_errno)                                                \
    X(proj_context_errno_string)

struct TProjApi {
#define TLGIS_PROJ_POINTER(name) decltype(&::name) name = nullptr;
    TLGIS_PROJ_FUNCTIONS(TLGIS_PROJ_POINTER)
#undef TLGIS_PROJ_POINTER
};
// Filled once by TProjSession::Load; plain pointers, so that it outlives every PROJ object.
TProjApi g_Proj;

// Owns one PROJ object.
class TPj {
public:
    explicit TPj(PJ* pj = nullptr) : m_pPj(pj) {}
    ~TPj() { Reset(); }
    TPj(const TPj&) = delete;
    TPj& operator=(const TPj&) = delete;
    PJ* Get() const { return m_pPj; }
    PJ* Release() {
        PJ* pj = m_pPj;
        m_pPj = nullptr;
        return pj;
    }
    void Reset(PJ* pj = nullptr) {
        if (m_pPj != nullptr) g_Proj.proj_destroy(m_pPj);
        m_pPj = pj;
    }

private:
    PJ* m_pPj;
};

// PROJ for the whole run: its functions, one context, and every transform made so far. PROJ's
// own objects are released before the context, and the context before PROJ's caches.
class TProjSession {
public:
    // Loads PROJ. The session is made after PROJ's library is loaded, so that at exit it goes
    // before the library's own statics.
    TProjSession();
    ~TProjSession();
    TCrsTransform* Get(const std::string& definition, std::string& error);

private:
    static void CollectLog(void* session, int level, const char* message);
    // PROJ's last error in this context, without the name of the function that met it.
    std::string LastError() const;
    std::unique_ptr<TCrsTransform> Make(const std::string& definition, std::string& error);
    // The name PROJ gives the CRS, and its EPSG code when PROJ finds it the same as one.
    TCrsName NameOf(const PJ* crs) const;
    // True when PROJ knows a way from the CRS to WGS 84 other than a ballpark shift; otherwise
    // false with why, naming the datum.
    bool KnowsExactWayToWgs84(const PJ* crs, std::string& error) const;

    // False with the reason when PROJ's library or one of its functions cannot be had.
    bool Load(std::string& error);

    std::string m_strLoadError;
    PJ_CONTEXT* m_pContext = nullptr;
    TPj m_Wgs84;
    std::string m_strLastLog;
    std::map<std::string, std::unique_ptr<TCrsTransform> > m_Transforms;
};

class TProjTransform : public TCrsTransform {
public:
    TProjTransform(PJ* transform, TCrsName name, bool wgs84) : m_Transform(transform) {
        m_Name = std::move(name);
        m_bWgs84 = wgs84;
    }
    bool Map(double x, double y, double& lat, double& lon) override {
        // No height and no epoch, as GDAL hands points to PROJ.
        PJ_COORD in;
        in.xyzt = {x, y, 0.0, HUGE_VAL};
        g_Proj.proj_errno_reset(m_Transform.Get());
        const PJ_COORD out = g_Proj.proj_trans(m_Transform.Get(), PJ_FWD, in);
        if (out.xy.x == HUGE_VAL || !std::isfinite(out.xy.x) || !std::isfinite(out.xy.y)) return false;
        // Normalised for visualisation: longitude first, whatever the CRS's axis order.
        lon = out.xy.x;
        lat = out.xy.y;
        return true;
    }

private:
    TPj m_Transform;
};

bool IsProjString(const std::string& definition) {
    const auto start = definition.find_first_not_of(" \t\r\n");
    return start != std::string::npos &&
           (definition[start] == '+' || definition.compare(start, 5, "proj=") == 0);
}

// The CRS types a file's coordinates can be in: a plane or the ellipsoid, with or without height.
bool IsUsableCrsType(PJ_TYPE type) {
    return type == PJ_TYPE_PROJECTED_CRS || type == PJ_TYPE_GEOGRAPHIC_2D_CRS ||
           type == PJ_TYPE_GEOGRAPHIC_3D_CRS || type == PJ_TYPE_COMPOUND_CRS;
}

TProjSession& Session() {
    static TProjSession session;
    return session;
}

TProjSession::~TProjSession() {
    if (m_pContext == nullptr) return;
    m_Transforms.clear();
    m_Wgs84.Reset();
    g_Proj.proj_context_destroy(m_pContext);
    g_Proj.proj_cleanup();
}

TProjSession::TProjSession() {
    Load(m_strLoadError);
}

bool TProjSession::Load(std::string& error) {
    void* library = dlopen(TLGIS_PROJ_SONAME, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) library = dlopen("libproj.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        error = std::string("cannot load PROJ (") + TLGIS_PROJ_SONAME +
                "), which reprojection needs; Debian's package is " TLGIS_PROJ_PACKAGE;
        return false;
    }
#define TLGIS_PROJ_LOOKUP(name)                                                          \
    g_Proj.name = reinterpret_cast<decltype(g_Proj.name)>(dlsym(library, #name));        \
    if (g_Proj.name == nullptr) {                                                        \
        error = "the PROJ library " TLGIS_PROJ_SONAME " lacks " #name ": it is too old"; \
        return false;                                                                    \
    }
    TLGIS_PROJ_FUNCTIONS(TLGIS_PROJ_LOOKUP)
#undef TLGIS_PROJ_LOOKUP
    m_pContext = g_Proj.proj_context_create();
    if (m_pContext == nullptr) {
        error = "PROJ could not start (no memory for its context)";
        return false;
    }
    // PROJ's messages would go to stderr; the tool says what went wrong in its own line.
    g_Proj.proj_log_func(m_pContext, this, &TProjSession::CollectLog);
    m_Wgs84.Reset(g_Proj.proj_create(m_pContext, "EPSG:4326"));
    if (m_Wgs84.Get() == nullptr) {
        error = "PROJ does not find WGS 84 (EPSG:4326) in its database (" + LastError() +
                "); Debian's package proj-data holds it";
        g_Proj.proj_context_destroy(m_pContext);
        m_pContext = nullptr;
        return false;
    }
    return true;
}

void TProjSession::CollectLog(void* session, int level, const char* message) {
    if (level <= PJ_LOG_ERROR && message != nullptr)
        static_cast<TProjSession*>(session)->m_strLastLog = message;
}

std::string TProjSession::LastError() const {
    std::string text = m_strLastLog;
    if (text.empty()) {
        const char* reason =
            g_Proj.proj_context_errno_string(m_pContext, g_Proj.proj_context_errno(m_pContext));
        text = reason != nullptr ? reason : "no reason given";
    }
    if (text.compare(0, 5, "proj_") == 0 && text.find(": ") != std::string::npos)
        text.erase(0, text.find(": ") + 2);
    return text;
}

TCrsTransform* TProjSession::Get(const std::string& definition, std::string& error) {
    if (m_pContext == nullptr) {
        error = m_strLoadError;
        return nullptr;
    }
    const auto found = m_Transforms.find(definition);
    if (found != m_Transforms.end()) return found->second.get();
    std::unique_ptr<TCrsTransform> made = Make(definition, error);
    if (!made) return nullptr;
    return m_Transforms.emplace(definition, std::move(made)).first->second.get();
}

TCrsName TProjSession::NameOf(const PJ* crs) const {
    TCrsName name;
    const char* own = g_Proj.proj_get_name(crs);
    name.strName = own != nullptr ? own : "";
    const char* authority = g_Proj.proj_get_id_auth_name(crs, 0);
    const char* code = g_Proj.proj_get_id_code(crs, 0);
    if (authority != nullptr && code != nullptr && std::string(authority) == "EPSG") {
        name.iEpsg = std::atoi(code);
    } else {
        // 70 and more: PROJ holds the two for the same CRS, whatever their names.
        int* confidence = nullptr;
        PJ_OBJ_LIST* matches = g_Proj.proj_identify(m_pContext, crs, "EPSG", nullptr, &confidence);
        if (matches != nullptr && g_Proj.proj_list_get_count(matches) > 0 && confidence[0] >= 70) {
            TPj match(g_Proj.proj_list_get(m_pContext, matches, 0));
            const char* matchCode = g_Proj.proj_get_id_code(match.Get(), 0);
            if (matchCode != nullptr) name.iEpsg = std::atoi(matchCode);
            // A PROJ string's CRS has no name of its own.
            const char* matchName = g_Proj.proj_get_name(match.Get());
            if ((name.strName.empty() || name.strName == "unknown") && matchName != nullptr)
                name.strName = matchName;
        }
        if (matches != nullptr) g_Proj.proj_list_destroy(matches);
        if (confidence != nullptr) g_Proj.proj_int_list_destroy(confidence);
    }
    if (name.strName.empty()) name.strName = "unnamed";
    return name;
}

bool TProjSession::KnowsExactWayToWgs84(const PJ* crs, std::string& error) const {
    // The operations are sought as proj_create_crs_to_crs seeks them, leaving out the ballpark
    // ones: a datum PROJ does not know reaches WGS 84 only by a ballpark shift, which may put a
    // field hundreds of metres off.
    PJ_OPERATION_FACTORY_CONTEXT* factory = g_Proj.proj_create_operation_factory_context(m_pContext, nullptr);
    g_Proj.proj_operation_factory_context_set_allow_ballpark_transformations(m_pContext, factory, 0);
    g_Proj.proj_operation_factory_context_set_spatial_criterion(m_pContext, factory,
                                                                PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
    g_Proj.proj_operation_factory_context_set_grid_availability_use(
        m_pContext, factory, PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
    PJ_OBJ_LIST* ways = g_Proj.proj_create_operations(m_pContext, crs, m_Wgs84.Get(), factory);
    const int wayCount = ways != nullptr ? g_Proj.proj_list_get_count(ways) : 0;
    if (ways != nullptr) g_Proj.proj_list_destroy(ways);
    g_Proj.proj_operation_factory_context_destroy(factory);
    if (wayCount > 0) return true;
    TPj geodetic(g_Proj.proj_crs_get_geodetic_crs(m_pContext, crs));
    TPj datum(geodetic.Get() != nullptr ? g_Proj.proj_crs_get_datum_forced(m_pContext, geodetic.Get())
                                        : nullptr);
    const char* datumName = datum.Get() != nullptr ? g_Proj.proj_get_name(datum.Get()) : nullptr;
    error = std::string("PROJ does not know its datum") +
            (datumName != nullptr ? std::string(" '") + datumName + "'" : std::string()) +
            ", so it knows no exact way to WGS 84";
    return false;
}

std::unique_ptr<TCrsTransform> TProjSession::Make(const std::string& definition, std::string& error) {
    m_strLastLog.clear();
    // A PROJ string names an operation unless it says that it is a CRS.
    std::string text = definition;
    if (IsProjString(text) && text.find("type=crs") == std::string::npos) text += " +type=crs";
    TPj crs(g_Proj.proj_create(m_pContext, text.c_str()));
    if (crs.Get() == nullptr) {
        error = "PROJ cannot read it as a coordinate reference system (" + LastError() + ")";
        return nullptr;
    }
    // A CRS bound to WGS 84 by its own shift parameters is judged by the CRS it binds.
    TPj source;
    PJ_TYPE type = g_Proj.proj_get_type(crs.Get());
    if (type == PJ_TYPE_BOUND_CRS) {
        source.Reset(g_Proj.proj_get_source_crs(m_pContext, crs.Get()));
        if (source.Get() != nullptr) type = g_Proj.proj_get_type(source.Get());
    }
    const PJ* described = source.Get() != nullptr ? source.Get() : crs.Get();
    if (!g_Proj.proj_is_crs(crs.Get()) || !IsUsableCrsType(type)) {
        error = "it is no geographic or projected coordinate reference system";
        return nullptr;
    }

    TCrsName name = NameOf(described);
    if (!KnowsExactWayToWgs84(crs.Get(), error)) return nullptr;
    const bool wgs84 =
        g_Proj.proj_is_equivalent_to_with_ctx(m_pContext, crs.Get(), m_Wgs84.Get(),
                                              PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS) != 0;

    TPj transform(
        g_Proj.proj_create_crs_to_crs_from_pj(m_pContext, crs.Get(), m_Wgs84.Get(), nullptr, nullptr));
    TPj normalised(transform.Get() != nullptr
                       ? g_Proj.proj_normalize_for_visualization(m_pContext, transform.Get())
                       : nullptr);
    if (normalised.Get() == nullptr) {
        error = "PROJ finds no transformation from it to WGS 84 (" + LastError() + ")";
        return nullptr;
    }
    return std::make_unique<TProjTransform>(normalised.Release(), std::move(name), wgs84);
}

}  // namespace

bool BuiltWithProj() {
    return true;
}

TCrsTransform* GetCrsTransform(const std::string& definition, std::string& error) {
    return Session().Get(definition, error);
}

bool MapThroughCrsTransform(void* transform, double x, double y, double* lat, double* lon) {
    return static_cast<TCrsTransform*>(transform)->Map(x, y, *lat, *lon);
}

#endif
