// MID/MIF export settings of `tlgis convert`.

#include <string>

#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/platform/numbers.h>
#include "extensions.h"

namespace {
struct TDelimiterName {
    const char* pszName;
    MIDDELIMITER eValue;
};

const TDelimiterName kDelimiters[] = {
    {"comma", MID_DELIMITER_COMMA},
    {"tab", MID_DELIMITER_TAB},
    {"space", MID_DELIMITER_SPACE},
};

bool ApplyMidMifOptions(const TToolOptions& options, std::string& error) {
    TGisFileMidMif::s_eMidDelimiter = MID_DELIMITER_COMMA;
    if (options.HasValue("mid-delimiter")) {
        const std::string name = options.Get("mid-delimiter");
        bool known = false;
        for (const TDelimiterName& d : kDelimiters) {
            if (EqualsNoCase(name, d.pszName)) {
                TGisFileMidMif::s_eMidDelimiter = d.eValue;
                known = true;
            }
        }
        if (!known) {
            error = "--mid-delimiter must be comma, tab or space, not '" + name + "'";
            return false;
        }
    }
    TGisFileMidMif::s_iMidSprayChans = 0;
    if (options.HasValue("mid-spray-channels")) {
        const std::string text = options.Get("mid-spray-channels");
        bool ok = false;
        const long long channels = ParseInt64(text, &ok);
        std::string canonical;
        AppendInt(canonical, channels);
        if (!ok || canonical != text || channels < 0 || channels > 10) {
            error = "--mid-spray-channels must be a whole number from 0 to 10, not '" + text + "'";
            return false;
        }
        TGisFileMidMif::s_iMidSprayChans = static_cast<int>(channels);
    }
    // Flags shared with other formats are read here for the MID/MIF writer's own settings.
    TGisFileMidMif::s_iDefaultSingleBlockMode = options.Has("single-block") ? 1 : 0;
    TGisFileMidMif::s_iDefaultMetric = options.Has("metric") ? 1 : 0;
    TGisFileMidMif::s_bMidCompleteRows = options.Has("mid-complete-rows");
    return true;
}

TToolExtension MakeMidMifExtension() {
    TToolExtension ext;
    ext.name = "midmif";
    ext.valueOptions = {"mid-delimiter", "mid-spray-channels"};
    ext.flagOptions = {"mid-complete-rows", "single-block", "metric"};
    ext.convertHelp = {
        "--mid-delimiter comma|tab|space  .mid field separator (default comma)",
        "--mid-spray-channels N           spray channels 0..10 whose peak rates give the .mid flow rate "
        "(default 0: rate 0)",
        "--mid-complete-rows              .mid rows with every declared field and a row for every object, "
        "so that other GIS programs read the pair",
        "--single-block                   .mif: one swath region per pair of samples",
        "--metric                         .mid flow rates as recorded instead of US units",
    };
    ext.applyWriteOptions = &ApplyMidMifOptions;
    return ext;
}

[[maybe_unused]] const int kMidMifExtension = RegisterToolExtension(MakeMidMifExtension());
}  // namespace
