// zol_live_demo: an instrumented program's live run, played through
// libzolprobe. Each project given runs in one or more threads; every thread
// registers (in number order), measures its message cost, then plays a
// simulated run of its project (calls, returns and lines following the
// project's tables) while the other threads play theirs, and ends.
//
//   zol_live_demo [--socket PATH] [--vbg GROUP.vbg] [--probes N] [--seed N]
//                 [--calibration N] PROJECT.vbp[:THREADS] ...
//
// Without --socket the receiver is found through the settings file in
// $ZOLMARK_HOME. Thread k of project P is titled "P k"; its settings file for
// the run is "zolOptions_P.ini" beside the project.

#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/files.h"
#include "base/paths.h"
#include "base/temp_files.h"
#include "support/fixture_run.h"
#include "support/run_simulator.h"
#include "zolprobe.h"

namespace {

struct ThreadJob {
  int id = 0;
  std::string title;
  std::string vbp;
  std::string ini;
  const zol::Project* project = nullptr;
  std::uint64_t seed = 1;
};

struct Settings {
  std::string vbg;
  std::int64_t probes = 2000;
  std::uint64_t seed = 1;
  int calibration = 20;
};

// Registrations go in number order, so the receiver's rows follow the threads.
class Turnstile {
 public:
  void WaitFor(int id) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return next_ == id; });
  }
  void Done() {
    {
      std::lock_guard lock(mutex_);
      ++next_;
    }
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int next_ = 1;
};

bool Play(const ThreadJob& job, const Settings& settings, Turnstile& turn) {
  zolprobe_registration r{};
  r.profiler_id = job.id;
  r.title = job.title.c_str();
  r.vbp = job.vbp.c_str();
  r.vbg = settings.vbg.c_str();
  r.ini_file = job.ini.c_str();
  r.app_major = 1;
  r.app_minor = 0;
  r.app_rev = 7;
  r.lines_number = job.project->LinesNumber;
  r.procedures_number = job.project->ProceduresNumber;
  turn.WaitFor(job.id);
  const int registered = zolprobe_register_thread(&r);
  turn.Done();
  if (registered < 0) return false;
  if (zolprobe_calibrate(settings.calibration) != 0) return false;
  zol::testing::RunShape shape;
  shape.seed = job.seed;
  shape.probes = settings.probes;
  zol::testing::RunSimulator run(*job.project, shape);
  zol::pfl::LogRecord probe;
  while (run.Next(probe)) {
    int sent = 0;
    switch (probe.Action) {
      case zol::pfl::kLineRun:
        sent = zolprobe_line(probe.Origin);
        break;
      case zol::pfl::kProcedureIn:
        sent = zolprobe_proc_in(probe.Origin);
        break;
      case zol::pfl::kProcedureOut:
        sent = zolprobe_proc_out(probe.Origin);
        break;
      default:
        break;
    }
    if (sent != 0) return false;
  }
  return zolprobe_thread_end() == 0;
}

// The registration names files by their full paths.
std::string Absolute(const std::string& path) {
  return std::filesystem::absolute(path).string();
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  Settings settings;
  std::vector<std::pair<std::string, int>> projects;
  try {
    for (std::size_t i = 0; i < args.size(); ++i) {
      const bool hasValue = i + 1 < args.size();
      if (args[i] == "--socket" && hasValue) {
        zolprobe_set_socket(args[++i].c_str());
      } else if (args[i] == "--vbg" && hasValue) {
        settings.vbg = Absolute(args[++i]);
      } else if (args[i] == "--probes" && hasValue) {
        settings.probes = std::stoll(args[++i]);
      } else if (args[i] == "--seed" && hasValue) {
        settings.seed = std::stoull(args[++i]);
      } else if (args[i] == "--calibration" && hasValue) {
        settings.calibration = std::stoi(args[++i]);
      } else {
        const std::size_t colon = args[i].rfind(':');
        if (colon != std::string::npos && colon + 1 < args[i].size() &&
            args[i].find_first_not_of("0123456789", colon + 1) == std::string::npos) {
          projects.emplace_back(Absolute(args[i].substr(0, colon)),
                                std::stoi(args[i].substr(colon + 1)));
        } else {
          projects.emplace_back(Absolute(args[i]), 1);
        }
      }
    }
  } catch (const std::exception& e) {
    std::cerr << "zol_live_demo: bad argument: " << e.what() << "\n";
    return 2;
  }
  if (projects.empty()) {
    std::cerr << "usage: zol_live_demo [--socket PATH] [--vbg GROUP.vbg] [--probes N] [--seed N] "
                 "[--calibration N] PROJECT.vbp[:THREADS] ...\n";
    return 2;
  }

  zol::TempFileRegistry temp;
  std::vector<zol::Project> scanned;
  scanned.reserve(projects.size());
  for (const auto& [vbp, threads] : projects) {
    const std::string scratch = zol::GetTempFileName("", "zoldemo", false, temp) + ".d";
    scanned.push_back(zol::testing::ScanFixtureProject(vbp, scratch));
    zol::DeleteFolder(scratch);
    if (scanned.back().ModulesNumber == 0) {
      std::cerr << "zol_live_demo: " << vbp << ": no modules could be read\n";
      return 1;
    }
  }
  std::vector<ThreadJob> jobs;
  for (std::size_t p = 0; p < projects.size(); ++p) {
    const std::string& vbp = projects[p].first;
    const std::string body = zol::GetFileBody(vbp);
    for (int k = 1; k <= projects[p].second; ++k) {
      ThreadJob job;
      job.id = static_cast<int>(jobs.size()) + 1;
      job.title = body + " " + std::to_string(k);
      job.vbp = vbp;
      job.ini = zol::GetPath(vbp) + "/zolOptions_" + body + ".ini";
      job.project = &scanned[p];
      job.seed = settings.seed + static_cast<std::uint64_t>(job.id) * 1000;
      jobs.push_back(job);
    }
  }
  Turnstile turn;
  std::vector<int> ok(jobs.size(), 0);
  std::vector<std::thread> threads;
  for (std::size_t j = 0; j < jobs.size(); ++j) {
    threads.emplace_back([&, j] { ok[j] = Play(jobs[j], settings, turn) ? 1 : 0; });
  }
  for (std::thread& t : threads) t.join();
  int failed = 0;
  for (std::size_t j = 0; j < jobs.size(); ++j) {
    if (!ok[j]) {
      std::cerr << "zol_live_demo: thread " << jobs[j].id << " (" << jobs[j].title
                << ") could not reach the receiver\n";
      ++failed;
    }
  }
  return failed == 0 ? 0 : 1;
}
