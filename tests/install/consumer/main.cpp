// A host built against the installed library: loads a job file into a layer, writes the layer
// to a second job file and reads that back. Prints "ok N VERSION" with the elements read back.
#include <tl_gis/tl_gis.h>

#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const std::string folder = argv[1];
    std::ofstream(folder + "/field.job", std::ios::binary)
        << ".JOB 12 FARM\r\n.VERSION 1\r\n.MAR 3 Gate\r\n\tTYPE 5\r\n\t45.5 -93.25\r\n"
           ".POL 1 x\r\n\tINC\r\n\t45.5 -93.3\r\n\t45.6 -93.3\r\n\t45.6 -93.2\r\n";
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return ANSWER_NO; });
    TMapLayer layer;
    TGisMap map;
    if (map.LoadFile((folder + "/field.job").c_str(), &layer, nullptr) != GISFILE_OK) return 1;
    if (map.WriteFile((folder + "/13.job").c_str(), &layer) != GISFILE_OK) return 1;
    TMapLayer back;
    if (map.LoadFile((folder + "/13.job").c_str(), &back, nullptr) != GISFILE_OK) return 1;
    std::printf("ok %d %s\n", static_cast<int>(back.m_Elements.size()), TL_GIS_VERSION_STRING);
    return 0;
}
