#pragma once

#include "frame/session.h"
#include "screen/controls.h"

namespace ktl {

// While a save or a delete runs: the hourglass, and afterwards a close button that can be pressed, however it
// ended.
class Working final {
 public:
  Working(Session& session, Button& close) : session_(session), close_(close) { session_.desk.SetBusy(true); }
  Working(const Working&) = delete;
  Working& operator=(const Working&) = delete;
  ~Working() {
    session_.desk.SetBusy(false);
    close_.enabled = true;
  }

 private:
  Session& session_;
  Button& close_;
};

}  // namespace ktl
