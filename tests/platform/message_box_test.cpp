// The message-box handler: the default answers and the file-error report.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <tuple>
#include <vector>

#include "platform/message_box.h"
#include "test_support.h"

namespace {

TEST(MessageBox, DefaultAnswersWithoutAPerson) {
    const TMessageBoxHandler previous = SetMessageBoxHandler({});
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(ShowMessageBox("text\nsecond line", "caption", MB_YESNO | MB_ICONQUESTION), IDYES);
    EXPECT_EQ(ShowMessageBox("notice", "", MB_OKCANCEL), IDOK);
    DefaultMessageBoxHandler({"", "", MB_OK, 2039});
    DefaultMessageBoxHandler({"", "", MB_OK, 0});
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
        {EACCES, true, "Cannot create /x/a.shp: Permission denied."},
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
