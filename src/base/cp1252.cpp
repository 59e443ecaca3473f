#include "base/cp1252.h"

#include <array>
#include <cstdint>

namespace zol {
namespace {

// Unicode code points of 0x80-0x9F; the rest of the code page is Latin-1.
constexpr std::array<std::uint16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::uint32_t CodePointOf(unsigned char c) {
  if (c >= 0x80 && c <= 0x9F) return kHighControls[c - 0x80];
  return c;
}

std::optional<char> Cp1252Of(std::uint32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
  for (std::size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == cp) return static_cast<char>(0x80 + i);
  }
  return std::nullopt;
}

void AppendUtf8(std::string& out, std::uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// Decodes one UTF-8 sequence at `i`, moving `i` behind it; nothing when the
// bytes there are not a valid, shortest-form sequence.
std::optional<std::uint32_t> DecodeUtf8(std::string_view text, std::size_t& i) {
  const auto lead = static_cast<unsigned char>(text[i]);
  int extra = 0;
  std::uint32_t cp = 0;
  if (lead < 0x80) {
    ++i;
    return lead;
  } else if ((lead & 0xE0) == 0xC0) {
    extra = 1;
    cp = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    extra = 2;
    cp = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    extra = 3;
    cp = lead & 0x07;
  } else {
    return std::nullopt;
  }
  if (i + extra >= text.size()) return std::nullopt;
  for (int k = 1; k <= extra; ++k) {
    const auto c = static_cast<unsigned char>(text[i + k]);
    if ((c & 0xC0) != 0x80) return std::nullopt;
    cp = (cp << 6) | (c & 0x3F);
  }
  constexpr std::uint32_t kShortest[] = {0, 0x80, 0x800, 0x10000};
  if (cp < kShortest[extra] || cp > 0x10FFFF) return std::nullopt;
  i += extra + 1;
  return cp;
}

}  // namespace

char LowerCase1252(char c) {
  const auto u = static_cast<unsigned char>(c);
  if (u >= 'A' && u <= 'Z') return static_cast<char>(u + 0x20);
  if (u >= 0xC0 && u <= 0xDE && u != 0xD7) return static_cast<char>(u + 0x20);
  switch (u) {
    case 0x8A:  // S caron
    case 0x8C:  // OE
    case 0x8E:  // Z caron
      return static_cast<char>(u + 0x10);
    case 0x9F:  // Y diaeresis
      return static_cast<char>(0xFF);
    default:
      return c;
  }
}

bool EqualsNoCase1252(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (LowerCase1252(a[i]) != LowerCase1252(b[i])) return false;
  }
  return true;
}

std::string Cp1252ToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) AppendUtf8(out, CodePointOf(static_cast<unsigned char>(c)));
  return out;
}

std::optional<std::string> Utf8ToCp1252(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto cp = DecodeUtf8(text, i);
    if (!cp) return std::nullopt;
    const auto c = Cp1252Of(*cp);
    if (!c) return std::nullopt;
    out += *c;
  }
  return out;
}

}  // namespace zol
