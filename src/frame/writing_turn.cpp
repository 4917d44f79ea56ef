#include "frame/writing_turn.h"

#include <utility>

#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {

ChangedMeanwhile::ChangedMeanwhile() : DatabaseError(kRowGoneText, kRowGoneError) {}

std::string RowsAsText(Session& session, std::string_view sql) {
  std::string text;
  for (const ResultRow& row : session.Cn.Query(sql).rows) {
    for (const Value& value : row) {
      // The length keeps a separator inside a text from standing for one between two; a null has none.
      const std::string shown = value.IsNull() ? "" : value.ToText();
      text += value.IsNull() ? "-" : std::to_string(shown.size());
      text += ':';
      text += shown;
    }
    text += '\n';
  }
  return text;
}

WritingTurn::WritingTurn(Session& session, Watched watched, const std::optional<std::string>& shown)
    : session_(session), watched_(std::move(watched)) {
  session_.Cn.BeginTrans();
  try {
    if (shown) RequireWatched(*shown);
  } catch (...) {
    if (session_.Cn.InTransaction()) session_.Cn.RollbackTrans();
    throw;
  }
  session_.desk.turn = this;
}

WritingTurn::~WritingTurn() {
  if (ended_) return;
  try {
    End();
  } catch (const DatabaseError&) {
    // The failure that ends the turn is being told already.
  }
}

void WritingTurn::End() {
  ended_ = true;
  session_.desk.turn = nullptr;
  if (!session_.Cn.InTransaction())
    throw DatabaseError("The database took back what was being written. Nothing of it is stored.");
  session_.Cn.CommitTrans();
}

void WritingTurn::TakeBack() {
  ended_ = true;
  session_.desk.turn = nullptr;
  if (session_.Cn.InTransaction()) session_.Cn.RollbackTrans();
}

void WritingTurn::Pause() {
  atPause_ = watched_();
  End();
}

void WritingTurn::Resume() {
  session_.Cn.BeginTrans();
  session_.desk.turn = this;
  ended_ = false;
  RequireWatched(atPause_);
}

void WritingTurn::RequireWatched(const std::string& before) {
  if (watched_() != before) throw ChangedMeanwhile();
}

bool UnlessChanged(Session& session, const std::function<void()>& write,
                   const std::function<void()>& showAnew) {
  try {
    write();
    return true;
  } catch (const ChangedMeanwhile& changed) {
    session.desk.MsgBox({.text = changed.description(), .icon = Icon::Exclamation, .title = session.title});
  }
  showAnew();
  return false;
}

bool WriteInTurn(Session& session, const WritingTurn::Watched& watched,
                 const std::optional<std::string>& shown, const std::function<void()>& write,
                 const std::function<void()>& showAnew, TurnFailed failed) {
  return UnlessChanged(
      session,
      [&] {
        WritingTurn turn(session, watched, shown);
        try {
          write();
        } catch (...) {
          if (failed == TurnFailed::TakesAllBack) turn.TakeBack();
          throw;
        }
        turn.End();
      },
      showAnew);
}

}  // namespace ktl
