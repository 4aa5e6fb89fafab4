// Construction and the export settings of the MapInfo pair format.

#include <tl_gis/gis/midmif/gis_file_midmif.h>

MIDDELIMITER TGisFileMidMif::s_eMidDelimiter = MID_DELIMITER_COMMA;
int TGisFileMidMif::s_iMidSprayChans = 0;
bool TGisFileMidMif::s_bMidCompleteRows = false;
int TGisFileMidMif::s_iDefaultMetric = 0;
int TGisFileMidMif::s_iDefaultSingleBlockMode = 0;

TGisFileMidMif::TGisFileMidMif()
    : m_bMetric(s_iDefaultMetric), m_iSingleBlockMode(s_iDefaultSingleBlockMode) {}

// The two files close with the object; a write leaves them open until then.
TGisFileMidMif::~TGisFileMidMif() = default;
