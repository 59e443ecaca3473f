#pragma once

// The call graph around one procedure: the procedure in column 0, its callers
// in the negative columns and its callees in the positive ones, walked from
// the caller-callee pairs of a session. A procedure may stand in several
// columns (each with its own node, since the key holds the column) but at
// most once in one column.
//
// The walk on each side goes on until a column is empty or holds more than
// ten procedures, or the depth asked for is reached; with the automatic depth
// (99) a recursion reachable from the procedure fills every column up to it.

#include <cstdint>
#include <stdexcept>
#include <string>

#include "base/vbarray.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

struct FlowNode {
  std::string key;  // "D", depth, "P", procedure ID: "D0P17", "D-2P5"
  std::int32_t ProcNumber = 0;
  std::int32_t Depth = 0;  // 0 the selected procedure, negative callers, positive callees
  // The box on the canvas, in pixels; `w` stays 0 until the chart places the node.
  std::int32_t x = 0;
  std::int32_t Y = 0;
  std::int32_t w = 0;
  std::int32_t h = 0;
  std::int32_t Order = 0;  // place in its column, from 1
  double SortValue = 0;    // orders the column: the value of the last link that reached it
  double ProcedureValue = 0;
  std::int32_t Procedure = 0;  // always ProcNumber
  // On the outermost columns: the calls that lead further out and are not drawn.
  std::int32_t OtherHits = 0;
  double OtherTime = 0;
};

struct FlowLink {
  std::string key;  // "D", depth, "F", FromNode, "T", ToNode
  std::int32_t Depth = 0;
  std::string FromNode;  // key of the caller's node
  std::string ToNode;    // key of the callee's node
  std::string Value;     // the label drawn on the link; "-1" means none
  double NumericValue = 0;
};

// Why nothing is drawn; the JSON of the command line and the notice of the
// window use these texts.
inline constexpr const char* kFlowComparedMessage = "Unavailable (compared sessions)";
inline constexpr const char* kFlowHeterogeneousMessage = "Unavailable (heterogeneous sessions)";
inline constexpr const char* kFlowNoDataMessage = "No data";

struct FlowGraph {
  Array1<FlowNode> Nodes;
  Array1<FlowLink> Links;
  std::int32_t Session = 0;       // the slot of Session the values come from
  std::int32_t Module = 0;        // the module chosen (or given)
  std::int32_t Procedure = 0;     // the procedure chosen, 0 when none
  std::int32_t SelectedNode = 0;  // index of the node of Procedure, 0 when none
  // The outermost columns the walks reached: MinDepth can lie one beyond the
  // last drawn column when a side ended on an empty column. Both 0 when the
  // walk did not run.
  std::int32_t MinDepth = 0;
  std::int32_t MaxDepth = 0;
  std::string Message;  // empty, or one of the texts above

  std::int32_t NodeCount() const { return Nodes.Count(); }
  std::int32_t LinkCount() const { return Links.Count(); }
  // The index of the node with that key, 0 when none.
  std::int32_t GetNode(const std::string& key) const;
  // Something to draw: at least one node.
  bool HasChart() const { return NodeCount() > 0; }
};

// Columns to walk on each side; 0 means automatic (99), the settings keep 0 to 5.
struct CallDepths {
  std::int32_t callers = 0;
  std::int32_t callees = 0;
};
inline constexpr std::int32_t kAutomaticCallDepth = 99;

// A pair of the session names a procedure its project doesn't have.
class FlowDataError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The graph for the session, module, procedure and measure of `sel`. A
// procedure of 0 lets the walk choose one: the run's first procedure when no
// module is given or when it belongs to the module, else the first procedure
// of the module met in the pairs. Reads the workspace only (its sessions, its
// projects and whether the ticked sessions are of one project).
FlowGraph BuildFlowGraph(const Workspace& ws, const Selection& sel, CallDepths depths);

// The notice shown in place of a chart, lines separated by CR LF: a blank
// line, "    Unavailable (...)", a blank line and "    Please click the
// Procedures tab"; or a blank line and "    No data". Empty for no message.
std::string FlowNoticeText(const std::string& message);

}  // namespace zol
