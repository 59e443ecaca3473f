#pragma once

// The settings files of instrumented runs. The instrumenter keeps one per
// project ("zolOptions_" and the project's name, ".ini", in the project's
// folder) or per project group ("zol", the .vbg's file name, ".ini", beside
// it); its section "[Profiler Sessions]" lists the session files of the runs.

#include <string>
#include <string_view>
#include <vector>

namespace zol {

inline constexpr std::string_view kProfilerSessionsSection = "[Profiler Sessions]";

// The settings file of the project `vbpFile` whose "Name=" value is
// `projectName` (double quotes already trimmed).
std::string ProjectSettingsFile(const std::string& vbpFile, const std::string& projectName);

// The settings file of the project group `vbgFile`.
std::string GroupSettingsFile(const std::string& vbgFile);

// The session paths listed in the settings text, in file order. The section
// is found in any case; each of its lines is a first word, one blank, the
// path, "=" and further text, and the path is what stands between the first
// blank and the first "=" behind it. The section ends at an empty line, at a
// line beginning with "[", or at the end of the text. Lines without a blank,
// without an "=" behind it, or with nothing between the two name nothing.
std::vector<std::string> ProfilerSessionPaths(std::string_view iniText);

}  // namespace zol
