#include "screen/tick_list.h"

#include <utility>

namespace ktl {

TickRows TickRowsOf(Grid& grid, std::size_t column) {
  return {.count = [&grid] { return grid.rows.size(); },
          .isTicked = [&grid, column](std::size_t row) { return grid.IsTicked(row, column); },
          .isLocked = [&grid, column](std::size_t row) { return grid.IsLocked(row, column); },
          .setTicked = [&grid, column](std::size_t row,
                                       bool ticked) { grid.At(row, column).text = ticked ? "1" : "0"; }};
}

TickRows TickRowsOf(ListBox& list) {
  return {.count = [&list] { return list.rows.size(); },
          .isTicked = [&list](std::size_t row) { return list.rows[row].ticked; },
          .isLocked = [](std::size_t) { return false; },
          .setTicked = [&list](std::size_t row, bool ticked) { list.rows[row].ticked = ticked; }};
}

TickList::TickList(TickRows rows, Around around) : rows_(std::move(rows)), around_(std::move(around)) {
  const auto pressed = [this](bool ticked) {
    if (counting_) return;  // the box follows the rows, not the other way round
    TickAll(ticked);
    if (around_.changed) around_.changed();
  };
  if (around_.all) around_.all->onClick = [this, pressed] { pressed(around_.all->Value()); };
  if (around_.tickAll) around_.tickAll->onClick = [pressed] { pressed(true); };
}

void TickList::TickAll(bool ticked) {
  for (std::size_t row = 0; row < rows_.count(); ++row) {
    if (!rows_.isLocked(row)) rows_.setTicked(row, ticked);
  }
  Count();
}

void TickList::Count() {
  const std::size_t listed = rows_.count();
  const std::size_t selected = Ticked().size();
  const auto count = [this](Label* label, const char* word, std::size_t rows) {
    if (label) label->caption = word + around_.behindWord + std::to_string(rows);
  };
  count(around_.listed, "Listed", listed);
  count(around_.selected, "Selected", selected);
  std::size_t open = 0;
  for (std::size_t row = 0; row < listed; ++row)
    open += rows_.isLocked(row) && !rows_.isTicked(row) ? 0U : 1U;
  counting_ = true;
  if (around_.all) around_.all->SetValue(selected > 0 && selected == open);
  counting_ = false;
}

std::vector<std::size_t> TickList::Ticked() const {
  std::vector<std::size_t> ticked;
  for (std::size_t row = 0; row < rows_.count(); ++row) {
    if (rows_.isTicked(row)) ticked.push_back(row);
  }
  return ticked;
}

}  // namespace ktl
