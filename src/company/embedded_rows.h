#pragma once

#include "company/company_rows.h"

namespace ktl {

// Companies in files; see OpenSource and OpenTarget.
std::unique_ptr<RowSource> OpenEmbeddedSource(const CompanyAddress& address);
std::unique_ptr<RowTarget> OpenEmbeddedTarget(const CompanyAddress& address, bool replace);

}  // namespace ktl
