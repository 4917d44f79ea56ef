#pragma once

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

#include "screen/desk.h"
#include "screen/screen.h"

namespace ktl {

// What all windows show below.
struct DeskFacts {
  Workplace place;
  QString saved;   // what was saved last, and when
  QString status;  // of the program that is worked with meanwhile
};

// Whom and what, on one line, for reading: "Meera Kulkarni (K90908)  ·  Consumer Loan 2  ·  10,000.00".
QString SubjectLine(const Subject& subject);
// Why nothing can be saved on the screen: of its Save, else of the first button that tells it. "" when it
// can.
QString WhyNothingIsSaved(const Screen& screen);

// The line at the foot of a window.
class StatusLine final : public QFrame {
 public:
  explicit StatusLine(QWidget* parent = nullptr);

  void Show(const DeskFacts& facts, const Screen& screen);
  void ShowSelection(const QString& words);

 private:
  void Set(QLabel& label, const QString& text);

  QHBoxLayout layout_{this};
  QLabel why_;
  QLabel saved_;
  QLabel selection_;
  QLabel place_;
};

}  // namespace ktl
