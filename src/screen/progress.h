#pragma once

#include <chrono>
#include <string>

#include "screen/controls.h"

namespace ktl {

class Desk;
class Screen;

// Long work as a person watches it: picStatus with its bar, a line of words and a percentage. Hidden while
// nothing is under way. The screen is kept alive, but not at every step: steps can be many and short.
class Progress {
  Screen& screen_;  // the controls register with it

 public:
  Progress(Desk& desk, Screen& screen);

  Frame picStatus{screen_, "picStatus"};
  ProgressBar pbrStatus{screen_, "pbrStatus"};
  Label lblStatus{screen_, "lblStatus"};
  Label lblStatusPer{screen_, "lblStatusPer"};

  // The work from here to the end of its object, in so many steps: the hourglass is shown with it.
  class Work {
   public:
    Work(Progress& progress, int steps);
    ~Work();
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    // One step is done; the words stand until the next one.
    void Advance(std::string words);
    // Something on the way to the next step.
    void Say(std::string words);

   private:
    Progress& progress_;
  };

 private:
  Desk& desk_;
  std::chrono::steady_clock::time_point shownAt_;
};

}  // namespace ktl
