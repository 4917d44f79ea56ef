#include "workbook/grid_workbook.h"

#include <fmt/format.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "common/amounts.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr lxw_row_t kCaptionRow = 2;
constexpr double kWidestColumn = 60;

// libxlsxwriter owns sheets and formats; the book is closed, and so written, exactly once.
class Book final {
 public:
  explicit Book(const std::string& path) : book_(workbook_new(path.c_str())) {}
  ~Book() {
    if (book_ != nullptr) workbook_close(book_);
  }
  Book(const Book&) = delete;
  Book& operator=(const Book&) = delete;

  lxw_worksheet* AddSheet(const std::string& name) { return workbook_add_worksheet(book_, name.c_str()); }
  lxw_format* AddFormat() { return workbook_add_format(book_); }
  bool Write() {
    lxw_workbook* book = book_;
    book_ = nullptr;
    return workbook_close(book) == LXW_NO_ERROR;
  }

 private:
  lxw_workbook* book_;
};

class SheetWriter final {
 public:
  SheetWriter(Book& book, const std::string& sheetName) : sheet_(book.AddSheet(sheetName)) {
    bold_ = book.AddFormat();
    format_set_bold(bold_);
    format_set_font_name(bold_, "VERDANA");
    text_ = NumberFormat(book, "@");
    amount_ = NumberFormat(book, "0.00");
    whole_ = NumberFormat(book, "0");
  }

  void Heading(lxw_row_t row, const std::string& text) {
    worksheet_write_string(sheet_, row, 0, text.c_str(), bold_);
  }
  void Caption(lxw_col_t column, const std::string& text) {
    worksheet_write_string(sheet_, kCaptionRow, column, text.c_str(), bold_);
    Widen(column, text);
  }
  void Cell(lxw_row_t row, lxw_col_t column, const std::string& text, CellType type) {
    Widen(column, text);
    const auto number = type == CellType::Number ? ParseNumber(text) : std::nullopt;
    if (number) {
      worksheet_write_number(sheet_, row, column, *number,
                             text.find('.') == std::string::npos ? whole_ : amount_);
    } else if (type == CellType::Tick) {
      worksheet_write_string(sheet_, row, column, text == "1" ? "Yes" : "No", text_);
    } else {
      worksheet_write_string(sheet_, row, column, text.c_str(), text_);
    }
  }
  void FitColumns() {
    for (std::size_t column = 0; column < widths_.size(); ++column) {
      const auto at = static_cast<lxw_col_t>(column);
      worksheet_set_column(sheet_, at, at, std::min(widths_[column] + 2, kWidestColumn), nullptr);
    }
  }

 private:
  static lxw_format* NumberFormat(Book& book, const char* pattern) {
    lxw_format* format = book.AddFormat();
    format_set_num_format(format, pattern);
    return format;
  }
  void Widen(lxw_col_t column, const std::string& text) {
    if (widths_.size() <= column) widths_.resize(column + 1u, 0);
    widths_[column] = std::max(widths_[column], static_cast<double>(Length(text)));
  }

  lxw_worksheet* sheet_;
  lxw_format* bold_;
  lxw_format* text_;
  lxw_format* amount_;
  lxw_format* whole_;
  std::vector<double> widths_;
};

void WriteGrid(SheetWriter& sheet, const Grid& grid) {
  lxw_col_t to = 0;
  for (std::size_t column = 0; column < grid.columns.size(); ++column) {
    if (grid.columns[column].hidden) continue;
    sheet.Caption(to, grid.columns[column].caption);
    lxw_row_t line = kCaptionRow;
    for (std::size_t row = 0; row < grid.rows.size(); ++row) {
      if (grid.rows[row].hidden) continue;
      sheet.Cell(++line, to, grid.Text(row, column), grid.TypeOf(row, column));
    }
    ++to;
  }
}

std::string FileFor(Session& session, const std::string& title) {
  const std::filesystem::path folder = std::filesystem::path(session.machine.folder.Path()) / kWorkbookFolder;
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  return (folder / (clsGenCmn::FnStrClearAllNonFileChar(title) + ".xlsx")).string();
}

}  // namespace

std::string ExlFnStrGetCol(int column) {
  const auto letter = [](int place) { return static_cast<char>('A' + place - 1); };
  if (column < 27) return std::string(1, letter(column));
  const int rest = column % 26;
  return {letter(column / 26), rest == 0 ? 'Z' : letter(rest)};
}

std::string FnStrGetExcelCell(int column, int row) {
  return fmt::format("{}{}", ExlFnStrGetCol(column), row);
}

std::string ExportGridToWorkbook(Session& session, const Grid& grid, const std::string& title) {
  const std::string path = FileFor(session, title);
  Book book(path);
  SheetWriter sheet(book, title);
  sheet.Heading(
      0, session.data.FnVarGetDbValue("SELECT CMPNAME FROM MAS_COMPANY", "").TextOrEmpty() + " : " + title);
  sheet.Heading(1, session.data.FnVarGetDbValue("SELECT ADDRESS FROM MAS_COMPANY", "").TextOrEmpty());
  WriteGrid(sheet, grid);
  sheet.FitColumns();
  if (book.Write()) return path;
  session.desk.ShowError("Bad or Invalid File Path. Check File Path Again.", "Check File Path");
  return "";
}

}  // namespace ktl
