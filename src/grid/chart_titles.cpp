#include "grid/chart_titles.h"

namespace zol {

const char* ProcedureChartTitle(std::int32_t displayInfoType) {
  switch (displayInfoType) {
    case 1:
      return "Average Time spent in procedures (seconds)";
    case 2:
      return "Total Time spent in procedures & children (seconds)";
    case 3:
      return "Average Time spent in procedures & children (seconds)";
    default:
      return "Total Time spent in procedures (seconds)";
  }
}

const char* LineChartTitle(std::int32_t displayInfoType) {
  switch (displayInfoType) {
    case 1:
      return "Average Time spent in lines (seconds)";
    case 2:
      return "Total Time spent in lines & children (seconds)";
    case 3:
      return "Average Time spent in lines & children (seconds)";
    case 4:
      return "Line hits (1 line execution = 1 hit)";
    default:
      return "Total Time spent in lines (seconds)";
  }
}

}  // namespace zol
