#include "desktop/forms.h"

#include "ui_frmAdvLoanBulkDelete.h"
#include "ui_frmKtlCalender.h"
#include "ui_frmSBI.h"
#include "ui_frmSelMonth.h"
#include "ui_frmSepInt.h"
#include "ui_frmUpdateInt.h"
#include "ui_modAdvLoan.h"
#include "ui_modEMIDet.h"
#include "ui_modEMIEmp.h"
#include "ui_modHLoan.h"
#include "ui_modInsGInsSSS.h"
#include "ui_modInterestMaster.h"
#include "ui_modLockMonth.h"
#include "ui_modMultiAllot.h"
#include "ui_modReceipts.h"
#include "ui_modSIDetails.h"
#include "ui_modSIMaster.h"
#include "ui_modSalSIAdj.h"

namespace ktl {
namespace {

template <class Ui>
std::unique_ptr<QWidget> Make() {
  auto form = std::make_unique<QWidget>();
  Ui().setupUi(form.get());
  return form;
}

}  // namespace

const Forms& ProgramForms() {
  static const Forms kForms{
      {"frmAdvLoanBulkDelete", Make<Ui::frmAdvLoanBulkDelete>},
      {"frmSBI", Make<Ui::frmSBI>},
      {"frmSepInt", Make<Ui::frmSepInt>},
      {"frmUpdateInt", Make<Ui::frmUpdateInt>},
      {"frmKtlCalender", Make<Ui::frmKtlCalender>},
      {"frmSelMonth", Make<Ui::frmSelMonth>},
      {"modAdvLoan", Make<Ui::modAdvLoan>},
      {"modEMIDet", Make<Ui::modEMIDet>},
      {"modEMIEmp", Make<Ui::modEMIEmp>},
      {"modHLoan", Make<Ui::modHLoan>},
      {"modInsGInsSSS", Make<Ui::modInsGInsSSS>},
      {"modInterestMaster", Make<Ui::modInterestMaster>},
      {"modLockMonth", Make<Ui::modLockMonth>},
      {"modMultiAllot", Make<Ui::modMultiAllot>},
      {"modReceipts", Make<Ui::modReceipts>},
      {"modSIDetails", Make<Ui::modSIDetails>},
      {"modSIMaster", Make<Ui::modSIMaster>},
      {"modSalSIAdj", Make<Ui::modSalSIAdj>},
  };
  return kForms;
}

}  // namespace ktl
