#pragma once

#include <string>
#include <string_view>

#include "screen/desk.h"
#include "screen/screen.h"

namespace ktl {

// What the console writes of boxes, controls and screens. No text ends in a line break.

// "box | ICON | TITLE | TEXT | ANSWER"
std::string BoxLine(const MessageBox& box, Answer answer);
// What the control shows: its text, its caption, "on" or "off", the number of its active row or page.
std::string ValueOf(const Control& control);
// Line breaks as \n, so that it stays one line.
std::string OneLine(std::string_view text);
// {"NAME":{"enabled":...,"visible":...,"locked":...,"value":...,"tag":...}}
std::string StateJson(const Control& control);
// Captions, then rows, tab-separated.
std::string GridTable(const Grid& grid, bool withHidden);
// The whole screen, one control a line.
std::string ScreenJson(const Screen& screen);

}  // namespace ktl
