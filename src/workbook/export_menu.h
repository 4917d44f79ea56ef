#pragma once

#include <functional>
#include <string>

namespace ktl {

class Button;
class Grid;
class Menu;
class Screen;
struct Session;

// What an export of a grid says: the title of its sheet, what has been written ("The schedule"), and what
// heads the sheet, the title when nothing is said.
struct ExportWords {
  std::string title;
  std::string what;
  std::string heading = {};
};

// The menu, and the right button on the grid, write it into a workbook; an empty grid has "No Records Found".
void BindExport(Session& session, Menu& menu, Grid& grid, std::function<ExportWords()> words);
// A button alone.
void BindExport(Session& session, Button& button, Grid& grid, std::function<ExportWords()> words);
// Every other grid of the screen can be written too, under its title or the screen's caption.
void OfferExports(Session& session, Screen& screen);

}  // namespace ktl
