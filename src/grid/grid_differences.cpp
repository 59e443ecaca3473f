#include "grid/grid_differences.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "compare/run_diff.h"
#include "grid/cell_text.h"
#include "grid/grid_frame.h"
#include "grid/grid_sort.h"

namespace zol {

namespace {

constexpr std::string_view kDiffHeader = "Diff.";
constexpr std::string_view kRatioHeader = "Ratio";

// The value of a cell, a percentage by its number; nothing for an empty cell
// or one with no number ("-" at a procedure's end).
std::optional<double> ValueOf(std::string_view text) {
  if (!text.empty() && text.back() == '%') text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  return ParseCellNumber(text);
}

// The figure a run is compared on: its first time or coverage column, past
// the hit counts that lead the runs of the lines grid.
int FigureColumn(const Table& t, int firstOfRun, int perSession) {
  for (int j = 0; j < perSession; ++j) {
    if (t.ColumnAt(firstOfRun + j).Header != "Hits") return j;
  }
  return 0;
}

DiffQuantity QuantityOf(const std::string& header, std::string_view sample) {
  DiffQuantity q;
  if (header == "Hits") {
    q.hits = true;
  } else if (!sample.empty() && sample.back() == '%') {
    q.measure = Measure::Coverage;
  }
  return q;
}

std::string SignedPercent(double x) {
  std::string text = PercentText(x);
  return x > 0 ? "+" + text : text;
}

struct Change {
  std::string diff;
  std::string ratio;
  VbColor color = kColorStandard;
  bool changed = false;
};

Change ChangeOf(std::optional<double> base, std::optional<double> next,
                const DiffOptions& options) {
  Change c;
  if (!base && !next) return c;
  c.changed = true;
  if (!base) {
    c.diff = "new";
    return c;
  }
  if (!next) {
    c.diff = "gone";
    return c;
  }
  const DiffState state = DiffStateOf(*base, *next, options);
  c.changed = state != DiffState::Unchanged;
  c.color = state == DiffState::Worse    ? kColorRed
            : state == DiffState::Better ? kColorGreen
                                         : kColorGrey;
  if (*base != 0) {
    c.diff = SignedPercent((*next - *base) / *base);
    c.ratio = FixedText(*next / *base, 2) + "x";
  } else if (*next == 0) {
    c.diff = "0%";
  }
  return c;
}

}  // namespace

void ShowDifferences(GridBuild& build, const DifferenceOptions& options) {
  FakeHeaders& headers = build.Headers;
  const int sessions = static_cast<int>(headers.SessionNames.size());
  if (!options.Show || sessions < 2) return;
  const Table& old = build.Grid;
  const int leading = headers.FirstColumn;
  const int per = headers.NumberOfColumnsPerSession;
  const auto runStart = [&](int k) { return leading + k * per + 1; };
  const int figure = FigureColumn(old, runStart(0), per);

  // The new columns: the leading ones and the runs as they were, a pair after
  // each later run; `from[c]` is the old column of new column c, 0 for a new one.
  Table t;
  t.ImageList = old.ImageList;
  std::vector<int> from(1, 0);
  const auto copyColumn = [&](int c) {
    const Column& column = old.ColumnAt(c);
    t.AddColumn(column.Header, column.Align, column.Width);
    from.push_back(c);
  };
  for (int c = 1; c <= leading; ++c) copyColumn(c);
  std::vector<int> diffColumns(sessions, 0);
  for (int k = 0; k < sessions; ++k) {
    for (int j = 0; j < per; ++j) copyColumn(runStart(k) + j);
    if (k == 0) continue;
    diffColumns[k] = t.AddColumn(std::string(kDiffHeader), Alignment::Right);
    t.AddColumn(std::string(kRatioHeader), Alignment::Right);
    from.insert(from.end(), {0, 0});
  }

  DiffOptions noise;
  const int baseColumn = runStart(0) + figure;
  for (int r = 1; r <= old.RowCount(); ++r) {
    const bool total = old.Key(r) == kTotalKey;
    std::vector<Change> changes(sessions);
    bool changed = false;
    const std::string baseText = old.Text(r, baseColumn);
    const std::optional<double> base = ValueOf(baseText);
    noise.quantity = QuantityOf(old.ColumnAt(baseColumn).Header, baseText);
    for (int k = 1; k < sessions; ++k) {
      changes[k] = ChangeOf(base, ValueOf(old.Text(r, runStart(k) + figure)), noise);
      changed = changed || changes[k].changed;
    }
    if (options.ChangedOnly && !changed && !total) continue;

    RowRef copy = t.AddRow(old.Key(r), "", old.Icon(r));
    copy.SetTag(old.Tag(r));
    for (int c = 1; c <= t.ColumnCount(); ++c) {
      if (from[c] == 0) continue;
      // Texts are kept in each table's own pool; the rest of a cell copies as it is.
      const CellData& cell = old.CellAt(r, from[c]);
      if (cell.Kind == CellKind::Text) {
        copy.SetText(c, old.StoredText(cell));
        copy.SetBold(c, cell.Bold);
        copy.SetColor(c, cell.Color);
      } else {
        copy.SetCell(c, cell);
      }
    }
    for (int k = 1; k < sessions; ++k) {
      for (int j = 0; j < 2; ++j) {
        const int c = diffColumns[k] + j;
        copy.SetText(c, j == 0 ? changes[k].diff : changes[k].ratio);
        copy.SetColor(c, changes[k].color);
        copy.SetBold(c, total);
      }
    }
  }

  headers.ColumnsPerSession.assign(sessions, per + 2);
  headers.ColumnsPerSession.front() = per;
  FitColumnWidths(t);
  SortMemory sort;
  SortTable(t, sort, diffColumns.back(), kSortDescending, true);
  t.SelectedRow = t.RowCount() > 0 ? 1 : 0;
  build.Grid = std::move(t);
}

}  // namespace zol
