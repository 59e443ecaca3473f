#include "profile/log_error.h"

#include <utility>

namespace zol {

LogError::LogError(std::string file, std::string fault)
    : std::runtime_error(file + ": " + fault), file_(std::move(file)), fault_(std::move(fault)) {}

std::string LogError::UserMessage() const {
  return "The session file:\n" + file_ +
         "\ncan not be read ! It was either corrupted or not generated properly.\n" + fault_;
}

LogReadCancelled::LogReadCancelled(const std::string& file)
    : std::runtime_error(file + ": reading stopped by the user") {}

}  // namespace zol
