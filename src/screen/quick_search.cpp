#include "screen/quick_search.h"

#include <utility>

#include "runtime/text.h"

namespace ktl {

namespace {

constexpr int kAfterLastKeyMs = 400;

}  // namespace

QuickSearch::QuickSearch(Screen& screen, std::string boxName, std::string timerName,
                         std::function<void(const std::string& text)> search)
    : screen_(screen),
      txtSearch(screen_, std::move(boxName)),
      tmrSearch(screen_, std::move(timerName)),
      search_(std::move(search)) {
  tmrSearch.intervalMs = kAfterLastKeyMs;
  txtSearch.onChange = [this] { tmrSearch.Restart(); };
  tmrSearch.onTimer = [this] {
    tmrSearch.enabled = false;
    search_(Trim(txtSearch.Text()));
  };
}

}  // namespace ktl
