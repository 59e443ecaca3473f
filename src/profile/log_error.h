#pragma once

// Why a .pfl log could not be replayed. The reader refuses a damaged log as a
// whole (short header, bad block framing, a block that doesn't inflate, an ID
// beyond the project's counts, a counter frequency of zero) instead of filling
// the session with meaningless values; the loader shows UserMessage().

#include <stdexcept>
#include <string>

namespace zol {

class LogError : public std::runtime_error {
 public:
  // `file` is the log as the session names it; `fault` one sentence saying
  // what is wrong and where ("Block 3 at byte 1234 does not inflate.").
  LogError(std::string file, std::string fault);

  const std::string& file() const { return file_; }
  const std::string& fault() const { return fault_; }

  // The text for the user, lines joined by "\n":
  //   The session file:
  //   <file>
  //   can not be read ! It was either corrupted or not generated properly.
  //   <fault>
  std::string UserMessage() const;

 private:
  std::string file_;
  std::string fault_;
};

// The user asked to stop (Workspace::abort) while a log was being read. The
// session's values have been cleared; the log is left as it is.
class LogReadCancelled : public std::runtime_error {
 public:
  explicit LogReadCancelled(const std::string& file);
};

}  // namespace zol
