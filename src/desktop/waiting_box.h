#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <chrono>

namespace ktl {

// Tells that another workstation is writing, and offers to give up. No key gives up that may have been typed
// before the box was seen.
class WaitingBox final : public QDialog {
 public:
  // Over the window, which may go before the box does; null: alone on the screen.
  explicit WaitingBox(const QWidget* window);

  void Show(std::chrono::milliseconds waited, bool mayGiveUp);
  bool IsGivenUp() const { return givenUp_; }

  void reject() override {}

 private:
  QVBoxLayout layout_{this};
  QLabel words_;
  QLabel time_;
  QPushButton giveUp_;
  bool givenUp_ = false;
};

}  // namespace ktl
