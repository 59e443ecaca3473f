// zolprof filter FILES...: applies timing filters to sessions, as the
// toolbar's "Apply Filters" does to the ticked sessions, then prints them,
// dumps them as JSON, or saves the one filtered session. The input files are
// never changed: a log is replayed in memory.

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/app_paths.h"
#include "base/json_writer.h"
#include "base/text.h"
#include "catalogue/timing_filters.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"
#include "cli/open_session.h"
#include "cli/output_target.h"
#include "profile/session_files.h"
#include "session/json_dump.h"

namespace {

struct FilterArgs {
  std::vector<std::string> files;
  std::optional<std::string> filters;
  std::string output;
  bool json = false;
  bool yes = false;
  bool force = false;
  zol::cli::OpenOptions options;
};

std::string ActiveFiltersText(const zol::Session& s) {
  std::string text;
  for (std::int32_t i = 1; i <= s.nFilters; ++i) {
    text += (i > 1 ? ", " : "") + s.ActiveFilters(i);
  }
  return text.empty() ? "none" : text;
}

std::string SessionJson(const zol::Workspace& ws, std::int32_t cs) {
  const zol::Session& s = ws.Session(cs);
  zol::JsonWriter w;
  w.BeginObject().Key("Project");
  zol::WriteProjectJson(w, ws.Project(s.Project));
  w.Key("Session");
  zol::WriteSessionJson(w, s);
  w.Key("ActiveFilters").BeginArray();
  for (std::int32_t i = 1; i <= s.nFilters; ++i) w.String(s.ActiveFilters(i));
  w.EndArray().EndObject();
  return w.Text();
}

// Stores the filtered session under `output`, which must name a .pfd.
bool Save(zol::Workspace& ws, std::int32_t cs, const std::string& output) {
  if (!zol::TextEquals(zol::Right(output, 4), ".pfd")) {
    std::cerr << "zolprof: " << output << ": the output must be a .pfd file\n";
    return false;
  }
  zol::Session& s = ws.Session(cs);
  const std::string original = s.SessionFile;
  s.SessionFile = output;
  try {
    zol::SaveSessionInfo(ws, cs);
  } catch (const zol::SessionFileError& e) {
    s.SessionFile = original;
    std::cerr << "zolprof: " << e.what() << "\n";
    return false;
  }
  std::cout << "saved " << s.SessionFile << "\n";
  return true;
}

// Opens every file, read-only, with its row ticked. Nothing when one fails.
std::optional<std::vector<std::int32_t>> OpenAll(zol::Workspace& ws, const FilterArgs& args) {
  std::vector<std::int32_t> sessions;
  for (const std::string& file : args.files) {
    const auto cs = zol::cli::OpenSession(ws, file, args.options);
    if (!cs) return std::nullopt;
    ws.Session(*cs).Selected = true;
    sessions.push_back(*cs);
  }
  return sessions;
}

void Run(const FilterArgs& args) {
  auto prompter =
      std::make_shared<zol::cli::CliPrompter>(args.yes ? zol::Answer::Yes : zol::Answer::No);
  // Running this command is the request to filter: its confirmation is Yes.
  prompter->SetConfirmAnswer(zol::Answer::Yes);
  zol::cli::CliWorkspace cli(prompter);
  zol::Workspace& ws = cli.ws();
  if (!args.output.empty() && args.files.size() != 1) {
    std::cerr << "zolprof: -o saves one session: give exactly one file\n";
    zol::cli::SetExitCode(1);
    return;
  }
  if (!args.output.empty() &&
      !zol::cli::MayWriteOutput(args.output, args.files, zol::cli::kSessionOutput, args.force)) {
    zol::cli::SetExitCode(1);
    return;
  }
  const auto sessions = OpenAll(ws, args);
  if (!sessions) {
    zol::cli::SetExitCode(1);
    return;
  }
  const std::string filters = args.filters ? zol::Replace(*args.filters, ";", "\r\n")
                                           : zol::ReadFiltersSetting(zol::GetIniFile(ws.appFolder));
  if (!zol::ApplyFilter(ws, filters)) {
    zol::cli::SetExitCode(1);
    return;
  }
  if (!args.output.empty()) {
    if (!Save(ws, sessions->front(), args.output)) zol::cli::SetExitCode(1);
    return;
  }
  for (std::int32_t cs : *sessions) {
    if (args.json) {
      std::cout << SessionJson(ws, cs) << "\n";
    } else {
      std::cout << zol::cli::SessionSummary(ws, cs)
                << "; filters applied: " << ActiveFiltersText(ws.Session(cs)) << "\n";
    }
  }
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<FilterArgs>();
  auto* cmd =
      app.add_subcommand("filter",
                         "Set the own time of lines holding a filter text to nothing (as \"Apply "
                         "Filters\" does) and print, dump or save the sessions");
  cmd->add_option("FILES", args->files, "the .pfd session files or .pfl logs")->required();
  cmd->add_option("--filters", args->filters,
                  "filter texts separated by \";\" (default: the \"Filters\" setting)");
  cmd->add_option("-o,--output", args->output, "save the filtered session to this .pfd");
  cmd->add_flag("--json", args->json, "print each session with its values as JSON");
  cmd->add_option("--project", args->options.projectOverride,
                  "the instrumented .vbp to use instead of the one the files name");
  cmd->add_flag("--yes", args->yes,
                "answer Yes to other questions (never to deleting a file: inputs are kept)");
  cmd->add_flag("--force", args->force, zol::cli::kForceHelp);
  cmd->callback([args] {
    args->options.readOnly = true;
    Run(*args);
  });
}

ZOLPROF_COMMAND("filter", Setup);

}  // namespace
