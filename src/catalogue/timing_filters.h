#pragma once

// Timing filters. Instrumented programs spend time waiting in calls that say
// nothing about their speed (a message box, an input box). A filter is a
// text; every probed line whose source text contains it has its own time set
// to zero in the ticked sessions, and the statistics are derived again. Only
// the values in memory change: the session files keep the measured times, and
// reloading a session brings them back.

#include <optional>
#include <string>
#include <vector>

#include "catalogue/catalogue_change.h"
#include "session/workspace.h"

namespace zol {

// The filter list as the settings store it by default; "<vbCrLf>" stands for
// a line break in the settings file.
inline constexpr const char* kDefaultFiltersSetting = "MsgBox<vbCrLf>InputBox";

// The filter list of the settings file `iniFile` (key "Filters" of section
// "Profiler"), entries separated by CR LF.
std::string ReadFiltersSetting(const std::string& iniFile);

// The message id under which "don't show again" is remembered for the
// question of ApplyFilter (see MsgBoxDontShow).
inline constexpr const char* kApplyFiltersMessageId = "ApplyFilters";
inline constexpr const char* kApplyFiltersTitle = "Apply Filters ?";
extern const char* const kApplyFiltersText;

// The rewrite itself, for the sessions that are both Loaded and Selected,
// project by project: the own time of every line with hits whose text holds
// one of `filters` (case-sensitive, list order) becomes 0, each filter that
// changed a line of a session is recorded once in its ActiveFilters, and
// GatherInfo runs again for every such session of a project (whether a line
// matched or not). An empty filter is found in every line, as the text search
// finds the empty text anywhere. Child times aren't touched; the floor of
// GatherInfo leaves a filtered line at Hits x kMinimumTimePerHit.
void ApplyTimingFilters(Workspace& ws, const std::vector<std::string>& filters);

// The toolbar's "Apply Filters": checks that a session is ticked and that
// filters exist (telling the user otherwise), asks (unless the user asked
// never to see the question again), splits `filters` at CR LF, rewrites the
// values, then unticks and ticks every ticked row again so that merged data
// is rebuilt. Returns those ticks and the reset of the views, or nothing when
// the filters weren't applied.
std::optional<CatalogueChange> ApplyFilter(Workspace& ws, std::string filters);

}  // namespace zol
