// Byte files; open failures of both file kinds and their report; the default message-box answers.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <tuple>
#include <vector>

#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/text_file.h>
#include "platform/byte_file.h"
#include "platform/memory_files.h"
#include "test_support.h"

namespace {

// A writer fills in its header after the body, and may read back what it wrote: on disk and
// in a memory folder alike.
TEST(ByteFile, HeaderRewrittenAfterTheBody) {
    TTempDir dir;
    const TMemoryFolder memory("/tl_gis-test-memory");
    const std::string body(3 << 20, 'b');  // more than the output buffer holds
    for (const bool inMemory : {false, true}) {
        const std::string path = inMemory ? memory.File("out.bin") : dir.File("out.bin");
        TByteFile file;
        ASSERT_TRUE(file.Open(path.c_str(), TByteFile::modeCreate));
        ASSERT_TRUE(file.Write("HHHH", 4) && file.Write(body.data(), body.size()));
        ASSERT_TRUE(file.Seek(0) && file.Write("1234", 4));
        EXPECT_EQ(file.GetLength(), 4 + static_cast<std::int64_t>(body.size())) << path;
        char two[2];
        EXPECT_TRUE(file.Seek(1) && file.Read(two, 2) == 2 && std::string(two, 2) == "23") << path;
        ASSERT_TRUE(file.Write("X", 1) && file.Close());
        std::string written;
        if (inMemory)
            EXPECT_TRUE(memory.Get("out.bin", written));
        else
            written = ReadFileBytes(path);
        EXPECT_TRUE(written == "123X" + body) << path;
    }
}

template <class TFile>
void ExpectOpenFailures(const TTempDir& dir, const char* kind) {
    const std::vector<std::tuple<std::string, typename TFile::OpenMode, int>> cases = {
        {dir.Path(), TFile::modeRead, EISDIR},
        {dir.Path(), TFile::modeCreate, EISDIR},
        {dir.File("missing"), TFile::modeRead, ENOENT},
        {dir.File("no/such"), TFile::modeCreate, ENOENT},
    };
    for (const auto& [path, mode, error] : cases) {
        TFile file;
        EXPECT_FALSE(file.Open(path.c_str(), mode)) << kind << " " << path << " " << mode;
        EXPECT_EQ(file.GetOpenError(), error) << kind << " " << path << " " << mode;
    }
}

TEST(FileOpen, FailuresSayWhy) {
    TTempDir dir;
    ExpectOpenFailures<TTextFile>(dir, "text file");
    ExpectOpenFailures<TByteFile>(dir, "byte file");
}

TEST(MessageBox, DefaultAnswersWithoutAPerson) {
    const TMessageBoxHandler previous = SetMessageBoxHandler({});
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(ShowMessageBox("text\nsecond line", "caption", MSGBOX_YESNO | MSGBOX_ICONQUESTION), ANSWER_YES);
    EXPECT_EQ(ShowMessageBox("notice", "", MSGBOX_OKCANCEL), ANSWER_OK);
    DefaultMessageBoxHandler({"", "", MSGBOX_OK, 2039});
    DefaultMessageBoxHandler({"", "", MSGBOX_OK, 0});
    const std::string logged = ::testing::internal::GetCapturedStderr();
    SetMessageBoxHandler(previous);
    EXPECT_EQ(logged,
              "tl_gis: caption: text second line\n"
              "tl_gis: notice\n"
              "tl_gis: message 2039 (no text for it in the language table)\n"
              "tl_gis: (message without text)\n");
}

TEST(MessageBox, FileErrorNamesTheFileAndTheReason) {
    const std::vector<std::tuple<int, bool, std::string>> cases = {
        {ENOENT, false, "Cannot open /x/a.shp: No such file or directory."},
        {0, true, "Cannot create /x/a.shp."},
    };
    for (const auto& [error, writing, text] : cases) {
        TScriptedMessages messages;
        ReportFileError("/x/a.shp", error, writing);
        ASSERT_EQ(messages.Shown().size(), 1u) << text;
        EXPECT_EQ(messages.Shown()[0].strText, text);
    }
}

}  // namespace
