#include "profile/session_value_check.h"

#include <cmath>

#include "base/vb_format.h"

namespace zol {

namespace {

// Collects the first fault met; later checks are skipped once there is one.
class ValueCheck {
 public:
  bool ok() const { return fault_.empty(); }
  const std::string& fault() const { return fault_; }

  void Count(const std::string& where, const char* field, std::int64_t value) {
    if (ok() && value < 0) Fail(where, field, std::to_string(value), "below 0");
  }
  void HitOfTotal(const std::string& where, const char* hitField, std::int64_t hit,
                  const char* totalField, std::int64_t total) {
    Count(where, hitField, hit);
    Count(where, totalField, total);
    if (ok() && hit > total) {
      Fail(where, hitField, std::to_string(hit),
           "above " + std::string(totalField) + " (" + std::to_string(total) + ")");
    }
  }
  void Time(const std::string& where, const char* field, double value) {
    if (ok() && !std::isfinite(value)) Fail(where, field, Number(value), "not a finite time");
  }
  void Fraction(const std::string& where, const char* field, double value) {
    if (ok() && !(value >= 0 && value <= 1)) {
      Fail(where, field, Number(value), "outside 0 to 1");
    }
  }
  void Index(const std::string& where, const char* field, std::int64_t value, std::int64_t last) {
    if (ok() && (value < 0 || value > last)) {
      Fail(where, field, std::to_string(value), "outside 0.." + std::to_string(last));
    }
  }

 private:
  static std::string Number(double value) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "infinite" : "-infinite";
    return CStr(value);
  }
  void Fail(const std::string& where, const char* field, const std::string& value,
            const std::string& why) {
    fault_ =
        where + (where.empty() || *field == '\0' ? "" : ".") + field + " is " + value + ", " + why;
  }

  std::string fault_;
};

std::string At(const char* record, std::int32_t i) {
  return std::string(record) + "(" + std::to_string(i) + ")";
}

void CheckModuleValue(ValueCheck& c, const std::string& where, const ModuleValue& v) {
  c.HitOfTotal(where, "HitLines", v.HitLines, "TotalLines", v.TotalLines);
  c.HitOfTotal(where, "HitProcedures", v.HitProcedures, "TotalProcedures", v.TotalProcedures);
  c.HitOfTotal(where, "CriticalHitLines", v.CriticalHitLines, "CriticalTotalLines",
               v.CriticalTotalLines);
  c.Fraction(where, "LineCoverage", v.LineCoverage);
  c.Fraction(where, "ProcedureCoverage", v.ProcedureCoverage);
  c.Time(where, "TotalTime", v.TotalTime);
  c.Fraction(where, "TotalTimingRank", v.TotalTimingRank);
  c.Fraction(where, "CoverageRank", v.CoverageRank);
}

}  // namespace

std::string ImpossibleSessionValue(const Session& s, std::int32_t lines, std::int32_t procedures,
                                   std::int32_t modules) {
  ValueCheck c;
  CheckModuleValue(c, "SessionValue", s.SessionValue);
  for (std::int32_t i = 1; c.ok() && i <= lines && i <= s.CodeLineValue.UBound(); ++i) {
    const CodeLineValue& v = s.CodeLineValue(i);
    const std::string where = At("CodeLineValue", i);
    c.Count(where, "Hits", v.Hits);
    c.Time(where, "TotalTime", v.TotalTime);
    c.Time(where, "AverageTime", v.AverageTime);
    c.Time(where, "ChildTotalTime", v.ChildTotalTime);
    c.Time(where, "ChildAverageTime", v.ChildAverageTime);
    c.Index(At("LineTotalTimeRank", i), "", s.LineTotalTimeRank(i), lines);
    c.Index(At("LineAverageTimeRank", i), "", s.LineAverageTimeRank(i), lines);
    c.Index(At("LineChildTotalTimeRank", i), "", s.LineChildTotalTimeRank(i), lines);
    c.Index(At("LineChildAverageTimeRank", i), "", s.LineChildAverageTimeRank(i), lines);
  }
  for (std::int32_t i = 1; c.ok() && i <= procedures && i <= s.ProcedureValue.UBound(); ++i) {
    const ProcedureValue& v = s.ProcedureValue(i);
    const std::string where = At("ProcedureValue", i);
    c.Count(where, "Hits", v.Hits);
    c.HitOfTotal(where, "HitLines", v.HitLines, "TotalLines", v.TotalLines);
    c.Fraction(where, "Coverage", v.Coverage);
    c.Time(where, "TotalTime", v.TotalTime);
    c.Time(where, "AverageTime", v.AverageTime);
    c.Time(where, "ChildTotalTime", v.ChildTotalTime);
    c.Time(where, "ChildAverageTime", v.ChildAverageTime);
    c.Fraction(where, "TotalTimingRank", v.TotalTimingRank);
    c.Fraction(where, "AverageTimingRank", v.AverageTimingRank);
    c.Fraction(where, "ChildTotalTimingRank", v.ChildTotalTimingRank);
    c.Fraction(where, "ChildAverageTimingRank", v.ChildAverageTimingRank);
    c.Fraction(where, "CoverageRank", v.CoverageRank);
  }
  for (std::int32_t i = 1; c.ok() && i <= modules && i <= s.ModuleValue.UBound(); ++i) {
    CheckModuleValue(c, At("ModuleValue", i), s.ModuleValue(i));
  }
  c.Index("", "FirstProc", s.FirstProc, procedures);
  c.Index("", "LastProc", s.LastProc, procedures);
  for (std::int32_t i = 1; c.ok() && i <= s.nFlowPair; ++i) {
    const FlowPair& f = s.FlowPair(i);
    const std::string where = At("FlowPair", i);
    c.Index(where, "FromProc", f.FromProc, procedures);
    c.Index(where, "ToProc", f.ToProc, procedures);
    c.Count(where, "Hits", f.Hits);
    c.Time(where, "ChildTime", f.ChildTime);
  }
  return c.fault();
}

}  // namespace zol
