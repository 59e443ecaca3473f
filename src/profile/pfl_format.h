#pragma once

// The layout of a .pfl profile log, as the logger of an instrumented program
// writes it:
//
//   nine text lines, each ended by CR LF (Windows-1252):
//     1 log version, 2 .vbg path or empty, 3 instrumented .vbp path,
//     4 run settings file, 5 date and time of the run, 6 number of lines,
//     7 number of procedures, 8 counter frequency (ticks per second / 10000),
//     9 cost of one probe in clock units;
//   blocks, back to back: six ASCII hex digits giving the compressed length N,
//     then N bytes of one zlib stream that inflates to at most 50,001 records
//     of 16 bytes (a shorter block counts as padded with zeros);
//   optionally a trailer line "TraceOverhead=" + 11 characters of number text
//     + CR LF, whose value wins over line 9.
//
// A record is little-endian: int64 clock value (counter ticks, read as a
// fixed-point number with four decimals), int16 action, 2 bytes padding, int32
// origin (procedure ID for actions 1 and 2, line ID for action 3).

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace zol::pfl {

inline constexpr int kHeaderLines = 9;
// The header is looked for in this many bytes at the start of the file.
inline constexpr std::size_t kHeaderSearchBytes = 65536;

inline constexpr std::size_t kLengthDigits = 6;
inline constexpr std::size_t kRecordBytes = 16;
inline constexpr int kRecordsPerBlock = 50001;
// The last record of a block is always its closing record; data records stop
// at the first zero clock value before it.
inline constexpr int kDataRecordsPerBlock = kRecordsPerBlock - 1;
inline constexpr std::size_t kBlockBytes = kRecordBytes * kRecordsPerBlock;  // 800,016
// One byte more than a full block, so that a stream that inflates to exactly
// one byte too many still counts as inflated (that byte is dropped).
inline constexpr std::size_t kInflateCapacity = kBlockBytes + 1;

inline constexpr std::string_view kTrailerTag = "TraceOverhead=";
inline constexpr std::size_t kTrailerChars = 25;
// The trailer's 25 characters end two bytes (CR LF) before the end of the file.
inline constexpr std::int64_t kTrailerOffsetFromEnd = kTrailerChars + 2;

// Blocks are read while the 1-based position behind the last one is below
// the file length minus this margin; what remains is the trailer or nothing.
inline constexpr std::int64_t kEndMargin = 100;
// A block that ends within this many bytes of the end of the file is the
// last one: its closing record means the run ended.
inline constexpr std::int64_t kLastBlockMargin = 1000;

enum Action : std::int16_t {
  kBlockClosed = 0,  // the logger writes a block out; in the last block: end of run
  kProcedureIn = 1,
  kProcedureOut = 2,
  kLineRun = 3,
};

struct LogRecord {
  std::int64_t Time = 0;
  std::int16_t Action = 0;
  std::int32_t Origin = 0;
};

static_assert(std::endian::native == std::endian::little,
              "log records are read by copying their little-endian bytes");

inline LogRecord DecodeRecord(const unsigned char* p) {
  LogRecord r;
  std::memcpy(&r.Time, p, 8);
  std::memcpy(&r.Action, p + 8, 2);
  std::memcpy(&r.Origin, p + 12, 4);
  return r;
}

inline void EncodeRecord(const LogRecord& r, unsigned char* p) {
  std::memcpy(p, &r.Time, 8);
  std::memcpy(p + 8, &r.Action, 2);
  std::memset(p + 10, 0, 2);
  std::memcpy(p + 12, &r.Origin, 4);
}

// The working clock value of a record: the counter read as a fixed-point
// number with four decimals.
inline double LogTime(std::int64_t time) {
  return static_cast<double>(time) / 10000.0;
}

struct Header {
  std::array<std::string, kHeaderLines> Lines;  // lines 1 to 9 at [0] to [8], without line ends
  std::int64_t DataStart = 0;                   // 0-based offset of the first block
};

// The nine header lines at the start of `head`. A line ends at CR LF; a lone
// CR or LF ends it too. Nothing if `head` holds fewer than nine line ends.
std::optional<Header> SplitHeader(std::string_view head);

// A number as the logger writes it in the header and trailer: blanks around
// it, an optional sign, digits with "." or "," as decimal mark, an optional
// exponent. Nothing for any other text.
std::optional<double> ParseLogNumber(std::string_view text);

// The number text of a trailer, if the 25 bytes that end two bytes before the
// end of the file start with "TraceOverhead=".
std::optional<std::string_view> TrailerNumberText(std::string_view last25);

// The compressed length of a block from its six hex digits (either case).
// Nothing if any of them is not a hex digit.
std::optional<std::uint32_t> ParseBlockLength(std::string_view digits);

}  // namespace zol::pfl
