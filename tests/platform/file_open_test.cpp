// Opening fails the same way for text and byte files: folders, missing files and folders.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/byte_file.h"
#include "platform/text_file.h"
#include "test_support.h"

namespace {

template <class TFile>
void ExpectOpenFailures(const char* kind) {
    TTempDir dir;
    struct TCase {
        const char* name;
        std::string path;
        typename TFile::OpenMode mode;
        int error;
    };
    const std::vector<TCase> cases = {
        {"directory for reading", dir.Path(), TFile::modeRead, EISDIR},
        {"directory for writing", dir.Path(), TFile::modeCreate, EISDIR},
        {"missing file", dir.File("missing"), TFile::modeRead, ENOENT},
        {"missing folder for writing", dir.File("no/such"), TFile::modeCreate, ENOENT},
    };
    for (const TCase& c : cases) {
        TFile file;
        EXPECT_FALSE(file.Open(c.path.c_str(), c.mode)) << kind << ", " << c.name;
        EXPECT_FALSE(file.IsOpen()) << kind << ", " << c.name;
        EXPECT_EQ(file.GetOpenError(), c.error) << kind << ", " << c.name;
        EXPECT_EQ(file.GetPosition(), 0) << kind << ", " << c.name;
    }
    TFile file;
    EXPECT_FALSE(file.Open(nullptr, TFile::modeRead)) << kind;
}

TEST(FileOpen, FailuresSayWhy) {
    ExpectOpenFailures<TTextFile>("text file");
    ExpectOpenFailures<TByteFile>("byte file");
}

}  // namespace
