#include "project/scan_report.h"

#include <algorithm>
#include <vector>

#include "base/cp1252.h"

namespace zol {

namespace {

// Rows of cells printed under a header, each column as wide as its widest
// cell; the last column is not padded.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> header) { rows_.push_back(std::move(header)); }
  void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  // Columns whose cells are right-aligned (numbers).
  void AlignRight(std::size_t column) { right_.push_back(column); }

  std::string Text() const {
    std::vector<std::size_t> width(rows_.front().size(), 0);
    for (const auto& row : rows_) {
      for (std::size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], Width(row[c]));
    }
    std::string out;
    for (const auto& row : rows_) {
      std::string line = " ";
      for (std::size_t c = 0; c < row.size(); ++c) {
        const std::string pad(width[c] - Width(row[c]), ' ');
        const bool right = std::find(right_.begin(), right_.end(), c) != right_.end();
        const bool last = c + 1 == row.size();
        line += " " + (right ? pad + row[c] : row[c] + (last ? "" : pad));
      }
      while (!line.empty() && line.back() == ' ') line.pop_back();
      out += line + "\n";
    }
    return out;
  }

 private:
  // Characters, not bytes: cells are UTF-8.
  static std::size_t Width(const std::string& s) {
    return static_cast<std::size_t>(
        std::count_if(s.begin(), s.end(), [](char c) { return (c & 0xC0) != 0x80; }));
  }
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::size_t> right_;
};

// One line of text for a cell: the line breaks of a continued statement and
// the indentation behind them become one blank.
std::string Cell(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' || text[i] == '\n') {
      while (i + 1 < text.size() && (text[i + 1] == '\r' || text[i + 1] == '\n' ||
                                     text[i + 1] == ' ' || text[i + 1] == '\t')) {
        ++i;
      }
      out += ' ';
    } else {
      out += text[i];
    }
  }
  return Cp1252ToUtf8(out);
}

std::string ProcedureFlags(const Procedure& p) {
  std::string f;
  auto add = [&](bool on, const char* word) {
    if (on) f += (f.empty() ? "" : " ") + std::string(word);
  };
  add(p.IsProfiled, "profiled");
  add(p.IsCovered, "covered");
  add(p.IsCritical, "critical");
  add(p.IsDead, "dead");
  return f;
}

std::string ModuleName(const Project& p, std::int32_t m) {
  return m >= 1 && m <= p.Module.UBound() ? Cell(p.Module(m).Name) : "";
}

std::string ProcedureName(const Project& p, std::int32_t id) {
  if (id < 1 || id > p.Procedure.UBound()) return "";
  const Procedure& proc = p.Procedure(id);
  const std::string module = ModuleName(p, proc.BelongToModule);
  return (module.empty() ? "" : module + ".") + Cell(proc.Name);
}

}  // namespace

std::string ModuleTypeWord(std::int32_t type) {
  switch (type) {
    case kModuleStandard:
      return "Standard";
    case kModuleClass:
      return "Class";
    case kModuleForm:
      return "Form";
    case kModulePropertyPage:
      return "PropertyPage";
    case kModuleUserControl:
      return "UserControl";
    case kModuleUserDocument:
      return "UserDocument";
    case kModuleDesigner:
      return "Designer";
    default:
      return std::to_string(type);
  }
}

std::string ProcedureTypeWord(std::int32_t type) {
  switch (type) {
    case 1:
      return "Function";
    case 2:
      return "Sub";
    case 3:
      return "Property";
    default:
      return std::to_string(type);
  }
}

std::string FormatProjectScan(const Project& p) {
  std::string out = "Project " + Cell(p.Name) + " (" + Cell(p.ProjectFile) + ")\n";
  out += std::to_string(p.ModulesNumber) + " modules, " + std::to_string(p.ProceduresNumber) +
         " procedures, " + std::to_string(p.LinesNumber) + " probed lines" +
         (p.ContainsCritical ? ", some critical" : "") + "\n";

  TextTable modules({"#", "Type", "Name", "File"});
  modules.AlignRight(0);
  for (std::int32_t m = 1; m <= p.ModulesNumber && m <= p.Module.UBound(); ++m) {
    const Module& mod = p.Module(m);
    modules.Add({std::to_string(m), ModuleTypeWord(mod.Type), Cell(mod.Name), Cell(mod.FileName)});
  }
  out += "\nModules\n" + modules.Text();

  TextTable procedures({"ID", "Module", "Name", "Type", "Pos", "Flags"});
  procedures.AlignRight(0);
  procedures.AlignRight(4);
  for (std::int32_t id = 1; id <= p.ProceduresNumber && id <= p.Procedure.UBound(); ++id) {
    const Procedure& proc = p.Procedure(id);
    if (proc.BelongToModule == 0) {
      procedures.Add({std::to_string(id), "", "(not in the source)", "", "", ""});
      continue;
    }
    procedures.Add({std::to_string(id), ModuleName(p, proc.BelongToModule), Cell(proc.Name),
                    ProcedureTypeWord(proc.Type), std::to_string(proc.Position),
                    ProcedureFlags(proc)});
  }
  out += "\nProcedures\n" + procedures.Text();

  TextTable lines({"ID", "Procedure", "Pos", "Text"});
  lines.AlignRight(0);
  lines.AlignRight(2);
  for (std::int32_t id = 1; id <= p.LinesNumber && id <= p.CodeLine.UBound(); ++id) {
    const CodeLine& line = p.CodeLine(id);
    if (line.Position == 0) {
      lines.Add({std::to_string(id), "", "", "(not in the source)"});
      continue;
    }
    lines.Add({std::to_string(id), ProcedureName(p, line.BelongToProcedure),
               std::to_string(line.Position),
               Cell(line.Text) + (line.IsProcedureExit ? "   [exit]" : "")});
  }
  out += "\nLines\n" + lines.Text();
  return out;
}

}  // namespace zol
