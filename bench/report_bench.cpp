// bench_report: how long a full report of a large session takes. A Visual
// Basic project of --lines probed statements (100,000 by default: modules of
// 50 procedures of 20 statements) is written, instrumented and run by the
// simulator; its log is loaded, and the report is written --repeat times:
// the HTML report (contents, summary with top rankings, one source page per
// module) and the CSV export of modules, procedures and lines. The best and
// the median time of each are printed, with the size of what was written.
//
//   bench_report [--lines N] [--repeat N] [--dir FOLDER]

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "big_run.h"
#include "catalogue/session_catalogue.h"
#include "project/project_info.h"
#include "report/report_driver.h"
#include "source_view/font_metrics.h"
#include "source_view/html_options.h"
#include "source_view/timing_colours.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

using zol::bench::kStatementsPerProcedure;
using zol::bench::Milliseconds;

struct options {
  int lines = 100000;
  int repeat = 3;
  std::string dir = "bench-data";
};

options ParseOptions(int argc, char** argv) {
  options o;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--lines" && i + 1 < argc) {
      o.lines = std::max(kStatementsPerProcedure, std::atoi(argv[++i]));
    } else if (arg == "--repeat" && i + 1 < argc) {
      o.repeat = std::max(1, std::atoi(argv[++i]));
    } else if (arg == "--dir" && i + 1 < argc) {
      o.dir = argv[++i];
    } else {
      std::fprintf(stderr, "usage: bench_report [--lines N] [--repeat N] [--dir FOLDER]\n");
      std::exit(2);
    }
  }
  return o;
}

// The project and its run, made once per size.
std::string PrepareLog(const options& o) {
  return zol::bench::PrepareBigRunLog(
      fs::absolute(fs::path(o.dir) / ("report-" + std::to_string(o.lines))), o.lines,
      std::max<std::int64_t>(2'000'000, o.lines * 20LL));
}

std::uintmax_t Bytes(const std::vector<std::string>& files) {
  std::uintmax_t total = 0;
  for (const std::string& f : files) total += fs::file_size(f);
  return total;
}

void Time(zol::Workspace& ws, const zol::ReportRequest& request, int repeat, const char* what) {
  std::vector<double> ms;
  zol::ReportOutcome last;
  for (int r = 0; r < repeat; ++r) {
    fs::remove_all(request.options.ReportFolder);
    const auto t0 = Clock::now();
    last = zol::CreateReport(ws, request);
    ms.push_back(Milliseconds(t0));
    if (!last.written) {
      std::fprintf(stderr, "the report was refused: %s\n", last.refusal.c_str());
      std::exit(1);
    }
  }
  std::sort(ms.begin(), ms.end());
  std::printf("  %-44s %8.0f %8.0f   %zu files, %.1f MB\n", what, ms.front(), ms[ms.size() / 2],
              last.files.size(), Bytes(last.files) / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
  const options o = ParseOptions(argc, argv);
  const std::string log = PrepareLog(o);
  const fs::path root = fs::path(log).parent_path().parent_path();

  zol::Workspace ws;
  ws.appFolder = (root / "app").string();
  fs::create_directories(ws.appFolder);
  zol::ResetRtfPath(ws);
  zol::LoadColors(ws, true, "");
  zol::LoadOptionsHtml(ws);
  zol::SetFontHTML(ws, zol::FixedFontMetrics(), ws.view.FontHTML, ws.view.FontSizeHTML);
  const std::int32_t cs = zol::AddSession(ws, log);
  const auto loadStart = Clock::now();
  if (cs == 0 || !zol::LoadSession(ws, cs)) {
    std::fprintf(stderr, "the run could not be loaded\n");
    return 1;
  }
  ws.Session(cs).Selected = true;
  const zol::Project& p = ws.Project(ws.Session(cs).Project);
  std::printf("session of %d lines, %d procedures, %d modules, loaded in %.0f ms\n", p.LinesNumber,
              p.ProceduresNumber, p.ModulesNumber, Milliseconds(loadStart));

  zol::ReportRequest request;
  request.options = zol::DefaultReportOptions(ws.appFolder);
  request.options.Target = zol::ReportTarget::UserFolder;
  request.options.ReportFolder = (root / "report").string();
  request.options.OpenReport = false;
  request.current = zol::SessionRef::single(cs);
  ws.view.OptionsHtml[zol::kReportPageOptions] = zol::DefaultReportPageOptions();

  std::printf("report of the whole session (best / median of %d, ms):\n", o.repeat);
  request.options.IncludeReportSummary = true;
  request.options.IncludeHTMLProject = true;
  Time(ws, request, o.repeat, "HTML: contents, summary, source pages");
  request.options.IncludeHTMLProject = false;
  Time(ws, request, o.repeat, "HTML: contents and summary");
  request.options.DoExport = true;
  Time(ws, request, o.repeat, "CSV: modules, procedures, lines in one file");
  request.options.ExportCreateSeparateFile = true;
  request.options.ExportWhat[zol::kExportSkipUnexecuted] = true;
  Time(ws, request, o.repeat, "CSV: three files, unexecuted lines left out");
  ws.tempFiles.DeleteTempFiles();
  return 0;
}
