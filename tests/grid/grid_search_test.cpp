// The search over a grid's rows, and the copy of chosen rows.

#include "grid/grid_search.h"

#include <gtest/gtest.h>

#include "grid/grid_export.h"

namespace zol {
namespace {

Table Lines() {
  Table t;
  t.AddColumn("Module");
  t.AddColumn("Procedure");
  t.AddColumn("Hits", Alignment::Right);
  t.AddColumn("Line");
  const char* rows[][4] = {{"CInvoice", "AddLine", "12", "mLines.Add item"},
                           {"CInvoice", "SubTotal", "3", "For Each item In mLines"},
                           {"modTax", "TaxRate", "12", "If a<b & c>d Then"},
                           {"frmOrder", "Form_Load", "addline", "End Sub"}};
  for (const auto& r : rows) {
    RowRef row = t.AddRow("", r[0]);
    for (int c = 2; c <= 4; ++c) row.SetText(c, r[c - 1]);
  }
  RowRef total = t.AddRow(std::string(kTotalKey), "TOTAL");
  total.SetText(3, "27");
  return t;
}

TEST(GridSearch, EveryWordMustBeFoundInTheTextColumns) {
  const Table t = Lines();
  EXPECT_EQ(RowsMatching(t, ""), (std::vector<int>{1, 2, 3, 4, 5}));
  EXPECT_EQ(RowsMatching(t, "  \t "), (std::vector<int>{1, 2, 3, 4, 5}));
  // Any case; words anywhere among module, procedure and line; total kept.
  EXPECT_EQ(RowsMatching(t, "invoice ITEM"), (std::vector<int>{1, 2, 5}));
  EXPECT_EQ(RowsMatching(t, "invoice subtotal mlines"), (std::vector<int>{2, 5}));
  EXPECT_EQ(RowsMatching(t, "a<b &"), (std::vector<int>{3, 5}));
  // Numbers are not searched: "12" is a count of hits, "addline" a number column.
  EXPECT_EQ(RowsMatching(t, "12"), (std::vector<int>{5}));
  EXPECT_EQ(RowsMatching(t, "form addline"), (std::vector<int>{5}));
  // A word is not found across two cells.
  EXPECT_EQ(RowsMatching(t, "invoiceaddline"), (std::vector<int>{5}));
}

TEST(GridSearch, ChosenRowsAreCopiedAsTheExportWritesThem) {
  const Table t = Lines();
  EXPECT_EQ(ExportText(t, {3, 1}, false),
            "Module\tProcedure\tHits\tLine\r\n"
            "modTax\tTaxRate\t12\tIf a<b & c>d Then\r\n"
            "CInvoice\tAddLine\t12\tmLines.Add item\r\n");
  EXPECT_EQ(ExportText(t, {0, 9}, false), "Module\tProcedure\tHits\tLine\r\n");
  std::vector<int> all{1, 2, 3, 4, 5};
  EXPECT_EQ(ExportText(t, all, true), ExportText(t, true));
}

}  // namespace
}  // namespace zol
