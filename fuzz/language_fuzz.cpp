// The configuration file and the language files: the input packs Orvanta.ini and one
// language file, which every language name leads to. After loading, the texts the library
// formats with arguments are formatted, since a language file's texts are format texts.

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/language.h>
#include "fuzz_support.h"
#include "gis/text_format.h"

namespace {

const char* const kLanguageFiles[] = {"lang_english.ini", "lang_french.ini",     "lang_german.ini",
                                      "lang_italian.ini", "lang_portuguese.ini", "lang_spanish.ini"};

// Ids of texts the readers and writers put arguments into.
const int kFormattedIds[] = {1010, 1011, 2039, 2040, 2041, 3080, 3081,  3082,  3083,  3084,
                             3085, 3086, 3087, 3088, 3089, 3090, 3091,  3096,  5054,  5084,
                             5090, 5173, 5185, 5186, 5187, 5188, 12002, 17001, 17002, 17008};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tl_fuzz::PrepareInput(size);
    TLanguageTable::SetConfigFolder(tl_fuzz::ScratchFolder());
    const auto files = tl_fuzz::SplitInput(data, size, 2);
    tl_fuzz::WriteScratchFile("Orvanta.ini", files[0]);
    for (const char* name : kLanguageFiles) tl_fuzz::WriteScratchFile(name, files[1]);
    GetTlGisApp().InitInstance();

    for (int id : kFormattedIds) FormatText(GetText(id), {"input.job", 45.5, 17, -93.25, "x", 3u});
    PromptProjectedCoordinate(DescribeSourceForPrompt(" SHP ").c_str(), 512345.5, 4987654.25);
    return 0;
}
