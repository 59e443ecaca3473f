// zolprof report FILES... [--scope current|all|all+merged] [--data coverage,time,child]
//   (--html [--summary] [--source] [--top N] |
//    --csv [--what modules,procedures,lines] [--skip-unexecuted] [--separate])
//   [--target session|subfolder|temp|DIR] [-o DIR]
// Writes the report of the Reports page for the sessions given (session files,
// logs replayed in memory, or group files), ticked as the session pane would
// tick them, and prints the files written, one a line. The options not given
// here come from the settings file, as in the desktop program.

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
#include "catalogue/project_tree.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/tree_keys.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"
#include "cli/tick_sessions.h"
#include "compare/global_sessions.h"
#include "profile/session_files.h"
#include "report/report_driver.h"
#include "report/report_options.h"
#include "source_view/font_metrics.h"
#include "source_view/html_options.h"
#include "source_view/timing_colours.h"

namespace {

struct ReportArgs {
  std::vector<std::string> files;
  std::string scope;
  std::string data;
  bool html = false;
  bool summary = false;
  bool source = false;
  std::optional<std::int32_t> top;
  bool csv = false;
  std::string what;
  bool skipUnexecuted = false;
  bool separate = false;
  std::string target;
  std::string output;
  std::string measure = "total";
};

const std::map<std::string, zol::ReportScope> kScopes = {
    {"current", zol::ReportScope::Current},
    {"all", zol::ReportScope::AllTicked},
    {"all+merged", zol::ReportScope::AllTickedAndMerged}};

// "a,b,c" as flags over `words`; nothing when a word isn't one of them.
template <std::size_t N>
std::optional<std::array<bool, N>> ParseWords(const std::string& text,
                                              const std::array<const char*, N>& words) {
  std::array<bool, N> flags{};
  for (const std::string& word : zol::Split(text, ",")) {
    bool known = false;
    for (std::size_t k = 0; k < N; ++k) {
      if (zol::TextEquals(zol::Trim(word), words[k])) flags[k] = known = true;
    }
    if (!known) return std::nullopt;
  }
  return flags;
}

// The command line's choices over the saved ones.
bool ApplyArgs(zol::ReportOptions& o, const ReportArgs& args) {
  if (!args.scope.empty()) o.Scope = kScopes.at(args.scope);
  if (!args.data.empty()) {
    const auto flags = ParseWords<3>(args.data, {"coverage", "time", "child"});
    if (!flags) {
      std::cerr << "zolprof: --data takes coverage, time and child, separated by commas\n";
      return false;
    }
    o.DataRequested = *flags;
  }
  if (args.csv) {
    o.DoExport = true;
    if (!args.what.empty()) {
      const auto flags = ParseWords<3>(args.what, {"modules", "procedures", "lines"});
      if (!flags) {
        std::cerr << "zolprof: --what takes modules, procedures and lines, separated by commas\n";
        return false;
      }
      for (std::size_t k = 0; k < 3; ++k) o.ExportWhat[k] = (*flags)[k];
    }
    o.ExportWhat[zol::kExportSkipUnexecuted] = args.skipUnexecuted;
    o.ExportCreateSeparateFile = args.separate;
  } else {
    o.DoExport = false;
    if (args.summary || args.source) {
      o.IncludeReportSummary = args.summary;
      o.IncludeHTMLProject = args.source;
    }
    if (args.top) o.TopItems = *args.top;
    o.ReporttoHtm = true;
  }
  std::string target = args.target;
  if (!args.output.empty()) {
    if (!target.empty() && target != args.output) {
      std::cerr << "zolprof: -o names the report's folder; give it or --target DIR, not both\n";
      return false;
    }
    target = args.output;
  }
  if (target == "session") {
    o.Target = zol::ReportTarget::SessionFolder;
  } else if (target == "subfolder") {
    o.Target = zol::ReportTarget::Subfolder;
  } else if (target == "temp") {
    o.Target = zol::ReportTarget::TempFolder;
  } else if (!target.empty()) {
    o.Target = zol::ReportTarget::UserFolder;
    o.ReportFolder = target;
  }
  return true;
}

int Run(const ReportArgs& args) {
  zol::cli::TickedSessions ticked;
  zol::Workspace& ws = ticked.ws();
  zol::LoadColors(ws, false);
  zol::LoadOptionsHtml(ws);
  zol::SetFontHTML(ws, zol::FixedFontMetrics(), ws.view.FontHTML, ws.view.FontSizeHTML);
  zol::ReportRequest request;
  request.options = zol::LoadReportOptions(ws, zol::GetIniFile(ws.appFolder));
  if (!ApplyArgs(request.options, args)) return 1;
  request.options.OpenReport = false;
  request.deleteTempReportOnExit = false;

  if (!ticked.Tick(args.files, {.groups = true})) return 1;
  // One file is the current session; several are their merged view.
  const std::vector<std::string>& keys = ticked.Keys();
  ticked.tree().NodeClicked(keys.size() == 1 ? keys.front() : std::string(zol::kMergeKey));
  request.current = ticked.Selected().session;
  request.measure = *zol::ParseMeasure(args.measure);

  const zol::ReportOutcome outcome = zol::CreateReport(ws, request);
  if (!outcome.written) return 1;  // the reason has been printed
  for (const std::string& file : outcome.files) std::cout << zol::Cp1252ToUtf8(file) << "\n";
  return 0;
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<ReportArgs>();
  auto* cmd = app.add_subcommand(
      "report", "Write an HTML report or CSV exports of sessions, as the Reports page does");
  cmd->add_option("FILE", args->files, "session files (.pfd, .pfl replayed in memory, groups)")
      ->required();
  cmd->add_option("--scope", args->scope,
                  "current (one file, or the merged view of several), all, or all+merged")
      ->check(CLI::IsMember(kScopes));
  cmd->add_option("--data", args->data, "data to report: coverage,time,child");
  auto* html = cmd->add_flag("--html", args->html, "an HTML report (the default)");
  auto* summary = cmd->add_flag("--summary", args->summary, "the session summary and top rankings");
  auto* source = cmd->add_flag("--source", args->source, "the source code pages");
  auto* top = cmd->add_option("--top", args->top, "items in the top rankings")
                  ->check(CLI::Range(zol::kTopItemsMin, zol::kTopItemsMax));
  auto* csv = cmd->add_flag("--csv", args->csv, "CSV exports instead of a report");
  auto* what = cmd->add_option("--what", args->what, "what to export: modules,procedures,lines");
  auto* skip = cmd->add_flag("--skip-unexecuted", args->skipUnexecuted,
                             "leave the lines without hits out of the line export");
  auto* separate = cmd->add_flag("--separate", args->separate, "one file per kind of export");
  cmd->add_option("--target", args->target,
                  "session (the session's folder), subfolder (a numbered folder in it), temp "
                  "(a numbered folder in the temp folder), or a folder");
  cmd->add_option("-o,--output", args->output, "the folder to write into (as --target DIR)");
  cmd->add_option("--measure", args->measure,
                  "the time that colours the source pages and ranks the top times: total, "
                  "average, childtotal or childaverage")
      ->check(CLI::IsMember({"total", "average", "childtotal", "childaverage"}));
  html->excludes(csv);
  for (auto* option : {summary, source, top}) option->excludes(csv);
  for (auto* option : {what, skip, separate}) option->excludes(html);
  cmd->callback([args] { zol::cli::RunCommand([&] { return Run(*args); }); });
}

ZOLPROF_COMMAND("report", Setup);

}  // namespace
