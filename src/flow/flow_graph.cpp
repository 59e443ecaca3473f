#include "flow/flow_graph.h"

#include <unordered_map>
#include <vector>

#include "base/vb_format.h"

namespace zol {

namespace {

// The most procedures a column may hold for the walk to go on beyond it.
constexpr std::size_t kMaxColumnEntries = 10;

std::string NodeKey(std::int32_t depth, std::int32_t procedure) {
  return "D" + std::to_string(depth) + "P" + std::to_string(procedure);
}

std::string LinkKey(std::int32_t depth, const std::string& from, const std::string& to) {
  return "D" + std::to_string(depth) + "F" + from + "T" + to;
}

class GraphBuilder {
 public:
  GraphBuilder(const Workspace& ws, std::int32_t session, Measure measure, FlowGraph& graph)
      : session_(ws.Session(session)),
        project_(ws.Project(session_.Project)),
        measure_(measure),
        graph_(graph) {}

  // Every pair must name procedures of the project: the walk reads their values.
  void CheckPairs() const {
    for (std::int32_t i = 1; i <= session_.nFlowPair; ++i) {
      const FlowPair& p = session_.FlowPair(i);
      for (std::int32_t id : {p.FromProc, p.ToProc}) {
        if (!session_.ProcedureValue.InRange(id)) {
          throw FlowDataError("call pair " + std::to_string(i) + " names procedure " +
                              std::to_string(id) + ", beyond the " +
                              std::to_string(session_.ProcedureValue.UBound()) +
                              " procedures of the session");
        }
      }
    }
  }

  bool InModule(std::int32_t procedure, std::int32_t module) const {
    return project_.Procedure.InRange(procedure) &&
           project_.Procedure(procedure).BelongToModule == module;
  }

  // The procedure the chart is about when none is given; 0 when the module has
  // no calls at all.
  std::int32_t ChooseProcedure(std::int32_t& module) const {
    const std::int32_t first = session_.FirstProc;
    if (module == 0) {
      if (project_.Procedure.InRange(first)) module = project_.Procedure(first).BelongToModule;
      return first;
    }
    if (InModule(first, module)) return first;
    for (std::int32_t i = 1; i <= session_.nFlowPair; ++i) {
      const FlowPair& p = session_.FlowPair(i);
      if (InModule(p.FromProc, module)) return p.FromProc;
      if (InModule(p.ToProc, module)) return p.ToProc;
    }
    return 0;
  }

  std::int32_t AddNode(std::int32_t procedure, std::int32_t depth) {
    const std::string key = NodeKey(depth, procedure);
    std::int32_t& index = nodeIndex_[key];
    if (index == 0) {
      index = graph_.NodeCount() + 1;
      graph_.Nodes.ReDimPreserve(index);
    }
    FlowNode& n = graph_.Nodes(index);
    n.key = key;
    n.ProcNumber = procedure;
    n.Depth = depth;
    n.Procedure = procedure;
    const zol::ProcedureValue& v = session_.ProcedureValue(procedure);
    switch (measure_) {
      case Measure::Total:
        n.ProcedureValue = v.TotalTime;
        break;
      case Measure::Average:
        n.ProcedureValue = v.AverageTime;
        break;
      case Measure::ChildTotal:
        n.ProcedureValue = v.ChildTotalTime;
        break;
      case Measure::ChildAverage:
        n.ProcedureValue = v.ChildAverageTime;
        break;
      case Measure::Coverage:
        n.ProcedureValue = v.Hits;
        break;
    }
    return index;
  }

  std::int32_t AddLink(const std::string& from, const std::string& to, std::int32_t depth) {
    const std::string key = LinkKey(depth, from, to);
    std::int32_t& index = linkIndex_[key];
    if (index == 0) {
      index = graph_.LinkCount() + 1;
      graph_.Links.ReDimPreserve(index);
    }
    FlowLink& l = graph_.Links(index);
    l.key = key;
    l.FromNode = from;
    l.ToNode = to;
    l.Depth = depth;
    return index;
  }

  // The label and value of a link from its pair, and the sort value of the
  // node it reaches (the last pair that reaches a node decides its place).
  void FillLinkValue(const FlowPair& pair, std::int32_t node, std::int32_t link) {
    const std::int32_t hits = pair.Hits;
    const std::string calls = std::to_string(hits) + " call" + (hits > 1 ? "s" : "");
    FlowNode& n = graph_.Nodes(node);
    FlowLink& l = graph_.Links(link);
    switch (measure_) {
      case Measure::Total:
      case Measure::ChildTotal:
        n.SortValue = pair.ChildTime;
        l.Value = calls + "\r\n" + Format(pair.ChildTime, "0.000000s");
        l.NumericValue = pair.ChildTime;
        break;
      case Measure::Average:
      case Measure::ChildAverage: {
        const double average = pair.ChildTime / hits;
        n.SortValue = average;
        l.Value = calls + "\r\n" + Format(average, "0.000000s");
        l.NumericValue = average;
        break;
      }
      case Measure::Coverage:
        n.SortValue = hits / 10000.0 + session_.ProcedureValue(n.Procedure).Coverage;
        l.Value = calls;
        l.NumericValue = hits;
        break;
    }
  }

  void AddSelfCalls(std::int32_t procedure, std::int32_t node) {
    const std::string key = NodeKey(0, procedure);
    for (std::int32_t i = 1; i <= session_.nFlowPair; ++i) {
      const FlowPair& p = session_.FlowPair(i);
      if (p.FromProc == procedure && p.ToProc == procedure) {
        FillLinkValue(p, node, AddLink(key, key, 0));
      }
    }
  }

