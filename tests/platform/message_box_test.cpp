// The message-box handler: the default answers, scoped handlers, and the file-error report.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/message_box.h"
#include "test_support.h"

namespace {

TEST(MessageBox, DefaultAnswersWithoutAPerson) {
    struct TCase {
        const char* name;
        unsigned flags;
        int answer;
    };
    const std::vector<TCase> cases = {
        {"OK", MB_OK, IDOK},
        {"Yes/No with question icon", MB_YESNO | MB_ICONQUESTION, IDYES},
        {"OK/Cancel", MB_OKCANCEL, IDOK},
        {"information", MB_ICONINFORMATION, IDOK},
    };
    for (const TCase& c : cases) {
        // Through ShowMessageBox with no handler installed, and through the default itself.
        const TMessageBoxHandler previous = SetMessageBoxHandler({});
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(ShowMessageBox("text\nsecond line", "caption", c.flags), c.answer) << c.name;
        const std::string logged = ::testing::internal::GetCapturedStderr();
        SetMessageBoxHandler(previous);
        EXPECT_EQ(logged, "tl_gis: caption: text second line\n") << c.name;
    }
    // A message without text is named by its id.
    ::testing::internal::CaptureStderr();
    DefaultMessageBoxHandler({"", "", MB_OK, 2039});
    DefaultMessageBoxHandler({"", "", MB_OK, 0});
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "tl_gis: message 2039 (no text for it in the language table)\n"
              "tl_gis: (message without text)\n");
}

TEST(MessageBox, ScopedHandlersNestAndRestore) {
    std::vector<std::string> outer, inner;
    {
        TScopedMessageHandler outerGuard([&](const TMessageBoxRequest& r) {
            outer.push_back(r.strText);
            return IDNO;
        });
        EXPECT_EQ(ShowMessageBox("one", "", MB_YESNO), IDNO);
        {
            TScopedMessageHandler innerGuard([&](const TMessageBoxRequest& r) {
                inner.push_back(r.strText + "/" + r.strCaption + "/" + std::to_string(r.uFlags) + "/" +
                                std::to_string(r.iTextId));
                return IDCANCEL;
            });
            EXPECT_EQ(ShowMessageBox("two", "cap", MB_OKCANCEL | MB_ICONERROR, 5054), IDCANCEL);
        }
        EXPECT_EQ(ShowMessageBox("three", "", MB_YESNO), IDNO) << "the outer handler is back";
    }
    EXPECT_EQ(outer, (std::vector<std::string>{"one", "three"}));
    EXPECT_EQ(inner, (std::vector<std::string>{"two/cap/17/5054"}));

    // After both guards the default answers again.
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(ShowMessageBox("four", "", MB_YESNO), IDYES);
    ::testing::internal::GetCapturedStderr();
}

TEST(MessageBox, FileErrorNamesTheFileAndTheReason) {
    struct TCase {
        int error;
        bool writing;
        std::string text;
    };
    const std::vector<TCase> cases = {
        {ENOENT, false, "Cannot open /x/a.shp: No such file or directory."},
        {EACCES, true, "Cannot create /x/a.shp: Permission denied."},
        {0, true, "Cannot create /x/a.shp."},
    };
    for (const TCase& c : cases) {
        TScriptedMessages messages;
        ReportFileError("/x/a.shp", c.error, c.writing);
        ASSERT_EQ(messages.Shown().size(), 1u) << c.text;
        EXPECT_EQ(messages.Shown()[0].strText, c.text);
    }
}

}  // namespace
