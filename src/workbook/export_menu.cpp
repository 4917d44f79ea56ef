#include "workbook/export_menu.h"

#include <utility>

#include "frame/handler_guard.h"
#include "frame/session.h"
#include "screen/grid.h"
#include "workbook/grid_workbook.h"

namespace ktl {

namespace {

Handler Exporting(Session& session, Grid& grid, std::function<ExportWords()> words) {
  return [&session, &grid, words = std::move(words)] {
    RunGuarded(session, ErrorStyle::NumberFirst, "", [&] {
      if (grid.rows.empty()) return session.Inform("No Records Found");
      const ExportWords said = words();
      const std::string file = ExportGridToWorkbook(session, grid, said.title);
      if (!file.empty()) session.Inform(said.what + " has been written to " + file);
    });
  };
}

}  // namespace

void BindExport(Session& session, Menu& menu, Grid& grid, std::function<ExportWords()> words) {
  grid.popup.push_back(&menu);
  menu.onClick = Exporting(session, grid, std::move(words));
}

void BindExport(Session& session, Button& button, Grid& grid, std::function<ExportWords()> words) {
  button.onClick = Exporting(session, grid, std::move(words));
}

}  // namespace ktl
