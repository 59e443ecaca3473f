#include "base/ini_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "base/cp1252.h"
#include "base/files.h"

namespace zol {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

std::string_view TrimLeft(std::string_view s) {
  const auto first = s.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view() : s.substr(first);
}

std::string_view TrimRight(std::string_view s) {
  const auto last = s.find_last_not_of(kBlanks);
  return last == std::string_view::npos ? std::string_view() : s.substr(0, last + 1);
}

std::string_view Trim(std::string_view s) {
  return TrimLeft(TrimRight(s));
}

// One line of the file: its text and its line end ("\r\n", "\n" or none for a
// last line without one). Both point into the loaded file text.
struct Line {
  std::string_view text;
  std::string_view eol;
};

std::vector<Line> SplitLines(std::string_view content) {
  std::vector<Line> lines;
  std::size_t start = 0;
  while (start < content.size()) {
    const auto lf = content.find('\n', start);
    if (lf == std::string_view::npos) {
      lines.push_back({content.substr(start), {}});
      break;
    }
    std::size_t textEnd = lf;
    if (textEnd > start && content[textEnd - 1] == '\r') --textEnd;
    lines.push_back(
        {content.substr(start, textEnd - start), content.substr(textEnd, lf + 1 - textEnd)});
    start = lf + 1;
  }
  return lines;
}

enum class Kind { Other, Section, Key };

struct Entry {
  Kind kind = Kind::Other;
  std::string_view name;
  std::string_view value;
};

Entry Classify(std::string_view line) {
  if (line.substr(0, kUtf8Bom.size()) == kUtf8Bom) line.remove_prefix(kUtf8Bom.size());
  const std::string_view t = Trim(line);
  if (t.empty() || t[0] == ';') return {};
  if (t[0] == '[') {
    const auto close = t.rfind(']');
    if (close == std::string_view::npos) return {};
    return {Kind::Section, Trim(t.substr(1, close - 1)), {}};
  }
  const auto eq = t.find('=');
  if (eq == std::string_view::npos) return {};
  return {Kind::Key, TrimRight(t.substr(0, eq)), TrimLeft(t.substr(eq + 1))};
}

// Lines [header + 1, end) are the body of the section whose header is at `header`.
struct SectionSpan {
  std::size_t header;
  std::size_t end;
};

std::optional<SectionSpan> FindSection(const std::vector<Line>& lines, std::string_view section) {
  const std::string_view wanted = Trim(section);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Entry e = Classify(lines[i].text);
    if (e.kind != Kind::Section || !EqualsNoCase1252(e.name, wanted)) continue;
    std::size_t end = i + 1;
    while (end < lines.size() && Classify(lines[end].text).kind != Kind::Section) ++end;
    return SectionSpan{i, end};
  }
  return std::nullopt;
}

std::optional<std::size_t> FindKey(const std::vector<Line>& lines, SectionSpan span,
                                   std::string_view key) {
  const std::string_view wanted = Trim(key);
  if (wanted.empty()) return std::nullopt;
  for (std::size_t i = span.header + 1; i < span.end; ++i) {
    const Entry e = Classify(lines[i].text);
    if (e.kind == Kind::Key && EqualsNoCase1252(e.name, wanted)) return i;
  }
  return std::nullopt;
}

std::string_view StripEnclosingQuotes(std::string_view value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front()) {
    return value.substr(1, value.size() - 2);
  }
  return value;
}

// The line end for new lines: that of the first line which has one.
std::string_view LineEndOf(const std::vector<Line>& lines) {
  for (const auto& line : lines) {
    if (!line.eol.empty()) return line.eol;
  }
  return "\r\n";
}

void AppendLines(std::string& out, const std::vector<Line>& lines, std::size_t from,
                 std::size_t to) {
  for (std::size_t i = from; i < to; ++i) {
    out += lines[i].text;
    out += lines[i].eol;
  }
}

std::string WithNewSection(const std::string& content, const std::vector<Line>& lines,
                           const std::string& section, const std::string& keyLine) {
  const std::string_view eol = LineEndOf(lines);
  std::string out = content;
  if (!lines.empty()) {
    if (lines.back().eol.empty()) out += eol;
    if (!Trim(lines.back().text).empty()) out += eol;
  }
  out += "[" + section + "]";
  out += eol;
  out += keyLine;
  out += eol;
  return out;
}

