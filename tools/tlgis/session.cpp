#include "session.h"

#include "proj_transform.h"
#include "utf8_paths.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>

#ifndef TLGIS_SOURCE_CONFIG_DIR
#define TLGIS_SOURCE_CONFIG_DIR ""
#endif

namespace {
bool g_bQuiet = false;
int g_iProjectedAnswer = 0;  // the answer given in this file so far, 0 before the first question
bool g_bReproject = false;
bool g_bSawProjected = false;  // under reproject: this file asked the question

bool IsConfigFolder(const std::string& dir) {
    std::error_code ec;
    return !dir.empty() && std::filesystem::is_directory(PathOf(dir), ec);
}

std::string ChooseConfigFolder(const TToolOptions& options) {
    if (options.HasValue("config")) return options.Get("config");
    if (const char* env = std::getenv("TLGIS_CONFIG"); env != nullptr && *env != '\0') return env;
    for (const std::string& candidate :
         {std::string("Config"), std::string(TLanguageTable::GetInstalledConfigFolder()),
          std::string(TLGIS_SOURCE_CONFIG_DIR)})
        if (IsConfigFolder(candidate)) return candidate;
    return "Config";
}

int AskOnTerminal(const TMessageBoxRequest& request) {
    std::fprintf(stderr, "%s [y/n] ", request.strCaption.empty() ? "Question" : request.strCaption.c_str());
    std::fflush(stderr);
    std::string answer;
    if (!std::getline(std::cin, answer)) return ANSWER_YES;
    return (!answer.empty() && (answer[0] == 'n' || answer[0] == 'N')) ? ANSWER_NO : ANSWER_YES;
}
}  // namespace

void PrintError(const std::string& message) {
    std::fprintf(stderr, "tlgis: %s\n", message.c_str());
}

void PrintNote(const std::string& message) {
    if (!g_bQuiet) std::fprintf(stderr, "tlgis: %s\n", message.c_str());
}

void SetQuietNotes(bool quiet) {
    g_bQuiet = quiet;
}

void ForgetProjectedAnswer() {
    g_iProjectedAnswer = 0;
    g_bSawProjected = false;
}

bool Reprojecting() {
    return g_bReproject;
}

bool SawProjectedCoordinates() {
    return g_bSawProjected;
}

bool SetUpSession(const TToolOptions& options, std::string& error) {
    g_bQuiet = options.Has("quiet") || options.Has("q");
    std::string projected = options.Get("projected");
    if (projected == "skip") {
        PrintNote(
            "--projected skip is now spelled --projected continue; skip is taken as continue until the "
            "next release");
        projected = "continue";
    }
    if (!projected.empty() && projected != "stop" && projected != "continue" && projected != "ask" &&
        projected != "reproject") {
        error = "--projected takes stop, continue or ask, or reproject where PROJ is built in, not '" +
                projected + "'";
        return false;
    }

    // The complete profile, and the attribute columns its readers take.
    TGisFile::s_strIdField = options.Get("id-field");
    TGisFile::s_strValueField = options.Get("value-field");
    TGisFile::s_strNameField = options.Get("name-field");
    TGisFile::s_bCompleteProfile = options.Has("complete") || !TGisFile::s_strIdField.empty() ||
                                   !TGisFile::s_strValueField.empty() || !TGisFile::s_strNameField.empty();

    // --crs asks for reprojection, and so does the complete profile where PROJ is built in.
    if (projected.empty())
        projected = options.HasValue("crs") || (TGisFile::s_bCompleteProfile && BuiltWithProj()) ? "reproject"
                                                                                                 : "stop";
    if (options.HasValue("crs") && projected != "reproject") {
        error = "--crs reprojects, so it does not go with --projected " + projected;
        return false;
    }
    if (projected == "reproject" && !BuiltWithProj()) {
        error = "this tlgis was built without PROJ: --projected reproject and --crs are not available";
        return false;
    }
    g_bReproject = projected == "reproject";

    TLanguageTable::SetConfigFolder(ChooseConfigFolder(options));
    GetTlGisApp().InitInstance();
    if (options.HasValue("lang") && !g_LanguageTable.SelectLanguage(options.Get("lang"))) {
        error = "unknown language '" + options.Get("lang") +
                "' (english, french, german, italian, portuguese, spanish)";
        return false;
    }

    SetMessageBoxHandler([projected](const TMessageBoxRequest& request) -> int {
        // Every message is shown as one line per text line, prefixed with its caption.
        std::string text = request.strText;
        std::string prefix = request.strCaption.empty() ? "tlgis" : request.strCaption;
        if (text.empty() && request.iTextId != 0) text = "message " + std::to_string(request.iTextId);
        const bool question = request.IsQuestion();
        // Under reproject a file whose projected coordinates no transform maps stops at once;
        // the tool then says in its own line that its CRS is missing.
        if (question && projected == "reproject") {
            g_bSawProjected = true;
            return ANSWER_YES;
        }
        if (!question && g_bQuiet && (request.uFlags & 0xF0) == MSGBOX_ICONINFORMATION) return ANSWER_OK;
        // A file asks once per point; the answer given first holds for the rest of the file.
        if (question && projected != "ask" && g_iProjectedAnswer != 0) return g_iProjectedAnswer;
        std::size_t start = 0;
        while (start <= text.size()) {
            const auto nl = text.find('\n', start);
            const std::string line =
                text.substr(start, nl == std::string::npos ? std::string::npos : nl - start);
            std::fprintf(stderr, "%s: %s\n", prefix.c_str(), line.c_str());
            if (nl == std::string::npos) break;
            start = nl + 1;
        }
        if (!question) return ANSWER_OK;
        if (projected == "ask") return AskOnTerminal(request);
        g_iProjectedAnswer = projected == "continue" ? ANSWER_NO : ANSWER_YES;
        std::fprintf(stderr, "%s: answered %s (--projected %s), and so for the rest of this file\n",
                     prefix.c_str(), g_iProjectedAnswer == ANSWER_YES ? "Yes" : "No", projected.c_str());
        return g_iProjectedAnswer;
    });
    return true;
}
