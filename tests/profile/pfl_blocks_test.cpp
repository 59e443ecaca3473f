// Inflating blocks: libdeflate must accept and refuse exactly the streams that
// zlib's uncompress does, with the same bytes out; and the framing of a header
// and its blocks.

#include <gtest/gtest.h>

#include <zlib.h>

#include <fstream>

#include "base/scoped_temp_dir.h"
#include "profile/pfl_blocks.h"
#include "profile/pfl_format.h"
#include "support/pfl_writer.h"
#include "support/sim_random.h"

namespace zol {
namespace {

std::string Records(std::size_t bytes, std::uint64_t seed) {
  testing::SimRandom random(seed);
  std::string out(bytes, '\0');
  for (std::size_t i = 0; i < bytes; i += 3) out[i] = static_cast<char>(random.Between(0, 7));
  return out;
}

TEST(DecompressString, InflatesInPlaceAndPadsShortBlocksWithZeros) {
  const std::string full = Records(pfl::kBlockBytes, 1);
  std::string s = testing::Compress(full, 6);
  EXPECT_EQ(DecompressString(s), Z_OK);
  EXPECT_EQ(s, full);

  s = testing::Compress("abc", 6);
  EXPECT_EQ(DecompressString(s), Z_OK);
  EXPECT_EQ(s, "abc" + std::string(pfl::kBlockBytes - 3, '\0'));

  // One byte over a block still fits the buffer; the byte is dropped.
  s = testing::Compress(Records(pfl::kBlockBytes + 1, 2), 6);
  EXPECT_EQ(DecompressString(s), Z_OK);
  EXPECT_EQ(s, Records(pfl::kBlockBytes + 1, 2).substr(0, pfl::kBlockBytes));

  const std::string tooLong = testing::Compress(Records(pfl::kBlockBytes + 2, 3), 6);
  s = tooLong;
  EXPECT_NE(DecompressString(s), Z_OK);
  EXPECT_EQ(s, tooLong);  // left as it was
}

TEST(BlockInflater, AgreesWithZlibOnEveryKindOfStream) {
  const std::string good = testing::Compress(Records(pfl::kBlockBytes, 4), 6);
  std::string badChecksum = good;
  badChecksum.back() ^= 0x10;
  std::string badHeader = good;
  badHeader[0] = 0x77;
  const std::string streams[] = {
      good,
      testing::Compress(Records(1000, 5), 1),
      testing::Compress(Records(pfl::kBlockBytes + 1, 6), 9),
      testing::Compress(Records(pfl::kBlockBytes + 2, 7), 6),
      testing::Compress(std::string(pfl::kBlockBytes, '\0'), 0),
      good + "trailing bytes",
      good.substr(0, good.size() / 2),
      good.substr(0, good.size() - 1),
      badChecksum,
      badHeader,
      good.substr(2),  // raw deflate without the zlib header
      "",
  };
  BlockInflater inflater;
  std::vector<unsigned char> out(17, 0xFF);  // reused buffers get cleared
  int i = 0;
  for (const std::string& stream : streams) {
    SCOPED_TRACE(i++);
    std::string zlibOut = stream;
    const bool zlibOk = DecompressString(zlibOut) == Z_OK;
    ASSERT_EQ(inflater.Inflate(stream, out), zlibOk);
    if (zlibOk) {
      EXPECT_EQ(std::string(out.begin(), out.end()), zlibOut);
    }
  }
}

TEST(BlockReader, FramesBlocksUpToTheTrailer) {
  testing::ScopedTempDir dir;
  const std::string path = dir / "log.pfl";
  const std::string header = testing::HeaderBytes({});
  const std::string a = testing::Compress("first", 6);
  const std::string b = testing::Compress(Records(300, 8), 0);  // some 300 bytes
  std::ofstream(path, std::ios::binary)
      << header << testing::FramedBlock(a) << testing::FramedBlock(b) << testing::TrailerLine("1");
  const auto length = static_cast<std::int64_t>(header.size() + 12 + a.size() + b.size() + 27);

  BlockReader reader("C:\\log.pfl", path, length, static_cast<std::int64_t>(header.size()));
  CompressedBlock block;
  ASSERT_TRUE(reader.Next(block));
  EXPECT_EQ(block.Index, 1);
  EXPECT_EQ(block.Offset, static_cast<std::int64_t>(header.size()));
  EXPECT_EQ(block.Bytes, a);
  ASSERT_TRUE(reader.Next(block));
  EXPECT_EQ(block.Index, 2);
  EXPECT_EQ(block.Bytes, b);
  EXPECT_EQ(block.FilePos, length - 27 + 1);  // 1-based, at the trailer
  EXPECT_FALSE(reader.Next(block));
}

TEST(PflFormat, HeaderLinesNumbersAndLengths) {
  const auto h =
      pfl::SplitHeader("02\r\n\r\nC:\\p.vbp\r\ni\r\nd\r\n7\r\n3\r\n357,95\r\n0.3\r\nBLOCKS");
  ASSERT_TRUE(h);
  EXPECT_EQ(h->Lines[2], "C:\\p.vbp");
  EXPECT_EQ(h->Lines[7], "357,95");
  EXPECT_EQ(h->DataStart, 41);
  EXPECT_FALSE(pfl::SplitHeader("02\r\n\r\nC:\\p.vbp\r\ni\r\nd\r\n7\r\n3\r\n357,95\r\n0.3"));

  EXPECT_EQ(pfl::ParseLogNumber("357,9545"), 357.9545);
  EXPECT_EQ(pfl::ParseLogNumber(" 0.0003 "), 0.0003);
  EXPECT_EQ(pfl::ParseLogNumber("+2,5E-3"), 0.0025);
  EXPECT_EQ(pfl::ParseLogNumber("-1"), -1);
  for (const char* bad : {"", "  ", "1.2.3", "1,2.3", "abc", "1x", "inf", "nan", "--1", "+-1"}) {
    EXPECT_FALSE(pfl::ParseLogNumber(bad)) << bad;
  }

  EXPECT_EQ(pfl::ParseBlockLength("00a3F2"), 0xA3F2u);
  EXPECT_FALSE(pfl::ParseBlockLength("00 3F2"));
  EXPECT_FALSE(pfl::ParseBlockLength("-0003F"));
}

}  // namespace
}  // namespace zol
