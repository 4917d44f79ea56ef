#pragma once

#include <cstddef>
#include <vector>

#include "recovery/deduction_preference.h"

namespace ktl {

// Where an amount goes that a month does not recover.
enum class PutOffTo { NextMonth, AllLaterMonths };

// What each of so many later months takes of the amount. Over all months the amount is a whole number of
// rupees: its paise are dropped, and the shares are rounded with the rest in the last month.
std::vector<double> SharesOf(double amount, PutOffTo to, std::size_t months);

// The statement that finds the later months that have no salary yet, as it is said and as the embedded store
// runs it. It joins the two tables of salaries by nothing: it asks whether the employee has a salary in the
// month and whether any salary at all has details.
struct LaterMonths {
  Statement said;
  Statement embedded;
};
LaterMonths LaterMonthsOf(Session& session, const InstructionKey& key, long monthYear);

// Takes what the row moves out of the month and gives it to the later months that have no salary yet, or to a
// new month behind the last one; the flags of the month worked on and the audit line go with it, all in one
// transaction. Throws DatabaseError, with nothing written, when the instalment is no longer as listed or the
// employee has been locked since. What is moved has two places, as the list shows it.
void PutOff(Session& session, const PreferenceRow& row, const PreferenceTerms& terms, PutOffTo to);

}  // namespace ktl
