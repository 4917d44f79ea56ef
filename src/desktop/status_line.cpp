#include "desktop/status_line.h"

#include <QStringList>

#include "desktop/binding.h"

namespace ktl {

QString SubjectLine(const Subject& subject) {
  QStringList parts;
  for (const std::string* part : {&subject.employee, &subject.instruction, &subject.amounts}) {
    if (!part->empty()) parts << ToQt(*part);
  }
  return parts.join(QStringLiteral("  ·  "));
}

QString WhyNothingIsSaved(const Screen& screen) {
  const auto why = [](const Control* control) {
    const bool tells = control && control->IsShown() && !control->IsUsable();
    return tells ? ToQt(control->whyDisabled) : QString();
  };
  if (const Control* save = screen.Find("cmdSave"); save && save->IsShown()) return why(save);
  for (const Control* control : screen.Controls()) {
    if (control->kind() != ControlKind::Button) continue;
    if (const QString said = why(control); !said.isEmpty()) return said;
  }
  return {};
}

StatusLine::StatusLine(QWidget* parent) : QFrame(parent) {
  setObjectName("statusLine");
  layout_.setContentsMargins(14, 3, 14, 3);
  layout_.setSpacing(18);
  why_.setObjectName("statusWhy");
  saved_.setObjectName("statusSaved");
  selection_.setObjectName("statusSelection");
  place_.setObjectName("statusPlace");
  for (QLabel* label : {&why_, &saved_, &selection_, &place_}) {
    label->setTextFormat(Qt::PlainText);
    layout_.addWidget(label);
    label->hide();
  }
  // The longest text gives way first; it can be read in its tool tip.
  saved_.setMinimumWidth(0);
  saved_.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  layout_.insertStretch(2, 1);
  layout_.setStretch(1, 100);
}

void StatusLine::Show(const DeskFacts& facts, const Screen& screen) {
  Set(why_, facts.status.isEmpty() ? WhyNothingIsSaved(screen) : facts.status);
  Set(saved_, facts.saved);
  const QString user = ToQt(facts.place.user);
  const QString company = ToQt(facts.place.company);
  Set(place_,
      user.isEmpty() || company.isEmpty() ? company + user : company + QStringLiteral("  ·  ") + user);
}

void StatusLine::ShowSelection(const QString& words) { Set(selection_, words); }

void StatusLine::Set(QLabel& label, const QString& text) {
  if (label.text() != text) {
    label.setText(text);
    label.setToolTip(text);
  }
  if (label.isHidden() != text.isEmpty()) label.setVisible(!text.isEmpty());
}

}  // namespace ktl
