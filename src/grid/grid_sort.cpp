#include "grid/grid_sort.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/cp1252.h"
#include "base/text.h"
#include "grid/bars.h"
#include "grid/cell_text.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

// The text of a dead row's value cells.
constexpr std::string_view kDeadCell = "  ";

// The number of a cell; a percentage or a ratio ("2.00x") counts by its number.
std::optional<double> CellNumber(std::string_view text) {
  if (!text.empty() && (text.back() == '%' || text.back() == 'x')) text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  return ParseCellNumber(text);
}

enum class Place : std::uint8_t { Normal = 0, Dead = 1, Total = 2 };

// Among normal cells: texts that come before "0", numbers, texts after.
enum class Kind : std::uint8_t { TextBefore = 0, Number = 1, TextAfter = 2 };

int CompareNoCase(std::string_view a, std::string_view b) {
  // Long equal stretches (source lines, names with a common start) are
  // skipped at memory speed; case is looked at from the first difference on.
  if (a == b) return 0;
  const std::size_t n = std::min(a.size(), b.size());
  std::size_t i = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.begin() + n, b.begin()).first - a.begin());
  for (; i < n; ++i) {
    const auto ca = static_cast<unsigned char>(LowerCase1252(a[i]));
    const auto cb = static_cast<unsigned char>(LowerCase1252(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

// What a row sorts by, kept small and free of pointers so that a sort of a
// million rows stays in cache: a number cell by its number, a text cell by
// the rank of its text among the column's distinct texts.
struct SortEntry {
  double key = 0;
  Place place = Place::Normal;
  Kind kind = Kind::TextBefore;
};

// The texts of a column, each distinct text once, ranked in the case-blind
// order: a column of a million source lines holds far fewer distinct texts,
// and ranking those once spares the sort comparing long strings again and
// again.
class TextRanks {
 public:
  // The index of `text` among the texts seen so far.
  std::uint32_t Add(std::string_view text) {
    const auto [at, added] = index_.try_emplace(text, static_cast<std::uint32_t>(texts_.size()));
    if (added) texts_.push_back(text);
    return at->second;
  }

  // The rank of each text added, by index: equal texts (case aside) share it.
  // The texts are compared in lower case, which is the order CompareNoCase
  // gives; each is lowered once, and its first eight letters, as one number,
  // settle most comparisons of a column of many thousand names.
  std::vector<double> Ranks() const {
    struct Lowered {
      std::uint64_t prefix;
      std::uint32_t index;
    };
    std::string lowered;
    std::vector<std::uint32_t> ends(texts_.size());
    std::vector<Lowered> order(texts_.size());
    for (std::uint32_t i = 0; i < texts_.size(); ++i) {
      const std::size_t start = lowered.size();
      for (const char c : texts_[i]) lowered.push_back(LowerCase1252(c));
      ends[i] = static_cast<std::uint32_t>(lowered.size());
      std::uint64_t prefix = 0;
      for (std::size_t k = 0; k < 8; ++k) {
        const std::size_t at = start + k;
        prefix =
            (prefix << 8) | (at < lowered.size() ? static_cast<unsigned char>(lowered[at]) : 0);
      }
      order[i] = {prefix, i};
    }
    const auto textOf = [&](std::uint32_t i) {
      const std::uint32_t start = i == 0 ? 0 : ends[i - 1];
      return std::string_view(lowered).substr(start, ends[i] - start);
    };
    // Bytes compare as unsigned, as CompareNoCase compares them.
    const auto compare = [&](const Lowered& a, const Lowered& b) {
      if (a.prefix != b.prefix) return a.prefix < b.prefix ? -1 : 1;
      const std::string_view x = textOf(a.index);
      const std::string_view y = textOf(b.index);
      const int c = std::memcmp(x.data(), y.data(), std::min(x.size(), y.size()));
      if (c != 0) return c;
      return x.size() == y.size() ? 0 : (x.size() < y.size() ? -1 : 1);
    };
    std::sort(order.begin(), order.end(),
              [&](const Lowered& a, const Lowered& b) { return compare(a, b) < 0; });
    std::vector<double> rank(texts_.size());
    double current = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
      if (k > 0 && compare(order[k - 1], order[k]) != 0) ++current;
      rank[order[k].index] = current;
    }
    return rank;
  }

  // Whether each text added, by index, comes before the numbers: those that
  // sort before "0".
  std::vector<Kind> Kinds() const {
    std::vector<Kind> kind(texts_.size());
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      kind[i] = CompareNoCase(texts_[i], "0") < 0 ? Kind::TextBefore : Kind::TextAfter;
    }
    return kind;
  }

 private:
  std::unordered_map<std::string_view, std::uint32_t> index_;
  std::vector<std::string_view> texts_;
};

// The letters of the longest bar: a bar cell's text is a prefix of them.
constexpr std::string_view kBarLetters = "llllllllllllllllllll";
static_assert(kBarLetters.size() == kMaxBarLength);

// The number a count, time or share cell shows, as its text reads back.
double ShownNumber(const CellData& cell) {
  switch (cell.Kind) {
    case CellKind::Count:
      return static_cast<double>(cell.V.Integer);
    case CellKind::Time:
      return DisplayedTime(cell.V.Number);
    default:
      return DisplayedPercent(cell.V.Number);
  }
}

// A count, or a finite time or share: those read back as a number.
bool IsShownNumber(const CellData& cell) {
  if (cell.Kind == CellKind::Count) return true;
  if (cell.Kind == CellKind::Time) return std::isfinite(cell.V.Number);
  // A share so large that its percentage overflows shows no number.
  return cell.Kind == CellKind::Percent && std::isfinite(cell.V.Number * 10000);
}

// The place and kind of one row's cell, as its text sorts; `text` is set for
// a text cell. Counts, times and shares give their number without their text
// being made; texts made for the rare cell that sorts by its text are kept
// in `made`.
SortEntry EntryOf(const Table& table, std::uint32_t stored, int column, bool numeric,
                  std::string_view& text, std::deque<std::string>& made) {
  SortEntry e;
  if (table.StoredCell(stored, 1).Bold) {
    e.place = Place::Total;
    return e;
  }
  const CellData& cell = table.StoredCell(stored, column);
  if (numeric && IsShownNumber(cell)) {
    e.kind = Kind::Number;
    e.key = ShownNumber(cell);
    return e;
  }
  std::string_view cellText;
  switch (cell.Kind) {
    case CellKind::Empty:
      break;
    case CellKind::Text:
    case CellKind::Literal:
      cellText = table.StoredText(cell);
      break;
    case CellKind::Bar:
      cellText = kBarLetters.substr(0, static_cast<std::size_t>(cell.V.Integer));
      break;
    default:
      cellText = made.emplace_back(table.CellText(cell));
      break;
  }
  if (numeric && cellText == kDeadCell) {
    e.place = Place::Dead;
  } else if (const auto number = numeric ? CellNumber(cellText) : std::nullopt) {
    e.kind = Kind::Number;
    e.key = *number;
  } else {
    text = cellText;
  }
  return e;
}

// A key as a whole number of the same order: the sign bit flipped for
// positive numbers, every bit for negative ones; -0 counts as 0.
std::uint64_t OrderedBits(double key, bool ascending) {
  const auto bits = std::bit_cast<std::uint64_t>(key + 0.0);
  const std::uint64_t ordered = (bits >> 63) != 0 ? ~bits : bits | (std::uint64_t{1} << 63);
  return ascending ? ordered : ~ordered;
}

// The stored rows of the entries (entry i is that of shown[i]) in sorted
// order: by place (normal, dead, total), normal ones by kind (texts before
// the numbers, numbers, texts after; the other way round when descending)
// and then by key, equal keys in the rows' order. A stable radix sort gives
// that order in a few passes over the entries however many there are: the
// key's bits eleven at a time from the lowest, then the group as the
// highest digit. The counts of every digit are taken in one pass first, and
// a digit that all entries share moves nothing.
std::vector<std::uint32_t> SortedRows(const std::vector<SortEntry>& entries,
                                      const std::vector<std::uint32_t>& shown, bool ascending) {
  const auto groupOf = [ascending](const SortEntry& e) -> std::uint32_t {
    if (e.place != Place::Normal) return 2 + static_cast<std::uint32_t>(e.place);
    const auto kind = static_cast<std::uint32_t>(e.kind);
    return ascending ? kind : 2 - kind;
  };
  struct Keyed {
    std::uint64_t bits;
    std::uint32_t stored;
    std::uint32_t group;
  };
  constexpr int kDigitBits = 11;
  constexpr int kDigits = (64 + kDigitBits - 1) / kDigitBits;
  constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
  constexpr std::uint64_t kDigitMask = kBuckets - 1;
  constexpr int kGroups = 5;
  const std::size_t n = entries.size();
  std::vector<Keyed> keyed(n);
  std::vector<std::size_t> counts(kDigits * kBuckets);
  std::size_t groupCounts[kGroups] = {};
  for (std::uint32_t i = 0; i < n; ++i) {
    const std::uint32_t g = groupOf(entries[i]);
    const std::uint64_t bits = g < 3 ? OrderedBits(entries[i].key, ascending) : 0;
    keyed[i] = {bits, shown[i], g};
    for (int d = 0; d < kDigits; ++d) {
      ++counts[d * kBuckets + ((bits >> (d * kDigitBits)) & kDigitMask)];
    }
    ++groupCounts[g];
  }
  std::vector<Keyed> buffer(n);
  const auto scatter = [&](std::size_t* start, auto digitOf) {
    std::size_t sum = 0;
    for (std::size_t b = 0; b < kBuckets; ++b) sum += std::exchange(start[b], sum);
    for (const Keyed& k : keyed) buffer[start[digitOf(k)]++] = k;
    keyed.swap(buffer);
  };
  for (int d = 0; d < kDigits; ++d) {
    std::size_t* const start = counts.data() + d * kBuckets;
    if (std::find(start, start + kBuckets, n) != start + kBuckets) continue;
    const int shift = d * kDigitBits;
    scatter(start, [shift](const Keyed& k) { return (k.bits >> shift) & kDigitMask; });
  }
  if (std::find(groupCounts, groupCounts + kGroups, n) == groupCounts + kGroups) {
    std::size_t start[kBuckets] = {};
    std::copy_n(groupCounts, kGroups, start);
    scatter(start, [](const Keyed& k) { return k.group; });
  }
  std::vector<std::uint32_t> rows(n);
  for (std::size_t k = 0; k < n; ++k) rows[k] = keyed[k].stored;
  return rows;
}

void Recolor(Table& table, int lastColumn, int column) {
  const bool resetLast = lastColumn >= 1 && lastColumn <= table.ColumnCount();
  // Rows in the order they are stored: the colours don't depend on the
  // order shown.
  for (std::uint32_t stored = 0; stored < static_cast<std::uint32_t>(table.RowCount()); ++stored) {
    if (table.StoredCell(stored, 1).Bold) continue;
    RowRef row(table, stored);
    if (resetLast && row.CellAt(lastColumn).Color != kColorGrey) {
      row.SetColor(lastColumn, kColorStandard);
    }
    if (row.CellAt(column).Color != kColorGrey) row.SetColor(column, kColorDarkBlue);
  }
}

void OrderRows(Table& table, int column, std::int32_t order) {
  const bool numeric = IsNumericColumn(table.ColumnAt(column).Header);
  const std::vector<std::uint32_t>& shown = table.Order();
  // The cells are read in the order they are stored, which is the order
  // their texts were written in: a sorted table of a million rows is then
  // read front to back instead of all over. Each entry goes to the place
  // its row has in the order shown.
  std::vector<std::uint32_t> placeOf(shown.size());
  for (std::size_t i = 0; i < shown.size(); ++i) placeOf[shown[i]] = static_cast<std::uint32_t>(i);
  std::vector<SortEntry> entries(shown.size());
  // For the text cells: the entry and the index of its text.
  std::vector<std::pair<std::size_t, std::uint32_t>> textCells;
  TextRanks texts;
  std::deque<std::string> made;
  // The lines of one procedure share the texts of its names: a text the
  // row before had is not looked up again.
  const CellData* lastText = nullptr;
  std::uint32_t lastIndex = 0;
  for (std::uint32_t stored = 0; stored < shown.size(); ++stored) {
    std::string_view text;
    const std::uint32_t place = placeOf[stored];
    const SortEntry e = EntryOf(table, stored, column, numeric, text, made);
    if (e.place == Place::Normal && e.kind != Kind::Number) {
      const CellData& cell = table.StoredCell(stored, column);
      const bool same = lastText != nullptr && cell.Kind == CellKind::Text &&
                        lastText->V.Text.Offset == cell.V.Text.Offset &&
                        lastText->V.Text.Length == cell.V.Text.Length;
      if (!same) {
        lastIndex = texts.Add(text);
        lastText = cell.Kind == CellKind::Text ? &cell : nullptr;
      }
      textCells.emplace_back(place, lastIndex);
    }
    entries[place] = e;
  }
  if (!textCells.empty()) {
    const std::vector<double> rank = texts.Ranks();
    const std::vector<Kind> kind = texts.Kinds();
    for (const auto& [entry, text] : textCells) {
      entries[entry].key = rank[text];
      entries[entry].kind = kind[text];
    }
  }
  // Equal keys keep the rows' order, whichever way the sort goes.
  std::vector<std::uint32_t> sorted = SortedRows(entries, shown, order == kSortAscending);

  // Only the order of the rows changes, never the rows themselves; the
  // selection stays on its row.
  if (table.SelectedRow >= 1 && table.SelectedRow <= table.RowCount()) {
    const std::uint32_t selected = shown[static_cast<std::size_t>(table.SelectedRow - 1)];
    table.SelectedRow =
        static_cast<int>(std::find(sorted.begin(), sorted.end(), selected) - sorted.begin()) + 1;
  }
  table.SetOrder(std::move(sorted));
}

}  // namespace

