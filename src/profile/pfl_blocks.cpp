#include "profile/pfl_blocks.h"

#include <libdeflate.h>
#include <zlib.h>

#include <cstring>
#include <new>
#include <utility>

#include "profile/log_error.h"
#include "profile/pfl_format.h"

namespace zol {
namespace {

std::string BlockAt(std::int32_t index, std::int64_t offset) {
  return "Block " + std::to_string(index) + " at byte " + std::to_string(offset);
}

}  // namespace

BlockReader::BlockReader(std::string file, const std::string& nativePath, std::int64_t fileLength,
                         std::int64_t dataStart)
    : file_(std::move(file)), fileLength_(fileLength), offset_(dataStart) {
  stream_ = std::fopen(nativePath.c_str(), "rb");
  if (stream_ == nullptr) throw LogError(file_, "The file can not be opened.");
  if (std::fseek(stream_, static_cast<long>(dataStart), SEEK_SET) != 0) {
    std::fclose(stream_);
    throw LogError(file_, "The file can not be read behind its header.");
  }
}

BlockReader::~BlockReader() {
  if (stream_ != nullptr) std::fclose(stream_);
}

BlockReader::BlockReader(BlockReader&& other) noexcept
    : file_(std::move(other.file_)),
      stream_(std::exchange(other.stream_, nullptr)),
      fileLength_(other.fileLength_),
      offset_(other.offset_),
      index_(other.index_) {}

void BlockReader::ReadExactly(char* into, std::size_t n, const char* what, std::int32_t index,
                              std::int64_t offset) {
  if (std::fread(into, 1, n, stream_) != n) {
    throw LogError(file_, BlockAt(index, offset) + " is cut short: its " + what +
                              " runs past the end of the file.");
  }
}

bool BlockReader::Next(CompressedBlock& block) {
  // Positions here are 0-based; the log's own arithmetic counts from 1.
  if (offset_ + 1 >= fileLength_ - pfl::kEndMargin) {
    CheckTail();
    return false;
  }
  block.Index = ++index_;
  block.Offset = offset_;
  char digits[pfl::kLengthDigits];
  ReadExactly(digits, sizeof digits, "length", block.Index, block.Offset);
  const auto length = pfl::ParseBlockLength(std::string_view(digits, sizeof digits));
  if (!length) {
    throw LogError(file_, BlockAt(block.Index, block.Offset) + " has a length that is not hex: \"" +
                              std::string(digits, sizeof digits) + "\".");
  }
  const std::int64_t end = offset_ + static_cast<std::int64_t>(pfl::kLengthDigits) + *length;
  if (end > fileLength_) ThrowCutShort(*length);
  block.Bytes.resize(*length);
  ReadExactly(block.Bytes.data(), *length, "data", block.Index, block.Offset);
  offset_ = end;
  block.FilePos = offset_ + 1;
  return true;
}

void BlockReader::ThrowCutShort(std::uint32_t length) {
  const std::int64_t held = fileLength_ - offset_ - static_cast<std::int64_t>(pfl::kLengthDigits);
  throw LogError(file_, BlockAt(index_, offset_) + " is cut short: it needs " +
                            std::to_string(length) + " bytes, the file holds " +
                            std::to_string(held) + ".");
}

// What is left behind the blocks is not read as a block: it is the trailer, or
// nothing. But when it starts with length digits that promise more bytes than
// are left, it is the head of a block whose end is missing; so is a rest too
// short for the length that is nothing but its first digits (a trailer starts
// with a letter that isn't hex).
void BlockReader::CheckTail() {
  const std::int64_t left = fileLength_ - offset_;
  if (left <= 0) return;
  if (left < static_cast<std::int64_t>(pfl::kLengthDigits)) {
    std::string rest(static_cast<std::size_t>(left), '\0');
    if (std::fread(rest.data(), 1, rest.size(), stream_) != rest.size()) return;
    if (rest.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos) {
      ++index_;
      throw LogError(file_, BlockAt(index_, offset_) + " is cut short: its length runs past " +
                                "the end of the file.");
    }
    return;
  }
  char digits[pfl::kLengthDigits];
  if (std::fread(digits, 1, sizeof digits, stream_) != sizeof digits) return;
  const auto length = pfl::ParseBlockLength(std::string_view(digits, sizeof digits));
  if (length && static_cast<std::int64_t>(pfl::kLengthDigits) + *length > left) {
    ++index_;
    ThrowCutShort(*length);
  }
}

std::int32_t DecompressString(std::string& TheString) {
  std::int32_t result = -1111;
  std::string buffer(pfl::kInflateCapacity, '\0');
  uLongf destLength = static_cast<uLongf>(buffer.size());
  result = uncompress(reinterpret_cast<Bytef*>(buffer.data()), &destLength,
                      reinterpret_cast<const Bytef*>(TheString.data()),
                      static_cast<uLong>(TheString.size()));
  if (result == Z_OK) {
    buffer.resize(pfl::kBlockBytes);
    TheString = std::move(buffer);
  }
  return result;
}

BlockInflater::BlockInflater() : decompressor_(libdeflate_alloc_decompressor()) {
  if (decompressor_ == nullptr) throw std::bad_alloc();
}

BlockInflater::~BlockInflater() {
  libdeflate_free_decompressor(decompressor_);
}

bool BlockInflater::Inflate(std::string_view in, std::vector<unsigned char>& out) {
  out.resize(pfl::kInflateCapacity);
  std::size_t inUsed = 0;
  std::size_t outLength = 0;
  // Asking for the input length used lets bytes behind the stream pass, as
  // zlib's uncompress does.
  const libdeflate_result r = libdeflate_zlib_decompress_ex(
      decompressor_, in.data(), in.size(), out.data(), out.size(), &inUsed, &outLength);
  if (r != LIBDEFLATE_SUCCESS) return false;
  if (outLength < pfl::kBlockBytes) {
    std::memset(out.data() + outLength, 0, pfl::kBlockBytes - outLength);
  }
  out.resize(pfl::kBlockBytes);
  return true;
}

std::string BlockNotInflatedFault(const CompressedBlock& block) {
  return BlockAt(block.Index, block.Offset) + " does not inflate.";
}

}  // namespace zol
