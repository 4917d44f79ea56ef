#include "workbook/grid_workbook.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "common/amounts.h"
#include "frame/session.h"
#include "machine/files.h"
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
constexpr const char* kDiskFull = "the disk may be full";

// libxlsxwriter owns sheets and formats; the book is closed, and so written, exactly once. It is written
// beside its place and put there when it is whole.
class Book final {
 public:
  explicit Book(fs::path path)
      : path_(std::move(path)),
        unfinished_(path_.string() + ".part"),
        folder_(path_.parent_path().string()),
        book_(workbook_new_opt(unfinished_.c_str(), &options_)) {}
  ~Book() {
    if (book_ != nullptr) workbook_close(book_);
    std::error_code gone;
    fs::remove(unfinished_, gone);
  }
  Book(const Book&) = delete;
  Book& operator=(const Book&) = delete;

  // None when there is no room for its rows.
  lxw_worksheet* AddSheet(const std::string& name) {
    return sheet_ = workbook_add_worksheet(book_, name.c_str());
  }
  lxw_format* AddFormat() { return workbook_add_format(book_); }
  bool Write() {
    const bool whole = RowsAreKept();
    if (workbook_close(std::exchange(book_, nullptr)) != LXW_NO_ERROR || !whole) return false;
    std::error_code failed;
    fs::rename(unfinished_, path_, failed);
    return !failed;
  }

 private:
  // The library looks after its package alone: a full disk cuts the rows that it puts by, and their copy on
  // the way into the package, and it calls that written.
  bool RowsAreKept() const {
    std::FILE* rows = sheet_->optimize_tmpfile;
    if (std::fflush(rows) != 0 || std::ferror(rows) != 0) return false;
    std::error_code unknown;
    const fs::space_info disk = fs::space(folder_, unknown);
    return unknown || disk.available > 2 * static_cast<std::uintmax_t>(std::ftell(rows)) + kSmallParts;
  }

  static constexpr std::uintmax_t kSmallParts = 65536;

  fs::path path_;
  fs::path unfinished_;
  std::string folder_;
  // A row is written when the next one begins, so that a list of any length takes no more memory; on the disk
  // that the book goes to.
  lxw_workbook_options options_{
      .constant_memory = LXW_TRUE, .tmpdir = folder_.data(), .use_zip64 = LXW_FALSE};
  lxw_workbook* book_;
  lxw_worksheet* sheet_ = nullptr;
};

class SheetWriter final {
 public:
  SheetWriter(Book& book, lxw_worksheet* sheet) : sheet_(sheet) {
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

// The bar of the screen that the grid is on, when it has one; shown while a list is written.
class Watched final {
 public:
  Watched(Desk& desk, Screen& screen, std::size_t rows)
      : desk_(desk),
        frame_(screen.Find("picStatus")),
        bar_(dynamic_cast<ProgressBar*>(screen.Find("pbrStatus"))) {
    desk_.SetBusy(true);
    if (bar_ == nullptr) return;
    bar_->value = 0;
    bar_->maximum = static_cast<int>(rows);
    Show(true);
  }
  ~Watched() {
    Show(false);
    desk_.SetBusy(false);
  }
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;

  void Row() {
    if (++rows_ % kRowsBetweenLooks != 0) return;
    if (bar_ != nullptr) bar_->value = rows_;
    desk_.Refresh();
  }

 private:
  static constexpr int kRowsBetweenLooks = 1000;

  void Show(bool shown) {
    if (frame_ != nullptr) frame_->visible = shown;
  }

  Desk& desk_;
  Control* frame_;
  ProgressBar* bar_;
  int rows_ = 0;
};

void WriteGrid(SheetWriter& sheet, const Grid& grid, Watched& watched) {
  std::vector<std::size_t> columns;
  for (std::size_t column = 0; column < grid.columns.size(); ++column) {
    if (IsWritten(grid.columns[column])) columns.push_back(column);
  }
  for (std::size_t to = 0; to < columns.size(); ++to)
    sheet.Caption(static_cast<lxw_col_t>(to), grid.columns[columns[to]].caption);
  lxw_row_t line = kCaptionRow;
  for (std::size_t row = 0; row < grid.rows.size(); ++row) {
    watched.Row();
    if (grid.rows[row].hidden) continue;
    ++line;
    for (std::size_t to = 0; to < columns.size(); ++to)
      sheet.Cell(line, static_cast<lxw_col_t>(to), grid.Text(row, columns[to]),
                 grid.TypeOf(row, columns[to]));
  }
}

// Named after what it shows and whose it is; a file that is there already is left alone.
fs::path FileFor(const fs::path& folder, const Grid& grid, const std::string& title) {
  std::error_code failed;
  const Subject subject = grid.screen().Subject();
  std::string name = title;
  for (const std::string* part : {&subject.employee, &subject.instruction}) {
    if (!part->empty()) name += " - " + *part;
  }
  std::erase_if(name, [](char c) { return static_cast<unsigned char>(c) < ' '; });  // a line break
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

struct Words {
  const std::string& title;
  const std::string& heading;
};

// "" when the file is there; else what stands against it.
std::string WriteWorkbook(Session& session, const Grid& grid, const fs::path& path, const Words& words) {
  // The library writes at its end, and does not say why it could not.
  if (const FileDescriptor probe(
          ::open((path.string() + ".part").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
      !probe.valid())
    return std::strerror(errno);
  Watched watched(session.desk, grid.screen(), grid.rows.size());
  Book book(path);
  lxw_worksheet* const page = book.AddSheet(SheetName(words.title));
  if (page == nullptr) return kDiskFull;
  SheetWriter sheet(book, page);
  sheet.Heading(0, session.data.FnVarGetDbValue("SELECT CMPNAME FROM MAS_COMPANY", "").TextOrEmpty() + " : " +
                       words.heading);
  sheet.Heading(1, session.data.FnVarGetDbValue("SELECT ADDRESS FROM MAS_COMPANY", "").TextOrEmpty());
  WriteGrid(sheet, grid, watched);
  sheet.FitColumns();
  return book.Write() ? "" : kDiskFull;
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

std::string ExportGridToWorkbook(Session& session, const Grid& grid, const std::string& title,
                                 const std::string& heading) {
  const fs::path folder = fs::path(session.machine.folder.Path()) / kWorkbookFolder;
  std::error_code failed;
  fs::create_directories(folder, failed);
  if (!fs::is_directory(folder, failed)) {
    session.desk.ShowError("Bad or Invalid File Path. Check File Path Again.", "Check File Path");
    return "";
  }
  const fs::path path = FileFor(folder, grid, title);
  while (true) {
    const std::string refused =
        WriteWorkbook(session, grid, path, {title, heading.empty() ? title : heading});
    if (refused.empty()) return path.string();
    if (!session.desk.Confirm(fmt::format("{} could not be written: {}. Try again?", path.string(), refused),
                              session.title))
      return "";
  }
}

}  // namespace ktl
