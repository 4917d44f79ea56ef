#include "workbook/grid_workbook.h"

#include <fmt/format.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "common/amounts.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "screen/screen.h"

namespace ktl {

namespace {

namespace fs = std::filesystem;

constexpr lxw_row_t kCaptionRow = 2;
constexpr std::size_t kLongestSheetName = 31;
constexpr std::size_t kLongestFileName = 80;  // characters; of a script they take up to three bytes each
constexpr double kWidestColumn = 60;

// libxlsxwriter owns sheets and formats; the book is closed, and so written, exactly once. It is written
// beside its place and put there when it is whole.
class Book final {
 public:
  explicit Book(fs::path path)
      : path_(std::move(path)),
        unfinished_(path_.string() + ".part"),
        book_(workbook_new(unfinished_.c_str())) {}
  ~Book() {
    if (book_ != nullptr) workbook_close(book_);
    std::error_code gone;
    fs::remove(unfinished_, gone);
  }
  Book(const Book&) = delete;
  Book& operator=(const Book&) = delete;

  lxw_worksheet* AddSheet(const std::string& name) { return workbook_add_worksheet(book_, name.c_str()); }
  lxw_format* AddFormat() { return workbook_add_format(book_); }
  bool Write() {
    lxw_workbook* book = book_;
    book_ = nullptr;
    if (workbook_close(book) != LXW_NO_ERROR) return false;
    std::error_code failed;
    fs::rename(unfinished_, path_, failed);
    return !failed;
  }

 private:
  fs::path path_;
  fs::path unfinished_;
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

// A column of ticks without a heading only picks rows.
bool IsWritten(const GridColumn& column) {
  return !column.hidden && (column.type != CellType::Tick || !column.caption.empty());
}

void WriteGrid(SheetWriter& sheet, const Grid& grid) {
  lxw_col_t to = 0;
  for (std::size_t column = 0; column < grid.columns.size(); ++column) {
    if (!IsWritten(grid.columns[column])) continue;
    sheet.Caption(to, grid.columns[column].caption);
    lxw_row_t line = kCaptionRow;
    for (std::size_t row = 0; row < grid.rows.size(); ++row) {
      if (grid.rows[row].hidden) continue;
      sheet.Cell(++line, to, grid.Text(row, column), grid.TypeOf(row, column));
    }
    ++to;
  }
}

// Named after what it shows and whose it is; a file that is there already is left alone.
fs::path FileFor(Session& session, const Grid& grid, const std::string& title) {
  const fs::path folder = fs::path(session.machine.folder.Path()) / kWorkbookFolder;
  std::error_code failed;
  fs::create_directories(folder, failed);
  const Subject subject = grid.screen().Subject();
  std::string name = title;
  for (const std::string* part : {&subject.employee, &subject.instruction}) {
    if (!part->empty()) name += " - " + *part;
  }
  name = Left(clsGenCmn::FnStrClearAllNonFileChar(name), kLongestFileName);
  fs::path file = folder / (name + ".xlsx");
  for (int copy = 2; fs::exists(file, failed); ++copy)
    file = folder / fmt::format("{} ({}).xlsx", name, copy);
  return file;
}

std::string SheetName(const std::string& title) {
  std::string name;
  for (const char c : title)
    name += std::string_view("[]:*?/\\'").find(c) == std::string_view::npos ? c : ' ';
  name = Trim(Left(name, kLongestSheetName));
  return name.empty() ? "Sheet1" : name;
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
  const fs::path path = FileFor(session, grid, title);
  Book book(path);
  SheetWriter sheet(book, SheetName(title));
  sheet.Heading(
      0, session.data.FnVarGetDbValue("SELECT CMPNAME FROM MAS_COMPANY", "").TextOrEmpty() + " : " + title);
  sheet.Heading(1, session.data.FnVarGetDbValue("SELECT ADDRESS FROM MAS_COMPANY", "").TextOrEmpty());
  WriteGrid(sheet, grid);
  sheet.FitColumns();
  if (book.Write()) return path.string();
  session.desk.ShowError("Bad or Invalid File Path. Check File Path Again.", "Check File Path");
  return "";
}

}  // namespace ktl
