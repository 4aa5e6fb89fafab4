// A Windows host includes <windows.h> before the library. These are names its headers define as
// macros (object-like and function-like); with them defined, the whole public interface must
// still compile, so no public header may use any of them.
#define MB_OK 0x00000000L
#define MB_YESNO 0x00000004L
#define MB_ICONEXCLAMATION 0x00000030L
#define IDOK 1
#define IDCANCEL 2
#define IDYES 6
#define IDNO 7
#define PS_SOLID 0
#define PS_DASH 1
#define PS_NULL 5
#define BS_SOLID 0
#define BS_NULL 1
#define BS_HATCHED 2
#define R2_COPYPEN 13
#define R2_MASKPEN 9
#define TextOut TextOutA
#define DrawText DrawTextA
#define MessageBox MessageBoxA
#define CreateFile CreateFileA
#define GetObject GetObjectA
#define LoadString LoadStringA
#define GetCurrentTime() GetTickCount()
#define ERROR 0
#define TRANSPARENT 1
#define OPAQUE 2
#define IN
#define OUT
#define OPTIONAL
#define near
#define far
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))

#include <tl_gis/tl_gis.h>

int main() {
    return TGisMap::GetGisFileType("field.job") == GIS_FILE_JOB && ANSWER_YES == 6 ? 0 : 1;
}
