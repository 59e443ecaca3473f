// bench_load: how long loading a .pfl log takes against merely inflating its
// blocks with zlib, and how much memory the load needs.
//
// For logs of 1 and 10 million probes (and 100 million with --full), made once
// by the run simulator and kept in the data folder for later runs, it times:
//   zlib      reading the blocks and inflating each with zlib's uncompress
//             (wall clock, and processor time);
//   deflate   the same with libdeflate, as the fast replay's worker does;
//   load      the whole load of a session: the log's replay (fast replay), the
//             derived statistics and the writing of the .pfd file;
// and prints the ratio load / zlib (wall clock), the processor time of the
// load over all its threads, and the peak resident memory of the load (VmHWM,
// reset before the load). Each is timed --repeat times; the best time counts.
// On a busy machine the workers of the load compete for cores: compare the
// processor times too.
//
//   bench_load [--full] [--literal] [--repeat N] [--dir FOLDER]
//
// --literal also times the literal replay on the smallest log.

#include <sys/resource.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "profile/gather_info.h"
#include "profile/log_reader.h"
#include "profile/pfl_blocks.h"
#include "profile/pfl_format.h"
#include "profile/session_files.h"
#include "support/random_project.h"
#include "support/session_builder.h"
#include "support/simulated_log.h"

namespace {

using Clock = std::chrono::steady_clock;

struct options {
  bool full = false;
  bool literal = false;
  int repeat = 2;
  std::string dir = "bench-data";
};

options ParseOptions(int argc, char** argv) {
  options o;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--full") {
      o.full = true;
    } else if (arg == "--literal") {
      o.literal = true;
    } else if (arg == "--repeat" && i + 1 < argc) {
      o.repeat = std::max(1, std::atoi(argv[++i]));
    } else if (arg == "--dir" && i + 1 < argc) {
      o.dir = argv[++i];
    } else {
      std::fprintf(stderr, "usage: bench_load [--full] [--literal] [--repeat N] [--dir FOLDER]\n");
      std::exit(2);
    }
  }
  return o;
}

double Seconds(const std::function<void()>& work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Processor time of all threads of the process so far, in seconds.
double CpuSeconds() {
  rusage u{};
  getrusage(RUSAGE_SELF, &u);
  return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
         static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

double Best(int repeat, const std::function<void()>& work) {
  double best = 1e300;
  for (int i = 0; i < repeat; ++i) best = std::min(best, Seconds(work));
  return best;
}

// Peak resident memory of the process in MB, and its reset to the current size.
double PeakMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}
bool ResetPeak() {
  return static_cast<bool>(std::ofstream("/proc/self/clear_refs") << "5");
}

// The project every benchmark log runs over: 2,000 procedures, some 10,000 lines.
zol::testing::ProjectShape BenchProject() {
  zol::testing::ProjectShape p;
  p.seed = 2004;
  p.modules = 40;
  p.proceduresPerModule = 50;
  p.minLines = 2;
  p.maxLines = 12;
  return p;
}

// The log of `millions` million probes, made unless the folder holds it.
std::string EnsureLog(const options& o, const zol::Project& project, int millions) {
  const std::string path = o.dir + "/run_" + std::to_string(millions) + "M.pfl";
  const std::string done = path + ".complete";
  if (std::filesystem::exists(done)) return path;
  std::filesystem::create_directories(o.dir);
  zol::testing::SimulatedLogShape shape;
  shape.run.seed = static_cast<std::uint64_t>(millions);
  shape.run.probes = static_cast<std::int64_t>(millions) * 1'000'000;
  std::printf("making %s ...", path.c_str());
  std::fflush(stdout);
  zol::testing::SimulatedLogSize size;
  const double t = Seconds([&] { size = zol::testing::WriteSimulatedLog(path, project, shape); });
  std::printf(" %lld probes, %d blocks, %.0f MB in %.1f s\n", static_cast<long long>(size.probes),
              size.blocks, static_cast<double>(size.bytes) / 1e6, t);
  std::ofstream(done) << size.probes << "\n";
  return path;
}

// Reads every block of the log and inflates it with zlib, or with libdeflate
// as the fast replay's worker thread does, into one buffer.
int InflateBlocks(const std::string& path, bool withZlib) {
  std::ifstream in(path, std::ios::binary);
  std::string head(zol::pfl::kHeaderSearchBytes, '\0');
  in.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(in.gcount()));
  const auto header = zol::pfl::SplitHeader(head);
  const auto length = static_cast<std::int64_t>(std::filesystem::file_size(path));
  zol::BlockReader reader(path, path, length, header->DataStart);
  zol::CompressedBlock block;
  std::vector<unsigned char> out(zol::pfl::kInflateCapacity);
  zol::BlockInflater inflater;
  int blocks = 0;
  while (reader.Next(block)) {
    uLongf outLength = static_cast<uLongf>(out.size());
    const bool ok = withZlib ? uncompress(out.data(), &outLength,
                                          reinterpret_cast<const Bytef*>(block.Bytes.data()),
                                          static_cast<uLong>(block.Bytes.size())) == Z_OK
                             : inflater.Inflate(block.Bytes, out);
    if (!ok) {
      std::fprintf(stderr, "block %d does not inflate\n", block.Index);
      std::exit(1);
    }
    ++blocks;
  }
  return blocks;
}

