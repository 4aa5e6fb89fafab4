#pragma once
// Texts of a drawing (TEXT and MTEXT values) as marker names, and names as TEXT values. Names
// are UTF-8 inside the library; a drawing before release AC1021 holds its texts in its code page
// ($DWGCODEPAGE) and writes other characters as \U+XXXX.

#include <string>
#include <string_view>

#include "platform/text_encoding.h"

// The encoding of a drawing's texts: UTF-8 from release AC1021 on, otherwise the code page the
// header names ("ANSI_1252"), Windows Latin 1 when it names none the library knows.
TTextEncoding DxfTextEncoding(std::string_view acadVersion, std::string_view codePage);

// A TEXT or MTEXT value as a name in UTF-8: \U+XXXX escapes and the codes %%d, %%p, %%c, %%%
// and %%nnn become their characters and the underline and overline switches go; of an MTEXT
// the formatting codes go too, with a blank for each line or column break.
std::string DxfTextToName(std::string_view value, TTextEncoding encoding, bool mtext);

// A UTF-8 name as the value of a TEXT in a Windows Latin 1 drawing: characters outside the code
// page as \U+XXXX, control characters (line breaks, tabs) as blanks, and a percent sign that
// another follows as %%%, so that DxfTextToName gives the name back. At most maxLength
// characters, ending before an escape that would not fit.
std::string DxfNameToText(std::string_view name, std::size_t maxLength);
