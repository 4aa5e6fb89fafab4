#include <tl_gis/platform/message_box.h>

#include <cstdio>
#include <cstring>

namespace {
TMessageBoxHandler& InstalledHandler() {
    static TMessageBoxHandler handler;
    return handler;
}
}  // namespace

int DefaultMessageBoxHandler(const TMessageBoxRequest& request) {
    std::string line = "tl_gis: ";
    if (!request.strCaption.empty()) line += request.strCaption + ": ";
    if (!request.strText.empty()) {
        line += request.strText;
    } else if (request.iTextId != 0) {
        line += "message " + std::to_string(request.iTextId) + " (no text for it in the language table)";
    } else {
        line += "(message without text)";
    }
    // Keep one message on one line of the log.
    for (char& c : line)
        if (c == '\n' || c == '\r') c = ' ';
    std::fprintf(stderr, "%s\n", line.c_str());
    return request.IsQuestion() ? ANSWER_YES : ANSWER_OK;
}

int ShowMessageBox(const std::string& text, const std::string& caption, unsigned flags, int textId) {
    TMessageBoxRequest request{text, caption, flags, textId};
    const TMessageBoxHandler& handler = InstalledHandler();
    return handler ? handler(request) : DefaultMessageBoxHandler(request);
}

TMessageBoxHandler SetMessageBoxHandler(TMessageBoxHandler handler) {
    TMessageBoxHandler previous = std::move(InstalledHandler());
    InstalledHandler() = std::move(handler);
    return previous;
}

void ReportFileError(const std::string& path, int errorNumber, bool forWriting) {
    std::string text = (forWriting ? "Cannot create " : "Cannot open ") + path;
    if (errorNumber != 0) {
        text += ": ";
        text += std::strerror(errorNumber);
    }
    text += ".";
    ShowMessageBox(text, "File error", MSGBOX_OK | MSGBOX_ICONEXCLAMATION);
}
