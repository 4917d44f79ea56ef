#include "benefit/frmSBI.h"
#include "benefit/frmSepInt.h"
#include "benefit/frmUpdateInt.h"
#include "frame/frmKtlCalender.h"
#include "frame/frmSelMonth.h"
#include "frame/pickers.h"
#include "instructions/frmAdvLoanBulkDelete.h"
#include "instructions/modAdvLoan.h"
#include "instructions/modHLoan.h"
#include "instructions/modMultiAllot.h"
#include "instructions/modSIMaster.h"
#include "premium/modInsGInsSSS.h"
#include "recovery/modEMIDet.h"
#include "recovery/modEMIEmp.h"
#include "recovery/modInterestMaster.h"
#include "recovery/modLockMonth.h"
#include "recovery/modReceipts.h"
#include "recovery/modSIDetails.h"
#include "recovery/modSalSIAdj.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "start/startup.h"

namespace ktl {

namespace {

// What a screen that is opened by its name gets for the arguments of its door.
struct OpenedByName {
  Session& session;
  Screen* parent;

  operator InstructionType() const { return static_cast<InstructionType>(session.SIType); }
  operator MonthViewRequest() const {
    return {session.FormEmpId, static_cast<InstructionType>(session.SIType), session.FormArgText,
            dynamic_cast<InstructionLists*>(parent)};
  }
  operator PickerField() const { return {}; }
  operator YearlyBenefitRequest() const { return {}; }
  operator InstructionParent&() const {
    auto* const instruction = dynamic_cast<InstructionParent*>(parent);
    if (instruction == nullptr) throw RuntimeError::InvalidProcedureCall();
    return *instruction;
  }
};

// A door that leads somewhere already stays as it is.
template <typename ScreenType, typename... Arguments>
void Register(Session& session, Door<Arguments...>& door) {
  if (!door.IsThere()) {
    door.LeadTo([](Session& opened, Arguments... arguments) {
      return std::make_unique<ScreenType>(opened, arguments...);
    });
  }
  session.screens.Add(door.screenName(), [](Session& opened, Screen* parent) {
    [[maybe_unused]] const OpenedByName arguments{opened, parent};
    return std::make_unique<ScreenType>(opened, static_cast<Arguments>(arguments)...);
  });
}

}  // namespace

void RegisterScreens(Session& session) {
  session.screens.Add("modAdvLoan", [](Session& opened, Screen*) {
    return std::make_unique<modAdvLoan>(opened, static_cast<InstructionType>(opened.SIType));
  });
  session.screens.Add("modInsGInsSSS", [](Session& opened, Screen*) {
    return std::make_unique<modInsGInsSSS>(opened, static_cast<InstructionType>(opened.SIType));
  });
  session.screens.Add("modSIDetails", [](Session& opened, Screen*) {
    return std::make_unique<modSIDetails>(opened, opened.FormEmpId);
  });
  session.screens.Add("modSalSIAdj", [](Session& opened, Screen*) {
    return std::make_unique<modSalSIAdj>(opened, Value(Val(opened.FormArgText)).ToLong());
  });
  session.screens.Add("modLockMonth",
                      [](Session& opened, Screen*) { return std::make_unique<modLockMonth>(opened); });
  session.screens.Add("frmSepInt",
                      [](Session& opened, Screen*) { return std::make_unique<frmSepInt>(opened); });
  Register<frmSBI>(session, session.doors.benchmarkRates);
  Register<frmUpdateInt>(session, session.doors.yearlyBenefit);
  Register<frmSelMonth>(session, session.doors.month);
  Register<frmKtlCalender>(session, session.doors.calendar);
  Register<modEMIEmp>(session, session.doors.monthView);
  Register<modSIMaster>(session, session.doors.instructionMaster);
  Register<modEMIDet>(session, session.doors.emiEditor);
  Register<modReceipts>(session, session.doors.receipts);
  Register<modInterestMaster>(session, session.doors.interestEditor);
  Register<modHLoan>(session, session.doors.houseLoan);
  Register<modMultiAllot>(session, session.doors.multipleAllotment);
  Register<frmAdvLoanBulkDelete>(session, session.doors.bulkDelete);
}

}  // namespace ktl
