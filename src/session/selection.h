#pragma once

// What the user is looking at, as a value: which session (a typed reference,
// never a magic number), module, procedure, line, page and measure. Views and
// builders take a Selection and never change it; the window owns the one that
// is on screen.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zol {

class Workspace;

// The figure a view shows. The numeric values are the ones stored in the
// settings file and in navigation places.
enum class Measure : std::int32_t {
  Total = 0,
  Average = 1,
  ChildTotal = 2,
  ChildAverage = 3,
  Coverage = 4,
};

// The pages of the main window, numbered as on the tab strip and in the
// settings file.
enum class Tab : std::int32_t {
  Projects = 1,
  Modules = 2,
  Procedures = 3,
  Lines = 4,
  Source = 5,
  Flow = 6,
  Reports = 7,
};

Measure MeasureFromIndex(std::int32_t index);  // out of range -> Total
constexpr std::int32_t IndexOf(Measure m) {
  return static_cast<std::int32_t>(m);
}
constexpr std::int32_t IndexOf(Tab t) {
  return static_cast<std::int32_t>(t);
}
constexpr bool IsTimeMeasure(Measure m) {
  return m != Measure::Coverage;
}

// Command-line spelling: "total", "average", "childtotal", "childaverage",
// "coverage"; "child-total" and "child-average" are read too, and so are the
// digits 0 to 4.
std::optional<Measure> ParseMeasure(std::string_view text);
std::string_view MeasureName(Measure m);

// Which session a view is about.
class SessionRef {
 public:
  enum class Kind {
    None,            // nothing selected
    Single,          // one loaded session, Session(index)
    Merged,          // the merged ticked sessions, Session(0)
    Compared,        // the ticked sessions side by side
    ComparedGroups,  // the ticked groups side by side
    Group,           // the merged session of group `group`, Session(index)
  };

  static SessionRef none() { return {}; }
  static SessionRef single(std::int32_t session) { return {Kind::Single, session, -1}; }
  static SessionRef merged() { return {Kind::Merged, 0, -1}; }
  static SessionRef compared() { return {Kind::Compared, -1, -1}; }
  static SessionRef comparedGroups() { return {Kind::ComparedGroups, -1, -1}; }
  static SessionRef group(std::int32_t group, std::int32_t mergedSession) {
    return {Kind::Group, mergedSession, group};
  }

  Kind kind() const { return kind_; }
  bool isNone() const { return kind_ == Kind::None; }
  bool isCompared() const { return kind_ == Kind::Compared || kind_ == Kind::ComparedGroups; }
  bool isComparedGroups() const { return kind_ == Kind::ComparedGroups; }
  bool isMerged() const { return kind_ == Kind::Merged; }
  // The slot of Session that holds the values (-1 for compared selections).
  std::int32_t sessionIndex() const { return session_; }
  // The group, for Kind::Group; -1 otherwise.
  std::int32_t groupIndex() const { return group_; }

  friend bool operator==(const SessionRef&, const SessionRef&) = default;

 private:
  SessionRef() = default;
  SessionRef(Kind k, std::int32_t s, std::int32_t g) : kind_(k), session_(s), group_(g) {}
  Kind kind_ = Kind::None;
  std::int32_t session_ = -1;
  std::int32_t group_ = -1;
};

struct Selection {
  SessionRef session = SessionRef::none();
  // The project whose numbering module, procedure and line follow: the
  // session's own, slot 0 for a merge of several projects, and for a compared
  // member of merged groups the project it is compared under.
  std::int32_t project = 0;
  std::int32_t module = 0;     // 0: the whole session
  std::int32_t procedure = 0;  // 0: the whole module or session
  std::int32_t line = 0;
  Tab tab = Tab::Procedures;
  Measure measure = Measure::Total;

  bool coverage() const { return measure == Measure::Coverage; }
  // The same place with another module, procedure and line.
  Selection at(std::int32_t moduleId, std::int32_t procedureId, std::int32_t lineId = 0) const {
    Selection s = *this;
    s.module = moduleId;
    s.procedure = procedureId;
    s.line = lineId;
    return s;
  }

  friend bool operator==(const Selection&, const Selection&) = default;
};

// The tab and measure of the settings file, out-of-range values read as the
// Procedures tab and the total time.
Tab TabFromIndex(std::int32_t index);

}  // namespace zol
