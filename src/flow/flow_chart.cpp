#include "flow/flow_chart.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/numbers.h"
#include "base/vb_format.h"
#include "source_view/timing_colours.h"

namespace zol {

namespace {

constexpr const char* kNodeWidthSample = "1324567890132456789012";
constexpr PackedColour kBlack = 0;
constexpr PackedColour kWhite = PackRgb(255, 255, 255);
constexpr PackedColour kNodeYellow = PackRgb(255, 255, 0);
constexpr PackedColour kSelectedYellow = PackRgb(255, 225, 0);
constexpr PackedColour kCoverageMoreFill = 0xFFFF;
constexpr std::uint32_t kModuleTextFlags = 0x18024;
constexpr std::uint32_t kNodeTextFlags = 0x18025;
constexpr std::uint32_t kLinkTextFlags = 0x25;
constexpr int kIconSize = 16;
// Half the opening of an arrow head.
constexpr double kArrowHalfAngle = 25.0 * M_PI / 180.0;

std::int32_t Round(double x) {
  return static_cast<std::int32_t>(RoundHalfEven(x));
}

int ModuleRowHeight(double smallFontHeight) {
  return Round(2 + std::max(smallFontHeight, 16.0));
}

// A colour for a link or an outer mark: by value always, whatever the node
// colours follow; black for coverage and without colours.
PackedColour ValueColour(const Workspace& ws, Measure measure, std::int32_t scheme, double value) {
  if (scheme == kColorNone || measure == Measure::Coverage) return kBlack;
  const auto entry =
      TimingColourEntry(ws, 0, 0, 0, IndexOf(measure), kColorByValue, std::nullopt, value);
  return entry ? ws.view.Colors[static_cast<std::size_t>(*entry)] : kBlack;
}

// The shadow under a node in the coverage view: green for a whole coverage,
// through yellow and orange, to red for none.
PackedColour CoverageShadow(double coverage) {
  const double percent = coverage * 100;
  const double ramp = percent >= 100 ? 0 : RoundHalfEven(Prorata(percent, 230, 0, 50, 150, true));
  const double hue = 120.0 * (1 - ramp / 230.0);  // degrees: 120 green, 0 red
  // Fully saturated, slightly dark, so it stands out on white.
  const double v = 0.85;
  const double h = hue / 60.0;
  const double x = v * (1 - std::fabs(std::fmod(h, 2.0) - 1));
  double r = 0;
  double g = 0;
  if (h < 1) {
    r = v;
    g = x;
  } else {
    r = x;
    g = v;
  }
  return PackRgb(Round(r * 255), Round(g * 255), 0);
}

PackedColour ShadowColour(const Workspace& ws, std::int32_t session, const FlowNode& node,
                          Measure measure, std::int32_t scheme) {
  if (measure == Measure::Coverage) {
    return CoverageShadow(ws.Session(session).ProcedureValue(node.Procedure).Coverage);
  }
  const auto entry = TimingColourEntry(ws, session, node.Procedure, 0, IndexOf(measure), scheme);
  return entry ? ws.view.Colors[static_cast<std::size_t>(*entry)] : kBlack;
}

std::string ValueLine(const ProcedureValue& v, Measure measure) {
  std::string text = std::to_string(v.Hits) + " hit" + (v.Hits > 1 ? "s" : "") + " / ";
  switch (measure) {
    case Measure::Coverage:
      return text + Format(v.Coverage, "0%") + " Cov.";
    case Measure::Total:
      return text + Format(v.TotalTime, "0.000000s");
    case Measure::Average:
      return text + Format(v.AverageTime, "0.000000s");
    case Measure::ChildTotal:
      return text + Format(v.ChildTotalTime, "0.000000s");
    case Measure::ChildAverage:
      return text + Format(v.ChildAverageTime, "0.000000s");
  }
  return text;
}

std::string OnOneLine(const std::string& value) {
  std::string out;
  for (std::string_view line : TextLines(value)) {
    if (!out.empty()) out += " / ";
    out += line;
  }
  return out;
}

// The nodes of each column in the order of their places.
std::vector<std::vector<std::int32_t>> Columns(const FlowGraph& graph, const ChartLayout& layout) {
  std::vector<std::vector<std::int32_t>> columns(
      static_cast<std::size_t>(layout.MaxDepth - layout.MinDepth + 1));
  for (std::int32_t i = 1; i <= graph.NodeCount(); ++i) {
    const FlowNode& n = graph.Nodes(i);
    columns[static_cast<std::size_t>(n.Depth - layout.MinDepth)].push_back(i);
  }
  for (auto& column : columns) {
    std::stable_sort(column.begin(), column.end(), [&](std::int32_t a, std::int32_t b) {
      return graph.Nodes(a).Order < graph.Nodes(b).Order;
    });
  }
  return columns;
}

class ChartPainter {
 public:
  ChartPainter(const Workspace& ws, FlowGraph& graph, const FlowOptions& options, Measure measure,
               FlowCanvas& canvas, const ChartLayout& layout)
      : ws_(ws),
        graph_(graph),
        options_(options),
        measure_(measure),
        canvas_(canvas),
        layout_(layout),
        session_(ws.Session(graph.Session)),
        project_(ws.Project(session_.Project)) {
    for (std::int32_t i = 1; i <= graph_.NodeCount(); ++i) nodeIndex_.emplace(graph_.Nodes(i).key, i);
  }

