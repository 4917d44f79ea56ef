#pragma once

#include <QAbstractListModel>
#include <string>
#include <vector>

#include "screen/controls.h"

namespace ktl {

// The rows of a list as they were when its widget was last brought up to date. A row's text from the list
// beside it is its data under kBesideRole.
inline constexpr int kBesideRole = Qt::UserRole;

class ListRows final : public QAbstractListModel {
 public:
  explicit ListRows(const ComboBox& control) : control_(control) {}

  // Takes over what was set anew since.
  void Take();

  const std::vector<ListRow>& Rows() const { return rows_; }
  // The rows that hold the text, in themselves or beside them; letter case does not count.
  std::vector<int> Holding(const std::string& text) const;
  // Those that have it as their whole text.
  std::vector<int> Having(const std::string& text) const;

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Beside {
    std::string text;
    std::string searched;  // both texts in small letters
  };
  const std::vector<Beside>& Besides() const;

  const ComboBox& control_;
  std::vector<ListRow> rows_;
  std::size_t version_ = 0;
  // Read when a list is opened or searched for the first time.
  mutable std::vector<Beside> besides_;
  mutable bool besidesRead_ = false;
  mutable std::size_t besideVersion_ = 0;
};

}  // namespace ktl
