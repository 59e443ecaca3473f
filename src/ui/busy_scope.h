#pragma once

// Marks the window busy for the length of a scope: the wait cursor shows and
// user input other than the stop button and Esc is held off, so that the
// events a long operation lets run can't start a second one inside it.

#include "catalogue/session_pane.h"

namespace zol {

class BusyScope {
 public:
  explicit BusyScope(SessionPane& pane) : pane_(pane) { pane_.SetBusy(true); }
  ~BusyScope() { pane_.SetBusy(false); }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  SessionPane& pane_;
};

}  // namespace zol
