// bench_flow_chart [ROUNDS [FOLDER]]: the call graph, layout and drawing of a chart of
// about a thousand nodes, and the repaint of one window-sized region of it
// as a scroll does.
//
// The session: procedure 1 is called by procedures 2 to 6 and calls 7 to 11;
// each group of five calls all its other members, so both walks go through
// recursion to the automatic depth of 99 with five nodes per column (991
// nodes, about 4,000 links). 2,000 further pairs among other procedures make
// the walks scan a pair list of realistic length.
//
// With FOLDER the charts are also written there to be looked at: the whole
// one (recursive.svg) and one limited to three columns a side
// (recursive-3.svg, and .png files when Qt is there).

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/files.h"
#include "flow/flow_chart.h"
#include "flow/flow_graph.h"
#include "flow/recorded_chart.h"
#include "flow/svg_canvas.h"
#include "source_view/timing_colours.h"
#if FLOW_BENCH_QT
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "ui/qt_flow_canvas.h"
#endif

namespace {

using Clock = std::chrono::steady_clock;

double Ms(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void AddPair(zol::Session& s, std::int32_t from, std::int32_t to, std::int32_t hits, double t) {
  s.nFlowPair += 1;
  s.FlowPair.ReDimPreserve(s.nFlowPair);
  s.FlowPair(s.nFlowPair) = zol::FlowPair{from, to, hits, t};
}

void MakeSession(zol::Workspace& ws) {
  constexpr std::int32_t kProcedures = 600;
  constexpr std::int32_t kModules = 20;
  ws.Project.ReDimPreserve(1);
  zol::Project& p = ws.Project(1);
  ws.nProject = 1;
  p.ModulesNumber = kModules;
  p.Module.ReDim(kModules);
  for (std::int32_t m = 1; m <= kModules; ++m) {
    p.Module(m).Name = "Module" + std::to_string(m);
    p.Module(m).Type = m % 3 == 0 ? 5 : m % 2 == 0 ? 2 : 1;
  }
  p.ProceduresNumber = kProcedures;
  p.Procedure.ReDim(kProcedures);
  zol::Session& s = ws.SessionSlot(1);
  ws.nSession = 1;
  s.Project = 1;
  s.Loaded = true;
  s.ProceduresNumber = kProcedures;
  s.ProcedureValue.ReDim(kProcedures);
  for (std::int32_t i = 1; i <= kProcedures; ++i) {
    p.Procedure(i).Name = "Procedure" + std::to_string(i);
    p.Procedure(i).BelongToModule = 1 + i % kModules;
    zol::ProcedureValue& v = s.ProcedureValue(i);
    v.Hits = 1 + i % 97;
    v.TotalTime = 0.0001 * (1 + i % 1000);
    v.AverageTime = v.TotalTime / v.Hits;
    v.ChildTotalTime = 3 * v.TotalTime;
    v.ChildAverageTime = v.ChildTotalTime / v.Hits;
    v.Coverage = (i % 10) / 10.0;
  }
  s.FirstProc = 1;
  for (std::int32_t a = 2; a <= 6; ++a) {
    AddPair(s, a, 1, a, 0.01 * a);
    for (std::int32_t b = 2; b <= 6; ++b)
      if (a != b) AddPair(s, a, b, 1 + a + b, 0.001 * (a + b));
  }
  for (std::int32_t a = 7; a <= 11; ++a) {
    AddPair(s, 1, a, a, 0.02 * a);
    for (std::int32_t b = 7; b <= 11; ++b)
      if (a != b) AddPair(s, a, b, 1 + a * b % 7, 0.0005 * (a + b));
  }
  AddPair(s, 1, 1, 3, 0.5);
  for (std::int32_t k = 0; k < 2000; ++k) {
    AddPair(s, 12 + (k * 7) % 580, 12 + (k * 13 + 5) % 580, 1 + k % 9, 0.0001 * (k % 50));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
  zol::Workspace ws;
  MakeSession(ws);
  zol::LoadColors(ws, true, "");
  zol::Selection sel;
  sel.session = zol::SessionRef::single(1);
  sel.project = 1;
  sel.procedure = 1;
  sel.module = 2;
  sel.tab = zol::Tab::Flow;
  const zol::FlowOptions options;

#if FLOW_BENCH_QT
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  zol::QtFlowTextMetrics qtMetrics;
#endif
  double graphMs = 0;
  double drawMs = 0;
  double svgMs = 0;
  double replayMs = 0;
  std::size_t nodes = 0;
  std::size_t links = 0;
  std::size_t ops = 0;
  zol::ChartLayout layout;
  for (int r = 0; r < rounds; ++r) {
    auto t0 = Clock::now();
    zol::FlowGraph graph = zol::BuildFlowGraph(ws, sel, {});
    graphMs += Ms(t0);
    nodes = static_cast<std::size_t>(graph.NodeCount());
    links = static_cast<std::size_t>(graph.LinkCount());

    zol::ArialMetrics arial;
#if FLOW_BENCH_QT
    const zol::FlowTextMetrics& metrics = qtMetrics;
#else
    const zol::FlowTextMetrics& metrics = arial;
#endif
    zol::RecordingCanvas recording(metrics);
    t0 = Clock::now();
    layout = zol::DrawChart(ws, graph, options, sel.measure, recording);
    drawMs += Ms(t0);
    ops = recording.Operations().size();

    t0 = Clock::now();
    zol::SvgCanvas svg;
    zol::DrawChart(ws, graph, options, sel.measure, svg);
    const std::string doc = svg.Document();
    svgMs += Ms(t0);

#if FLOW_BENCH_QT
    // Twenty scroll steps across the middle of the chart in a 1200 x 700 view.
    QImage view(1200, 700, QImage::Format_RGB32);
    t0 = Clock::now();
    for (int step = 0; step < 20; ++step) {
      const double left = layout.Width / 2.0 - 2000 + step * 200;
      QPainter painter(&view);
      painter.fillRect(view.rect(), Qt::white);
      painter.translate(-left, 0);
      zol::QtFlowCanvas canvas(painter, qtMetrics);
      canvas.SetSize(layout.Width, layout.Height);
      recording.Replay(canvas, zol::CanvasRect{left, 0, left + 1200, 700});
    }
    replayMs += Ms(t0) / 20;
#endif
  }
  std::printf("chart: %zu nodes, %zu links, %d x %d pixels, %zu drawing operations\n", nodes, links,
              layout.Width, layout.Height, ops);
  std::printf("graph (walks and outer sums): %8.2f ms\n", graphMs / rounds);
  std::printf("layout and drawing (recorded): %8.2f ms\n", drawMs / rounds);
  std::printf("layout and drawing as SVG:     %8.2f ms\n", svgMs / rounds);
#if FLOW_BENCH_QT
  std::printf("repaint of a 1200 x 700 view:  %8.2f ms\n", replayMs / rounds);
#endif
  if (argc > 2) {
    const std::string folder = argv[2];
    for (const zol::CallDepths depths : {zol::CallDepths{}, zol::CallDepths{3, 3}}) {
      const std::string name = folder + "/recursive" + (depths.callers == 0 ? std::string() : "-3");
      zol::FlowOptions o = options;
      o.CallDepth = {depths.callers, depths.callees};
      zol::FlowGraph graph = zol::BuildFlowGraph(ws, sel, depths);
      zol::SvgCanvas svg;
      zol::DrawChart(ws, graph, o, sel.measure, svg);
      zol::WriteFileAtomic(name + ".svg", svg.Document());
#if FLOW_BENCH_QT
      std::string error;
      if (!zol::WriteFlowPng(ws, graph, o, sel.measure, name + ".png", &error))
        std::fprintf(stderr, "%s.png: %s\n", name.c_str(), error.c_str());
#endif
    }
  }
  return 0;
}
