#include "compare/run_diff.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <type_traits>
#include <utility>

#include "compare/merge_steps.h"

namespace zol {

namespace {

using merge_detail::KeyOf;
using merge_detail::ModuleKey;
using merge_detail::QualifiedProcedureKey;
using LineKey = std::pair<QualifiedProcedureKey, std::int32_t>;

double ValueOf(const ModuleValue& v, DiffQuantity q) {
  return q.measure == Measure::Coverage ? v.LineCoverage : v.TotalTime;
}

// Procedures and lines carry the same time fields; only procedures have a
// coverage of their own.
template <class Value>
double ValueOf(const Value& v, DiffQuantity q) {
  if (q.hits) return v.Hits;
  switch (q.measure) {
    case Measure::Total:
      return v.TotalTime;
    case Measure::Average:
      return v.AverageTime;
    case Measure::ChildTotal:
      return v.ChildTotalTime;
    case Measure::ChildAverage:
      return v.ChildAverageTime;
    case Measure::Coverage:
      if constexpr (std::is_same_v<Value, ProcedureValue>) return v.Coverage;
      return 0;
  }
  return 0;
}

// One side's rows by key, in the order of the side's own items.
template <typename Key>
struct Side {
  std::map<Key, std::size_t> index;
  std::vector<DiffRow> rows;  // only names, text and the value are filled
  std::vector<double> values;

  // A key met twice keeps its first item, as the merge does, or with `sum`
  // adds the value to it.
  void Add(Key key, DiffRow row, double value, bool sum = false) {
    auto [it, added] = index.try_emplace(std::move(key), rows.size());
    if (!added) {
      if (sum) values[it->second] += value;
      return;
    }
    rows.push_back(std::move(row));
    values.push_back(value);
  }
};

template <typename Key>
void Collect(const Workspace& ws, std::int32_t cs, DiffLevel level, DiffQuantity q,
             Side<Key>& side);

DiffRow Named(std::string module, std::string procedure = {}, std::int32_t line = 0,
              std::string text = {}) {
  DiffRow row;
  row.module = std::move(module);
  row.procedure = std::move(procedure);
  row.line = line;
  row.text = std::move(text);
  return row;
}

const std::string& ModuleName(const Project& p, std::int32_t m) {
  static const std::string none;
  return m >= 1 && m <= p.ModulesNumber ? p.Module(m).Name : none;
}

template <>
void Collect(const Workspace& ws, std::int32_t cs, DiffLevel, DiffQuantity q,
             Side<ModuleKey>& side) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);
  for (std::int32_t j = 1; j <= p.ModulesNumber && j <= s.ModuleValue.UBound(); ++j) {
    side.Add(KeyOf(p.Module(j)), Named(p.Module(j).Name), ValueOf(s.ModuleValue(j), q));
  }
}

template <>
void Collect(const Workspace& ws, std::int32_t cs, DiffLevel, DiffQuantity q,
             Side<QualifiedProcedureKey>& side) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);
  for (std::int32_t id = 1; id <= p.ProceduresNumber && id <= s.ProcedureValue.UBound(); ++id) {
    const Procedure& proc = p.Procedure(id);
    side.Add(KeyOf(p, proc), Named(ModuleName(p, proc.BelongToModule), proc.Name),
             ValueOf(s.ProcedureValue(id), q));
  }
}

// A line is known by its procedure and its place among that procedure's
// lines, so lines added or removed elsewhere, or comments and blank lines
// moving it down, leave the match alone. A merge of runs of different projects
// holds each project's lines as a block of its own: a procedure's lines met
// again in a later block count from 1 again and add to the same rows.
template <>
void Collect(const Workspace& ws, std::int32_t cs, DiffLevel, DiffQuantity q, Side<LineKey>& side) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);
  std::map<std::int32_t, std::int32_t> seen;  // procedure -> lines met so far
  std::int32_t previous = 0;
  for (std::int32_t id = 1; id <= p.LinesNumber && id <= s.CodeLineValue.UBound(); ++id) {
    const CodeLine& line = p.CodeLine(id);
    const std::int32_t proc = line.BelongToProcedure;
    if (proc < 1 || proc > p.ProceduresNumber) continue;
    if (proc != previous) seen[proc] = 0;
    previous = proc;
    const std::int32_t place = ++seen[proc];
    const Procedure& owner = p.Procedure(proc);
    side.Add(LineKey{KeyOf(p, owner), place},
             Named(ModuleName(p, owner.BelongToModule), owner.Name, place, line.Text),
             ValueOf(s.CodeLineValue(id), q), true);
  }
}

