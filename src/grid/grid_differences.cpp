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
  for (const Row& row : old.Rows()) {
    const bool total = row.Key == kTotalKey;
    std::vector<Change> changes(sessions);
    bool changed = false;
    const std::optional<double> base = ValueOf(row.Text(baseColumn));
    noise.quantity = QuantityOf(old.ColumnAt(baseColumn).Header, row.Text(baseColumn));
    for (int k = 1; k < sessions; ++k) {
      changes[k] = ChangeOf(base, ValueOf(row.Text(runStart(k) + figure)), noise);
      changed = changed || changes[k].changed;
    }
    if (options.ChangedOnly && !changed && !total) continue;

    Row& copy = t.AddRow(row.Key, row.RowText(), row.Icon);
    copy.Tag = row.Tag;
    for (int c = 1; c <= t.ColumnCount(); ++c) {
      if (from[c] != 0 && from[c] <= static_cast<int>(row.Cells.size())) {
        copy.At(c) = row.Cells[from[c] - 1];
      }
    }
    for (int k = 1; k < sessions; ++k) {
      for (int j = 0; j < 2; ++j) {
        Cell& cell = copy.At(diffColumns[k] + j);
        cell.Text = j == 0 ? changes[k].diff : changes[k].ratio;
        cell.Color = changes[k].color;
        cell.Bold = total;
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