std::string WithNewKey(const std::vector<Line>& lines, SectionSpan span,
                       const std::string& keyLine) {
  std::size_t last = span.header;
  for (std::size_t i = span.header + 1; i < span.end; ++i) {
    if (!Trim(lines[i].text).empty()) last = i;
  }
  const std::string_view eol = LineEndOf(lines);
  std::string out;
  AppendLines(out, lines, 0, last);
  out += lines[last].text;
  out += lines[last].eol.empty() ? eol : lines[last].eol;
  out += keyLine;
  out += eol;
  AppendLines(out, lines, last + 1, lines.size());
  return out;
}

std::string WithKeyReplaced(const std::vector<Line>& lines, std::size_t at,
                            std::string_view value) {
  std::string out;
  AppendLines(out, lines, 0, at);
  out += Classify(lines[at].text).name;
  out += '=';
  out += value;
  out += lines[at].eol;
  AppendLines(out, lines, at + 1, lines.size());
  return out;
}

// A write is read, change, write whole: two processes writing one settings
// file at once (a second start handing over its files while the first writes
// its own keys) would each lose the other's key. The lock is taken on the
// file's folder, since the file itself is replaced by every write.
class SettingsWriteLock {
 public:
  explicit SettingsWriteLock(const std::string& file) {
    std::filesystem::path folder = std::filesystem::path(file).parent_path();
    if (folder.empty()) folder = ".";
    fd_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd_ >= 0) ::flock(fd_, LOCK_EX);
  }
  ~SettingsWriteLock() {
    if (fd_ >= 0) ::close(fd_);  // closing releases the lock
  }
  SettingsWriteLock(const SettingsWriteLock&) = delete;
  SettingsWriteLock& operator=(const SettingsWriteLock&) = delete;

 private:
  int fd_ = -1;
};

void ReplaceIfChanged(const std::string& file, const std::string& before,
                      const std::string& after) {
  if (after != before) WriteFileAtomic(file, after);
}

}  // namespace

std::string VBGetPrivateProfileString(const std::string& lpApplicationName,
                                      const std::string& lpKeyName, const std::string& lpDefault,
                                      const std::string& lpFileName) {
  std::string result(TrimRight(lpDefault));
  try {
    const std::string content = LoadFile(lpFileName);
    const auto lines = SplitLines(content);
    if (const auto span = FindSection(lines, lpApplicationName)) {
      if (const auto at = FindKey(lines, *span, lpKeyName)) {
        result = StripEnclosingQuotes(Classify(lines[*at].text).value);
      }
    }
  } catch (const FileError&) {
    // An unreadable settings file reads like a missing one.
  }
  if (result.size() > kMaxProfileString) result.resize(kMaxProfileString);
  return result;
}

void VBWritePrivateProfileString(const std::string& lpApplicationName, const std::string& lpKeyName,
                                 const std::string& lpValue, const std::string& lpFileName) {
  if (Trim(lpKeyName).empty()) {
    throw std::invalid_argument("Empty key name for section [" + lpApplicationName + "] of \"" +
                                lpFileName + "\"");
  }
  const SettingsWriteLock lock(lpFileName);
  const std::string content = LoadFile(lpFileName);
  const auto lines = SplitLines(content);
  const std::string keyLine = lpKeyName + "=" + lpValue;
  const auto span = FindSection(lines, lpApplicationName);
  if (!span) {
    ReplaceIfChanged(lpFileName, content,
                     WithNewSection(content, lines, lpApplicationName, keyLine));
  } else if (const auto at = FindKey(lines, *span, lpKeyName)) {
    ReplaceIfChanged(lpFileName, content, WithKeyReplaced(lines, *at, lpValue));
  } else {
    ReplaceIfChanged(lpFileName, content, WithNewKey(lines, *span, keyLine));
  }
}

void VBDeletePrivateProfileKey(const std::string& lpApplicationName, const std::string& lpKeyName,
                               const std::string& lpFileName) {
  const SettingsWriteLock lock(lpFileName);
  const std::string content = LoadFile(lpFileName);
  const auto lines = SplitLines(content);
  const auto span = FindSection(lines, lpApplicationName);
  if (!span) return;
  const auto at = FindKey(lines, *span, lpKeyName);
  if (!at) return;
  std::string out;
  AppendLines(out, lines, 0, *at);
  AppendLines(out, lines, *at + 1, lines.size());
  ReplaceIfChanged(lpFileName, content, out);
}

}  // namespace zol
