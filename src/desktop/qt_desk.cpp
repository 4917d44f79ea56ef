#include "desktop/qt_desk.h"

#include <QApplication>
#include <QDesktopServices>
#include <QScreen>
#include <QSocketNotifier>
#include <QTime>
#include <QTimer>
#include <QUrl>
#include <stdexcept>
#include <utility>

#include "desktop/message_box.h"
#include "desktop/picker_window.h"
#include "desktop/screen_window.h"
#include "desktop/waiting_box.h"

namespace ktl {
namespace {

constexpr int kPictureDelayMs = 200;  // lets the window settle
constexpr std::chrono::seconds kQuietWait{2};

// A window that is open for as long as this stands.
class OnDesk {
 public:
  OnDesk(std::vector<ScreenWindow*>& open, ScreenWindow& window) : open_(open) { open_.push_back(&window); }
  ~OnDesk() { open_.pop_back(); }
  OnDesk(const OnDesk&) = delete;
  OnDesk& operator=(const OnDesk&) = delete;

 private:
  std::vector<ScreenWindow*>& open_;
};

}  // namespace

QtDesk::QtDesk(const Forms& forms) : forms_(forms), dispatcher_([this] { BringUpToDate(); }) {
  QObject::connect(qApp, &QApplication::focusChanged, &dispatcher_,
                   [this](QWidget* from, QWidget* to) { FocusMoved(from, to); });
}

QtDesk::~QtDesk() { SetBusy(false); }

void QtDesk::TakePicture(std::string file, Act act) {
  pictureFile_ = std::move(file);
  act_ = std::move(act);
}

void QtDesk::EndOn(int descriptor) {
  auto* const asked = new QSocketNotifier(descriptor, QSocketNotifier::Read, &dispatcher_);
  QObject::connect(asked, &QSocketNotifier::activated, &dispatcher_, [this, asked] {
    asked->setEnabled(false);
    dispatcher_.Fail(std::make_exception_ptr(ProgramFailure(kEndedBySignal)));
  });
}

Answer QtDesk::MsgBox(const MessageBox& box) {
  if (!pictureFile_.empty()) return DefaultAnswerOf(box);
  Mirror();
  GrantFocus();
  QWidget* parent = Top();
  const Answer answer = ShowMessageBox(box, parent, dispatcher_);
  if (parent && !parent->isActiveWindow()) parent->activateWindow();
  return answer;
}

void QtDesk::ShowModal(Screen& screen) {
  const auto form = forms_.find(screen.name());
  if (form == forms_.end()) {
    return Inform("This screen has no window in this build yet.", screen.caption);
  }
  screen.Load();
  if (screen.IsUnloaded()) return;
  QWidget* parent = Top();
  ScreenWindow window(screen, form->second(), dispatcher_, parent);
  {
    const OnDesk onDesk(open_, window);
    Mirror();
    GrantFocus();
    if (screen.under != nullptr) PlacePicker(window);
    if (!pictureFile_.empty()) PlanPicture(window);
    dispatcher_.Exec(window);
  }
  if (parent) parent->activateWindow();
}

void QtDesk::NoteSaved() {
  facts_.saved = QStringLiteral("Saved at ") + QTime::currentTime().toString(QStringLiteral("hh:mm"));
  const QString subject = open_.empty() ? QString() : SubjectLine(open_.back()->screen().Subject());
  if (!subject.isEmpty()) facts_.saved += QStringLiteral(": ") + subject;
  if (!open_.empty()) open_.back()->NoteSaved();
}

void QtDesk::NoteStatus(const std::string& text) { facts_.status = ToQt(text); }

// Escape and Enter only close the box.
void QtDesk::TellWritten(const std::string& text, const std::string& file, const std::string& title) {
  const MessageBox box{.text = text,
                       .buttons = Buttons::OKCancel,
                       .defaultAnswer = Answer::Cancel,
                       .title = title,
                       .words = {"&Open", "OK"}};
  if (MsgBox(box) == Answer::OK) QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(file)));
}

void QtDesk::Refresh() {
  Mirror();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  dispatcher_.RethrowFailure();
}

void QtDesk::SetBusy(bool busy) {
  if (busy == busy_) return;
  busy_ = busy;
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

// Short waits are no news: until the box is up the windows are only painted.
bool QtDesk::KeepWaiting(std::chrono::milliseconds waited, bool mayGiveUp) {
  if (waited < kQuietWait) {
    const Dispatcher::Waits waits(dispatcher_, nullptr);
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return true;
  }
  if (!waiting_) waiting_ = std::make_unique<WaitingBox>(Top());
  waiting_->Show(waited, mayGiveUp);
  {
    const Dispatcher::Waits waits(dispatcher_, waiting_.get());
    QApplication::processEvents();
  }
  const bool goesOn = !waiting_->IsGivenUp();
  if (!goesOn) waiting_.reset();
  return goesOn;
}

void QtDesk::BringUpToDate() {
  Mirror();
  GrantFocus();
  for (ScreenWindow* window : open_) {
    if (window->screen().IsUnloaded() && window->isVisible()) window->done(QDialog::Accepted);
  }
}

void QtDesk::Mirror() {
  waiting_.reset();  // whoever has something to show waits no longer
  const Dispatcher::Mirroring mirroring(dispatcher_);
  for (ScreenWindow* window : open_) window->Mirror(facts_);
}

void QtDesk::GrantFocus() {
  for (ScreenWindow* window : open_) window->GrantFocus();
}

// A field is left when another one of the same window is entered, not when a box or another program takes
// over.
void QtDesk::FocusMoved(QWidget* from, QWidget* to) {
  if (dispatcher_.IsMirroring() || !from || !to || from->window() != to->window()) return;
  for (ScreenWindow* window : open_) {
    if (window == from->window()) window->FocusMoved(from, to);
  }
}

// A child that an act opens goes on with the acts that are left, and takes the picture when they end on it.
void QtDesk::PlanPicture(ScreenWindow& window) {
  QTimer::singleShot(kPictureDelayMs, &window, [this, &window] {
    Screen& screen = window.screen();
    bool more = true;
    while (more && !screen.IsUnloaded() && window.isVisible()) {
      dispatcher_.Run([&] { more = act_(screen); });
    }
    if (more) return;
    QApplication::processEvents();
    dispatcher_.Run([&] { SavePicture(window); });
  });
}

void QtDesk::SavePicture(ScreenWindow& window) {
  if (!window.grab().save(QString::fromStdString(pictureFile_))) {
    throw std::runtime_error("cannot write the picture " + pictureFile_);
  }
  throw PictureTaken();
}

void QtDesk::PlacePicker(ScreenWindow& window) {
  for (const ScreenWindow* opener : open_) {
    const QWidget* field = opener->binder().WidgetOf(*window.screen().under);
    if (!field) continue;
    window.adjustSize();
    PlaceUnder(window, *field, field->screen()->availableGeometry());
  }
}

QWidget* QtDesk::Top() const { return open_.empty() ? nullptr : open_.back(); }

}  // namespace ktl
