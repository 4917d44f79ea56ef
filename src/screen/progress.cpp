#include "screen/progress.h"

#include <utility>

#include "screen/desk.h"

namespace ktl {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{60};

int Percent(const ProgressBar& bar) {
  return bar.maximum <= 0 ? 100 : static_cast<int>(100LL * bar.value / bar.maximum);
}

}  // namespace

Progress::Progress(Desk& desk, Screen& screen) : screen_(screen), desk_(desk) {
  picStatus.Hold({pbrStatus, lblStatus, lblStatusPer});
  picStatus.visible = false;
}

Progress::Work::Work(Progress& progress, int steps) : progress_(progress) {
  progress_.pbrStatus.maximum = steps;
  progress_.pbrStatus.value = 0;
  progress_.lblStatus.caption.clear();
  progress_.lblStatusPer.caption = "0%";
  progress_.picStatus.visible = true;
  progress_.shownAt_ = {};
  progress_.desk_.SetBusy(true);
}

Progress::Work::~Work() {
  progress_.picStatus.visible = false;
  progress_.desk_.SetBusy(false);
}

void Progress::Work::Advance(std::string words) {
  ProgressBar& bar = progress_.pbrStatus;
  if (bar.value < bar.maximum) ++bar.value;
  Say(std::move(words));
}

void Progress::Work::Say(std::string words) {
  const ProgressBar& bar = progress_.pbrStatus;
  progress_.lblStatus.caption = std::move(words);
  progress_.lblStatusPer.caption = std::to_string(Percent(bar)) + "%";
  progress_.desk_.NoteProgress(progress_.lblStatus.caption, Percent(bar));
  const auto now = std::chrono::steady_clock::now();
  if (now - progress_.shownAt_ < kBetweenLooks && bar.value < bar.maximum) return;
  progress_.shownAt_ = now;
  progress_.desk_.Refresh();
}

}  // namespace ktl
