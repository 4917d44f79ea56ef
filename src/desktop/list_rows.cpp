#include "desktop/list_rows.h"

#include <string_view>
#include <unordered_map>

#include "desktop/binding.h"
#include "runtime/text.h"

namespace ktl {

void ListRows::Take() {
  if (version_ == control_.RowsVersion()) return;
  version_ = control_.RowsVersion();
  besidesRead_ = false;
  if (rows_ == control_.Rows()) return;
  beginResetModel();
  rows_ = control_.Rows();
  endResetModel();
}

const std::vector<ListRows::Beside>& ListRows::Besides() const {
  const std::size_t version = control_.beside ? control_.beside->RowsVersion() : 0;
  if (besidesRead_ && besideVersion_ == version) return besides_;
  besidesRead_ = true;
  besideVersion_ = version;
  std::unordered_map<std::string_view, std::string_view> texts;
  if (control_.beside) {
    for (const ListRow& row : control_.beside->Rows()) texts.emplace(row.value, row.text);
  }
  besides_.clear();
  besides_.reserve(rows_.size());
  for (const ListRow& row : rows_) {
    const auto beside = texts.find(row.value);
    std::string text(beside == texts.end() ? std::string_view() : beside->second);
    std::string searched = LowerCase(row.text + '\n' + text);
    besides_.push_back({std::move(text), std::move(searched)});
  }
  return besides_;
}

std::vector<int> ListRows::Holding(const std::string& text) const {
  const std::string wanted = LowerCase(text);
  std::vector<int> holding;
  int row = 0;
  for (const Beside& each : Besides()) {
    if (each.searched.find(wanted) != std::string::npos) holding.push_back(row);
    ++row;
  }
  return holding;
}

std::vector<int> ListRows::Having(const std::string& text) const {
  std::vector<int> having;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (EqualsNoCase(rows_[row].text, text)) having.push_back(static_cast<int>(row));
  }
  return having;
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (role == Qt::DisplayRole || role == Qt::EditRole) return ToQt(rows_[row].text);
  if (role == kBesideRole && control_.beside) return ToQt(Besides()[row].text);
  return {};
}

}  // namespace ktl
