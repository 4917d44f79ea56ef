#include "desktop/amount_text.h"

#include "common/amounts.h"

namespace ktl {

QString ReadableAmount(const std::string& text) {
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return QString::fromStdString(text);
  const int decimals = int(text.size() - point) - 1;
  // Only what grouping gives back unchanged, so that no digit is lost; zero has no grouping at all.
  const bool kept = clsGenCmn::FnStrConvertToNumber(text, decimals) == text;
  return QString::fromStdString(kept ? clsGenCmn::FnStrCormat(text, decimals) : text);
}

}  // namespace ktl
