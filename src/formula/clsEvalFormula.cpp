#include "formula/clsEvalFormula.h"

#include "frame/session.h"

namespace ktl {

double clsEvalFormula::FnDblEvalFormula(long, long, long, long, const Date&, const Date&, bool, std::string_view) {
  session_.Inform("The formula engine is not part of this build yet.");
  return 0;
}

}  // namespace ktl
