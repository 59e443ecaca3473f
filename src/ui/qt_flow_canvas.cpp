#include "ui/qt_flow_canvas.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <cmath>
#include <cstdlib>

#include "flow/arial_metrics.h"
#include "flow/flow_chart.h"
#include "flow/recorded_chart.h"
#include "ui/icons.h"
#include "ui/qt_font_metrics.h"
#include "ui/qt_text.h"

namespace zol {

namespace {

int PixelSize(double size) {
  return static_cast<int>(PixelsOfPoints(size));
}

}  // namespace

QColor toQColor(PackedColour colour) {
  return QColor(RedOf(colour), GreenOf(colour), BlueOf(colour));
}

// --- Metrics ---

QFont QtFlowTextMetrics::font(double size, bool bold) const {
  QFont font("Arial");
  font.setPixelSize(PixelSize(size));
  font.setBold(bold);
  font.setStyleStrategy(QFont::PreferAntialias);
  return font;
}

const QFontMetricsF& QtFlowTextMetrics::metricsOf(double size, bool bold) const {
  const auto key = std::make_pair(PixelSize(size), bold);
  auto it = cache_.find(key);
  if (it == cache_.end()) it = cache_.emplace(key, QFontMetricsF(font(size, bold))).first;
  return it->second;
}

double QtFlowTextMetrics::SizeInForce(double size) const {
  return PixelsOfPoints(size) * 72.0 / 96.0;
}

double QtFlowTextMetrics::LineWidth(std::string_view line, double size, bool bold) const {
  return metricsOf(size, bold).horizontalAdvance(Q(line));
}

double QtFlowTextMetrics::LineHeight(double size, bool bold) const {
  return std::ceil(metricsOf(size, bold).height());
}

double QtFlowTextMetrics::Ascent(double size, bool bold) const {
  return metricsOf(size, bold).ascent();
}

// --- Canvas ---

QtFlowCanvas::QtFlowCanvas(QPainter& painter, const QtFlowTextMetrics& metrics)
    : FlowCanvas(metrics), painter_(painter), qtMetrics_(metrics) {
  painter_.setRenderHint(QPainter::Antialiasing, true);
  painter_.setRenderHint(QPainter::TextAntialiasing, true);
}

void QtFlowCanvas::Clear() {
  if (Width() > 0 && Height() > 0) painter_.fillRect(QRect(0, 0, Width(), Height()), Qt::white);
}

void QtFlowCanvas::FillRect(int x1, int y1, int x2, int y2, PackedColour colour) {
  painter_.fillRect(QRect(x1, y1, x2 - x1, y2 - y1), toQColor(colour));
}

void QtFlowCanvas::OutlineRect(int x1, int y1, int x2, int y2) {
  const double half = PenWidth() / 2.0;
  QPen pen(toQColor(PenColour()), PenWidth());
  pen.setJoinStyle(Qt::MiterJoin);
  painter_.setPen(pen);
  painter_.setBrush(Qt::NoBrush);
  painter_.drawRect(QRectF(x1 + half, y1 + half, x2 - x1 - PenWidth(), y2 - y1 - PenWidth()));
}

void QtFlowCanvas::Polyline(const std::vector<CanvasPoint>& points) {
  if (points.size() < 2) return;
  QPolygonF polygon;
  for (const CanvasPoint& p : points) polygon << QPointF(p.x, p.y);
  QPen pen(toQColor(PenColour()), PenWidth());
  pen.setJoinStyle(Qt::RoundJoin);
  pen.setCapStyle(Qt::RoundCap);
  painter_.setPen(pen);
  painter_.setBrush(Qt::NoBrush);
  painter_.drawPolyline(polygon);
}

void QtFlowCanvas::DrawImage(std::string_view key, int x, int y) {
  const std::string name(key);
  // A module type without an icon of its own shows as a standard module.
  const QIcon icon = zolIcon(hasZolIcon(name) ? name : std::string("TYPE1"));
  icon.paint(&painter_, QRect(x, y, 16, 16));
}

void QtFlowCanvas::FillImageInside(std::string_view key, int x, int y, PackedColour colour) {
  if (key != "GRAPHMORE") return;
  // The inside of the "more" mark (a rounded bar with three dots, as its icon
  // draws it), painted in the colour with the dots kept.
  painter_.save();
  painter_.translate(x, y);
  painter_.setPen(QPen(QColor(0x33, 0x3d, 0x4d), 0.9));
  painter_.setBrush(toQColor(colour));
  painter_.drawRoundedRect(QRectF(1.5, 4.5, 13, 7), 3.5, 3.5);
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(QColor(0x2f, 0x6f, 0xd0));
  for (double dx : {4.8, 8.0, 11.2}) painter_.drawEllipse(QPointF(dx, 8), 1.3, 1.3);
  painter_.restore();
}

void QtFlowCanvas::PaintTextLine(std::string_view line, double x, double top) {
  if (line.empty()) return;
  painter_.setFont(qtMetrics_.font(FontSize(), FontBold()));
  painter_.setPen(toQColor(PenColour()));
  painter_.drawText(QPointF(x, top + qtMetrics_.Ascent(FontSize(), FontBold())), Q(line));
}

// --- PNG ---

bool WriteFlowPng(const Workspace& ws, FlowGraph& graph, const FlowOptions& options,
                  Measure measure, const std::string& file, std::string* error) {
  if (!QCoreApplication::instance()) {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr &&
        std::getenv("QT_QPA_PLATFORM") == nullptr) {
      qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    static int argc = 1;
    static char name[] = "zolprof";
    static char* argv[] = {name, nullptr};
    // Kept to the end of the process: cached icons and fonts die after it.
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    (void)app;
  }
  installFontSubstitutions();
  QtFlowTextMetrics metrics;
  RecordingCanvas recording(metrics);
  const ChartLayout layout = DrawChart(ws, graph, options, measure, recording);
  QImage image(layout.Width, layout.Height, QImage::Format_RGB32);
  if (image.isNull()) {
    *error = "the chart (" + std::to_string(layout.Width) + " x " + std::to_string(layout.Height) +
             " pixels) is too large for an image";
    return false;
  }
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    QtFlowCanvas canvas(painter, metrics);
    canvas.SetSize(layout.Width, layout.Height);
    recording.Replay(canvas, CanvasRect{0, 0, double(layout.Width), double(layout.Height)});
  }
  if (!image.save(QPath(file), "PNG")) {
    *error = "can't be written";
    return false;
  }
  return true;
}

}  // namespace zol
