#include "cli/measure_option.h"

#include "base/text.h"

namespace zol::cli {

CLI::Option* AddMeasureOption(CLI::App& cmd, Measure& measure, const std::string& what) {
  std::string help;
  for (std::int32_t i = 0; i <= IndexOf(Measure::Coverage); ++i) {
    help += std::string(i == 0                            ? ""
                        : i == IndexOf(Measure::Coverage) ? " or "
                                                          : ", ") +
            std::string(MeasureName(MeasureFromIndex(i)));
  }
  help += " (or 0-4)";
  const std::string names = "one of " + help;
  if (!what.empty()) help += " " + what;
  return cmd
      .add_option_function<std::string>(
          "--measure",
          [&measure](const std::string& text) {
            if (const auto m = ParseMeasure(text)) measure = *m;
          },
          help)
      ->check(CLI::Validator(
          [names](std::string& text) -> std::string {
            return ParseMeasure(text) ? ""
                                      : "unknown measure \"" + Abbreviated(text) + "\"; " + names;
          },
          "MEASURE"));
}

}  // namespace zol::cli