bool IsWorse(double difference, DiffQuantity q) {
  return q.measure == Measure::Coverage && !q.hits ? difference < 0 : difference > 0;
}

int Rank(DiffState s) {
  switch (s) {
    case DiffState::Worse:
      return 0;
    case DiffState::New:
      return 1;
    case DiffState::Better:
      return 2;
    case DiffState::Gone:
      return 3;
    case DiffState::Unchanged:
      return 4;
  }
  return 5;
}

template <typename Key>
std::vector<DiffRow> Match(const Workspace& ws, std::int32_t base, std::int32_t next,
                           const DiffOptions& o) {
  Side<Key> before;
  Side<Key> after;
  Collect(ws, base, o.level, o.quantity, before);
  Collect(ws, next, o.level, o.quantity, after);
  std::vector<DiffRow> rows;
  for (std::size_t i = 0; i < after.rows.size(); ++i) rows.push_back(after.rows[i]);
  std::vector<bool> matched(before.rows.size(), false);
  for (auto& [key, i] : after.index) {
    DiffRow& row = rows[i];
    row.next = after.values[i];
    auto it = before.index.find(key);
    if (it == before.index.end()) {
      row.difference = *row.next;
      row.state = DiffState::New;
      continue;
    }
    matched[it->second] = true;
    row.base = before.values[it->second];
    row.difference = *row.next - *row.base;
    if (*row.base != 0) row.ratio = *row.next / *row.base;
    row.state = DiffStateOf(*row.base, *row.next, o);
  }
  for (std::size_t i = 0; i < before.rows.size(); ++i) {
    if (matched[i]) continue;
    DiffRow row = before.rows[i];
    row.base = before.values[i];
    row.difference = -*row.base;
    row.state = DiffState::Gone;
    rows.push_back(std::move(row));
  }
  std::stable_sort(rows.begin(), rows.end(), [](const DiffRow& a, const DiffRow& b) {
    if (Rank(a.state) != Rank(b.state)) return Rank(a.state) < Rank(b.state);
    return std::fabs(a.difference) > std::fabs(b.difference);
  });
  return rows;
}

}  // namespace

DiffState DiffStateOf(double base, double next, const DiffOptions& o) {
  const double difference = next - base;
  const double size = std::fabs(difference);
  const bool time = !o.quantity.hits && IsTimeMeasure(o.quantity.measure);
  if (size == 0 || size <= o.relative * std::fabs(base) || (time && size <= o.absolute)) {
    return DiffState::Unchanged;
  }
  return IsWorse(difference, o.quantity) ? DiffState::Worse : DiffState::Better;
}

bool DiffAvailable(DiffLevel level, DiffQuantity q) {
  switch (level) {
    case DiffLevel::Module:
      return !q.hits && (q.measure == Measure::Total || q.measure == Measure::Coverage);
    case DiffLevel::Procedure:
      return true;
    case DiffLevel::Line:
      return q.hits || q.measure != Measure::Coverage;
  }
  return false;
}

std::vector<DiffRow> DiffRuns(const Workspace& ws, std::int32_t base, std::int32_t next,
                              const DiffOptions& options) {
  switch (options.level) {
    case DiffLevel::Module:
      return Match<ModuleKey>(ws, base, next, options);
    case DiffLevel::Procedure:
      return Match<QualifiedProcedureKey>(ws, base, next, options);
    case DiffLevel::Line:
      return Match<LineKey>(ws, base, next, options);
  }
  return {};
}

std::string_view StateName(DiffState state, DiffQuantity q) {
  const bool coverage = !q.hits && q.measure == Measure::Coverage;
  switch (state) {
    case DiffState::Unchanged:
      return "unchanged";
    case DiffState::New:
      return "new";
    case DiffState::Gone:
      return "gone";
    case DiffState::Worse:
      return q.hits ? "more" : coverage ? "lower" : "slower";
    case DiffState::Better:
      return q.hits ? "fewer" : coverage ? "higher" : "faster";
  }
  return "";
}

bool HasRegression(const std::vector<DiffRow>& rows) {
  return std::any_of(rows.begin(), rows.end(),
                     [](const DiffRow& r) { return r.state == DiffState::Worse; });
}

}  // namespace zol
