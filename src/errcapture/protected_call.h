#pragma once

// An operation run under the error capture: an exception that leaves it goes
// to the handler, whose answer decides whether the operation runs again, is
// given up, or the program ends; a report first dumps the state the caller
// names.

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

#include "errcapture/err_handler.h"

namespace zol {

// Where the operation is, for the error text and the error key when no traced
// procedure says better.
struct CallPlace {
  std::string project;    // the program: "zolmark-profiler"
  std::string module;     // "MainWindow"
  std::string procedure;  // "openSessions"
  std::int32_t line = 0;
};

// What a report dumps besides the error: the operation's own values, its
// owner's (written under the module box) and the whole state (DumpWorkspace,
// which writes the global box). Each may be empty.
struct StateDump {
  std::function<void()> locals;
  std::function<void()> module;
  std::function<void()> globals;
};

enum class CallOutcome {
  Done,     // the operation ran to its end (maybe after retries)
  Skipped,  // it failed and the answer was to go on without it
  Abort,    // the answer was to end the program
};

// The number of a run-time error of the kind of `e`: 7 out of memory, 9 an
// index out of range, 75 a file that can't be read or written, 6 an
// overflow, 5 for any other.
std::int32_t ErrorNumberOf(const std::exception& e);

CallOutcome RunProtected(ErrHandler& handler, const CallPlace& place,
                         const std::function<void()>& operation, const StateDump& dump = {});

// "**** ErrObject Err ****" and the fields of the error, as a dump shows them.
void DumpError(const ErrorInfo& e);

}  // namespace zol
