#pragma once

// Little-endian readers and writers for the packed file images (.pfd, group
// files, log headers). Every read is bounds-checked: running past the end of
// the data throws TruncatedData, which callers turn into a message naming the
// file.

#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zol {

class TruncatedData : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class ByteWriter {
 public:
  void U8(std::uint8_t v) { Put(v, 1); }
  void I16(std::int16_t v) { Put(static_cast<std::uint16_t>(v), 2); }
  void I32(std::int32_t v) { Put(static_cast<std::uint32_t>(v), 4); }
  void I64(std::int64_t v) { Put(static_cast<std::uint64_t>(v), 8); }
  void F32(float v) { Put(std::bit_cast<std::uint32_t>(v), 4); }
  void F64(double v) { Put(std::bit_cast<std::uint64_t>(v), 8); }
  void Bytes(std::string_view b) { out_.append(b); }
  // A counted text or block: int32 length, then the bytes.
  void Counted(std::string_view b) {
    I32(static_cast<std::int32_t>(b.size()));
    Bytes(b);
  }

  const std::string& Data() const { return out_; }
  std::string Take() { return std::move(out_); }
  std::size_t Size() const { return out_.size(); }

 private:
  void Put(std::uint64_t v, int n) {
    for (int i = 0; i < n; ++i) out_.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
  }
  std::string out_;
};

class ByteReader {
 public:
  explicit ByteReader(std::string_view data) : data_(data) {}

  std::uint8_t U8() { return static_cast<std::uint8_t>(Get(1)); }
  std::int16_t I16() { return static_cast<std::int16_t>(Get(2)); }
  std::int32_t I32() { return static_cast<std::int32_t>(Get(4)); }
  std::int64_t I64() { return static_cast<std::int64_t>(Get(8)); }
  float F32() { return std::bit_cast<float>(static_cast<std::uint32_t>(Get(4))); }
  double F64() { return std::bit_cast<double>(Get(8)); }
  std::string_view Bytes(std::size_t n) {
    Need(n);
    auto r = data_.substr(pos_, n);
    pos_ += n;
    return r;
  }
  // A counted text or block: int32 length, then the bytes. A negative length is
  // as bad as one that runs past the end.
  std::string_view Counted() {
    const std::int32_t n = I32();
    if (n < 0) throw TruncatedData("negative length " + std::to_string(n) + At());
    return Bytes(static_cast<std::size_t>(n));
  }

  std::size_t Position() const { return pos_; }
  std::size_t Remaining() const { return data_.size() - pos_; }
  bool AtEnd() const { return pos_ >= data_.size(); }

 private:
  std::string At() const { return " at byte " + std::to_string(pos_); }
  void Need(std::size_t n) const {
    if (n > data_.size() - pos_) {
      throw TruncatedData("needs " + std::to_string(n) + " bytes, " +
                          std::to_string(data_.size() - pos_) + " left" + At());
    }
  }
  std::uint64_t Get(int n) {
    Need(static_cast<std::size_t>(n));
    std::uint64_t v = 0;
    for (int i = 0; i < n; ++i) {
      v |= static_cast<std::uint64_t>(static_cast<unsigned char>(data_[pos_ + i])) << (8 * i);
    }
    pos_ += static_cast<std::size_t>(n);
    return v;
  }

  std::string_view data_;
  std::size_t pos_ = 0;
};

}  // namespace zol
