#pragma once

// Live runs made by hand for the tests: generated instrumented projects, and
// stores filled as a receiver would fill them, each thread playing a
// simulated run of its project, their events interleaved.

#include <cstdint>
#include <string>
#include <vector>

#include "live/event_store.h"
#include "live/live_fixture.h"
#include "support/fixture_run.h"
#include "support/run_simulator.h"

namespace zol::testing {

struct LiveThreadPlan {
  const FixtureRun* project = nullptr;
  std::string title;
  std::string vbg;
  std::uint64_t seed = 1;
  std::int64_t probes = 300;
  std::int32_t linesNumber = -1;  // as the project when negative
};

inline std::string IniOf(const FixtureRun& run) {
  return run.vbp.substr(0, run.vbp.size() - 4) + "_zol.ini";
}

// Registers the threads, calibrates each, plays their runs round robin (a
// few probes of one thread, then the next) and ends them, through the
// store's handlers with a clock that moves a few ticks per read.
inline void PlayRun(EventStore& store, const std::vector<LiveThreadPlan>& plans) {
  std::vector<RunSimulator> runs;
  for (std::size_t i = 0; i < plans.size(); ++i) {
    const LiveThreadPlan& p = plans[i];
    Pds pds = MakePds(static_cast<std::int32_t>(i + 1), p.title, p.project->vbp, p.vbg,
                      IniOf(*p.project));
    pds.AppMajor = 1;
    pds.AppMinor = 2;
    pds.AppRev = 3;
    pds.LinesNumber = p.linesNumber < 0 ? p.project->project.LinesNumber : p.linesNumber;
    pds.ProceduresNumber = p.project->project.ProceduresNumber;
    store.Handle(RegisterMsg(pds));
    store.Handle(Msg(LiveMsg::CalibrationStart, 0, 5));
    for (int k = 0; k < 5; ++k) store.Handle(Msg(LiveMsg::CalibrationSample, pds.ProfilerID, 0));
    store.Handle(Msg(LiveMsg::CalibrationEnd, pds.ProfilerID, 5));
    RunShape shape;
    shape.seed = p.seed;
    shape.probes = p.probes;
    runs.emplace_back(p.project->project, shape);
  }
  std::vector<bool> done(plans.size(), false);
  std::size_t left = plans.size();
  while (left > 0) {
    for (std::size_t i = 0; i < runs.size(); ++i) {
      for (int k = 0; k < 3 && !done[i]; ++k) {
        pfl::LogRecord probe;
        if (!runs[i].Next(probe)) {
          done[i] = true;
          --left;
          break;
        }
        const auto id = static_cast<std::int32_t>(i + 1);
        if (probe.Action == pfl::kLineRun) {
          store.Handle(Msg(LiveMsg::Line, id, probe.Origin));
        } else if (probe.Action == pfl::kProcedureIn) {
          store.Handle(Msg(LiveMsg::ProcedureIn, id, probe.Origin));
        } else if (probe.Action == pfl::kProcedureOut) {
          store.Handle(Msg(LiveMsg::ProcedureOut, id, probe.Origin));
        }
      }
    }
  }
  for (std::size_t i = 0; i < plans.size(); ++i) {
    store.Handle(Msg(LiveMsg::ThreadEnd, static_cast<std::int32_t>(i + 1), 0));
  }
}

}  // namespace zol::testing
