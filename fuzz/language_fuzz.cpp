// The configuration file and the language files: the input packs Orvanta.ini and one
// language file, which every language name leads to. After loading, the texts the library
// formats with arguments are formatted, since a language file's texts are format texts.

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/language.h>
#include "fuzz_support.h"
#include "gis/text_format.h"
#include "gis/text_ids.h"

namespace {

const char* const kLanguageFiles[] = {"lang_english.ini", "lang_french.ini",     "lang_german.ini",
                                      "lang_italian.ini", "lang_portuguese.ini", "lang_spanish.ini"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tl_fuzz::PrepareInput(size);
    TLanguageTable::SetConfigFolder(tl_fuzz::ScratchFolder());
    const auto files = tl_fuzz::SplitInput(data, size, 2);
    tl_fuzz::WriteScratchFile("Orvanta.ini", files[0]);
    for (const char* name : kLanguageFiles) tl_fuzz::WriteScratchFile(name, files[1]);
    GetTlGisApp().InitInstance();

    for (const TLibraryText& text : LIBRARY_TEXTS)
        FormatText(GetText(text.eId), {"input.job", 45.5, 17, -93.25, "x", 3u});
    PromptProjectedCoordinate(DescribeSourceForPrompt(" SHP ").c_str(), 512345.5, 4987654.25);
    return 0;
}