  void Paint() {
    canvas_.SetSize(layout_.Width, layout_.Height);
    canvas_.Clear();
    canvas_.SetPen(kBlack, layout_.DrawWidth);
    canvas_.SetFontBold(true);
    canvas_.FillRect(0, 0, layout_.Width, layout_.Height, kWhite);
    for (const auto& column : Columns(graph_, layout_)) {
      for (std::int32_t i : column) PaintNode(graph_.Nodes(i));
    }
    canvas_.SetFontSize(layout_.SmallFontHeight);
    canvas_.SetFontBold(false);
    for (const FlowLink& link : graph_.Links) PaintLink(link);
    PaintKey();
  }

 private:
  bool Coloured() const { return options_.ColorSchemeFlow != kColorNone; }

  std::int32_t GetNode(const std::string& key) const {
    const auto it = nodeIndex_.find(key);
    return it == nodeIndex_.end() ? 0 : it->second;
  }

  void PaintSelfCalls(const FlowNode& n) {
    for (const FlowLink& link : graph_.Links) {
      // Only a link from a node to itself joins two nodes of one procedure
      // (the walks skip self calls): the cheap test first.
      if (link.FromNode != link.ToNode) continue;
      const std::int32_t from = GetNode(link.FromNode);
      const std::int32_t to = GetNode(link.ToNode);
      if (from == 0 || to == 0 || graph_.Nodes(from).Procedure != n.Procedure ||
          graph_.Nodes(to).Procedure != n.Procedure) {
        continue;
      }
      const int width = layout_.DrawWidth;
      canvas_.SetPen(ValueColour(ws_, measure_, options_.ColorSchemeFlow, link.NumericValue),
                     width);
      canvas_.Arc(n.x + n.w / 2.0, n.Y + width / 2.0, layout_.NodeHeight / 2.0, -0.00001,
                  -3.1415927, 0.8);
      const std::int32_t x2 = Round(n.x + (n.w + layout_.NodeHeight) / 2.0 + 1);
      const std::int32_t y2 = n.Y;
      DrawArrow(canvas_, x2 - 1, y2 - 2, x2, y2, Round(layout_.LinkDashWidth / 2.0), false);
      canvas_.SetPen(kBlack, layout_.DrawWidth);
    }
  }

