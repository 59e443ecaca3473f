#pragma once

// A whole simulated log in one call: the header for a project, the probes of a
// RunSimulator run, blocks closed and gaps made by a SimulatedLogger, and a
// trailer if wanted.

#include <cstdint>
#include <optional>
#include <string>

#include "session/records.h"
#include "support/pfl_writer.h"
#include "support/run_simulator.h"

namespace zol::testing {

struct SimulatedLogShape {
  RunShape run;
  LoggerShape logger;
  int level = 6;  // zlib compression level of the blocks
  std::string frequencyText = "357.9545";
  std::string lineNineOverhead = "0.0003";
  std::optional<std::string> trailerOverhead = "0.00025";  // nothing: no trailer
  std::string dateTime;  // header line 5; empty: the writer's default
};

struct SimulatedLogSize {
  std::int64_t probes = 0;
  std::int32_t blocks = 0;
  std::int64_t bytes = 0;
};

SimulatedLogSize WriteSimulatedLog(const std::string& path, const Project& project,
                                   const SimulatedLogShape& shape);

}  // namespace zol::testing
