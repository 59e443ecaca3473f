#pragma once

// Writing .pfl logs for tests and benchmarks, byte for byte as the logger of
// an instrumented program writes them: nine header lines with CR LF, blocks of
// 50,001 records (data records, zeros, the closing record last) compressed
// with zlib behind six hex digits of length, and an optional trailer.
//
// PflWriter puts down exactly what it is told, including damaged pieces
// (WriteRaw); SimulatedLogger plays the logger around a stream of probes:
// it closes a block when it is full, and the time it then spends writing
// shows as a gap in the clock values of all later probes.

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "profile/pfl_format.h"
#include "session/records.h"

namespace zol::testing {

struct PflHeaderText {
  std::string Version = "02";
  std::string GroupFile;
  std::string ProjectFile = "C:\\Work\\Demo\\Demo.vbp";
  std::string IniFile = "C:\\Work\\Demo\\zolOptions_Demo.ini";
  std::string DateTime = "12/05/2004 14:03:27";
  std::string LinesNumber = "0";
  std::string ProceduresNumber = "0";
  std::string PerformanceFrequency = "357.9545";  // counter ticks per second / 10000
  std::string TraceOverhead = "0.0003";           // in clock units

  // The counts and project file of `project`.
  static PflHeaderText For(const Project& project);
};

// The nine lines, each ended by CR LF.
std::string HeaderBytes(const PflHeaderText& header);

// "TraceOverhead=", `number` cut or padded with blanks to 11 characters, CR LF.
std::string TrailerLine(std::string_view number);

// Six upper-case hex digits of the payload's length, then the payload.
std::string FramedBlock(std::string_view payload);

// One zlib stream of `bytes` at compression `level` (zlib's 0 to 9).
std::string Compress(std::string_view bytes, int level);

class PflWriter {
 public:
  PflWriter(const std::string& path, const PflHeaderText& header, int level = 6);
  ~PflWriter();
  PflWriter(const PflWriter&) = delete;
  PflWriter& operator=(const PflWriter&) = delete;

  // A data record of the current block; a block holds at most 50,000.
  void AddRecord(const pfl::LogRecord& record);
  // Ends the current block with its closing record (action 0) at `closeTime`
  // in the last slot, compresses and writes it.
  void CloseBlock(std::int64_t closeTime);
  std::int32_t RecordsInBlock() const { return inBlock_; }
  // The zlib level of the blocks closed from now on.
  void SetLevel(int level) { level_ = level; }

  // Bytes put straight into the file (damaged blocks, stray text).
  void WriteRaw(std::string_view bytes);
  // Closes the file, with `trailer` (see TrailerLine) as its last bytes if given.
  void Finish(std::optional<std::string> trailer);

  std::int64_t BytesWritten() const { return written_; }
  std::int32_t BlocksWritten() const { return blocks_; }

 private:
  std::FILE* file_ = nullptr;
  std::string path_;
  int level_;
  std::vector<unsigned char> block_;
  std::int32_t inBlock_ = 0;
  std::int64_t written_ = 0;
  std::int32_t blocks_ = 0;
};

struct LoggerShape {
  std::int32_t recordsPerBlock = pfl::kDataRecordsPerBlock;
  std::int64_t closeTicks = 3;     // from the last probe to the closing record
  std::int64_t gapTicks = 25'000;  // writing a block out; later probes come that much later
};

class SimulatedLogger {
 public:
  SimulatedLogger(PflWriter& writer, const LoggerShape& shape);

  // A probe with the clock value the application saw.
  void Probe(const pfl::LogRecord& probe);
  // Closes the last block: its closing record marks the end of the run.
  void EndRun();

 private:
  void CloseBlock();

  PflWriter& writer_;
  LoggerShape shape_;
  std::int64_t shift_ = 0;  // writing gaps so far
  std::int64_t lastTime_ = 0;
};

}  // namespace zol::testing
