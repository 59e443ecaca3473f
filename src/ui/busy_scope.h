#pragma once

// Marks the window busy for the length of a scope: the wait cursor shows and
// user input other than the stop button and Esc is held off, so that the
// events a long operation lets run can't start a second one inside it.

#include "ui/main_window.h"

namespace zol {

class BusyScope {
 public:
  explicit BusyScope(MainWindow& window) : window_(window) { window_.setBusy(true); }
  ~BusyScope() { window_.setBusy(false); }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  MainWindow& window_;
};

}  // namespace zol
