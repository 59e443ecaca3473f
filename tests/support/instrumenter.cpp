#include "support/instrumenter.h"

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "base/files.h"
#include "base/path_resolver.h"
#include "support/instrument_module.h"

namespace zol::fixture {

namespace fs = std::filesystem;

namespace {

struct VbpEntry {
  std::int32_t type;
  std::string fileName;
};

// The module lines of a .vbp: "Key=path" or "Key=Name; path".
std::vector<VbpEntry> ModuleLines(const std::string& vbp) {
  static const std::vector<std::pair<std::string, std::int32_t>> kKeys{
      {"Module=", kModuleStandard},
      {"Class=", kModuleClass},
      {"Form=", kModuleForm},
      {"UserControl=", kModuleUserControl},
      {"PropertyPage=", kModulePropertyPage},
      {"UserDocument=", kModuleUserDocument},
      {"Designer=", kModuleDesigner}};
  std::vector<VbpEntry> entries;
  std::size_t pos = 0;
  while (pos < vbp.size()) {
    std::size_t end = vbp.find('\n', pos);
    if (end == std::string::npos) end = vbp.size();
    std::string line = vbp.substr(pos, end - pos);
    pos = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    for (const auto& [key, type] : kKeys) {
      if (line.rfind(key, 0) != 0) continue;
      std::string value = line.substr(key.size());
      const std::size_t semi = value.find(';');
      if (semi != std::string::npos) value = value.substr(semi + 1);
      while (!value.empty() && value.front() == ' ') value.erase(value.begin());
      entries.push_back({type, value});
    }
  }
  return entries;
}

std::string ProbeModule(const std::string& prefix, const std::string& eol) {
  const std::string name = prefix.substr(0, prefix.size() - 1);
  std::string t;
  for (const std::string& l :
       std::vector<std::string>{"Attribute VB_Name = \"" + name + "\"", "Option Explicit", "",
                                "' Probes of the profiler; the run-time library replaces them.",
                                "Public Sub zolProcIn(ByVal ID As Long)", "End Sub", "",
                                "Public Sub zolProcOut(ByVal ID As Long)", "End Sub", "",
                                "Public Sub zolExecuteLine(ByVal ID As Long)", "End Sub"}) {
    t += l + eol;
  }
  return t;
}

// The project text with the probe module's line behind the last module line.
std::string WithProbeModule(const std::string& vbp, const std::string& moduleLine,
                            const std::string& eol) {
  std::size_t insertAt = 0;
  std::size_t pos = 0;
  while (pos < vbp.size()) {
    std::size_t end = vbp.find('\n', pos);
    end = end == std::string::npos ? vbp.size() : end + 1;
    if (!ModuleLines(vbp.substr(pos, end - pos)).empty()) insertAt = end;
    pos = end;
  }
  std::string out = vbp.substr(0, insertAt);
  if (!out.empty() && out.back() != '\n') out += eol;
  return out + moduleLine + eol + vbp.substr(insertAt);
}

std::uint32_t Fnv1a(std::uint32_t seed, const std::string& text) {
  std::uint32_t h = 2166136261u ^ seed;
  for (unsigned char c : text) h = (h ^ c) * 16777619u;
  return h;
}

}  // namespace

PlanFn RandomPlan(std::uint32_t seed) {
  return [seed](const std::string& module, const std::string& name) {
    ProcedurePlan plan;
    const std::uint32_t roll = Fnv1a(seed, module + "." + name) % 100;
    if (roll < 10) {
      plan.excluded = true;
    } else if (roll < 20) {
      plan.critical = true;
    } else if (roll < 28) {
      plan.dead = true;
    } else if (roll < 36) {
      plan.timed = false;
    } else if (roll < 40) {
      plan.timed = false;
      plan.critical = true;
    } else if (roll < 43) {
      plan.dead = true;
      plan.critical = true;
    }
    return plan;
  };
}

PlanFn PlanFromText(const std::string& text) {
  auto plans = std::make_shared<std::map<std::string, ProcedurePlan>>();
  std::istringstream in(text);
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::istringstream words(line);
    std::string kind;
    std::string procedure;
    if (!(words >> kind) || kind.front() == '#') continue;
    std::string extra;
    if (!(words >> procedure) || (words >> extra) || procedure.find('.') == std::string::npos) {
      throw std::invalid_argument("plan line " + std::to_string(number) + ": \"" + line +
                                  "\" is not \"<kind> <Module>.<Procedure>\"");
    }
    ProcedurePlan& plan = (*plans)[procedure];
    if (kind == "critical") {
      plan.critical = true;
    } else if (kind == "dead") {
      plan.dead = true;
    } else if (kind == "untimed") {
      plan.timed = false;
    } else if (kind == "exclude") {
      plan.excluded = true;
    } else {
      throw std::invalid_argument("plan line " + std::to_string(number) + ": unknown kind \"" +
                                  kind + "\"");
    }
  }
  return [plans](const std::string& module, const std::string& name) {
    const auto it = plans->find(module + "." + name);
    return it == plans->end() ? ProcedurePlan{} : it->second;
  };
}

InstrumentTruth InstrumentProject(const std::string& originalVbp, const std::string& outputVbp,
                                  const InstrumentOptions& options) {
  const std::string vbp = LoadFile(originalVbp);
  if (vbp.empty()) throw std::runtime_error("Cannot read project \"" + originalVbp + "\"");
  const fs::path fromFolder = fs::path(originalVbp).parent_path();
  const fs::path toFolder = fs::path(outputVbp).parent_path();
  const bool crlf = vbp.find("\r\n") != std::string::npos;
  const std::string eol = crlf ? "\r\n" : "\n";

  InstrumentTruth truth;
  truth.ListOfProc = "\r";
  truth.ListOfModule = "\r";
  const std::vector<VbpEntry> entries = ModuleLines(vbp);
  truth.Modules.ReDim(static_cast<int>(entries.size()));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const VbpEntry& e = entries[i];
    const auto found = ResolveExistingFile(e.fileName, fromFolder.string());
    if (!found) {
      throw std::runtime_error("Module \"" + e.fileName + "\" of \"" + originalVbp +
                               "\" not found");
    }
    ModuleInput input{static_cast<std::int32_t>(i + 1), e.fileName, e.type, LoadFile(*found)};
    TruthModule& m = truth.Modules(input.index);
    m.FileName = e.fileName;
    m.Type = e.type;
    const std::string text = InstrumentModule(input, options, truth);
    // Beside the new project file as the original lies beside the old one.
    const fs::path target =
        (toFolder / fs::path(*found).lexically_relative(fromFolder)).lexically_normal();
    fs::create_directories(target.parent_path());
    WriteFile(target.string(), text);
  }

  const std::string probeName = options.AppPrefix.substr(0, options.AppPrefix.size() - 1);
  fs::create_directories(toFolder);
  WriteFile((toFolder / (probeName + ".bas")).string(), ProbeModule(options.AppPrefix, eol));
  WriteFile(outputVbp,
            WithProbeModule(vbp, "Module=" + probeName + "; " + probeName + ".bas", eol));
  return truth;
}

}  // namespace zol::fixture
