#include "workbook/export_menu.h"

#include <utility>

#include "frame/handler_guard.h"
#include "frame/session.h"
#include "runtime/text.h"
#include "screen/grid.h"
#include "screen/screen.h"
#include "workbook/grid_workbook.h"

namespace ktl {

namespace {

Handler Exports(Session& session, const Grid& grid, std::function<ExportWords()> words) {
  return [&session, &grid, words = std::move(words)] {
    RunGuarded(session, ErrorStyle::NumberFirst, "", [&] {
      if (grid.rows.empty()) return session.Inform("No Records Found");
      const ExportWords said = words();
      const std::string file = ExportGridToWorkbook(session, grid, said.title, said.heading);
      if (!file.empty())
        session.desk.TellWritten(said.what + " has been written to " + file, file, session.title);
    });
  };
}

}  // namespace

void BindExport(Session& session, Menu& menu, Grid& grid, std::function<ExportWords()> words) {
  grid.popup.push_back(&menu);
  grid.exportMenu = &menu;
  menu.onClick = Exports(session, grid, std::move(words));
}

void BindExport(Session& session, Button& button, Grid& grid, std::function<ExportWords()> words) {
  button.onClick = Exports(session, grid, std::move(words));
}

void OfferExports(Session& session, Screen& screen) {
  for (Control* control : screen.Controls()) {
    if (control->kind() != ControlKind::Grid) continue;
    auto& grid = static_cast<Grid&>(*control);
    if (grid.exportMenu != nullptr || grid.onExport) continue;
    grid.onExport = Exports(session, grid, [&screen, &grid] {
      const std::string& name = grid.title.empty() ? screen.caption : grid.title;
      return ExportWords{Trim(name.substr(0, name.find(" - "))), "The list"};
    });
  }
}

}  // namespace ktl
