#include "desktop/empty_words.h"

#include <QAbstractItemView>

namespace ktl {

EmptyWords::EmptyWords(QAbstractItemView& view) : QLabel(view.viewport()), view_(view) {
  setObjectName(QStringLiteral("emptyWords"));
  setAlignment(Qt::AlignCenter);
  setWordWrap(true);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

void EmptyWords::Show(bool empty) {
  if (empty) {
    const QString words = view_.property("whenEmpty").toString();
    setText(words.isEmpty() ? QStringLiteral("Nothing to show here yet.") : words);
    setGeometry(view_.viewport()->rect());
  }
  if (isHidden() == empty) setVisible(empty);
}

}  // namespace ktl
