#include "session/json_dump.h"

#include "session/record_fields.h"

namespace zol {

namespace {

// One JSON object per value record, its fields named and ordered as in the
// record's file image. The 16-bit booleans are written as true and false.
template <ValueRecord R>
void WriteValueRecord(JsonWriter& w, const R& v) {
  w.BeginObject();
  VisitFields(v, [&w]<typename F>(std::string_view name, const F& field) {
    if constexpr (std::is_same_v<F, VBBool>) {
      w.Field(name, static_cast<bool>(field));
    } else {
      w.Field(name, field);
    }
  });
  w.EndObject();
}

template <typename T, typename Fn>
void WriteArray(JsonWriter& w, std::string_view key, const Array1<T>& a, int count, Fn each) {
  w.Key(key).BeginArray();
  for (int i = 1; i <= count && i <= a.UBound(); ++i) each(w, a(i));
  w.EndArray();
}

void WriteRanks(JsonWriter& w, std::string_view key, const Array1<std::int32_t>& a) {
  WriteArray(w, key, a, a.UBound(), [](JsonWriter& jw, std::int32_t r) { jw.Int(r); });
}

}  // namespace

void WriteProjectJson(JsonWriter& w, const Project& p) {
  w.BeginObject()
      .Field("Name", p.Name)
      .Field("LinesNumber", p.LinesNumber)
      .Field("ProceduresNumber", p.ProceduresNumber)
      .Field("ModulesNumber", p.ModulesNumber)
      .Field("ContainsCritical", static_cast<bool>(p.ContainsCritical));
  WriteArray(w, "Module", p.Module, p.Module.UBound(), [](JsonWriter& jw, const Module& m) {
    jw.BeginObject().Field("FileName", m.FileName).Field("Name", m.Name).Field("Type", m.Type);
    jw.Key("RTFLine").BeginArray();
    for (const RTFLine& r : m.RTFLine) jw.BeginArray().Int(r.LineType).Int(r.RefersTo).EndArray();
    jw.EndArray().EndObject();
  });
  WriteArray(w, "Procedure", p.Procedure, p.Procedure.UBound(),
             [](JsonWriter& jw, const Procedure& pr) {
               jw.BeginObject()
                   .Field("BelongToModule", pr.BelongToModule)
                   .Field("Name", pr.Name)
                   .Field("Type", pr.Type)
                   .Field("Position", pr.Position)
                   .Field("IsProfiled", static_cast<bool>(pr.IsProfiled))
                   .Field("IsCovered", static_cast<bool>(pr.IsCovered))
                   .Field("IsCritical", static_cast<bool>(pr.IsCritical))
                   .Field("IsDead", static_cast<bool>(pr.IsDead))
                   .EndObject();
             });
  WriteArray(w, "CodeLine", p.CodeLine, p.CodeLine.UBound(), [](JsonWriter& jw, const CodeLine& c) {
    jw.BeginObject()
        .Field("BelongToProcedure", c.BelongToProcedure)
        .Field("Text", c.Text)
        .Field("Position", c.Position)
        .Field("IsProcedureExit", static_cast<bool>(c.IsProcedureExit))
        .EndObject();
  });
  // Only a project with modules that couldn't be read has the list: the dump
  // of a whole project stays the same for scripts that read it.
  if (!p.UnreadModules.empty()) {
    w.Key("UnreadModules").BeginArray();
    for (const UnreadModule& u : p.UnreadModules) {
      w.BeginObject().Field("FileName", u.FileName).Field("Fault", u.Fault).EndObject();
    }
    w.EndArray();
  }
  w.EndObject();
}

void WriteSessionJson(JsonWriter& w, const Session& s) {
  w.BeginObject()
      .Field("DateTime", s.DateTime)
      .Field("LinesNumber", s.LinesNumber)
      .Field("ProceduresNumber", s.ProceduresNumber)
      .Field("FirstProc", s.FirstProc)
      .Field("LastProc", s.LastProc)
      .Field("nFlowPair", s.nFlowPair);
  w.Key("SessionValue");
  WriteValueRecord(w, s.SessionValue);
  WriteArray(w, "CodeLineValue", s.CodeLineValue, s.CodeLineValue.UBound(),
             WriteValueRecord<CodeLineValue>);
  WriteArray(w, "ProcedureValue", s.ProcedureValue, s.ProcedureValue.UBound(),
             WriteValueRecord<ProcedureValue>);
  WriteArray(w, "ModuleValue", s.ModuleValue, s.ModuleValue.UBound(),
             WriteValueRecord<ModuleValue>);
  WriteRanks(w, "LineTotalTimeRank", s.LineTotalTimeRank);
  WriteRanks(w, "LineAverageTimeRank", s.LineAverageTimeRank);
  WriteRanks(w, "LineChildTotalTimeRank", s.LineChildTotalTimeRank);
  WriteRanks(w, "LineChildAverageTimeRank", s.LineChildAverageTimeRank);
  WriteArray(w, "FlowPair", s.FlowPair, s.nFlowPair, WriteValueRecord<FlowPair>);
  w.EndObject();
}

std::string ProjectToJson(const Project& p) {
  JsonWriter w;
  w.BeginObject().Key("Project");
  WriteProjectJson(w, p);
  w.EndObject();
  return w.Text();
}

std::string SessionToJson(const Project& p, const Session& s) {
  JsonWriter w;
  w.BeginObject().Key("Project");
  WriteProjectJson(w, p);
  w.Key("Session");
  WriteSessionJson(w, s);
  w.EndObject();
  return w.Text();
}

}  // namespace zol