bool IsNumericColumn(const std::string& header) {
  return header != "Line" && header != "Procedure" && header != "Module" && header != "Project";
}

SortDone OrderTable(Table& table, SortMemory& memory, std::int32_t columnIndex,
                    std::int32_t SortOrder) {
  if (table.RowCount() == 0) return {};
  if (columnIndex < 1 || columnIndex > table.ColumnCount()) return {};
  if (SortOrder == kSortToggle) {
    if (!table.Sorted) {
      SortOrder = kSortDescending;
    } else if (columnIndex == memory.LastColumn) {
      SortOrder = 1 - memory.LastSortOrder;
    } else {
      SortOrder =
          table.ColumnAt(columnIndex).Header == "Line ID" ? kSortAscending : memory.LastSortOrder;
    }
  }
  OrderRows(table, columnIndex, SortOrder);
  table.Sorted = true;
  const SortDone done{
      .Order = SortOrder, .Column = columnIndex, .PreviousColumn = memory.LastColumn};
  memory.LastSortOrder = SortOrder;
  memory.LastColumn = columnIndex;
  return done;
}

void MarkSortedColumn(Table& table, const SortDone& done) {
  if (done.Order < 0) return;
  Recolor(table, done.PreviousColumn, done.Column);
}

std::int32_t SortTable(Table& table, SortMemory& memory, std::int32_t columnIndex,
                       std::int32_t SortOrder, bool comparedTable) {
  const SortDone done = OrderTable(table, memory, columnIndex, SortOrder);
  if (!comparedTable) MarkSortedColumn(table, done);
  return done.Order;
}

}  // namespace zol
