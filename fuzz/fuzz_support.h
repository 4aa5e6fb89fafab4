#pragma once
// What the fuzz targets share: a library set up to run without a person (silent message boxes),
// a scratch folder for readers that take a path, and the layout that packs several files (a
// shapefile's .shp, .shx and .dbf, say) into one input.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tl_fuzz {

// Runs once per process: installs a message handler that shows nothing, and points the library
// at the source tree's configuration folder so that messages are formatted from real texts.
// Every input then decides the answer to Yes/No questions by its size (odd: Yes), so that both
// the stopping and the going-on paths are reached and a saved input replays the same way.
void PrepareInput(std::size_t size);

// The process's scratch folder (created on first use, removed at exit).
const std::string& ScratchFolder();
// Writes bytes to ScratchFolder()/name, replacing the file, and returns its path.
std::string WriteScratchFile(const std::string& name, std::string_view bytes);

// Multi-file inputs: every file but the last is stored as a 4-byte little-endian length and
// its bytes; the last file takes what remains. A length beyond the input's end is cut to it,
// and missing files are empty, so every input splits into exactly count files.
std::vector<std::string_view> SplitInput(const std::uint8_t* data, std::size_t size, std::size_t count);
std::string PackInput(const std::vector<std::string>& files);

}  // namespace tl_fuzz

// The entry point every target defines, shared by libFuzzer and the replay program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
