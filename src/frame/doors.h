#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace ktl {

class InstructionLists;
class InstructionParent;
class Screen;
struct PickerField;
struct Session;
enum class InstructionType : int;

// The one plain line of a screen that is not there.
void TellMissingScreen(Session& session, const std::string& screenName);
// Opens the screen modally and gives the place on top back to the screen that opened it.
void ShowScreen(Session& session, Screen& screen);

// A way from one screen to another whose room it may not include. start/ puts the factories in; a door
// without one answers with one plain message that names the screen.
template <typename... Arguments>
class Door {
 public:
  using Factory = std::function<std::unique_ptr<Screen>(Session& session, Arguments... arguments)>;

  Door(Session& session, std::string screenName) : session_(session), screenName_(std::move(screenName)) {}

  const std::string& screenName() const { return screenName_; }
  bool IsThere() const { return static_cast<bool>(factory_); }
  void LeadTo(Factory factory) { factory_ = std::move(factory); }

  void operator()(Arguments... arguments) const {
    if (!factory_) return TellMissingScreen(session_, screenName_);
    const std::unique_ptr<Screen> screen = factory_(session_, arguments...);
    ShowScreen(session_, *screen);
  }

 private:
  Session& session_;
  std::string screenName_;
  Factory factory_;
};

// All instalments of one employee in one month.
struct MonthViewRequest {
  long employee = 0;
  InstructionType type{};             // of the entry screen, whose instructions alone are shown; none for all
  std::string month = {};             // "Apr/2010", "" for the newest
  InstructionLists* lists = nullptr;  // refreshed when something was written; null without an entry screen
};

// The yearly benefit as the month-by-month view shows it.
struct YearlyBenefitRequest {
  std::string year = {};    // "2026 - 2027"
  std::string search = {};  // whose names or numbers
};

// Every screen that another one opens.
struct Doors {
  explicit Doors(Session& session)
      : instructionMaster(session, "modSIMaster"),
        emiEditor(session, "modEMIDet"),
        receipts(session, "modReceipts"),
        interestEditor(session, "modInterestMaster"),
        monthView(session, "modEMIEmp"),
        multipleAllotment(session, "modMultiAllot"),
        houseLoan(session, "modHLoan"),
        bulkDelete(session, "frmAdvLoanBulkDelete"),
        benchmarkRates(session, "frmSBI"),
        yearlyBenefit(session, "frmUpdateInt"),
        month(session, "frmSelMonth"),
        calendar(session, "frmKtlCalender") {}

  Door<InstructionType> instructionMaster;
  Door<InstructionParent&> emiEditor;
  Door<InstructionParent&> receipts;
  Door<InstructionParent&> interestEditor;
  Door<const MonthViewRequest&> monthView;
  Door<InstructionType> multipleAllotment;
  Door<InstructionParent&> houseLoan;
  Door<InstructionType> bulkDelete;
  Door<> benchmarkRates;
  Door<const YearlyBenefitRequest&> yearlyBenefit;
  // The field that asked gets what is chosen.
  Door<const PickerField&> month;
  Door<const PickerField&> calendar;
};

}  // namespace ktl
