// zolprof diff BASE NEW [--by module|procedure|line] [--measure M|hits]
//   [--threshold 10%] [--min-time 0.001] [--top N] [--format text|csv|json|markdown]
//   [--fail-on-regression]
// What changed between two runs, the regressions first. BASE and NEW are each
// a session file or several joined by commas, which are merged first. With
// --fail-on-regression the exit code is 3 when a row got worse beyond both
// thresholds, so a build pipeline can stop on it. Logs are replayed in memory.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/cp1252.h"
#include "base/json_writer.h"
#include "base/text.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"
#include "compare/global_sessions.h"
#include "compare/run_diff.h"

namespace {

constexpr int kExitRegression = 3;

struct DiffArgs {
  std::string base;
  std::string next;
  std::string by = "procedure";
  std::string measure = "total";
  std::string threshold = "10%";
  double minTime = 0.001;
  std::optional<std::size_t> top;
  std::string format = "text";
  bool failOnRegression = false;
};

// A side of the comparison: one file, or files joined by commas. A name that
// is itself a file is never split.
std::vector<std::string> FilesOf(const std::string& side) {
  std::error_code ec;
  if (std::filesystem::exists(side, ec)) return {side};
  std::vector<std::string> files;
  std::stringstream in(side);
  for (std::string part; std::getline(in, part, ',');) {
    if (!part.empty()) files.push_back(part);
  }
  return files;
}

// The session that holds a side's values: the file's own, or a merge of the
// side's files into a slot of its own (by ID for runs of one project, by name
// otherwise).
std::optional<std::int32_t> SideSession(zol::Workspace& ws, const std::vector<std::int32_t>& list) {
  if (list.size() == 1) return list.front();
  zol::Array1<std::int32_t> sessions;
  sessions.ReDim(static_cast<std::int32_t>(list.size()));
  bool homogeneous = true;
  for (std::size_t i = 0; i < list.size(); ++i) {
    sessions(static_cast<std::int32_t>(i) + 1) = list[i];
    homogeneous = homogeneous && ws.Session(list[i]).Project == ws.Session(list[0]).Project;
  }
  const std::int32_t slot = ws.Session.UBound() + 1;
  ws.SessionSlot(slot);
  zol::Array1<zol::Session> compared;
  try {
    zol::MakeMergedAndCompareSessions(ws, slot, compared, sessions, {.homogeneous = homogeneous});
  } catch (const zol::MergeError& e) {
    std::cerr << "zolprof: can't merge " << ws.Session(list[0]).SessionFile
              << " and the rest: " << e.what() << "\n";
    return std::nullopt;
  }
  return slot;
}

std::optional<double> ParseThreshold(std::string text) {
  if (!text.empty() && text.back() == '%') text.pop_back();
  try {
    std::size_t used = 0;
    const double percent = std::stod(text, &used);
    if (used != text.size() || percent < 0 || !std::isfinite(percent)) return std::nullopt;
    return percent / 100;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool IsTime(zol::DiffQuantity q) {
  return !q.hits && zol::IsTimeMeasure(q.measure);
}

// Times in milliseconds, coverage in percent, hits as counts.
std::string Number(double v, zol::DiffQuantity q, bool sign = false) {
  char buffer[64];
  const char* format = sign ? "%+.3f" : "%.3f";
  if (q.hits) format = sign ? "%+.0f" : "%.0f";
  if (!q.hits && q.measure == zol::Measure::Coverage) {
    format = sign ? "%+.1f" : "%.1f";
    v *= 100;
  } else if (IsTime(q)) {
    v *= 1000;
  }
  std::snprintf(buffer, sizeof buffer, format, v);
  return buffer;
}

std::string Unit(zol::DiffQuantity q) {
  if (q.hits) return "";
  return q.measure == zol::Measure::Coverage ? " (%)" : " (ms)";
}

std::string Ratio(const zol::DiffRow& r) {
  if (!r.ratio) return "-";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.2fx", *r.ratio);
  return buffer;
}

std::string ItemOf(const zol::DiffRow& r) {
  std::string item = r.module;
  if (!r.procedure.empty()) item += "." + r.procedure;
  if (r.line != 0) item += ":" + std::to_string(r.line);
  return zol::Cp1252ToUtf8(item);
}

std::vector<std::vector<std::string>> Cells(const std::vector<zol::DiffRow>& rows,
                                            zol::DiffQuantity q, bool lines) {
  std::vector<std::vector<std::string>> cells;
  for (const zol::DiffRow& r : rows) {
    std::vector<std::string> row = {
        std::string(zol::StateName(r.state, q)), ItemOf(r),
        r.base ? Number(*r.base, q) : "-",       r.next ? Number(*r.next, q) : "-",
        Number(r.difference, q, true),           Ratio(r)};
    if (lines) row.push_back(zol::Cp1252ToUtf8(zol::Trim(r.text)));
    cells.push_back(std::move(row));
  }
  return cells;
}

std::vector<std::string> Header(zol::DiffQuantity q, bool lines) {
  const std::string unit = Unit(q);
  std::vector<std::string> header = {
      "State", "Item", "Base" + unit, "New" + unit, "Difference" + unit, "Ratio"};
  if (lines) header.push_back("Text");
  return header;
}

std::string Summary(const std::vector<zol::DiffRow>& rows, zol::DiffQuantity q,
                    const zol::DiffOptions& o) {
  std::size_t counts[5] = {};
  for (const zol::DiffRow& r : rows) ++counts[static_cast<int>(r.state)];
  std::ostringstream out;
  out << counts[static_cast<int>(zol::DiffState::Worse)] << " "
      << zol::StateName(zol::DiffState::Worse, q) << ", "
      << counts[static_cast<int>(zol::DiffState::Better)] << " "
      << zol::StateName(zol::DiffState::Better, q) << ", "
      << counts[static_cast<int>(zol::DiffState::New)] << " new, "
      << counts[static_cast<int>(zol::DiffState::Gone)] << " gone, "
      << counts[static_cast<int>(zol::DiffState::Unchanged)] << " unchanged (noise: "
      << Number(o.relative * 100, zol::DiffQuantity{zol::Measure::Total, true}) << "%";
  if (IsTime(q)) out << " and " << Number(o.absolute, q) << " ms";
  out << ")";
  return out.str();
}

void PrintText(const std::vector<std::vector<std::string>>& cells,
               const std::vector<std::string>& header) {
  std::vector<std::size_t> width(header.size());
  auto measure = [&](const std::vector<std::string>& row) {
    for (std::size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], row[c].size());
  };
  measure(header);
  for (const auto& row : cells) measure(row);
  auto print = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t c = 0; c < row.size(); ++c) {
      const std::string pad(width[c] - row[c].size(), ' ');
      const bool number = c >= 2 && c <= 5;
      if (c != 0) line += "  ";
      line += number ? pad + row[c] : row[c] + (c + 1 == row.size() ? "" : pad);
    }
    std::cout << line << "\n";
  };
  print(header);
  for (const auto& row : cells) print(row);
}

