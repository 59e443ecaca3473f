#include "flow/flow_json.h"

#include "base/json_writer.h"

namespace zol {

std::string FlowGraphJson(const FlowGraph& graph) {
  JsonWriter w;
  w.BeginObject();
  w.Field("Module", graph.Module);
  w.Field("Procedure", graph.Procedure);
  w.Field("Message", graph.Message);
  w.Field("MinDepth", graph.MinDepth);
  w.Field("MaxDepth", graph.MaxDepth);
  w.Key("Nodes").BeginArray();
  for (const FlowNode& n : graph.Nodes) {
    w.BeginObject();
    w.Field("key", n.key);
    w.Field("ProcNumber", n.ProcNumber);
    w.Field("Depth", n.Depth);
    w.Field("SortValue", n.SortValue);
    w.Field("ProcedureValue", n.ProcedureValue);
    w.Field("OtherHits", n.OtherHits);
    w.Field("OtherTime", n.OtherTime);
    w.EndObject();
  }
  w.EndArray();
  w.Key("Links").BeginArray();
  for (const FlowLink& l : graph.Links) {
    w.BeginObject();
    w.Field("key", l.key);
    w.Field("FromNode", l.FromNode);
    w.Field("ToNode", l.ToNode);
    w.Field("Depth", l.Depth);
    w.Field("Value", l.Value);
    w.Field("NumericValue", l.NumericValue);
    w.EndObject();
  }
  w.EndArray();
  w.EndObject();
  return w.Text();
}

}  // namespace zol
