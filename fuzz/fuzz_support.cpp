#include "fuzz_support.h"

#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>
#include "platform/memory_files.h"

#ifndef TL_GIS_SOURCE_DIR
#define TL_GIS_SOURCE_DIR "."
#endif

namespace tl_fuzz {
namespace {

int g_iAnswer = ANSWER_NO;

// A name no disk holds: every path below it is a memory file.
const TMemoryFolder& Scratch() {
    static const TMemoryFolder folder("/tl_gis-fuzz-memory");
    return folder;
}

}  // namespace

void PrepareInput(std::size_t size) {
    static const bool prepared = [] {
        SetMessageBoxHandler(
            [](const TMessageBoxRequest& request) { return request.IsQuestion() ? g_iAnswer : ANSWER_OK; });
        TLanguageTable::SetConfigFolder(TL_GIS_SOURCE_DIR "/Config");
        GetTlGisApp().InitInstance();
        return true;
    }();
    (void)prepared;
    g_iAnswer = (size % 2) ? ANSWER_YES : ANSWER_NO;
    Scratch().Clear();
}

const std::string& ScratchFolder() {
    return Scratch().Path();
}

std::string WriteScratchFile(const std::string& name, std::string_view bytes) {
    Scratch().Put(name, bytes);
    return Scratch().File(name);
}

std::string ReadScratchFile(const std::string& name) {
    std::string bytes;
    Scratch().Get(name, bytes);
    return bytes;
}

std::vector<std::string_view> SplitInput(const std::uint8_t* data, std::size_t size, std::size_t count) {
    std::vector<std::string_view> files;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    while (files.size() + 1 < count) {
        if (rest.size() < 4) {
            rest = {};
            files.emplace_back();
            continue;
        }
        std::size_t length = 0;
        for (int i = 3; i >= 0; --i) length = (length << 8) | static_cast<unsigned char>(rest[i]);
        rest.remove_prefix(4);
        if (length > rest.size()) length = rest.size();
        files.push_back(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    files.push_back(rest);
    return files;
}

std::string PackInput(const std::vector<std::string>& files) {
    std::string out;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (i + 1 < files.size()) {
            const auto length = static_cast<std::uint32_t>(files[i].size());
            for (int shift = 0; shift < 32; shift += 8) out += static_cast<char>((length >> shift) & 0xFF);
        }
        out += files[i];
    }
    return out;
}

}  // namespace tl_fuzz