  void PaintNode(const FlowNode& n) {
    if (n.Depth == 0) PaintSelfCalls(n);
    if (Coloured()) {
      canvas_.FillRect(n.x + 3, n.Y + 3, n.x + n.w + 3, n.Y + n.h + 3,
                       ShadowColour(ws_, graph_.Session, n, measure_, options_.ColorSchemeFlow));
    }
    if (!Coloured()) {
      canvas_.SetPen(kBlack, 1);
      canvas_.OutlineRect(n.x, n.Y, n.x + n.w, n.Y + n.h);
    } else {
      canvas_.FillRect(n.x, n.Y, n.x + n.w, n.Y + n.h, kNodeYellow);
      if (n.Depth == 0) canvas_.FillRect(n.x, n.Y, n.x + n.w, n.Y + n.h, kSelectedYellow);
    }
    canvas_.SetPenColour(kBlack);

    const zol::Procedure* procedure =
        project_.Procedure.InRange(n.Procedure) ? &project_.Procedure(n.Procedure) : nullptr;
    const int moduleRow = ModuleRowHeight(layout_.SmallFontHeight);
    if (options_.ShowModuleFlow != 0) {
      if (procedure && project_.Module.InRange(procedure->BelongToModule)) {
        const zol::Module& module = project_.Module(procedure->BelongToModule);
        canvas_.DrawImage("TYPE" + std::to_string(module.Type), n.x + 1, n.Y + 1);
        canvas_.SetFontSize(layout_.SmallFontHeight);
        canvas_.SetFontBold(false);
        canvas_.DrawText(module.Name, n.x + 18, n.Y, n.x + n.w - 1, n.Y + moduleRow,
                         kModuleTextFlags);
      }
    }
    const int nameTop = options_.ShowModuleFlow != 0 ? n.Y + moduleRow + 2 : n.Y + 2;
    canvas_.SetFontSize(layout_.FontHeight);
    canvas_.SetFontBold(true);
    canvas_.DrawText(procedure ? procedure->Name : std::string(), n.x + 1, nameTop, n.x + n.w,
                     nameTop + Round(layout_.FontHeight + 4), kNodeTextFlags);

    canvas_.SetFontSize(layout_.SmallFontHeight);
    canvas_.SetFontBold(false);
    canvas_.DrawText(ValueLine(session_.ProcedureValue(n.Procedure), measure_), n.x + 2, n.Y,
                     n.x + n.w - 1, n.Y + n.h, kTextBottom | kTextSingleLine | kTextEndEllipsis);

    if (n.OtherHits != 0) {
      const int x = n.Depth == layout_.MinDepth ? n.x - 20 : n.x + n.w + 7;
      const int y = n.Y + Round((n.h - kIconSize) / 2.0);
      canvas_.DrawImage("GRAPHMORE", x, y);
      if (Coloured()) {
        canvas_.FillImageInside(
            "GRAPHMORE", x, y,
            measure_ == Measure::Coverage
                ? kCoverageMoreFill
                : ValueColour(ws_, measure_, options_.ColorSchemeFlow, n.OtherTime));
      }
    }
  }

  // The label of a link in a white box centred at (cx, cy).
  void PaintLabel(const std::string& value, double cx, double cy) {
    const double w = canvas_.TextWidth(value);
    const double h = canvas_.TextHeight(value);
    const int left = Round(cx - w / 2 - 2);
    const int right = Round(cx + w / 2 + 2);
    const int top = Round(cy - h / 2);
    canvas_.FillRect(left, top, right, Round(top + h), kWhite);
    canvas_.DrawText(value, left, top, right, Round(top + h), kTextCenter);
  }

  void PaintLink(const FlowLink& link) {
    const std::int32_t fn = GetNode(link.FromNode);
    const std::int32_t tn = GetNode(link.ToNode);
    if (fn == 0 || tn == 0) return;
    const PackedColour colour =
        ValueColour(ws_, measure_, options_.ColorSchemeFlow, link.NumericValue);
    const int width = layout_.DrawWidth;
    canvas_.SetPen(colour, width);
    const FlowNode& from = graph_.Nodes(fn);
    const FlowNode& to = graph_.Nodes(tn);
    if (fn == tn) {
      if (link.Depth == 0 && Coloured()) {
        canvas_.DrawText(OnOneLine(link.Value), from.x, from.Y - layout_.NodeHeight - 2,
                         from.x + from.w, from.Y - 2, kLinkTextFlags);
      }
      return;
    }
    const double x1 = from.x + from.w;
    const double y1 = from.Y + Round(from.h / 2.0);
    const double x2 = to.x;
    const double y2 = to.Y + Round(to.h / 2.0);
    const double arrow = Round(layout_.LinkDashWidth / 2.0);
    if (link.Value == "-1" || (link.Depth != 1 && link.Depth != -1)) {
      canvas_.Line(x1, y1, x2, y2);
      DrawArrow(canvas_, x1, y1, x2, y2, arrow, false);
      return;
    }
    // Right of the procedure the link leaves it level over LinkWidth and
    // turns to the callee's height, where the label stands; left of it the
    // label stands at the caller's height and the link reaches the
    // procedure level over LinkWidth.
    const double bend = link.Depth == 1 ? x1 + layout_.LinkWidth : x2 - layout_.LinkWidth;
    const double labelY = link.Depth == 1 ? y2 : y1;
    canvas_.Polyline({{x1, y1}, {bend, y1}, {bend, y2}, {x2, y2}});
    DrawArrow(canvas_, bend, y2, x2, y2, arrow, false);
    const double labelCentre = link.Depth == 1 ? (bend + x2) / 2 : (x1 + bend) / 2;
    PaintLabel(link.Value, labelCentre, labelY);
  }