struct LoadTimes {
  double replay = 0, gather = 0, save = 0;
  double cpu = 0;  // processor time of all threads during the load
  double Total() const { return replay + gather + save; }
};

LoadTimes Load(zol::Workspace& ws, std::int32_t cp, const std::string& path, zol::ReplayKind kind) {
  LoadTimes t;
  const std::int32_t cs = zol::testing::AddSessionForProject(ws, cp, path);
  zol::PrepareSessionArrays(ws, cs);
  const double cpuBefore = CpuSeconds();
  t.replay = Seconds([&] { zol::ReadProfileFile(ws, cs, kind); });
  t.gather = Seconds([&] { zol::GatherInfo(ws, cs); });
  t.save = Seconds([&] { zol::SaveSessionInfo(ws, cs); });
  t.cpu = CpuSeconds() - cpuBefore;
  ws.Session(cs) = zol::Session{};
  return t;
}

LoadTimes BestLoad(int repeat, zol::Workspace& ws, std::int32_t cp, const std::string& path,
                   zol::ReplayKind kind) {
  LoadTimes best;
  for (int i = 0; i < repeat; ++i) {
    const LoadTimes t = Load(ws, cp, path, kind);
    if (i == 0 || t.Total() < best.Total()) best = t;
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  const options o = ParseOptions(argc, argv);
  zol::Workspace ws;
  const std::int32_t cp = zol::testing::AddRandomProject(ws, BenchProject());
  std::vector<int> sizes = {1, 10};
  if (o.full) sizes.push_back(100);
  std::vector<std::string> logs;
  for (const int m : sizes) logs.push_back(EnsureLog(o, ws.Project(cp), m));

  std::printf("\n%9s %6s %7s | %7s %8s %9s | %7s %7s %7s %7s %8s | %6s %8s\n", "probes", "blocks",
              "log MB", "zlib s", "zlib cpu", "deflate s", "load s", "replay", "gather", "save",
              "load cpu", "ratio", "peak MB");
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    int blocks = 0;
    const double cpuBefore = CpuSeconds();
    const double zlib = Best(o.repeat, [&] { blocks = InflateBlocks(logs[i], true); });
    const double zlibCpu = (CpuSeconds() - cpuBefore) / o.repeat;
    const double deflate = Best(o.repeat, [&] { InflateBlocks(logs[i], false); });
    const bool resetOk = ResetPeak();
    const LoadTimes load = BestLoad(o.repeat, ws, cp, logs[i], zol::ReplayKind::Fast);
    const double peak = PeakMegabytes();
    std::printf(
        "%8dM %6d %7.1f | %7.3f %8.3f %9.3f | %7.3f %7.3f %7.3f %7.3f %8.3f | %6.2f %7.1f%s\n",
        sizes[i], blocks, static_cast<double>(std::filesystem::file_size(logs[i])) / 1e6, zlib,
        zlibCpu, deflate, load.Total(), load.replay, load.gather, load.save, load.cpu,
        load.Total() / zlib, peak, resetOk ? "" : "*");
  }
  if (o.literal) {
    const LoadTimes literal = BestLoad(1, ws, cp, logs[0], zol::ReplayKind::Literal);
    std::printf("\nliteral replay of the %dM log: %.3f s\n", sizes[0], literal.replay);
  }
  std::printf("\nratio = load / zlib; peak = VmHWM of the load%s\n",
              ResetPeak() ? "" : " (* not reset: whole process)");
  return 0;
}
