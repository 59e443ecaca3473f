#include "support/pfl_writer.h"

#include <zlib.h>

#include <cstring>
#include <stdexcept>

#include "base/paths.h"

namespace zol::testing {

PflHeaderText PflHeaderText::For(const Project& project) {
  PflHeaderText h;
  h.ProjectFile = project.ProjectFile;
  h.LinesNumber = std::to_string(project.LinesNumber);
  h.ProceduresNumber = std::to_string(project.ProceduresNumber);
  return h;
}

std::string HeaderBytes(const PflHeaderText& h) {
  std::string out;
  for (const std::string* line :
       {&h.Version, &h.GroupFile, &h.ProjectFile, &h.IniFile, &h.DateTime, &h.LinesNumber,
        &h.ProceduresNumber, &h.PerformanceFrequency, &h.TraceOverhead}) {
    out += *line;
    out += "\r\n";
  }
  return out;
}

std::string TrailerLine(std::string_view number) {
  std::string text(number.substr(0, 11));
  text.resize(11, ' ');
  return std::string(pfl::kTrailerTag) + text + "\r\n";
}

std::string FramedBlock(std::string_view payload) {
  char digits[8];
  std::snprintf(digits, sizeof digits, "%06X", static_cast<unsigned>(payload.size()));
  return std::string(digits) + std::string(payload);
}

std::string Compress(std::string_view bytes, int level) {
  uLongf length = compressBound(static_cast<uLong>(bytes.size()));
  std::string out(length, '\0');
  if (compress2(reinterpret_cast<Bytef*>(out.data()), &length,
                reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()),
                level) != Z_OK) {
    throw std::runtime_error("zlib could not compress a block");
  }
  out.resize(length);
  return out;
}

PflWriter::PflWriter(const std::string& path, const PflHeaderText& header, int level)
    : path_(path), level_(level), block_(pfl::kBlockBytes, 0) {
  file_ = std::fopen(ToNativePath(path).c_str(), "wb");
  if (file_ == nullptr) throw std::runtime_error("can not write " + path);
  WriteRaw(HeaderBytes(header));
}

PflWriter::~PflWriter() {
  if (file_ != nullptr) std::fclose(file_);
}

void PflWriter::AddRecord(const pfl::LogRecord& record) {
  if (inBlock_ >= pfl::kDataRecordsPerBlock) throw std::logic_error("block already full");
  pfl::EncodeRecord(record, block_.data() + static_cast<std::size_t>(inBlock_) * pfl::kRecordBytes);
  ++inBlock_;
}

void PflWriter::CloseBlock(std::int64_t closeTime) {
  pfl::EncodeRecord(pfl::LogRecord{closeTime, pfl::kBlockClosed, 0},
                    block_.data() + pfl::kDataRecordsPerBlock * pfl::kRecordBytes);
  const std::string_view bytes(reinterpret_cast<const char*>(block_.data()), block_.size());
  WriteRaw(FramedBlock(Compress(bytes, level_)));
  // Only the records written need clearing: the rest is still zero.
  std::memset(block_.data(), 0, static_cast<std::size_t>(inBlock_) * pfl::kRecordBytes);
  inBlock_ = 0;
  ++blocks_;
}

void PflWriter::WriteRaw(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) {
    throw std::runtime_error("can not write " + path_);
  }
  written_ += static_cast<std::int64_t>(bytes.size());
}

void PflWriter::Finish(std::optional<std::string> trailer) {
  if (trailer) WriteRaw(*trailer);
  if (std::fclose(file_) != 0) throw std::runtime_error("can not write " + path_);
  file_ = nullptr;
}

SimulatedLogger::SimulatedLogger(PflWriter& writer, const LoggerShape& shape)
    : writer_(writer), shape_(shape) {}

void SimulatedLogger::Probe(const pfl::LogRecord& probe) {
  pfl::LogRecord r = probe;
  r.Time += shift_;
  writer_.AddRecord(r);
  lastTime_ = r.Time;
  if (writer_.RecordsInBlock() >= shape_.recordsPerBlock) {
    CloseBlock();
    // The application stood still while the block was written.
    shift_ += shape_.closeTicks + shape_.gapTicks;
  }
}

void SimulatedLogger::EndRun() {
  CloseBlock();
}

void SimulatedLogger::CloseBlock() {
  writer_.CloseBlock(lastTime_ + shape_.closeTicks);
}

}  // namespace zol::testing