  void PaintKey() {
    canvas_.SetPen(kBlack, 1);
    canvas_.SetFontSize(layout_.SmallFontHeight);
    const int right = layout_.Width - layout_.RightMargin;
    const int top = 5;
    const int bottom = top + Round(canvas_.TextHeight("H"));
    double x = 5;
    const std::pair<const char*, bool> pieces[] = {{"Node Values: ", true},
                                                   {NodeValuesDescription(measure_), false},
                                                   {"  - Link Values: ", true},
                                                   {LinkValuesDescription(measure_), false}};
    for (const auto& [text, bold] : pieces) {
      canvas_.SetFontBold(bold);
      if (x < right) {
        canvas_.DrawText(text, Round(x), top, right, bottom, kTextSingleLine | kTextEndEllipsis);
      }
      x += canvas_.TextWidth(text);
    }
    canvas_.SetFontBold(false);
  }

  const Workspace& ws_;
  FlowGraph& graph_;
  const FlowOptions& options_;
  Measure measure_;
  FlowCanvas& canvas_;
  const ChartLayout& layout_;
  const zol::Session& session_;
  const zol::Project& project_;
  std::unordered_map<std::string, std::int32_t> nodeIndex_;
};

}  // namespace

ChartLayout LayOutChart(FlowGraph& graph, const FlowOptions& options, FlowCanvas& canvas) {
  ChartLayout l;
  l.TopMargin = options.ShowModuleFlow == 0 ? 60 : 35;
  l.LinkWidth = options.HorizontalFlow;
  l.NodeVDelta = options.VerticalFlow;

  // Fonts: the normal one as the canvas takes it, and the next size down
  // that it really changes to.
  canvas.SetFontBold(false);
  canvas.SetFontSize(options.SizeFlow);
  l.FontHeight = canvas.FontSize();
  l.SmallFontHeight = l.FontHeight;
  while (canvas.FontSize() == l.FontHeight && l.SmallFontHeight > 5) {
    l.SmallFontHeight -= 0.5;
    canvas.SetFontSize(l.SmallFontHeight);
  }
  l.SmallTextHeight = canvas.TextHeight("H");
  canvas.SetFontSize(l.FontHeight);
  l.TextHeight = canvas.TextHeight("H");

  // Columns and their fullest.
  l.MinDepth = graph.Nodes(1).Depth;
  l.MaxDepth = l.MinDepth;
  for (const FlowNode& n : graph.Nodes) {
    l.MinDepth = std::min(l.MinDepth, n.Depth);
    l.MaxDepth = std::max(l.MaxDepth, n.Depth);
  }
  std::vector<std::int32_t> perDepth(static_cast<std::size_t>(l.MaxDepth - l.MinDepth + 1), 0);
  for (const FlowNode& n : graph.Nodes) ++perDepth[static_cast<std::size_t>(n.Depth - l.MinDepth)];
  for (std::int32_t count : perDepth) l.MaxNodePerDepth = std::max(l.MaxNodePerDepth, count);

  // Node size: the module row, when shown, has room for the module icon.
  l.NodeWidth = Round(canvas.TextWidth(kNodeWidthSample));
  l.NodeHeight = Round(l.SmallFontHeight + 2 + l.TextHeight + 2 +
                       (options.ShowModuleFlow != 0 ? 2 + std::max(l.SmallFontHeight, 16.0) : 2));

  for (const FlowLink& link : graph.Links) {
    if (link.Value != "-1")
      l.LinkLabelWidth = std::max(l.LinkLabelWidth, canvas.TextWidth(link.Value));
  }
  l.LinkHorizontalWidth = Round(l.LinkLabelWidth + 1.5 * l.LinkDashWidth);
  l.DrawWidth = options.ColorSchemeFlow == kColorNone ? 1 : 3;

  const std::int32_t columns = l.MaxDepth - l.MinDepth + 1;
  l.Width = l.NodeWidth * columns + 44 + l.LinkWidth * (columns - 1) + 2 * l.LinkHorizontalWidth +
            l.LeftMargin + l.RightMargin;
  const std::int32_t most = l.MaxNodePerDepth;
  l.Height = std::max(3 * l.NodeHeight, most * l.NodeHeight + (most - 1) * l.NodeVDelta +
                                            l.BottomMargin + l.TopMargin);

  // Places: each column from its highest sort value down, centred in the
  // height; the first of equal values keeps the first place.
  for (FlowNode& n : graph.Nodes) n.w = 0;
  std::int32_t depthLeft = 21;
  for (std::int32_t depth = l.MinDepth; depth <= l.MaxDepth; ++depth) {
    const std::int32_t count = perDepth[static_cast<std::size_t>(depth - l.MinDepth)];
    const std::int32_t depthHeight = l.NodeHeight * count + (count - 1) * l.NodeVDelta;
    std::int32_t place = 0;
    for (;;) {
      std::int32_t best = 0;
      double bestValue = -99999999;
      for (std::int32_t i = 1; i <= graph.NodeCount(); ++i) {
        const FlowNode& n = graph.Nodes(i);
        if (n.Depth == depth && n.w == 0 && n.SortValue > bestValue) {
          best = i;
          bestValue = n.SortValue;
        }
      }
      if (best == 0) break;
      ++place;
      FlowNode& n = graph.Nodes(best);
      n.Order = place;
      n.x = depthLeft + l.LeftMargin;
      n.Y = Round((l.Height - (l.BottomMargin + l.TopMargin) - depthHeight) / 2.0 +
                  (place - 1) * (l.NodeHeight + l.NodeVDelta) + l.TopMargin);
      n.w = l.NodeWidth;
      n.h = l.NodeHeight;
    }
    depthLeft += l.NodeWidth + l.LinkWidth;
    if (depth == -1 || depth == 0) depthLeft += l.LinkHorizontalWidth;
  }
  return l;
}

ChartLayout DrawChart(const Workspace& ws, FlowGraph& graph, const FlowOptions& options,
                      Measure measure, FlowCanvas& canvas) {
  const ChartLayout layout = LayOutChart(graph, options, canvas);
  ChartPainter(ws, graph, options, measure, canvas, layout).Paint();
  return layout;
}

void DrawArrow(FlowCanvas& canvas, double x1, double y1, double x2, double y2, double length,
               bool filled) {
  // The direction back along the line from its end.
  double bx = 0;
  double by = 0;
  if (x2 != x1) {
    const double rev = x2 >= x1 ? -1 : 1;
    const double angle = std::atan((y2 - y1) / (x2 - x1));
    bx = rev * std::cos(angle);
    by = rev * std::sin(angle);
  } else {
    by = y2 >= y1 ? -1 : 1;
  }
  const double c = std::cos(kArrowHalfAngle);
  const double s = std::sin(kArrowHalfAngle);
  const CanvasPoint tip{x2, y2};
  const CanvasPoint a{x2 + length * (bx * c - by * s), y2 + length * (bx * s + by * c)};
  const CanvasPoint b{x2 + length * (bx * c + by * s), y2 + length * (-bx * s + by * c)};
  canvas.Polyline({a, tip, b});
  if (filled) {
    canvas.Line(a.x, a.y, b.x, b.y);
    const int steps = std::max(2, static_cast<int>(length));
    for (int i = 1; i < steps; ++i) {
      const double t = static_cast<double>(i) / steps;
      canvas.Line(tip.x, tip.y, a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t);
    }
  }
}

std::int32_t NodeAt(const FlowGraph& graph, int x, int y) {
  for (std::int32_t i = 1; i <= graph.NodeCount(); ++i) {
    const FlowNode& n = graph.Nodes(i);
    if (n.w > 0 && x >= n.x && x < n.x + n.w && y >= n.Y && y < n.Y + n.h) return i;
  }
  return 0;
}

const char* NodeValuesDescription(Measure measure) {
  switch (measure) {
    case Measure::Total:
      return "hits / total procedure time ";
    case Measure::Average:
      return "hits / average procedure time ";
    case Measure::ChildTotal:
      return "hits / total procedure(+children) time ";
    case Measure::ChildAverage:
      return "hits / average procedure(+children) time ";
    case Measure::Coverage:
      return "hits / procedure coverage ";
  }
  return "";
}

const char* LinkValuesDescription(Measure measure) {
  switch (measure) {
    case Measure::Total:
    case Measure::ChildTotal:
      return "calls / total time spent in each call ";
    case Measure::Average:
    case Measure::ChildAverage:
      return "calls / average time spent in each call ";
    case Measure::Coverage:
      return "calls ";
  }
  return "";
}

}  // namespace zol
