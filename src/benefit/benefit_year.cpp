#include "benefit/benefit_year.h"

#include "frame/fin_years.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

BenefitYear BenefitYearOf(Session& session, const std::string& text) {
  const bool march = IsSet(session.data.Guarding("SELECT TDSMAR2FEB FROM MAS_OPTSET"));
  BenefitYear year{.text = text,
                   .key = Left(text, 4),
                   .firstYear = FinYearOf(text),
                   .closingYear = static_cast<long>(Val(text.substr(text.size() < 4 ? 0 : text.size() - 4)))};
  year.firstMonth = year.firstYear * 12 + (march ? 3 : 4);
  year.lastMonth = year.firstMonth + 11;
  return year;
}

}  // namespace ktl
