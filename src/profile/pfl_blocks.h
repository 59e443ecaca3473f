#pragma once

// The blocks of a .pfl log: their framing in the file and their inflation.
// BlockReader walks the file block by block without holding more than one;
// DecompressString is the zlib reference for one block, BlockInflater the
// faster libdeflate equivalent that gives the same bytes for every stream.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

struct libdeflate_decompressor;

namespace zol {

// One block as it stands in the file.
struct CompressedBlock {
  std::int32_t Index = 0;    // 1 for the first block
  std::int64_t Offset = 0;   // 0-based offset of its six length digits
  std::int64_t FilePos = 0;  // 1-based position of the byte behind it
  std::string Bytes;         // the zlib stream
};

// Reads the blocks that follow the header, one after the other, while the
// position behind the last one is below the file length minus 100 (what is
// left is the trailer). Length digits that are not hex and a block that runs
// past the end of the file, even one that starts within those last 100 bytes,
// throw LogError naming `file`.
class BlockReader {
 public:
  // `file` is the log's name for messages; `nativePath` where it is opened.
  BlockReader(std::string file, const std::string& nativePath, std::int64_t fileLength,
              std::int64_t dataStart);
  ~BlockReader();
  BlockReader(BlockReader&& other) noexcept;
  BlockReader(const BlockReader&) = delete;
  BlockReader& operator=(const BlockReader&) = delete;
  BlockReader& operator=(BlockReader&&) = delete;

  // The next block into `block`; false after the last one.
  bool Next(CompressedBlock& block);

  const std::string& File() const { return file_; }

 private:
  void ReadExactly(char* into, std::size_t n, const char* what, std::int32_t index,
                   std::int64_t offset);
  [[noreturn]] void ThrowCutShort(std::uint32_t length);
  void CheckTail();

  std::string file_;
  std::FILE* stream_ = nullptr;
  std::int64_t fileLength_ = 0;
  std::int64_t offset_ = 0;  // 0-based offset of the next block
  std::int32_t index_ = 0;
};

// Inflates one block in place with zlib's uncompress into a buffer of 800,017
// zero bytes. On success (result 0) `TheString` becomes the buffer's first
// 800,016 bytes, so a short block reads as padded with zeros; on any other
// result it is left as it was. The result is zlib's return code.
std::int32_t DecompressString(std::string& TheString);

// The same inflation with libdeflate: `out` gets 800,016 bytes, zero-padded
// behind what the stream held. Returns false exactly where DecompressString
// gives a code other than 0: not one whole zlib stream, a bad checksum, or more
// than 800,017 bytes of output. Bytes behind the end of the stream are ignored
// by both.
class BlockInflater {
 public:
  BlockInflater();
  ~BlockInflater();
  BlockInflater(const BlockInflater&) = delete;
  BlockInflater& operator=(const BlockInflater&) = delete;

  bool Inflate(std::string_view in, std::vector<unsigned char>& out);

 private:
  libdeflate_decompressor* decompressor_;
};

// The message for a block that does not inflate.
std::string BlockNotInflatedFault(const CompressedBlock& block);

}  // namespace zol
