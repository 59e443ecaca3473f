#pragma once

// What the source tab decides before it draws: whether the page must be built
// again, whether the selection can be shown as source at all, and the title
// strip above the pages.

#include <cstdint>
#include <optional>
#include <string>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// The page last drawn; a new one is built only when one of these changed.
struct SourcePageKey {
  SessionRef session = SessionRef::none();
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  std::int32_t line = 0;
  Measure measure = Measure::Total;
  friend bool operator==(const SourcePageKey&, const SourcePageKey&) = default;
};

class SourcePageCache {
 public:
  // True (and remembers `key`) when the page differs from the last one drawn.
  bool NeedsReload(const SourcePageKey& key);
  // The next page is drawn whatever it is.
  void Forget() { last_.reset(); }

 private:
  std::optional<SourcePageKey> last_;
};

// The notice shown in place of code, lines separated by CR LF, when the
// selection has no single source: compared sessions, merged sessions of
// several projects, or a group's merged session. Nothing when it has one.
std::optional<std::string> SourceUnavailableText(const Workspace& ws, const SessionRef& session);

// One label of the title strip with its icon key.
struct TitleLabel {
  bool Visible = false;
  std::string Text;
  std::string Icon;
};

struct TitleStrip {
  TitleLabel Group;
  TitleLabel Session;
  TitleLabel Module;
  TitleLabel Procedure;
};

// The labels for a selection. Group: the group of a member session ("GROUP"),
// "Merged Sessions" ("MERGE") for the merged selection of groups, "Compared
// Sessions" ("COMPARE") for compared groups. Session: its name ("SESSION"),
// "Merged Sessions" ("MERGE"), "Compared Sessions" ("COMPARE") for a compared
// selection. Module and procedure of the selection's project, with the icons
// "TYPE" and "PROC" followed by their type.
TitleStrip UpdateTitle(const Workspace& ws, const Selection& sel);

}  // namespace zol
