#include "live/pds.h"

#include <cstring>
#include <optional>

#include "base/cp1252.h"

namespace zol {

namespace {

constexpr std::size_t kTitleAt = 12;
constexpr std::size_t kVbpAt = kTitleAt + kPdsTitleBytes;
constexpr std::size_t kVbgAt = kVbpAt + kPdsPathBytes;
constexpr std::size_t kIniAt = kVbgAt + kPdsPathBytes;
constexpr std::size_t kCountsAt = kIniAt + kPdsPathBytes;
static_assert(kCountsAt == 3340 && kCountsAt + 5 * 4 == kPdsBytes);

std::int32_t ReadInt(const unsigned char* p) {
  std::uint32_t v = static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
                    static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
  return static_cast<std::int32_t>(v);
}

void WriteInt(unsigned char* p, std::int32_t value) {
  const auto v = static_cast<std::uint32_t>(value);
  for (int i = 0; i < 4; ++i) p[i] = static_cast<unsigned char>(v >> (8 * i));
}

// One UTF-16 code unit in the program's code page.
char ToCodePage(std::uint16_t unit) {
  if (unit < 0x80) return static_cast<char>(unit);
  std::string utf8;
  if (unit < 0x800) {
    utf8 += static_cast<char>(0xC0 | (unit >> 6));
  } else {
    if (unit >= 0xD800 && unit <= 0xDFFF) return '?';
    utf8 += static_cast<char>(0xE0 | (unit >> 12));
    utf8 += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
  }
  utf8 += static_cast<char>(0x80 | (unit & 0x3F));
  const std::optional<std::string> single = Utf8ToCp1252(utf8);
  return single && single->size() == 1 ? (*single)[0] : '?';
}

}  // namespace

Pds DecodePds(const unsigned char* bytes) {
  Pds pds;
  pds.ThreadID = ReadInt(bytes);
  pds.ProcessID = ReadInt(bytes + 4);
  pds.ProfilerID = ReadInt(bytes + 8);
  std::memcpy(pds.Title.data(), bytes + kTitleAt, kPdsTitleBytes);
  std::memcpy(pds.Vbp.data(), bytes + kVbpAt, kPdsPathBytes);
  std::memcpy(pds.Vbg.data(), bytes + kVbgAt, kPdsPathBytes);
  std::memcpy(pds.IniFile.data(), bytes + kIniAt, kPdsPathBytes);
  pds.AppMajor = ReadInt(bytes + kCountsAt);
  pds.AppMinor = ReadInt(bytes + kCountsAt + 4);
  pds.AppRev = ReadInt(bytes + kCountsAt + 8);
  pds.LinesNumber = ReadInt(bytes + kCountsAt + 12);
  pds.ProceduresNumber = ReadInt(bytes + kCountsAt + 16);
  return pds;
}

PdsImage EncodePds(const Pds& pds) {
  PdsImage image{};
  WriteInt(image.data(), pds.ThreadID);
  WriteInt(image.data() + 4, pds.ProcessID);
  WriteInt(image.data() + 8, pds.ProfilerID);
  std::memcpy(image.data() + kTitleAt, pds.Title.data(), kPdsTitleBytes);
  std::memcpy(image.data() + kVbpAt, pds.Vbp.data(), kPdsPathBytes);
  std::memcpy(image.data() + kVbgAt, pds.Vbg.data(), kPdsPathBytes);
  std::memcpy(image.data() + kIniAt, pds.IniFile.data(), kPdsPathBytes);
  WriteInt(image.data() + kCountsAt, pds.AppMajor);
  WriteInt(image.data() + kCountsAt + 4, pds.AppMinor);
  WriteInt(image.data() + kCountsAt + 8, pds.AppRev);
  WriteInt(image.data() + kCountsAt + 12, pds.LinesNumber);
  WriteInt(image.data() + kCountsAt + 16, pds.ProceduresNumber);
  return image;
}

std::string GetStringAPI(const unsigned char* field, std::size_t bytes) {
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes; i += 2) {
    const auto unit = static_cast<std::uint16_t>(field[i] | field[i + 1] << 8);
    if (unit == 0) return text;
    text += ToCodePage(unit);
  }
  throw PdsTextError("a text field of the thread registration has no end (no NUL in its " +
                     std::to_string(bytes) + " bytes)");
}

void SetPdsText(unsigned char* field, std::size_t bytes, const std::string& text) {
  const std::string utf8 = Cp1252ToUtf8(text);
  std::u16string units;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    char32_t cp = c;
    int extra = 0;
    if (c >= 0xF0) {
      cp = c & 0x07;
      extra = 3;
    } else if (c >= 0xE0) {
      cp = c & 0x0F;
      extra = 2;
    } else if (c >= 0xC0) {
      cp = c & 0x1F;
      extra = 1;
    }
    for (int k = 1; k <= extra && i + k < utf8.size(); ++k) {
      cp = (cp << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
    }
    i += static_cast<std::size_t>(extra) + 1;
    units += cp > 0xFFFF ? u'?' : static_cast<char16_t>(cp);
  }
  if ((units.size() + 1) * 2 > bytes) {
    throw std::length_error("text of " + std::to_string(units.size()) +
                            " characters does not fit a field of " + std::to_string(bytes) +
                            " bytes");
  }
  std::memset(field, 0, bytes);
  for (std::size_t i = 0; i < units.size(); ++i) {
    field[2 * i] = static_cast<unsigned char>(units[i] & 0xFF);
    field[2 * i + 1] = static_cast<unsigned char>(units[i] >> 8);
  }
}

}  // namespace zol
