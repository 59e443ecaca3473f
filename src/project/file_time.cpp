#include "project/file_time.h"

#include <chrono>
#include <filesystem>

namespace zol {

double FileModificationDays(const std::string& path) {
  std::error_code ec;
  const auto written = std::filesystem::last_write_time(path, ec);
  if (ec) return 0;
  const auto sys = std::chrono::file_clock::to_sys(written);
  const double seconds = std::chrono::duration<double>(sys.time_since_epoch()).count();
  // 25569 days lie between 30 December 1899 and 1 January 1970.
  return 25569.0 + seconds / 86400.0;
}

}  // namespace zol
