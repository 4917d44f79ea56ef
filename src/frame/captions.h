#pragma once

namespace ktl {

struct CaptionSet;
struct Session;

void ResetTypeCaptions(CaptionSet& captions);  // Advance, Loan, Insurance, ...
// The names that the company gave to the instruction types; an empty one gives way to the default.
void LoadTypeCaptions(Session& session);

}  // namespace ktl
