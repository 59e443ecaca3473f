// zolprof sessions PATH...: enters files as the session pane does (.pfl and
// .pfd files with the sessions their run lists, .vbp projects, .ini run
// settings, .vbg project groups) and prints the rows of the session list.

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "base/json_writer.h"
#include "base/text.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_list.h"
#include "cli/cli_workspace.h"
#include "cli/command_registry.h"

namespace {

struct SessionsArgs {
  std::vector<std::string> paths;
  bool load = false;
  bool json = false;
  bool yes = false;
  bool deleteUnreadable = false;
};

void EnterFile(zol::Workspace& ws, const std::string& path) {
  if (zol::TextEquals(zol::Right(path, 4), ".vbg")) {
    zol::AddSessionFromVBG(ws, path);
  } else {
    zol::AddSessionGroup(ws, path, false);
  }
}

void PrintText(const std::vector<zol::SessionListRow>& rows) {
  std::cout << "Key\tChecked";
  for (std::string_view header : zol::kSessionListHeaders) std::cout << "\t" << header;
  std::cout << "\n";
  for (const zol::SessionListRow& row : rows) {
    std::cout << row.Key << "\t" << (row.Checked ? "yes" : "no");
    for (const std::string& column : row.Columns) std::cout << "\t" << column;
    std::cout << "\n";
  }
}

void PrintJson(const std::vector<zol::SessionListRow>& rows) {
  zol::JsonWriter w;
  w.BeginArray();
  for (const zol::SessionListRow& row : rows) {
    w.BeginObject().Field("Key", row.Key).Field("Checked", row.Checked);
    for (std::size_t i = 0; i < row.Columns.size(); ++i) {
      w.Field(zol::kSessionListHeaders[i], row.Columns[i]);
    }
    w.EndObject();
  }
  w.EndArray();
  std::cout << w.Text() << "\n";
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<SessionsArgs>();
  auto* cmd = app.add_subcommand(
      "sessions",
      "Enter session files, projects, run settings or project groups as the session "
      "pane does, and print the rows of the session list");
  cmd->add_option("PATH", args->paths, ".pfl, .pfd, .vbp, .ini or .vbg files")->required();
  cmd->add_flag("--load", args->load,
                "tick every row: load its values (a log is replayed and stored as a .pfd)");
  cmd->add_flag("--json", args->json, "print the rows as JSON");
  cmd->add_flag("--yes", args->yes, "answer Yes to questions other than deleting a file");
  cmd->add_flag("--delete-unreadable", args->deleteUnreadable,
                "delete a session file that can't be read or loaded when asked to");
  cmd->callback([args] {
    zol::cli::CliWorkspace cli(
        std::make_shared<zol::cli::CliPrompter>(args->yes ? zol::Answer::Yes : zol::Answer::No));
    cli.prompter().SetDeleteUnreadable(args->deleteUnreadable);
    for (const std::string& path : args->paths) EnterFile(cli.ws(), path);
    if (args->load) {
      for (const zol::SessionListRow& row : zol::SessionListRows(cli.ws())) {
        if (const auto key = zol::ParseRowKey(row.Key)) zol::TickRow(cli.ws(), *key, true);
      }
    }
    const std::vector<zol::SessionListRow> rows = zol::SessionListRows(cli.ws());
    if (args->json) {
      PrintJson(rows);
    } else {
      PrintText(rows);
    }
    if (rows.empty()) {
      std::cerr << "zolprof: no session was entered\n";
      zol::cli::SetExitCode(1);
    }
  });
}

ZOLPROF_COMMAND("sessions", Setup);

}  // namespace
