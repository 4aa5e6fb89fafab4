#pragma once
// Message boxes as a pluggable handler.
//
// The library shows questions and notices through ShowMessageBox(). A host or a test installs
// its own handler (TScopedMessageHandler) to display them or to script the answers. The
// default handler needs no person: it writes the message to stderr and answers Yes to a
// Yes/No question and OK to anything else.

#include <tl_gis/export.h>
#include <functional>
#include <string>

// Buttons (low nibble) and icons, as the system's message boxes take them.
enum : unsigned {
    MSGBOX_OK = 0x00,
    MSGBOX_OKCANCEL = 0x01,
    MSGBOX_YESNO = 0x04,
    MSGBOX_ICONERROR = 0x10,
    MSGBOX_ICONQUESTION = 0x20,
    MSGBOX_ICONEXCLAMATION = 0x30,
    MSGBOX_ICONINFORMATION = 0x40,
};
// Answers.
enum : int { ANSWER_OK = 1, ANSWER_CANCEL = 2, ANSWER_YES = 6, ANSWER_NO = 7 };

struct TMessageBoxRequest {
    std::string strText;
    std::string strCaption;
    unsigned uFlags = MSGBOX_OK;
    // Language-table id of the message body when it came from one (0 otherwise), so that a
    // handler can still say which message it was when the table has no words for it.
    int iTextId = 0;

    bool IsQuestion() const { return (uFlags & 0x0F) == MSGBOX_YESNO; }
};

using TMessageBoxHandler = std::function<int(const TMessageBoxRequest&)>;

// Shows a message through the installed handler and returns the button pressed.
TL_GIS_API int ShowMessageBox(const std::string& text, const std::string& caption, unsigned flags,
                              int textId = 0);

// Installs a handler (an empty one restores the default) and returns the previous one.
TL_GIS_API TMessageBoxHandler SetMessageBoxHandler(TMessageBoxHandler handler);

// The default behaviour: writes "tl_gis: caption: text" to stderr and answers without a person.
TL_GIS_API int DefaultMessageBoxHandler(const TMessageBoxRequest& request);

// Installs a handler for the lifetime of the guard and restores the previous one after.
class TScopedMessageHandler {
public:
    explicit TScopedMessageHandler(TMessageBoxHandler handler)
        : m_previous(SetMessageBoxHandler(std::move(handler))) {}
    ~TScopedMessageHandler() { SetMessageBoxHandler(std::move(m_previous)); }
    TScopedMessageHandler(const TScopedMessageHandler&) = delete;
    TScopedMessageHandler& operator=(const TScopedMessageHandler&) = delete;

private:
    TMessageBoxHandler m_previous;
};

// The standard report of a file that could not be opened or created: an error box naming the
// file and the system's reason. errorNumber is an errno value.
TL_GIS_API void ReportFileError(const std::string& path, int errorNumber, bool forWriting);