  // One side of the walk: callers (`towardCallees` false, columns -1, -2, ...)
  // or callees (columns 1, 2, ...).
  void Walk(std::int32_t procedure, std::int32_t maxDepth, bool towardCallees) {
    std::vector<std::int32_t> list{procedure};
    std::vector<std::int32_t> next;
    for (std::int32_t d = 1; d <= maxDepth; ++d) {
      const std::int32_t depth = towardCallees ? d : -d;
      if (towardCallees) {
        graph_.MaxDepth = d;
      } else {
        graph_.MinDepth = -d;
      }
      next.clear();
      for (std::int32_t p : list) {
        for (std::int32_t i = 1; i <= session_.nFlowPair; ++i) {
          const FlowPair& pair = session_.FlowPair(i);
          if (pair.FromProc == pair.ToProc) continue;
          if ((towardCallees ? pair.FromProc : pair.ToProc) != p) continue;
          const std::int32_t other = towardCallees ? pair.ToProc : pair.FromProc;
          const std::int32_t node = AddNode(other, depth);
          const std::int32_t link =
              towardCallees
                  ? AddLink(NodeKey(d - 1, pair.FromProc), NodeKey(d, pair.ToProc), depth)
                  : AddLink(NodeKey(-d, pair.FromProc), NodeKey(-d + 1, pair.ToProc), depth);
          FillLinkValue(pair, node, link);
          bool listed = false;
          for (std::int32_t q : next) listed = listed || q == other;
          if (!listed) next.push_back(other);
          // Only the links that touch the selected procedure carry a label.
          if (d != 1) graph_.Links(link).Value = "-1";
        }
      }
      if (next.empty() || next.size() > kMaxColumnEntries) break;
      list.swap(next);
    }
  }

  // On the outermost columns: what leads further out and is not drawn. Self
  // calls count here.
  void AddOuterSums() {
    for (FlowNode& n : graph_.Nodes) {
      if (n.Depth == graph_.MinDepth) {
        for (std::int32_t i = 1; i <= session_.nFlowPair; ++i) {
          const FlowPair& p = session_.FlowPair(i);
          if (p.ToProc == n.Procedure) {
            n.OtherHits += p.Hits;
            n.OtherTime += p.ChildTime;
          }
        }
      }
      if (n.Depth == graph_.MaxDepth) {
        for (std::int32_t i = 1; i <= session_.nFlowPair; ++i) {
          const FlowPair& p = session_.FlowPair(i);
          if (p.FromProc == n.Procedure) {
            n.OtherHits += p.Hits;
            n.OtherTime += p.ChildTime;
          }
        }
      }
    }
  }

 private:
  const zol::Session& session_;
  const zol::Project& project_;
  Measure measure_;
  FlowGraph& graph_;
  // Keys to indices: the walk looks a node or link up at every pair it
  // follows, and a recursive chart holds thousands of them.
  std::unordered_map<std::string, std::int32_t> nodeIndex_;
  std::unordered_map<std::string, std::int32_t> linkIndex_;
};

}  // namespace

std::int32_t FlowGraph::GetNode(const std::string& key) const {
  for (std::int32_t i = 1; i <= NodeCount(); ++i) {
    if (Nodes(i).key == key) return i;
  }
  return 0;
}

FlowGraph BuildFlowGraph(const Workspace& ws, const Selection& sel, CallDepths depths) {
  FlowGraph graph;
  graph.Module = sel.module;
  graph.Procedure = sel.procedure;
  const SessionRef::Kind kind = sel.session.kind();
  if (sel.session.isCompared()) {
    graph.Message = kFlowComparedMessage;
    return graph;
  }
  if (kind == SessionRef::Kind::None) return graph;
  graph.Session = sel.session.sessionIndex();
  if (kind == SessionRef::Kind::Merged && !ws.fHomogeneous) {
    graph.Message = kFlowHeterogeneousMessage;
    return graph;
  }
  if (!ws.Session.InRange(graph.Session) || ws.Session(graph.Session).FirstProc == 0) {
    graph.Message = kFlowNoDataMessage;
    return graph;
  }
  const std::int32_t callers = depths.callers == 0 ? kAutomaticCallDepth : depths.callers;
  const std::int32_t callees = depths.callees == 0 ? kAutomaticCallDepth : depths.callees;

  GraphBuilder builder(ws, graph.Session, sel.measure, graph);
  builder.CheckPairs();
  std::int32_t module = sel.module;
  std::int32_t procedure = sel.procedure;
  if (procedure == 0) procedure = builder.ChooseProcedure(module);
  graph.Module = module;
  graph.Procedure = procedure;
  if (procedure == 0) return graph;
  if (!ws.Session(graph.Session).ProcedureValue.InRange(procedure)) {
    throw FlowDataError("procedure " + std::to_string(procedure) + " is beyond the " +
                        std::to_string(ws.Session(graph.Session).ProcedureValue.UBound()) +
                        " procedures of the session");
  }

  graph.SelectedNode = builder.AddNode(procedure, 0);
  builder.AddSelfCalls(procedure, graph.SelectedNode);
  builder.Walk(procedure, callers, false);
  builder.Walk(procedure, callees, true);
  builder.AddOuterSums();
  return graph;
}

std::string FlowNoticeText(const std::string& message) {
  if (message.empty()) return {};
  if (message == kFlowNoDataMessage) return "\r\n    " + message;
  return "\r\n    " + message + "\r\n\r\n    Please click the Procedures tab";
}

}  // namespace zol
