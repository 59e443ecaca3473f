// zolprof flow FILES... [--module M] [--procedure P] [--measure M]
//   [--depth-left N] [--depth-right N] [--compare] (--json | -o chart.svg|chart.png)
// The call graph around a procedure, as the Flow tab draws it: one file is
// that session; several are their merged session, or with --compare the
// compared selection. --json prints the graph; -o draws the chart. The
// chart's spacing, font size, colours and module row come from the settings.
// Logs are replayed in memory; nothing is written but the chart asked for.

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/app_paths.h"
#include "base/cp1252.h"
#include "base/files.h"
#include "base/text.h"
#include "catalogue/project_tree.h"
#include "cli/command_registry.h"
#include "cli/measure_option.h"
#include "cli/output_target.h"
#include "cli/tick_sessions.h"
#include "flow/flow_chart.h"
#include "flow/flow_json.h"
#include "flow/flow_options.h"
#include "flow/svg_canvas.h"
#include "source_view/timing_colours.h"
#if ZOLPROF_FLOW_PNG
#include "ui/qt_flow_canvas.h"
#endif

namespace {

struct FlowArgs {
  std::vector<std::string> files;
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  zol::Measure measure = zol::Measure::Total;
  std::int32_t depthLeft = 0;
  std::int32_t depthRight = 0;
  bool compare = false;
  bool json = false;
  bool force = false;
  std::string output;
};

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         zol::TextEquals(text.substr(text.size() - tail.size()), tail);
}

// Ticks the files and selects the session, the merged or the compared node.
bool SelectSessions(zol::cli::TickedSessions& ticked, const FlowArgs& args) {
  if (!ticked.Tick(args.files)) return false;
  zol::ProjectTree& tree = ticked.tree();
  if (args.files.size() == 1) {
    tree.NodeClicked("S" + std::to_string(ticked.ws().nSession));
  } else {
    tree.NodeClicked(args.compare ? zol::kCompareKey : zol::kMergeKey);
  }
  return true;
}

bool CheckRange(const zol::Workspace& ws, const zol::Selection& sel) {
  if (sel.session.isCompared() || !ws.Project.InRange(sel.project)) return true;
  const zol::Project& p = ws.Project(sel.project);
  if (sel.module > p.ModulesNumber || sel.procedure > p.ProceduresNumber) {
    std::cerr << "zolprof: no module " << sel.module << " or procedure " << sel.procedure
              << " in the project " << p.ProjectFile << " (" << p.ModulesNumber << " modules, "
              << p.ProceduresNumber << " procedures)\n";
    return false;
  }
  return true;
}

int Run(const FlowArgs& args) {
  const bool svg = EndsWith(args.output, ".svg");
  const bool png = EndsWith(args.output, ".png");
  if (!args.json && !svg && !png) {
    std::cerr << "zolprof: flow needs --json or -o with a .svg or .png file\n";
    return 1;
  }
  if (args.compare && args.files.size() < 2) {
    std::cerr << "zolprof: --compare needs two session files or more\n";
    return 1;
  }
  if (!args.output.empty() &&
      !zol::cli::MayWriteOutput(args.output, args.files, zol::cli::kChartOutput, args.force)) {
    return 1;
  }

  zol::cli::TickedSessions ticked;
  zol::Workspace& ws = ticked.ws();
  const std::string ini = zol::GetIniFile(ws.appFolder);
  zol::LoadColors(ws, false, ini);
  zol::FlowOptions options = zol::LoadFlowOptions(ini);
  options.CallDepth = {args.depthLeft, args.depthRight};

  if (!SelectSessions(ticked, args)) return 1;
  zol::Selection sel = ticked.Selected(args.measure).at(args.module, args.procedure);
  sel.tab = zol::Tab::Flow;
  if (!CheckRange(ws, sel)) return 1;

  zol::FlowGraph graph;
  try {
    graph = zol::BuildFlowGraph(ws, sel, options.Depths());
  } catch (const zol::FlowDataError& e) {
    std::cerr << "zolprof: " << args.files.back() << ": " << e.what() << "\n";
    return 1;
  }
  if (args.json) std::cout << zol::FlowGraphJson(graph) << "\n";
  if (args.output.empty()) return 0;
  if (!graph.HasChart()) {
    const std::string why = graph.Message.empty() ? "the module has no calls" : graph.Message;
    std::cerr << "zolprof: nothing to draw (" << why << "); " << args.output << " not written\n";
    return 1;
  }
  if (svg) {
    zol::SvgCanvas canvas;
    zol::DrawChart(ws, graph, options, sel.measure, canvas);
    zol::WriteFileAtomic(args.output, canvas.Document());
    return 0;
  }
#if ZOLPROF_FLOW_PNG
  std::string error;
  if (!zol::WriteFlowPng(ws, graph, options, sel.measure, args.output, &error)) {
    std::cerr << "zolprof: " << args.output << ": " << error << "\n";
    return 1;
  }
  return 0;
#else
  std::cerr << "zolprof: this build draws no PNG (built without the desktop program); use .svg\n";
  return 1;
#endif
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<FlowArgs>();
  auto* cmd = app.add_subcommand(
      "flow", "The call graph around a procedure, as JSON or drawn as an SVG or PNG chart");
  cmd->add_option("FILE", args->files, "session files (.pfd, or .pfl replayed in memory)")
      ->required();
  cmd->add_option("--module", args->module, "module index, from 1 (0: the run's first procedure)")
      ->check(CLI::NonNegativeNumber);
  cmd->add_option("--procedure", args->procedure,
                  "procedure ID, from 1 (0: chosen from the module)")
      ->check(CLI::NonNegativeNumber);
  zol::cli::AddMeasureOption(*cmd, args->measure);
  cmd->add_option("--depth-left", args->depthLeft, "columns of callers, 1 to 5 (0: automatic)")
      ->check(CLI::Range(0, 5));
  cmd->add_option("--depth-right", args->depthRight, "columns of callees, 1 to 5 (0: automatic)")
      ->check(CLI::Range(0, 5));
  cmd->add_flag("--compare", args->compare, "the compared selection of several files");
  auto* json = cmd->add_flag("--json", args->json, "print the graph as JSON");
  cmd->add_option("-o,--output", args->output, "draw the chart into a .svg or .png file")
      ->excludes(json);
  cmd->add_flag("--force", args->force, zol::cli::kForceHelp);
  cmd->callback([args] { zol::cli::RunCommand([&] { return Run(*args); }); });
}

ZOLPROF_COMMAND("flow", Setup);

}  // namespace
