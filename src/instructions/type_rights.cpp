#include "instructions/type_rights.h"

#include <array>
#include <string_view>

#include "frame/rights.h"
#include "screen/screen.h"

namespace ktl {

namespace {

// One number a type, in the order of TypeColumn, and one of a screen for all types; 0 where there is none.
using Numbers = std::array<int, 7>;

struct RightNumbers {
  std::string_view screen;
  std::string_view button;  // "" for the form itself
  Numbers numbers;
};

constexpr RightNumbers kRights[] = {
    {"modAdvLoan", "", {48, 54}},
    {"modAdvLoan", "cmdMaster", {198, 222}},
    {"modAdvLoan", "cmdInstitution", {0, 223}},
    {"modAdvLoan", "cmdFmeFormula", {199, 224}},
    {"modAdvLoan", "cmdSave", {200, 225}},
    {"modAdvLoan", "cmdDelete", {201, 226}},
    {"modAdvLoan", "cmdMonthly", {202, 227}},
    {"modAdvLoan", "cmdMultiAllot", {203, 228}},
    {"modAdvLoan", "cmdAccept", {204, 229}},
    {"modAdvLoan", "cmdAdvFormulate", {205, 230}},
    {"modAdvLoan", "cmdEMIDelete", {206, 231}},
    {"modAdvLoan", "cmdEmi", {207, 232}},
    {"modAdvLoan", "cmdReceipts", {208, 233}},
    {"modInsGInsSSS", "", {0, 0, 60, 69, 64, 73}},
    {"modInsGInsSSS", "cmdMaster", {0, 0, 249, 280, 262, 293}},
    {"modInsGInsSSS", "cmdInstitution", {0, 0, 250, 281, 263, 0}},
    {"modInsGInsSSS", "cmdSave", {0, 0, 251, 282, 264, 294}},
    {"modInsGInsSSS", "cmdDelete", {0, 0, 252, 283, 265, 295}},
    {"modInsGInsSSS", "cmdMonthly", {0, 0, 253, 284, 266, 296}},
    {"modInsGInsSSS", "cmdMultiAllot", {0, 0, 0, 0, 267, 297}},
    {"modInsGInsSSS", "cmdEMIDelete", {0, 0, 254, 285, 268, 298}},
    {"modInsGInsSSS", "cmdEmiDet", {0, 0, 255, 286, 269, 299}},
    {"modSIMaster", "", {49, 55, 61, 70, 65, 74}},
    {"modSIMaster", "cmdSave", {209, 234, 256, 287, 270, 300}},
    {"modSIMaster", "cmdDelete", {210, 235, 257, 288, 271, 301}},
    {"modEMIDet", "", {52, 58, 63, 72, 67, 76}},
    {"modEMIDet", "cmdSave", {218, 244, 259, 290, 273, 303}},
    {"modEMIDet", "cmdDelete", {219, 245, 260, 291, 274, 304}},
    {"modEMIDet", "cmdInstitution", {0, 246, 261, 292, 275, 0}},
    {"modEMIEmp", "", {50, 56, 62, 71, 66, 75, 78}},
    {"modEMIEmp", "cmdUpdate", {211, 236, 258, 289, 272, 302, 341}},
    {"modReceipts", "", {53, 59}},
    {"modReceipts", "cmdSave", {220, 247}},
    {"modReceipts", "cmdDelete", {221, 248}},
    {"modMultiAllot", "", {51, 57, 0, 0, 68, 77}},
    {"modMultiAllot", "cmdFilter", {212, 237}},
    {"modMultiAllot", "cmdSave", {213, 238}},
    {"modMultiAllot", "cmdMaster", {214, 239}},
    {"modMultiAllot", "cmdInstitution", {0, 240}},
    {"modMultiAllot", "cmdFmeFormula", {215, 241}},
    {"modMultiAllot", "cmdAdvFormulate", {216, 242}},
    {"modMultiAllot", "cmdAccept", {217, 243}},
    // Who may not delete one may not delete many: the entry's right.
    {"frmAdvLoanBulkDelete", "", {48, 54}},
    {"frmAdvLoanBulkDelete", "cmdDelete", {201, 226}},
};

std::size_t TypeColumn(InstructionType type) {
  if (type == InstructionType::None) return 6;
  return type == InstructionType::Incentive ? 5 : static_cast<std::size_t>(NumberOf(type)) - 1;
}

}  // namespace

void ApplyTypeRights(Session& session, Screen& screen, InstructionType type) {
  long form = 0;
  for (const RightNumbers& right : kRights) {
    if (right.screen != screen.name()) continue;
    const int number = right.numbers[TypeColumn(type)];
    if (right.button.empty())
      form = number;
    else
      screen.Find(right.button)->tag = number == 0 ? "" : std::to_string(number);
  }
  if (form != 0) ApplyButtonRights(session, screen, form);
}

}  // namespace ktl