std::string MarkdownCell(const std::string& text) {
  return text.empty() ? " " : zol::Replace(text, "|", "\\|");
}

void PrintMarkdown(const std::vector<std::vector<std::string>>& cells,
                   const std::vector<std::string>& header) {
  auto print = [](const std::vector<std::string>& row) {
    std::string line = "|";
    for (const std::string& cell : row) line += " " + MarkdownCell(cell) + " |";
    std::cout << line << "\n";
  };
  print(header);
  std::string rule = "|";
  for (std::size_t c = 0; c < header.size(); ++c) rule += c >= 2 && c <= 5 ? " ---: |" : " --- |";
  std::cout << rule << "\n";
  for (const auto& row : cells) print(row);
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  return "\"" + zol::Replace(text, "\"", "\"\"") + "\"";
}

// Raw values: times in seconds, coverage as a fraction.
void PrintCsv(const std::vector<zol::DiffRow>& rows, zol::DiffQuantity q) {
  std::cout << "state,module,procedure,line,text,base,new,difference,ratio\n";
  auto value = [](const std::optional<double>& v) {
    return v ? zol::JsonWriter().Double(*v).Text() : std::string();
  };
  for (const zol::DiffRow& r : rows) {
    std::cout << zol::StateName(r.state, q) << "," << CsvField(zol::Cp1252ToUtf8(r.module)) << ","
              << CsvField(zol::Cp1252ToUtf8(r.procedure)) << ","
              << (r.line != 0 ? std::to_string(r.line) : "") << ","
              << CsvField(zol::Cp1252ToUtf8(zol::Trim(r.text))) << "," << value(r.base) << ","
              << value(r.next) << "," << value(r.difference) << "," << value(r.ratio) << "\n";
  }
}

void PrintJson(const std::vector<zol::DiffRow>& rows, const DiffArgs& args,
               const zol::DiffOptions& o) {
  zol::JsonWriter json;
  json.BeginObject()
      .Field("base", args.base)
      .Field("new", args.next)
      .Field("by", args.by)
      .Field("measure", args.measure)
      .Field("threshold", o.relative)
      .Field("min_time", o.absolute)
      .Field("regression", zol::HasRegression(rows));
  json.Key("rows").BeginArray();
  auto optional = [&json](std::string_view key, const std::optional<double>& v) {
    json.Key(key);
    if (v) {
      json.Double(*v);
    } else {
      json.Null();
    }
  };
  for (const zol::DiffRow& r : rows) {
    json.BeginObject()
        .Field("state", std::string(zol::StateName(r.state, o.quantity)))
        .Field("module", r.module);
    if (!r.procedure.empty()) json.Field("procedure", r.procedure);
    if (r.line != 0) json.Field("line", r.line).Field("text", zol::Trim(r.text));
    optional("base", r.base);
    optional("new", r.next);
    json.Field("difference", r.difference);
    optional("ratio", r.ratio);
    json.EndObject();
  }
  json.EndArray().EndObject();
  std::cout << json.Text() << "\n";
}

