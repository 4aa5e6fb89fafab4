// A program built against the installed library as a host builds it. On Windows it includes
// <windows.h> first, as a desktop host does: none of its macros (MB_OK, IDYES, PS_SOLID,
// R2_COPYPEN, min, max) may clash with the library's names. It classifies two names, loads a
// job file and writes the layer out as a MapInfo pair in the folder given, then prints
// "ok ELEMENTS loaded RESULT written RESULT VERSION".
#ifdef _WIN32
#include <windows.h>
#endif

#include <tl_gis/tl_gis.h>

#include <cstdio>
#include <string>

#ifdef _WIN32
// The answers keep the values of the Windows message box's own.
static_assert(ANSWER_OK == IDOK && ANSWER_CANCEL == IDCANCEL && ANSWER_YES == IDYES && ANSWER_NO == IDNO);
#endif

int main(int argc, char** argv) {
    if (TGisMap::GetGisFileType("field.JOB") != GIS_FILE_JOB) return 1;
    if (TGisMap::GetGisFileType("plan.mid") != GIS_FILE_NONE) return 1;
    const std::string folder = argc > 1 ? argv[1] : ".";
    const std::string job = folder + "/field.job", mif = folder + "/field.mif";
    std::FILE* file = std::fopen(job.c_str(), "wb");
    if (file == nullptr) return 1;
    std::fputs(".JOB 12 FARM\r\n.VERSION 1\r\n.MAR 3 Gate\r\n\tTYPE 5\r\n\t45.5 -93.25\r\n"
               ".POL 1 x\r\n\tINC\r\n\t45.5 -93.3\r\n\t45.6 -93.3\r\n\t45.6 -93.2\r\n",
               file);
    std::fclose(file);

    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return ANSWER_NO; });
    TMapLayer layer;
    TGisMap map;
    const int loaded = map.LoadFile(job.c_str(), &layer, nullptr);
    const int written = map.WriteFile(mif.c_str(), &layer);
    std::printf("ok %d loaded %d written %d %s\n", static_cast<int>(layer.m_Elements.size()), loaded, written,
                TL_GIS_VERSION_STRING);
    return loaded == 0 && written == 0 ? 0 : 1;
}
