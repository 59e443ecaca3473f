// Layout numbers for fixed text metrics, worked out by hand, and what the
// drawing leaves on the canvas.

#include "flow/flow_chart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "flow/flow_fixture.h"
#include "flow/recorded_chart.h"
#include "flow/svg_canvas.h"
#include "source_view/timing_colours.h"

namespace zol {
namespace {

using test::FlowSession;

// Every character half the size wide (bold 0.6), lines 1.5 times the size
// high; any size is taken as asked.
class SimpleMetrics : public FlowTextMetrics {
 public:
  double SizeInForce(double size) const override { return size; }
  double LineWidth(std::string_view line, double size, bool bold) const override {
    return static_cast<double>(line.size()) * size * (bold ? 0.6 : 0.5);
  }
  double LineHeight(double size, bool) const override { return size * 1.5; }
  double Ascent(double size, bool) const override { return size; }
};

// A font that has the sizes 6, 8 and 10 only.
class FixedSizeMetrics : public SimpleMetrics {
 public:
  double SizeInForce(double size) const override { return size >= 10 ? 10 : size >= 8 ? 8 : 6; }
};

// Procedure 2 calls 1 (0.25 s); 1 calls 3 and 4 (0.5 s each, 2 and 3 calls).
FlowSession SmallRun() {
  FlowSession f({1, 1, 2, 2});
  f.Pair(2, 1, 1, 0.25);
  f.Pair(1, 3, 2, 0.5);
  f.Pair(1, 4, 3, 0.5);
  LoadColors(f.ws, true, "");
  return f;
}

TEST(FlowChartLayout, SizesAndPlacesForFixedMetrics) {
  FlowSession f = SmallRun();
  FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  SimpleMetrics metrics;
  RecordingCanvas canvas(metrics);
  const ChartLayout l = LayOutChart(g, FlowOptions{}, canvas);
  EXPECT_EQ(l.FontHeight, 8);
  EXPECT_EQ(l.SmallFontHeight, 7.5);
  EXPECT_EQ(l.TextHeight, 12);
  EXPECT_EQ(l.NodeWidth, 88);       // 22 characters of 4 pixels
  EXPECT_EQ(l.NodeHeight, 42);      // 7.5 + 2 + 12 + 2 + 2 + 16 = 41.5, to even
  EXPECT_EQ(l.LinkLabelWidth, 36);  // "0.500000s"
  EXPECT_EQ(l.LinkHorizontalWidth, 66);
  EXPECT_EQ(l.MaxNodePerDepth, 2);
  EXPECT_EQ(l.Width, 550);   // 3 x 88 + 44 + 2 x 50 + 2 x 66 + 10
  EXPECT_EQ(l.Height, 144);  // 2 x 42 + 20 + 5 + 35

  const FlowNode& caller = g.Nodes(g.GetNode("D-1P2"));
  EXPECT_EQ(caller.x, 26);
  EXPECT_EQ(caller.Y, 66);  // (144 - 40 - 42) / 2 + 35
  EXPECT_EQ(caller.w, 88);
  EXPECT_EQ(caller.h, 42);
  const FlowNode& selected = g.Nodes(g.GetNode("D0P1"));
  EXPECT_EQ(selected.x, 230);  // 21 + 88 + 50 + 66, plus the margin
  // Equal sort values keep the order the nodes were made in.
  const FlowNode& first = g.Nodes(g.GetNode("D1P3"));
  const FlowNode& second = g.Nodes(g.GetNode("D1P4"));
  EXPECT_EQ(first.x, 434);
  EXPECT_EQ(first.Order, 1);
  EXPECT_EQ(first.Y, 35);
  EXPECT_EQ(second.Order, 2);
  EXPECT_EQ(second.Y, 97);
}

TEST(FlowChartLayout, WithoutTheModuleRowTheTopMarginGrowsAndNodesShrink) {
  FlowSession f = SmallRun();
  FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  SimpleMetrics metrics;
  RecordingCanvas canvas(metrics);
  FlowOptions o;
  o.ShowModuleFlow = 0;
  const ChartLayout l = LayOutChart(g, o, canvas);
  EXPECT_EQ(l.TopMargin, 60);
  EXPECT_EQ(l.NodeHeight, 26);  // 7.5 + 2 + 12 + 2 + 2 = 25.5, to even
  EXPECT_EQ(l.Height, 137);
  EXPECT_EQ(g.Nodes(g.GetNode("D1P3")).Y, 60);
  EXPECT_EQ(g.Nodes(g.GetNode("D1P4")).Y, 106);
}

TEST(FlowChartLayout, OneNodeIsThreeNodesHighAndSmallFontsStopAtFive) {
  FlowSession f({1});
  FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  SimpleMetrics metrics;
  RecordingCanvas canvas(metrics);
  const ChartLayout l = LayOutChart(g, FlowOptions{}, canvas);
  EXPECT_EQ(l.MinDepth, 0);
  EXPECT_EQ(l.MaxDepth, 0);
  EXPECT_EQ(l.Height, 3 * l.NodeHeight);

  FlowOptions six;
  six.SizeFlow = 6;
  EXPECT_EQ(LayOutChart(g, six, canvas).SmallFontHeight, 5.5);
  // A font that keeps size 6 below it: the search goes down to 5, no further.
  FixedSizeMetrics fixed;
  RecordingCanvas fixedCanvas(fixed);
  EXPECT_EQ(LayOutChart(g, six, fixedCanvas).SmallFontHeight, 5);
  FlowOptions seven;
  seven.SizeFlow = 7;  // taken as 6
  EXPECT_EQ(LayOutChart(g, seven, fixedCanvas).FontHeight, 6);
}

// Left, top, right and bottom of what an operation covers.
CanvasRect Covered(const RecordingCanvas::Op& op) {
  if (op.kind != RecordingCanvas::Kind::Polyline) return op.bounds;
  const double half = op.penWidth / 2.0;
  CanvasRect r{op.points[0].x, op.points[0].y, op.points[0].x, op.points[0].y};
  for (const CanvasPoint& p : op.points) {
    r.left = std::min(r.left, p.x - half);
    r.top = std::min(r.top, p.y - half);
    r.right = std::max(r.right, p.x + half);
    r.bottom = std::max(r.bottom, p.y + half);
  }
  return r;
}

TEST(FlowChartDrawing, EverythingStaysInsideTheCanvas) {
  // Recursion with self calls and outer marks on both sides, every scheme
  // and measure, with and without the module row.
  FlowSession f({1, 1, 2});
  f.Pair(1, 1, 3, 0.5);
  f.Pair(1, 2, 4, 1.5);
  f.Pair(2, 1, 2, 0.75);
  f.Pair(2, 3, 1, 0.001);
  LoadColors(f.ws, true, "");
  SimpleMetrics metrics;
  for (int scheme = 1; scheme <= 3; ++scheme) {
    for (int module = 0; module <= 1; ++module) {
      for (int m = 0; m <= 4; ++m) {
        FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1, MeasureFromIndex(m)), {2, 3});
        FlowOptions o;
        o.ColorSchemeFlow = scheme;
        o.ShowModuleFlow = module;
        RecordingCanvas canvas(metrics);
        const ChartLayout l = DrawChart(f.ws, g, o, MeasureFromIndex(m), canvas);
        EXPECT_EQ(canvas.Width(), l.Width);
        for (const auto& op : canvas.Operations()) {
          const CanvasRect r = Covered(op);
          EXPECT_GE(r.left, 0) << scheme << module << m << " " << op.text;
          EXPECT_GE(r.top, 0) << scheme << module << m << " " << op.text;
          EXPECT_LE(r.right, l.Width) << scheme << module << m << " " << op.text;
          EXPECT_LE(r.bottom, l.Height) << scheme << module << m << " " << op.text;
        }
      }
    }
  }
}

