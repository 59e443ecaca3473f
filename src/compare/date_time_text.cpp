#include "compare/date_time_text.h"

#include <ctime>

namespace zol {

std::string PresentDateTimeText() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  char text[32];
  const std::size_t n = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  return std::string(text, n);
}

}  // namespace zol
