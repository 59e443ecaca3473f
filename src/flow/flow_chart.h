#pragma once

// Lays a flow graph out on a canvas and paints it: the callers' columns on
// the left, the callees' on the right, each column ordered by the nodes' sort
// values (highest first, ties in the order the nodes were made), the links
// between them with arrow heads, the call counts and times on the links that
// touch the selected procedure, and a one-line key at the top. Everything
// painted stays inside the canvas size the layout works out.

#include <cstdint>

#include "flow/flow_canvas.h"
#include "flow/flow_graph.h"
#include "flow/flow_options.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// The sizes of one chart, in pixels (font sizes in points).
struct ChartLayout {
  std::int32_t TopMargin = 35;  // 60 without the module row
  std::int32_t LeftMargin = 5;
  std::int32_t BottomMargin = 5;
  std::int32_t RightMargin = 5;
  std::int32_t LinkWidth = 50;
  std::int32_t LinkDashWidth = 20;
  std::int32_t NodeVDelta = 20;
  double FontHeight = 8;
  double SmallFontHeight = 8;
  double SmallTextHeight = 0;
  double TextHeight = 0;
  std::int32_t NodeWidth = 0;
  std::int32_t NodeHeight = 0;
  double LinkLabelWidth = 0;
  std::int32_t LinkHorizontalWidth = 0;
  std::int32_t MaxNodePerDepth = 0;
  // The columns that hold nodes.
  std::int32_t MinDepth = 0;
  std::int32_t MaxDepth = 0;
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  std::int32_t DrawWidth = 3;  // pen width of links: 1 without colours
};

// Works out the sizes with the canvas's font and gives every node its box
// and its place in its column (x, Y, w, h, Order). The canvas is measured,
// not painted. The graph must have at least one node.
ChartLayout LayOutChart(FlowGraph& graph, const FlowOptions& options, FlowCanvas& canvas);

// Lays the chart out, sizes the canvas and paints it. Names and values come
// from the session and project of the workspace, colours from its colour
// table.
ChartLayout DrawChart(const Workspace& ws, FlowGraph& graph, const FlowOptions& options,
                      Measure measure, FlowCanvas& canvas);

// A line's arrow head at (x2, y2): two strokes of `length` going back at
// equal angles to the line from (x1, y1); closed and filled when `filled`.
void DrawArrow(FlowCanvas& canvas, double x1, double y1, double x2, double y2, double length,
               bool filled);

// The node whose box holds the point, 0 when none (after a layout).
std::int32_t NodeAt(const FlowGraph& graph, int x, int y);

// The texts of the key line for a measure: node values, then link values.
const char* NodeValuesDescription(Measure measure);
const char* LinkValuesDescription(Measure measure);

}  // namespace zol
