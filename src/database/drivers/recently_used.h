#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ktl {

// Keeps so many things by their texts; a further one takes the place of the one not asked for the longest.
template <typename Thing>
class RecentlyUsed {
 public:
  explicit RecentlyUsed(std::size_t most) : most_(most) {}

  // Null when it is not kept. The thing stays where it is until it is thrown out.
  Thing* Find(std::string_view text) {
    const auto found = byText_.find(text);
    if (found == byText_.end()) return nullptr;
    things_.splice(things_.begin(), things_, found->second);
    return &found->second->second;
  }

  // The text must not be kept yet.
  Thing& Keep(std::string_view text, Thing thing) {
    if (things_.size() >= most_) {
      byText_.erase(things_.back().first);
      things_.pop_back();
    }
    things_.emplace_front(std::string(text), std::move(thing));
    byText_.emplace(things_.front().first, things_.begin());
    return things_.front().second;
  }

 private:
  using Things = std::list<std::pair<const std::string, Thing>>;

  std::size_t most_;
  Things things_;  // the one asked for last in front
  std::unordered_map<std::string_view, typename Things::iterator> byText_;
};

}  // namespace ktl
