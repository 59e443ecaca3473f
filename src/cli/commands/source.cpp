// zolprof source FILE --module N [--procedure P] -o page.htm: the coloured
// source page of a module, or of one procedure, as the source view shows it.
// Columns and colour scheme come from the settings unless given here.

#include <array>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/concat_string.h"
#include "base/files.h"
#include "base/text.h"
#include "base/vbarray.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/measure_option.h"
#include "cli/open_session.h"
#include "cli/output_target.h"
#include "source_view/font_metrics.h"
#include "source_view/html_options.h"
#include "source_view/html_writer.h"
#include "source_view/page_file.h"
#include "source_view/timing_colours.h"

namespace {

struct SourceArgs {
  std::string file;
  std::string output;
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  zol::Measure measure = zol::Measure::Total;
  std::string columns;
  std::string scheme;
  bool links = false;
  bool force = false;
  zol::cli::OpenOptions options;
};

const std::map<std::string, std::int32_t> kSchemes = {{"none", 1}, {"rank", 2}, {"value", 3},
                                                      {"1", 1},    {"2", 2},    {"3", 3}};
constexpr std::array<const char*, 5> kColumnWords = {"HT", "AT", "TT", "AC", "TC"};

// "HT,TT" or "none" as the five column flags; nothing for a word it doesn't know.
std::optional<std::array<bool, 5>> ParseColumns(const std::string& text) {
  std::array<bool, 5> flags{};
  if (zol::TextEquals(text, "none")) return flags;
  for (const std::string& word : zol::Split(text, ",")) {
    bool known = false;
    for (std::size_t k = 0; k < kColumnWords.size(); ++k) {
      if (zol::TextEquals(zol::Trim(word), kColumnWords[k])) flags[k] = known = true;
    }
    if (!known) return std::nullopt;
  }
  return flags;
}

bool ApplyOptions(zol::Workspace& ws, const SourceArgs& args, std::int32_t measure) {
  zol::HtmlPageOptions& o = ws.view.OptionsHtml[static_cast<std::size_t>(measure)];
  if (!args.columns.empty()) {
    const auto flags = ParseColumns(args.columns);
    if (!flags) {
      std::cerr << "zolprof: --columns takes HT, AT, TT, AC, TC separated by commas, or none\n";
      return false;
    }
    o.Column = *flags;
  }
  if (!args.scheme.empty()) o.ColorScheme = kSchemes.at(args.scheme);
  return true;
}

int Run(const SourceArgs& args) {
  if (!zol::cli::MayWriteOutput(args.output, {args.file}, zol::cli::kHtmlOutput, args.force)) {
    return 1;
  }
  zol::cli::CliWorkspace cli;
  zol::Workspace& ws = cli.ws();
  zol::LoadColors(ws, false);
  zol::LoadOptionsHtml(ws);
  const std::int32_t measure = zol::IndexOf(args.measure);
  if (!ApplyOptions(ws, args, measure)) return 1;
  zol::SetFontHTML(ws, zol::FixedFontMetrics(), ws.view.FontHTML, ws.view.FontSizeHTML);

  zol::cli::OpenOptions options = args.options;
  options.readOnly = true;
  const auto cs = zol::cli::OpenSession(ws, args.file, options);
  if (!cs) return 1;
  const zol::Project& project = ws.Project(ws.Session(*cs).Project);
  if (args.module < 1 || args.procedure < 0) {
    std::cerr << "zolprof: --module counts from 1 and --procedure from 0 (the whole module)\n";
    return 1;
  }
  if (args.module > project.ModulesNumber || args.procedure > project.ProceduresNumber) {
    std::cerr << "zolprof: " << args.file << ": module " << args.module << " or procedure "
              << args.procedure << " is beyond the project (" << project.ModulesNumber
              << " modules, " << project.ProceduresNumber << " procedures)\n";
    return 1;
  }
  if (project.ProceduresNumber == 0) {
    std::cerr << "zolprof: the project " << project.ProjectFile << " has no procedures to show\n";
    return 1;
  }

  std::int32_t module = args.module;
  std::int32_t procedure = args.procedure;
  zol::CConcatString cc;
  cc.SetValue(zol::BuildSourcePage(ws, *cs, module, procedure, args.measure, args.links));
  if (module != args.module || procedure != args.procedure) {
    std::cerr << "zolprof: module " << args.module << " or procedure " << args.procedure
              << " is beyond the project (" << project.ModulesNumber << " modules, "
              << project.ProceduresNumber << " procedures); procedure " << procedure
              << " of module " << module << " is shown\n";
  }
  zol::HtmlOutputTofile(cc, args.output);
  return 0;
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<SourceArgs>();
  auto* cmd = app.add_subcommand(
      "source", "Write the coloured source page of a module or procedure of a session");
  cmd->add_option("FILE", args->file, "the .pfd session file or .pfl log")->required();
  cmd->add_option("--module", args->module, "module index, from 1")->required();
  cmd->add_option("--procedure", args->procedure, "procedure ID, 0 for the whole module");
  zol::cli::AddMeasureOption(*cmd, args->measure);
  cmd->add_option("--columns", args->columns,
                  "numeric columns: HT,AT,TT,AC,TC (hits, average, total, child average, "
                  "child total) or none");
  cmd->add_option("--scheme", args->scheme, "colouring: none, rank or value")
      ->check(CLI::IsMember(kSchemes));
  cmd->add_flag("--links", args->links, "make every statement a link, as in the source view");
  cmd->add_option("--project", args->options.projectOverride,
                  "the instrumented .vbp to use instead of the one the file names");
  cmd->add_option("-o,--output", args->output, "the page to write")->required();
  cmd->add_flag("--force", args->force, zol::cli::kForceHelp);
  cmd->callback([args] { zol::cli::RunCommand([&] { return Run(*args); }, args->file); });
}

ZOLPROF_COMMAND("source", Setup);

}  // namespace
