#include "report/callgrind_export.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <vector>

namespace zol {

namespace {

// Names are written in the format's compressed form: "(id) name" the first
// time, "(id)" after, which keeps large profiles small.
class NameTable {
 public:
  std::string operator()(const std::string& name) {
    auto [it, added] = ids_.try_emplace(name, ids_.size() + 1);
    const std::string id = "(" + std::to_string(it->second) + ")";
    return added ? id + " " + name : id;
  }

 private:
  std::map<std::string, std::size_t> ids_;
};

// Names keep to one line.
std::string OneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\r', ' ');
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

struct ProcedureInfo {
  std::string file;
  std::string function;
  std::int32_t position = 0;
};

}  // namespace

std::int64_t CallgrindMicroseconds(double seconds) {
  return !(seconds > 0) ? 0 : std::llround(seconds * 1e6);
}

std::string CallgrindText(const Workspace& ws, std::int32_t cs) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);

  std::vector<ProcedureInfo> procedures(static_cast<std::size_t>(p.ProceduresNumber) + 1);
  for (std::int32_t id = 1; id <= p.ProceduresNumber; ++id) {
    const Procedure& proc = p.Procedure(id);
    ProcedureInfo& info = procedures[static_cast<std::size_t>(id)];
    const bool hasModule = proc.BelongToModule >= 1 && proc.BelongToModule <= p.ModulesNumber;
    const Module* m = hasModule ? &p.Module(proc.BelongToModule) : nullptr;
    info.file = OneLine(m ? (m->FileName.empty() ? m->Name : m->FileName) : "?");
    info.function = OneLine((m ? m->Name + "." : std::string()) + proc.Name);
    info.position = std::max(proc.Position, 0);
  }
  std::vector<std::vector<std::int32_t>> linesOf(procedures.size());
  for (std::int32_t id = 1; id <= p.LinesNumber && id <= s.CodeLineValue.UBound(); ++id) {
    const std::int32_t proc = p.CodeLine(id).BelongToProcedure;
    if (proc >= 1 && proc <= p.ProceduresNumber)
      linesOf[static_cast<std::size_t>(proc)].push_back(id);
  }
  std::vector<std::vector<std::int32_t>> callsFrom(procedures.size());
  for (std::int32_t k = 1; k <= s.nFlowPair && k <= s.FlowPair.UBound(); ++k) {
    const FlowPair& pair = s.FlowPair(k);
    if (pair.FromProc >= 1 && pair.FromProc <= p.ProceduresNumber && pair.ToProc >= 1 &&
        pair.ToProc <= p.ProceduresNumber) {
      callsFrom[static_cast<std::size_t>(pair.FromProc)].push_back(k);
    }
  }

  std::ostringstream body;
  std::int64_t totalTime = 0;
  std::int64_t totalHits = 0;
  NameTable files;
  NameTable functions;
  for (std::int32_t id = 1; id <= p.ProceduresNumber && id <= s.ProcedureValue.UBound(); ++id) {
    const ProcedureInfo& info = procedures[static_cast<std::size_t>(id)];
    const auto& lines = linesOf[static_cast<std::size_t>(id)];
    const auto& calls = callsFrom[static_cast<std::size_t>(id)];
    const ProcedureValue& value = s.ProcedureValue(id);
    if (lines.empty() && calls.empty() && value.Hits == 0 && value.TotalTime == 0) continue;
    body << "\nfl=" << files(info.file) << "\nfn=" << functions(info.function) << "\n";
    auto cost = [&](std::int32_t position, double seconds, std::int64_t hits) {
      const std::int64_t time = CallgrindMicroseconds(seconds);
      totalTime += time;
      totalHits += hits;
      body << position << " " << time << " " << hits << "\n";
    };
    if (lines.empty()) {
      // A procedure timed without line probes has its own time at its head.
      cost(info.position, value.TotalTime, value.Hits);
    }
    for (const std::int32_t line : lines) {
      const CodeLineValue& v = s.CodeLineValue(line);
      cost(std::max(p.CodeLine(line).Position, 0), v.TotalTime, v.Hits);
    }
    for (const std::int32_t k : calls) {
      const FlowPair& pair = s.FlowPair(k);
      const ProcedureInfo& callee = procedures[static_cast<std::size_t>(pair.ToProc)];
      body << "cfl=" << files(callee.file) << "\ncfn=" << functions(callee.function)
           << "\ncalls=" << std::max(pair.Hits, 0) << " " << callee.position << "\n"
           << info.position << " " << CallgrindMicroseconds(pair.ChildTime) << "\n";
    }
  }

  std::ostringstream out;
  out << "# callgrind format\nversion: 1\ncreator: zolmark-profiler\n"
      << "cmd: " << OneLine(s.SessionFile) << "\npositions: line\nevents: Time_us Hits\n"
      << "event: Time_us : own time (microseconds)\nevent: Hits : executions\n"
      << "summary: " << totalTime << " " << totalHits << "\n"
      << body.str();
  return out.str();
}

}  // namespace zol
