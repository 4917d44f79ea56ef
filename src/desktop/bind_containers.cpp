#include <QGroupBox>
#include <QProgressBar>
#include <QTabWidget>
#include <QTimer>
#include <utility>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"
#include "desktop/letters.h"

namespace ktl {
namespace {

// A property that the forms give to a frame that comes and goes with the row that is clicked: nothing moves
// then.
constexpr const char* kKeepsPlace = "keepsPlace";

class FrameBinding final : public Binding {
 public:
  FrameBinding(Frame& control, QWidget& widget)
      : control_(control), widget_(widget), group_(qobject_cast<QGroupBox*>(&widget)) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(widget.property(kKeepsPlace).toBool());
    widget.setSizePolicy(policy);
  }

  void Mirror() override {
    MirrorState(control_, widget_);
    const QString title = ToQt(control_.caption);
    if (group_ && TakesCaption(*group_, title)) group_->setTitle(title);
  }

 private:
  Frame& control_;
  QWidget& widget_;
  QGroupBox* group_;  // null for a frame without a caption
};

class TabsBinding final : public Binding {
 public:
  TabsBinding(Tabs& control, QTabWidget& tabs, Dispatcher& dispatcher) : control_(control), tabs_(tabs) {
    QObject::connect(&tabs, &QTabWidget::currentChanged, &tabs, [this, &dispatcher](int page) {
      if (page < 0 || dispatcher.IsMirroring()) return;
      dispatcher.Run([this, page] { control_.SetCurrent(std::size_t(page)); });
    });
  }

  void Mirror() override {
    MirrorState(control_, tabs_);
    const int count = std::min(int(control_.pages.size()), tabs_.count());
    for (int i = 0; i < count; ++i) MirrorPage(i, control_.pages[std::size_t(i)]);
    const int current = int(control_.Current());
    if (tabs_.currentIndex() != current) tabs_.setCurrentIndex(current);
  }

 private:
  void MirrorPage(int i, const Tabs::Page& page) {
    const QString caption = ToQt(page.caption);
    if (TakesCaption(tabs_, caption, i)) tabs_.setTabText(i, caption);
    if (tabs_.isTabVisible(i) != page.visible) tabs_.setTabVisible(i, page.visible);
    if (tabs_.isTabEnabled(i) != page.enabled) tabs_.setTabEnabled(i, page.enabled);
  }

  Tabs& control_;
  QTabWidget& tabs_;
};

class ProgressBarBinding final : public Binding {
 public:
  ProgressBarBinding(ProgressBar& control, QProgressBar& bar) : control_(control), bar_(bar) {}

  void Mirror() override {
    MirrorState(control_, bar_);
    if (bar_.minimum() != control_.minimum || bar_.maximum() != control_.maximum) {
      bar_.setRange(control_.minimum, control_.maximum);
    }
    if (bar_.value() != control_.value) bar_.setValue(control_.value);
  }

 private:
  ProgressBar& control_;
  QProgressBar& bar_;
};

class TimerBinding final : public Binding {
 public:
  TimerBinding(Timer& control, Dispatcher& dispatcher) : control_(control) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, &dispatcher] {
      if (control_.enabled) dispatcher.Run(control_.onTimer);
    });
  }

  void Mirror() override {
    if (timer_.interval() != control_.intervalMs) timer_.setInterval(control_.intervalMs);
    const bool runs = control_.enabled && control_.intervalMs > 0;
    const bool anew = std::exchange(starts_, control_.Starts()) != control_.Starts();
    if (timer_.isActive() != runs || (runs && anew)) runs ? timer_.start() : timer_.stop();
  }

 private:
  Timer& control_;
  QTimer timer_;
  int starts_ = 0;
};

}  // namespace

std::unique_ptr<Binding> BindFrame(Frame& control, QWidget& widget) {
  return std::make_unique<FrameBinding>(control, widget);
}

std::unique_ptr<Binding> BindTabs(Tabs& control, QWidget& widget, Dispatcher& dispatcher) {
  auto* tabs = qobject_cast<QTabWidget*>(&widget);
  return tabs ? std::make_unique<TabsBinding>(control, *tabs, dispatcher) : nullptr;
}

std::unique_ptr<Binding> BindProgressBar(ProgressBar& control, QWidget& widget) {
  auto* bar = qobject_cast<QProgressBar*>(&widget);
  return bar ? std::make_unique<ProgressBarBinding>(control, *bar) : nullptr;
}

std::unique_ptr<Binding> BindTimer(Timer& control, Dispatcher& dispatcher) {
  return std::make_unique<TimerBinding>(control, dispatcher);
}

}  // namespace ktl
