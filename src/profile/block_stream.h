#pragma once

// The inflated blocks of a log, in file order. The serial stream inflates each
// block with zlib when asked for it; the pipelined stream reads and inflates
// with libdeflate on worker threads (two, or one per core up to four), a few
// blocks ahead of the replay, so that inflating and replaying overlap while
// memory stays at a few blocks whatever the log's size. Both hand out the same
// blocks and fail with the same LogError at the same block: blocks before a
// fault are delivered first.

#include <cstdint>
#include <memory>
#include <vector>

#include "profile/pfl_blocks.h"

namespace zol {

struct InflatedBlock {
  std::int32_t Index = 0;              // 1 for the first block
  std::int64_t FilePos = 0;            // 1-based position behind the block in the file
  std::vector<unsigned char> Records;  // 50,001 records of 16 bytes
};

class BlockStream {
 public:
  virtual ~BlockStream() = default;
  // The next block into `block` (whose buffer may be reused); false after the
  // last one. Throws LogError for a block that can't be framed or inflated.
  virtual bool Next(InflatedBlock& block) = 0;
};

std::unique_ptr<BlockStream> MakeSerialZlibStream(BlockReader reader);
std::unique_ptr<BlockStream> MakePipelinedStream(BlockReader reader);

}  // namespace zol
