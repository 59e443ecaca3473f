#pragma once

// The graph as JSON for the command line: the module and procedure chosen,
// the message, the walk's outer columns, and the nodes and links in the
// order they were made.

#include <string>

#include "flow/flow_graph.h"

namespace zol {

std::string FlowGraphJson(const FlowGraph& graph);

}  // namespace zol
