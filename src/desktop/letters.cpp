#include "desktop/letters.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace ktl {
namespace {

struct Part {
  int rank;
  QString caption;  // with the letter that it wishes
  std::function<void(const QString&)> show;
};

QByteArray CaptionName(int part) { return "caption" + QByteArray::number(part); }

// What no control gives a caption to keeps the one of the form.
QString CaptionOf(QWidget& widget, const QString& shown, int part = 0) {
  const QByteArray name = CaptionName(part);
  if (!widget.property(name).isValid()) widget.setProperty(name, shown);
  return widget.property(name).toString();
}

int RankOf(const QPushButton& button) {
  static const std::set<QString> kEverywhere{"cmdNew", "cmdSave", "cmdDelete", "cmdClose"};
  if (kEverywhere.count(button.objectName())) return 0;
  return button.text().contains('&') ? 1 : 4;
}

template <class Widget, class Take>
void ForShown(QWidget& form, const Take& take) {
  for (auto* widget : form.findChildren<Widget*>()) {
    if (widget->isVisibleTo(&form)) take(*widget);
  }
}

template <class Widget>
void AddButtons(std::vector<Part>& parts, QWidget& form, const std::function<int(const Widget&)>& rank) {
  ForShown<Widget>(form, [&](Widget& button) {
    parts.push_back({rank(button), CaptionOf(button, button.text()), [&button](const QString& text) {
                       if (button.text() != text) button.setText(text);
                     }});
  });
}

void AddTabs(std::vector<Part>& parts, QWidget& form) {
  ForShown<QTabWidget>(form, [&](QTabWidget& tabs) {
    for (int i = 0; i < tabs.count(); ++i) {
      if (!tabs.isTabVisible(i)) continue;
      parts.push_back({2, CaptionOf(tabs, tabs.tabText(i), i), [&tabs, i](const QString& text) {
                         if (tabs.tabText(i) != text) tabs.setTabText(i, text);
                       }});
    }
  });
}

std::vector<Part> PartsOf(QWidget& form) {
  std::vector<Part> parts;
  AddButtons<QPushButton>(parts, form, RankOf);
  AddTabs(parts, form);
  ForShown<QGroupBox>(form, [&](QGroupBox& group) {
    if (group.findChildren<QRadioButton*>(Qt::FindDirectChildrenOnly).isEmpty()) return;
    parts.push_back({3, CaptionOf(group, group.title()), [&group](const QString& text) {
                       if (group.title() != text) group.setTitle(text);
                     }});
  });
  AddButtons<QCheckBox>(parts, form, [](const QCheckBox&) { return 4; });
  ForShown<QLabel>(form, [&](QLabel& label) {
    if (!label.buddy()) return;
    parts.push_back({5, CaptionOf(label, label.text()), [&label](const QString& text) {
                       if (label.text() != text) label.setText(text);
                     }});
  });
  std::stable_sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) { return a.rank < b.rank; });
  return parts;
}

// Where the letter stands that the caption wishes, in the caption without its mark; -1 for no wish.
int WishOf(QString& caption) {
  const auto mark = caption.indexOf('&');
  if (mark < 0 || mark + 1 >= caption.size() || !caption.at(mark + 1).isLetterOrNumber()) return -1;
  caption.remove(mark, 1);
  return int(mark);
}

// The places of the letters of a caption; the first letters of words are remembered best.
std::vector<int> PlacesIn(const QString& caption) {
  std::vector<int> places;
  for (const bool firsts : {true, false}) {
    for (int i = 0; i < caption.size(); ++i) {
      const bool first = i == 0 || caption.at(i - 1).isSpace();
      if (first == firsts && caption.at(i).isLetter()) places.push_back(i);
    }
  }
  return places;
}

// Hands out what is left of the letters. One that is taken is given up by its holder where that one can have
// another, so that as many as possible get one.
class Exchange {
 public:
  explicit Exchange(const std::vector<Part>& parts) : parts_(parts), places_(parts.size(), -1) {}

  bool Grant(std::size_t part, int place) {
    const bool free = holders_.emplace(LetterAt(part, place), part).second;
    if (free) places_[part] = place;
    return free;
  }
  void Fix() { fixed_ = holders_; }
  bool Find(std::size_t part) {
    asked_.clear();
    return Ask(part);
  }
  int PlaceOf(std::size_t part) const { return places_[part]; }

 private:
  QChar LetterAt(std::size_t part, int place) const { return parts_[part].caption.at(place).toUpper(); }
  bool Ask(std::size_t part) {
    for (const int place : PlacesIn(parts_[part].caption)) {
      const QChar letter = LetterAt(part, place);
      if (fixed_.count(letter) || !asked_.insert(letter).second) continue;
      const auto holder = holders_.find(letter);
      if (holder != holders_.end() && !Ask(holder->second)) continue;
      holders_[letter] = part;
      places_[part] = place;
      return true;
    }
    return false;
  }

  const std::vector<Part>& parts_;
  std::vector<int> places_;  // -1 for none
  std::map<QChar, std::size_t> holders_;
  std::map<QChar, std::size_t> fixed_;  // as wished
  std::set<QChar> asked_;
};

void ShareAmong(std::vector<Part>& parts) {
  std::vector<int> wishes;
  for (Part& part : parts) wishes.push_back(WishOf(part.caption));
  Exchange letters(parts);
  std::vector<std::size_t> refused;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (wishes[i] >= 0 && !letters.Grant(i, wishes[i])) refused.push_back(i);
  }
  letters.Fix();
  for (const std::size_t part : refused) letters.Find(part);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (wishes[i] < 0 && !parts[i].caption.contains('&')) letters.Find(i);
  }
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const int place = letters.PlaceOf(i);
    parts[i].show(place < 0 ? parts[i].caption : QString(parts[i].caption).insert(place, '&'));
  }
}

}  // namespace

bool TakesCaption(QWidget& widget, const QString& caption, int part) {
  const QByteArray name = CaptionName(part);
  const QVariant before = widget.property(name);
  if (before.isValid() && before.toString() == caption) return false;
  widget.setProperty(name, caption);
  return true;
}

bool Letters::Share() {
  std::vector<Part> parts = PartsOf(form_);
  QString now;
  for (const Part& part : parts) now += part.caption + '\n';
  if (now == shared_) return false;
  shared_ = now;
  ShareAmong(parts);
  return true;
}

}  // namespace ktl