int Run(const DiffArgs& args) {
  zol::DiffOptions o;
  if (args.by == "module") {
    o.level = zol::DiffLevel::Module;
  } else if (args.by == "line") {
    o.level = zol::DiffLevel::Line;
  } else if (args.by != "procedure") {
    std::cerr << "zolprof: --by " << args.by << ": use module, procedure or line\n";
    return 1;
  }
  if (args.measure == "hits") {
    o.quantity.hits = true;
  } else if (const auto m = zol::ParseMeasure(args.measure)) {
    o.quantity.measure = *m;
  } else {
    std::cerr << "zolprof: --measure " << args.measure
              << ": use total, average, childtotal, childaverage, coverage or hits\n";
    return 1;
  }
  if (!zol::DiffAvailable(o.level, o.quantity)) {
    std::cerr << "zolprof: --by " << args.by << " has no " << args.measure << " values\n";
    return 1;
  }
  const auto relative = ParseThreshold(args.threshold);
  if (!relative) {
    std::cerr << "zolprof: --threshold " << args.threshold << ": give a percentage such as 10%\n";
    return 1;
  }
  o.relative = *relative;
  if (!(args.minTime >= 0)) {
    std::cerr << "zolprof: --min-time must be zero or more seconds\n";
    return 1;
  }
  o.absolute = args.minTime;
  if (args.format != "text" && args.format != "csv" && args.format != "json" &&
      args.format != "markdown") {
    std::cerr << "zolprof: --format " << args.format << ": use text, csv, json or markdown\n";
    return 1;
  }

  zol::cli::CliWorkspace cli;
  zol::Workspace& ws = cli.ws();
  zol::cli::OpenOptions open;
  open.readOnly = true;
  std::map<std::string, std::int32_t> opened;
  std::vector<std::int32_t> sides[2];
  const std::string* names[2] = {&args.base, &args.next};
  for (int side = 0; side < 2; ++side) {
    for (const std::string& file : FilesOf(*names[side])) {
      // A file on both sides (a run against itself, or the new run also in a
      // merged base) is one session: a session file is entered once.
      std::error_code ec;
      const std::string key = std::filesystem::weakly_canonical(file, ec).string();
      auto it = opened.find(key);
      if (it == opened.end()) {
        const auto cs = zol::cli::OpenSession(ws, file, open);
        if (!cs) return 1;
        it = opened.emplace(key, *cs).first;
      }
      sides[side].push_back(it->second);
    }
    if (sides[side].empty()) {
      std::cerr << "zolprof: no session file in \"" << *names[side] << "\"\n";
      return 1;
    }
  }
  // Merged sides take slots above every opened session.
  const auto base = SideSession(ws, sides[0]);
  const auto next = base ? SideSession(ws, sides[1]) : std::nullopt;
  if (!base || !next) return 1;

  std::vector<zol::DiffRow> rows = zol::DiffRuns(ws, *base, *next, o);
  // Items idle in both runs say nothing.
  std::erase_if(rows, [](const zol::DiffRow& r) {
    return r.state == zol::DiffState::Unchanged && r.base.value_or(0) == 0 &&
           r.next.value_or(0) == 0;
  });
  const bool regression = zol::HasRegression(rows);
  const std::string summary = Summary(rows, o.quantity, o);
  if (args.top && rows.size() > *args.top) rows.resize(*args.top);

  const bool lines = o.level == zol::DiffLevel::Line;
  if (args.format == "json") {
    PrintJson(rows, args, o);
  } else if (args.format == "csv") {
    PrintCsv(rows, o.quantity);
  } else if (args.format == "markdown") {
    PrintMarkdown(Cells(rows, o.quantity, lines), Header(o.quantity, lines));
    std::cout << "\n" << summary << "\n";
  } else {
    PrintText(Cells(rows, o.quantity, lines), Header(o.quantity, lines));
    std::cout << "\n" << summary << "\n";
  }
  return args.failOnRegression && regression ? kExitRegression : 0;
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<DiffArgs>();
  auto* cmd = app.add_subcommand("diff", "What changed between two runs, regressions first");
  cmd->add_option("BASE", args->base,
                  "the earlier run: a .pfd or .pfl, or several joined by commas (merged)")
      ->required();
  cmd->add_option("NEW", args->next, "the later run, given the same way")->required();
  cmd->add_option("--by", args->by, "module, procedure (default) or line");
  cmd->add_option("--measure", args->measure,
                  "total (default), average, childtotal, childaverage, coverage or hits");
  cmd->add_option("--threshold", args->threshold,
                  "smallest change that counts, as a percentage of the base (default 10%)");
  cmd->add_option("--min-time", args->minTime,
                  "smallest change of a time that counts, in seconds (default 0.001)");
  cmd->add_option("--top", args->top, "show only the first N rows");
  cmd->add_option("--format", args->format, "text (default), csv, json or markdown");
  cmd->add_flag("--fail-on-regression", args->failOnRegression,
                "exit with code 3 when anything got worse beyond the thresholds");
  cmd->callback([args] { zol::cli::SetExitCode(Run(*args)); });
}

ZOLPROF_COMMAND("diff", Setup);

}  // namespace