std::vector<std::string> Texts(const RecordingCanvas& canvas) {
  std::vector<std::string> texts;
  for (const auto& op : canvas.Operations())
    if (op.kind == RecordingCanvas::Kind::Text) texts.push_back(op.text);
  return texts;
}

bool Has(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

TEST(FlowChartDrawing, NodesLinksAndKeySayWhatTheMeasureShows) {
  FlowSession f = SmallRun();
  f.Pair(1, 1, 5, 0.125);
  FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  SimpleMetrics metrics;
  RecordingCanvas canvas(metrics);
  DrawChart(f.ws, g, FlowOptions{}, Measure::Total, canvas);
  const auto texts = Texts(canvas);
  EXPECT_TRUE(Has(texts, "Proc1"));
  EXPECT_TRUE(Has(texts, "Module2"));
  EXPECT_TRUE(Has(texts, "1 hit / 0.010000s"));  // procedure 1: 1 hit, 0.01 s
  EXPECT_TRUE(Has(texts, "3 hits / 0.030000s"));
  EXPECT_TRUE(Has(texts, "2 calls"));  // a label's first line
  EXPECT_TRUE(Has(texts, "0.500000s"));
  EXPECT_TRUE(Has(texts, "5 calls / 0.125000s"));  // the self call, above its node
  EXPECT_TRUE(Has(texts, "Node Values: "));
  EXPECT_TRUE(Has(texts, "hits / total procedure time "));
  EXPECT_TRUE(Has(texts, "  - Link Values: "));
  EXPECT_TRUE(Has(texts, "calls / total time spent in each call "));

  RecordingCanvas coverage(metrics);
  FlowGraph gc = BuildFlowGraph(f.ws, f.Select(1, 1, Measure::Coverage), {});
  DrawChart(f.ws, gc, FlowOptions{}, Measure::Coverage, coverage);
  const auto covered = Texts(coverage);
  EXPECT_TRUE(Has(covered, "1 hit / 1% Cov."));
  EXPECT_TRUE(Has(covered, "calls "));
}

TEST(FlowChartDrawing, WithoutColoursThePenIsThinAndNothingIsFilled) {
  FlowSession f = SmallRun();
  f.Pair(1, 1, 5, 0.125);
  FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  SimpleMetrics metrics;
  RecordingCanvas canvas(metrics);
  FlowOptions o;
  o.ColorSchemeFlow = 1;
  const ChartLayout l = DrawChart(f.ws, g, o, Measure::Total, canvas);
  EXPECT_EQ(l.DrawWidth, 1);
  int outlines = 0;
  for (const auto& op : canvas.Operations()) {
    if (op.kind == RecordingCanvas::Kind::Fill) {
      EXPECT_EQ(op.colour, PackRgb(255, 255, 255));
    }
    if (op.kind == RecordingCanvas::Kind::Polyline || op.kind == RecordingCanvas::Kind::Outline) {
      EXPECT_EQ(op.penWidth, 1);
      EXPECT_EQ(op.colour, 0);
    }
    if (op.kind == RecordingCanvas::Kind::Outline) ++outlines;
    EXPECT_NE(op.kind, RecordingCanvas::Kind::ImageFill);
  }
  EXPECT_EQ(outlines, 4);
  // The self call's label is shown only with colours.
  EXPECT_FALSE(Has(Texts(canvas), "5 calls / 0.125000s"));
}

TEST(FlowChartDrawing, TheSvgDocumentHoldsTheChartAndEscapesNames) {
  FlowSession f = SmallRun();
  f.ws.Project(1).Procedure(1).Name = "A<&>\xE9";
  FlowGraph g = BuildFlowGraph(f.ws, f.Select(1, 1), {});
  SvgCanvas svg;
  const ChartLayout l = DrawChart(f.ws, g, FlowOptions{}, Measure::Total, svg);
  const std::string doc = svg.Document();
  EXPECT_NE(doc.find("width=\"" + std::to_string(l.Width) + "\" height=\"" +
                     std::to_string(l.Height) + "\""),
            std::string::npos);
  EXPECT_NE(doc.find("A&lt;&amp;&gt;\xC3\xA9"), std::string::npos);
  EXPECT_EQ(doc.find("A<&>"), std::string::npos);
  EXPECT_NE(doc.find("</svg>"), std::string::npos);
}

TEST(FlowChartDrawing, ArrowHeadsPointAlongTheLine) {
  SimpleMetrics metrics;
  RecordingCanvas canvas(metrics);
  DrawArrow(canvas, 0, 0, 100, 0, 10, false);
  DrawArrow(canvas, 100, 0, 0, 0, 10, false);
  DrawArrow(canvas, 0, 0, 0, 50, 10, false);
  const auto& ops = canvas.Operations();
  ASSERT_EQ(ops.size(), 3U);
  // Both strokes go back from the tip, at equal angles to the line.
  EXPECT_LT(ops[0].points[0].x, 100);
  EXPECT_DOUBLE_EQ(ops[0].points[0].y, -ops[0].points[2].y);
  EXPECT_DOUBLE_EQ(std::hypot(ops[0].points[0].x - 100, ops[0].points[0].y), 10);
  EXPECT_GT(ops[1].points[0].x, 0);
  EXPECT_LT(ops[2].points[0].y, 50);
  EXPECT_DOUBLE_EQ(ops[2].points[0].x, -ops[2].points[2].x);
}

}  // namespace
}  // namespace zol
