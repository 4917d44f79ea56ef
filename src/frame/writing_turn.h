#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "database/database_error.h"

namespace ktl {

struct Session;

// What a person was shown is no longer what the tables hold.
class ChangedMeanwhile final : public DatabaseError {
 public:
  ChangedMeanwhile();
};

// The rows of a query as one text: equal when the rows are.
std::string RowsAsText(Session& session, std::string_view sql);

// A workstation's turn to write: from here to the end no other one writes, so that what is found now still
// holds when it is written. To be taken behind the last question. A box that comes up all the same lets the
// others write while it is open; what is watched must be the same after it. What was written before a
// failure stays, unless it is taken back.
class WritingTurn final {
 public:
  // The rows that the writing rests on, as a text.
  using Watched = std::function<std::string()>;

  // Waits for the others. Throws ChangedMeanwhile when the rows are no longer as they were shown; without
  // shown rows whatever stands there is fine.
  WritingTurn(Session& session, Watched watched, const std::optional<std::string>& shown);
  WritingTurn(const WritingTurn&) = delete;
  WritingTurn& operator=(const WritingTurn&) = delete;
  ~WritingTurn();

  // Throws DatabaseError when the database gave up what was written.
  void End();

  // Instead of the end: nothing of what was written stays, but for what stood before the last box.
  void TakeBack();

  // Around a box.
  void Pause();
  void Resume();

 private:
  void RequireWatched(const std::string& before);

  Session& session_;
  Watched watched_;
  std::string atPause_;
  bool ended_ = false;
};

// False, told and shown anew, when the writing throws ChangedMeanwhile.
bool UnlessChanged(Session& session, const std::function<void()>& write,
                   const std::function<void()>& showAnew);

// What becomes of a turn when a statement of it fails.
enum class TurnFailed { KeepsWhatStands, TakesAllBack };

// Writes in a turn. When another workstation was faster (the writing may throw ChangedMeanwhile as well,
// before its first statement), nothing is written: that is told, what stands in the tables now is shown, and
// the answer is false.
bool WriteInTurn(Session& session, const WritingTurn::Watched& watched,
                 const std::optional<std::string>& shown, const std::function<void()>& write,
                 const std::function<void()>& showAnew, TurnFailed failed = TurnFailed::KeepsWhatStands);

}  // namespace ktl
