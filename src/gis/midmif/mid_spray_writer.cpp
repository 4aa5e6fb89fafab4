// Recorded spray as swath regions with their .mid rows.

#include "gis/midmif/gis_file_midmif.h"

// Written once the recorded spray element is available; until then spray is skipped.
int TGisFileMidMif::WriteFileSpray(TMapElement*) {
    return 0;
}
