#include "profile/log_reader.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/vb_format.h"
#include "profile/block_stream.h"
#include "profile/log_replay.h"
#include "profile/pfl_format.h"

namespace zol {
namespace {

// Up to `count` bytes of the file from `offset`; fewer at its end.
std::string ReadSlice(const std::string& nativePath, const std::string& file, std::int64_t offset,
                      std::int64_t count) {
  std::ifstream in(nativePath, std::ios::binary);
  if (!in) throw LogError(file, "The file can not be opened.");
  std::string bytes(static_cast<std::size_t>(count), '\0');
  in.seekg(offset);
  in.read(bytes.data(), count);
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return bytes;
}

std::int64_t LengthOf(const std::string& nativePath, const std::string& file) {
  std::error_code ec;
  const auto length = std::filesystem::file_size(nativePath, ec);
  if (ec) throw LogError(file, "The file can not be opened.");
  return static_cast<std::int64_t>(length);
}

double NumberOrThrow(std::string_view text, const std::string& file, const std::string& what) {
  const auto value = pfl::ParseLogNumber(text);
  if (!value) throw LogError(file, what + " is not a number: \"" + Abbreviated(text) + "\".");
  return *value;
}

// The cost of one probe from the trailer, or 0 when the log has none.
double TrailerOverhead(const std::string& nativePath, const std::string& file,
                       std::int64_t fileLength) {
  if (fileLength < pfl::kTrailerOffsetFromEnd) return 0;
  const std::string tail = ReadSlice(nativePath, file, fileLength - pfl::kTrailerOffsetFromEnd,
                                     static_cast<std::int64_t>(pfl::kTrailerChars));
  const auto text = pfl::TrailerNumberText(tail);
  return text ? NumberOrThrow(*text, file, "The probe cost of the trailer") : 0;
}

pfl::Header ReadHeader(const std::string& nativePath, const std::string& file,
                       std::int64_t fileLength) {
  const std::int64_t count =
      std::min<std::int64_t>(fileLength, static_cast<std::int64_t>(pfl::kHeaderSearchBytes));
  auto header = pfl::SplitHeader(ReadSlice(nativePath, file, 0, count));
  if (!header) throw LogError(file, "The header is short: it doesn't hold nine lines.");
  return *header;
}

// Shows the progress area for the read; returns the bar's maximum.
double StartProgress(Workspace& ws, const std::string& file, std::int64_t fileLength) {
  Prompter& p = ws.prompter();
  const double max = static_cast<double>(fileLength / 100000 + 1) * 1.25;
  std::string size = Format(static_cast<double>(fileLength), "### ### ### ### ###");
  size.erase(0, size.find_first_not_of(' '));
  p.SetProgressValue(0);
  p.SetProgressMax(static_cast<long>(RoundHalfEven(max)));
  p.SetProgressText("Reading profile data from " + GetFileName(file) + " (" + size + " bytes)...");
  p.ShowProgress(true);
  p.DoEvents();
  return max;
}

void BlockProgress(Workspace& ws, double max, std::int64_t filePos, std::int64_t fileLength) {
  const double value = max * static_cast<double>(filePos) / static_cast<double>(fileLength) / 1.25;
  ws.prompter().SetProgressValue(static_cast<long>(RoundHalfEven(value)));
  ws.prompter().DoEvents();
}

void CheckArraysFitProject(const Workspace& ws, const Session& s) {
  const Project& project = ws.Project(s.Project);
  if (project.Procedure.Count() < s.ProcedureValue.Count()) {
    throw std::invalid_argument("session " + s.SessionFile +
                                ": more procedure values than its project has procedures");
  }
}

// Raw sums in clock units become seconds, and each child time takes in the
// thing's own time.
void ConvertToSeconds(Session& s, double frequency) {
  for (auto& v : s.ProcedureValue) {
    v.ChildTotalTime += v.TotalTime;
    v.TotalTime /= frequency;
    v.ChildTotalTime /= frequency;
  }
  for (auto& v : s.CodeLineValue) {
    v.ChildTotalTime += v.TotalTime;
    v.TotalTime /= frequency;
    v.ChildTotalTime /= frequency;
  }
  for (std::int32_t i = 1; i <= s.nFlowPair; ++i) s.FlowPair(i).ChildTime /= frequency;
}

void ClearReplayResults(Session& s) {
  for (auto& v : s.CodeLineValue) v = CodeLineValue{};
  for (auto& v : s.ProcedureValue) v = ProcedureValue{};
  s.FlowPair.Erase();
  s.nFlowPair = 0;
  s.FirstProc = 0;
  s.LastProc = 0;
}

// PerformanceFrequency from line 8; TraceOverhead from line 9 unless the
// trailer gave a cost other than 0.
void SetClockUnits(Workspace& ws, const pfl::Header& header, const std::string& file) {
  const double frequency = NumberOrThrow(header.Lines[7], file, "The counter frequency on line 8");
  if (!(frequency > 0)) {
    throw LogError(file, "The counter frequency on line 8 is not above zero: \"" +
                             Abbreviated(header.Lines[7]) + "\".");
  }
  ws.PerformanceFrequency = frequency;
  if (ws.TraceOverhead == 0) {
    ws.TraceOverhead = NumberOrThrow(header.Lines[8], file, "The probe cost on line 9");
  }
}

// Hands the blocks to the replay in file order, letting events run between
// them.
void ReplayBlocks(Workspace& ws, std::int32_t cs, ReplayKind kind, const std::string& file,
                  std::int64_t fileLength, std::int64_t dataStart, double progressMax) {
  BlockReader reader(file, ToNativePath(file), fileLength, dataStart);
  const bool literal = kind == ReplayKind::Literal;
  auto blocks =
      literal ? MakeSerialZlibStream(std::move(reader)) : MakePipelinedStream(std::move(reader));
  const ReplaySetup setup{ws, cs, ws.TraceOverhead, file};
  auto replay = literal ? MakeLiteralReplay(setup) : MakeFastReplay(setup);

  InflatedBlock block;
  while (blocks->Next(block)) {
    BlockProgress(ws, progressMax, block.FilePos, fileLength);
    if (ws.abort) throw LogReadCancelled(file);
    replay->Block(block.Records.data(), block.Index,
                  block.FilePos > fileLength - pfl::kLastBlockMargin);
  }
  replay->Finish();
}

void ReplayLog(Workspace& ws, std::int32_t cs, ReplayKind kind) {
  Session& s = ws.Session(cs);
  CheckArraysFitProject(ws, s);
  const std::string file = s.SessionFile;
  const std::string path = ToNativePath(file);

  // A stop request of an earlier operation doesn't stop this one.
  ws.abort = false;
  const std::int64_t fileLength = LengthOf(path, file);
  ws.TraceOverhead = TrailerOverhead(path, file, fileLength);
  const double progressMax = StartProgress(ws, file, fileLength);
  const pfl::Header header = ReadHeader(path, file, fileLength);
  SetClockUnits(ws, header, file);
  ReplayBlocks(ws, cs, kind, file, fileLength, header.DataStart, progressMax);
  ConvertToSeconds(s, ws.PerformanceFrequency);
}

FlowPair& FindOrAddFlowPair(Session& s, std::int32_t FromProc, std::int32_t ToProc) {
  for (std::int32_t i = 1; i <= s.nFlowPair; ++i) {
    FlowPair& pair = s.FlowPair(i);
    if (pair.FromProc == FromProc && pair.ToProc == ToProc) return pair;
  }
  s.nFlowPair += 1;
  s.FlowPair.ReDimPreserve(s.nFlowPair);
  FlowPair& pair = s.FlowPair(s.nFlowPair);
  pair = FlowPair{};
  pair.FromProc = FromProc;
  pair.ToProc = ToProc;
  return pair;
}

}  // namespace

void PrepareSessionArrays(Workspace& ws, std::int32_t cs) {
  Session& s = ws.Session(cs);
  const Project& project = ws.Project(s.Project);
  s.ProcedureValue.ReDim(project.ProceduresNumber);
  if (project.LinesNumber != 0) {
    s.CodeLineValue.ReDim(project.LinesNumber);
  } else {
    s.CodeLineValue.Erase();
  }
  s.FlowPair.Erase();
  s.nFlowPair = 0;
  s.FirstProc = 0;
  s.LastProc = 0;
}

void ReadProfileFile(Workspace& ws, std::int32_t cs, ReplayKind kind) {
  try {
    ReplayLog(ws, cs, kind);
  } catch (...) {
    ClearReplayResults(ws.Session(cs));
    throw;
  }
}

void AddFlowHit(Workspace& ws, std::int32_t cs, std::int32_t FromProc, std::int32_t ToProc,
                std::int32_t hits) {
  FindOrAddFlowPair(ws.Session(cs), FromProc, ToProc).Hits += hits;
}

void AddFlowTime(Workspace& ws, std::int32_t cs, std::int32_t FromProc, std::int32_t ToProc,
                 double ttime) {
  FindOrAddFlowPair(ws.Session(cs), FromProc, ToProc).ChildTime += ttime;
}

}  // namespace zol
