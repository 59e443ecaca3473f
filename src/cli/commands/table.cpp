// zolprof table --tab TAB --measure M [--module N] [--procedure P]
//   [--sort COL[:asc|desc]] [--csv FILE | --txt FILE] [--chart] FILE...
// Prints a grid tab as aligned text, exactly the cells the grid shows (bars
// included): the table of one session, or, with several files, the compared
// table of the "COMPARE" selection. Logs are replayed in memory; no session
// file is written.

#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/app_paths.h"
#include "base/cp1252.h"
#include "base/files.h"
#include "base/text.h"
#include "base/vb_format.h"
#include "catalogue/project_tree.h"
#include "cli/command_registry.h"
#include "cli/measure_option.h"
#include "cli/output_target.h"
#include "cli/tick_sessions.h"
#include "grid/chart.h"
#include "grid/grid_builders.h"
#include "grid/grid_export.h"
#include "grid/grid_sort.h"
#include "grid/table_text.h"

namespace {

struct TableArgs {
  std::vector<std::string> files;
  std::string tab;
  zol::Measure measure = zol::Measure::Total;
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  std::string sort;
  std::string csv;
  std::string txt;
  bool chart = false;
  std::string chartType;
  std::string chartSort;
  std::optional<std::int32_t> chartMax;
  bool force = false;
};

const std::map<std::string, zol::Tab> kTabs = {{"projects", zol::Tab::Projects},
                                               {"modules", zol::Tab::Modules},
                                               {"procedures", zol::Tab::Procedures},
                                               {"lines", zol::Tab::Lines}};

// The key of the tree node that selects the module or procedure asked for.
std::optional<std::string> NodeKey(const zol::cli::TickedSessions& ticked, const TableArgs& args,
                                   const std::string& sessionPart) {
  std::int32_t module = args.module;
  const zol::Project& project = ticked.ws().Project(ticked.Selected().project);
  if (args.procedure != 0 && module == 0 && project.Procedure.InRange(args.procedure)) {
    module = project.Procedure(args.procedure).BelongToModule;
  }
  std::string key = sessionPart;
  if (module != 0) key += "M" + std::to_string(module);
  if (args.procedure != 0) key += "P" + std::to_string(args.procedure);
  if (!ticked.tree().Nodes().Find(key)) {
    std::cerr << "zolprof: no module " << args.module << " or procedure " << args.procedure
              << " in the session (" << project.ModulesNumber << " modules, "
              << project.ProceduresNumber << " procedures)\n";
    return std::nullopt;
  }
  return key;
}

// Ticks the sessions and selects what the table is to show, as a click in
// the tree would.
bool Select(zol::cli::TickedSessions& ticked, const TableArgs& args) {
  if (!ticked.Tick(args.files)) return false;
  zol::Workspace& ws = ticked.ws();
  zol::ProjectTree& tree = ticked.tree();
  std::string sessionPart;
  if (args.files.size() > 1) {
    if (!ticked.OpenMerged(zol::kCompareKey)) return false;
    sessionPart = "S-1";
  } else {
    sessionPart = "S" + std::to_string(ws.nSession);
    tree.NodeClicked(sessionPart);
  }
  if (args.module == 0 && args.procedure == 0) return true;
  const auto key = NodeKey(ticked, args, sessionPart);
  if (!key) return false;
  tree.NodeClicked(*key);
  return true;
}

// COL[:asc|desc]: a column by its header or its number. Without an order it
// is a click on the column's header after the build's own sort.
bool ApplySort(zol::Table& table, zol::SortMemory& memory, const std::string& sortText,
               bool compared) {
  std::string column = sortText;
  std::int32_t order = zol::kSortToggle;
  const int colon = zol::InStrRev(sortText, ":");
  if (colon > 0) {
    const std::string word = zol::Mid(sortText, colon + 1);
    if (zol::TextEquals(word, "asc") || zol::TextEquals(word, "desc")) {
      order = zol::TextEquals(word, "asc") ? zol::kSortAscending : zol::kSortDescending;
      column = zol::Left(sortText, colon - 1);
    }
  }
  int index = 0;
  for (int c = 1; c <= table.ColumnCount(); ++c) {
    if (zol::TextEquals(zol::Trim(table.ColumnAt(c).Header), zol::Trim(column))) index = c;
  }
  if (index == 0) {
    const auto number = zol::ParseNumberText(column);
    if (number && *number >= 1 && *number <= table.ColumnCount()) index = static_cast<int>(*number);
  }
  if (index == 0) {
    std::cerr << "zolprof: no column \"" << column << "\" in the table\n";
    return false;
  }
  zol::SortTable(table, memory, index, order, compared);
  return true;
}

zol::GraphOptions ChartOptions(const zol::Workspace& ws, const TableArgs& args) {
  zol::GraphOptions o = zol::LoadGraphOptions(zol::GetIniFile(ws.appFolder));
  if (!args.chartType.empty()) {
    o.GraphType = args.chartType == "pie" ? zol::kGraphTypePie : zol::kGraphTypeBar;
  }
  if (!args.chartSort.empty()) {
    o.GraphSortKey = args.chartSort == "name" ? zol::kGraphSortByName : zol::kGraphSortByValue;
  }
  if (args.chartMax) o.GraphMaxItems = *args.chartMax;
  return o;
}

void PrintChart(const zol::ChartDescription& chart) {
  std::cout << "\nChart: " << zol::Cp1252ToUtf8(chart.Title)
            << (chart.ChartType == zol::kChartTypePie2d ? " (pie)" : " (bar)")
            << (chart.ScaledToMicroseconds ? ", in microseconds" : "") << "\n";
  if (!chart.SeriesNames.empty()) {
    std::cout << "  series:";
    for (const std::string& s : chart.SeriesNames) std::cout << " " << zol::Cp1252ToUtf8(s);
    std::cout << "\n";
  }
  for (const zol::ChartRow& item : chart.Items) {
    std::cout << "  " << zol::Cp1252ToUtf8(item.Name) << ":";
    for (double v : item.Values) std::cout << " " << zol::CStr(v);
    std::cout << "\n";
  }
}

int Run(const TableArgs& args) {
  const std::string& exportFile = args.csv.empty() ? args.txt : args.csv;
  if (!exportFile.empty() &&
      !zol::cli::MayWriteOutput(exportFile, args.files, zol::cli::kTableExportOutput, args.force)) {
    return 1;
  }
  zol::cli::TickedSessions ticked;
  zol::Workspace& ws = ticked.ws();
  if (!Select(ticked, args)) return 1;

  zol::Selection sel = ticked.Selected(args.measure);
  sel.tab = kTabs.at(args.tab);
  zol::SortMemory sort;
  zol::GridBuild build = zol::ShowTab(ws, sel, sort);
  if (!args.sort.empty() && !ApplySort(build.Grid, sort, args.sort, sel.session.isCompared()))
    return 1;

  std::cout << zol::Cp1252ToUtf8(zol::TableAsText(build.Grid));
  if (args.chart) {
    zol::ChartArrays arrays;
    zol::ChartDescription chart;
    zol::UpdateChart(build, arrays, chart, ChartOptions(ws, args), sel.tab, sel.measure);
    PrintChart(chart);
  }
  const bool comma = !args.csv.empty();
  const std::string& file = comma ? args.csv : args.txt;
  if (!file.empty() && !zol::ExportTable(build.Grid, file, comma, ws.prompter())) return 1;
  return 0;
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<TableArgs>();
  auto* cmd = app.add_subcommand(
      "table", "Print a grid tab of a session, or the compared grid of several sessions");
  cmd->add_option("FILE", args->files, "session files (.pfd, or .pfl replayed in memory)")
      ->required();
  cmd->add_option("--tab", args->tab, "projects, modules, procedures or lines")
      ->required()
      ->check(CLI::IsMember(kTabs));
  zol::cli::AddMeasureOption(*cmd, args->measure);
  cmd->add_option("--module", args->module, "module index, from 1 (the tree's module node)")
      ->check(CLI::NonNegativeNumber);
  cmd->add_option("--procedure", args->procedure, "procedure ID, from 1")
      ->check(CLI::NonNegativeNumber);
  cmd->add_option("--sort", args->sort,
                  "sort on a column, by header or number, as a header click does; "
                  ":asc or :desc sets the order");
  auto* csv = cmd->add_option("--csv", args->csv, "also write the table as comma-separated text");
  cmd->add_option("--txt", args->txt, "also write the table as tab-separated text")->excludes(csv);
  cmd->add_flag("--force", args->force, zol::cli::kForceHelp);
  cmd->add_flag("--chart", args->chart, "also print the chart beside the grid");
  cmd->add_option("--chart-type", args->chartType, "bar or pie (default: the settings)")
      ->check(CLI::IsMember({"bar", "pie"}));
  cmd->add_option("--chart-sort", args->chartSort, "name or value (default: the settings)")
      ->check(CLI::IsMember({"name", "value"}));
  cmd->add_option("--chart-max", args->chartMax, "most items to plot, 0 for all")
      ->check(CLI::Range(0, zol::kGraphMaxItemsLimit));
  cmd->callback([args] { zol::cli::RunCommand([&] { return Run(*args); }); });
}

ZOLPROF_COMMAND("table", Setup);

}  // namespace
