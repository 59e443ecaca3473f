#pragma once

// The registration record a thread of a profiled program hands over when it
// joins a live run: who it is, which session to make of it and which
// instrumented project its IDs belong to. It travels as a 3,360-byte
// little-endian image; its four text fields hold UTF-16LE text ended by a
// 16-bit NUL and are kept raw, since two registrations are compared field by
// field as whole fields.

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace zol {

inline constexpr std::size_t kPdsBytes = 3360;
inline constexpr std::size_t kPdsTitleBytes = 256;
inline constexpr std::size_t kPdsPathBytes = 1024;

using PdsTitleField = std::array<unsigned char, kPdsTitleBytes>;
using PdsPathField = std::array<unsigned char, kPdsPathBytes>;

struct Pds {
  std::int32_t ThreadID = 0;
  std::int32_t ProcessID = 0;
  std::int32_t ProfilerID = 0;
  PdsTitleField Title{};
  PdsPathField Vbp{};
  PdsPathField Vbg{};
  PdsPathField IniFile{};
  std::int32_t AppMajor = 0;
  std::int32_t AppMinor = 0;
  std::int32_t AppRev = 0;
  std::int32_t LinesNumber = 0;
  std::int32_t ProceduresNumber = 0;
  friend bool operator==(const Pds&, const Pds&) = default;
};

using PdsImage = std::array<unsigned char, kPdsBytes>;

Pds DecodePds(const unsigned char* bytes);
PdsImage EncodePds(const Pds& pds);

// A text field without its closing NUL: the sender broke the record.
class PdsTextError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The text of a field: UTF-16LE up to the first NUL, in the single-byte code
// page of this program (characters it lacks become "?"). Throws PdsTextError
// when the field holds no NUL.
std::string GetStringAPI(const unsigned char* field, std::size_t bytes);
template <std::size_t N>
std::string GetStringAPI(const std::array<unsigned char, N>& field) {
  return GetStringAPI(field.data(), N);
}

// Writes `text` (single-byte code page) into a field as UTF-16LE with its NUL,
// the rest zero. Throws std::length_error when it doesn't fit.
void SetPdsText(unsigned char* field, std::size_t bytes, const std::string& text);
template <std::size_t N>
void SetPdsText(std::array<unsigned char, N>& field, const std::string& text) {
  SetPdsText(field.data(), N, text);
}

}  // namespace zol
