#pragma once

// A large project of plain modules and a log of a run of it, for the
// benchmarks of big sessions. The project is written and instrumented once
// per folder; every call puts a fresh copy of the log in place, since a load
// turns the log into a session file.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

namespace zol::bench {

inline constexpr int kProceduresPerModule = 50;
inline constexpr int kStatementsPerProcedure = 20;

// Returns the path of the log under root/instrumented; `probes` events are
// simulated the first time. The project's modules hold `proceduresPerModule`
// procedures of kStatementsPerProcedure statements each.
std::string PrepareBigRunLog(const std::filesystem::path& root, int lines, std::int64_t probes,
                             int proceduresPerModule = kProceduresPerModule);

double Milliseconds(std::chrono::steady_clock::time_point since);

}  // namespace zol::bench
