#include "flow/recorded_chart.h"

#include <algorithm>

namespace zol {

namespace {
constexpr double kImageSize = 16;
}

void RecordingCanvas::FillRect(int x1, int y1, int x2, int y2, PackedColour colour) {
  Op op{Kind::Fill, {double(x1), double(y1), double(x2), double(y2)}};
  op.colour = colour;
  op.points = {{double(x1), double(y1)}, {double(x2), double(y2)}};
  ops_.push_back(std::move(op));
}

void RecordingCanvas::OutlineRect(int x1, int y1, int x2, int y2) {
  Op op{Kind::Outline, {double(x1), double(y1), double(x2), double(y2)}};
  op.colour = PenColour();
  op.penWidth = PenWidth();
  op.points = {{double(x1), double(y1)}, {double(x2), double(y2)}};
  ops_.push_back(std::move(op));
}

void RecordingCanvas::Polyline(const std::vector<CanvasPoint>& points) {
  if (points.empty()) return;
  CanvasRect b{points[0].x, points[0].y, points[0].x, points[0].y};
  for (const CanvasPoint& p : points) {
    b.left = std::min(b.left, p.x);
    b.top = std::min(b.top, p.y);
    b.right = std::max(b.right, p.x);
    b.bottom = std::max(b.bottom, p.y);
  }
  const double half = PenWidth() / 2.0 + 1;
  Op op{Kind::Polyline, {b.left - half, b.top - half, b.right + half, b.bottom + half}};
  op.colour = PenColour();
  op.penWidth = PenWidth();
  op.points = points;
  ops_.push_back(std::move(op));
}

void RecordingCanvas::DrawImage(std::string_view key, int x, int y) {
  Op op{Kind::Image, {double(x), double(y), x + kImageSize, y + kImageSize}};
  op.text = key;
  op.points = {{double(x), double(y)}};
  ops_.push_back(std::move(op));
}

void RecordingCanvas::FillImageInside(std::string_view key, int x, int y, PackedColour colour) {
  Op op{Kind::ImageFill, {double(x), double(y), x + kImageSize, y + kImageSize}};
  op.text = key;
  op.colour = colour;
  op.points = {{double(x), double(y)}};
  ops_.push_back(std::move(op));
}

void RecordingCanvas::PaintTextLine(std::string_view line, double x, double top) {
  const double w = Metrics().LineWidth(line, FontSize(), FontBold());
  const double h = Metrics().LineHeight(FontSize(), FontBold());
  Op op{Kind::Text, {x, top, x + w, top + h}};
  op.colour = PenColour();
  op.fontSize = FontSize();
  op.bold = FontBold();
  op.text = line;
  op.points = {{x, top}};
  ops_.push_back(std::move(op));
}

CanvasRect RecordingCanvas::Extent() const {
  if (ops_.empty()) return {};
  CanvasRect e = ops_.front().bounds;
  for (const Op& op : ops_) {
    e.left = std::min(e.left, op.bounds.left);
    e.top = std::min(e.top, op.bounds.top);
    e.right = std::max(e.right, op.bounds.right);
    e.bottom = std::max(e.bottom, op.bounds.bottom);
  }
  return e;
}

void RecordingCanvas::Replay(FlowCanvas& target, const CanvasRect& region) const {
  for (const Op& op : ops_) {
    if (!op.bounds.Meets(region)) continue;
    const auto ix = static_cast<int>(op.points[0].x);
    const auto iy = static_cast<int>(op.points[0].y);
    switch (op.kind) {
      case Kind::Fill:
        target.FillRect(ix, iy, static_cast<int>(op.points[1].x), static_cast<int>(op.points[1].y),
                        op.colour);
        break;
      case Kind::Outline:
        target.SetPen(op.colour, op.penWidth);
        target.OutlineRect(ix, iy, static_cast<int>(op.points[1].x),
                           static_cast<int>(op.points[1].y));
        break;
      case Kind::Polyline:
        target.SetPen(op.colour, op.penWidth);
        target.Polyline(op.points);
        break;
      case Kind::Image:
        target.DrawImage(op.text, ix, iy);
        break;
      case Kind::ImageFill:
        target.FillImageInside(op.text, ix, iy, op.colour);
        break;
      case Kind::Text:
        target.SetFontSize(op.fontSize);
        target.SetFontBold(op.bold);
        target.SetPenColour(op.colour);
        target.DrawTextLine(op.text, op.points[0].x, op.points[0].y);
        break;
    }
  }
}

}  // namespace zol
