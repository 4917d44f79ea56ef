#include "desktop/letters.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <algorithm>
#include <functional>
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
  return kEverywhere.count(button.objectName()) ? 0 : 1;
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

// The first letters of words are remembered best.
int FreeIn(const QString& caption, const std::set<QChar>& taken) {
  for (const bool firstOnly : {true, false}) {
    for (int i = 0; i < caption.size(); ++i) {
      const bool first = i == 0 || caption.at(i - 1).isSpace();
      if ((first || !firstOnly) && caption.at(i).isLetter() && !taken.count(caption.at(i).toUpper()))
        return i;
    }
  }
  return -1;
}

void ShareAmong(std::vector<Part>& parts) {
  std::set<QChar> taken;
  std::vector<int> places;
  for (Part& part : parts) {
    int place = WishOf(part.caption);
    if (place >= 0 && !taken.insert(part.caption.at(place).toUpper()).second) place = -1;
    places.push_back(place);
  }
  for (std::size_t i = 0; i < parts.size(); ++i) {
    QString& caption = parts[i].caption;
    int& place = places[i];
    if (place < 0 && !caption.contains('&')) place = FreeIn(caption, taken);
    if (place >= 0) {
      taken.insert(caption.at(place).toUpper());
      caption.insert(place, '&');
    }
    parts[i].show(caption);
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
