#include "formula/family_counts.h"

namespace ktl {

const FamilyCounts::Counts& FamilyCounts::Counted() {
  if (!counts_) {
    const auto count = [&](const char* from) {
      return reads_->Number(std::string("SELECT COUNT(*) FROM ") + from);
    };
    counts_ = Counts{.unitHeads = count("MAS_SALARYHEAD WHERE CALCFLDTYPE='C'"),
                     .reimbursements = count("RMB_MASTER"),
                     .extendedFields = count("MAS_EXTCAPTION WHERE EXPEDITORYN=1"),
                     .customFields = count("MAS_EMPCUSCAPTION WHERE EXPRYN=1"),
                     .customQueries = count("MAS_FORMULACUSTOM WHERE MODULEID = 1")};
  }
  return *counts_;
}

}  // namespace ktl
