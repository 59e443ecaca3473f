#include "flow/flow_canvas.h"

#include <algorithm>
#include <cmath>

namespace zol {

std::vector<std::string_view> TextLines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') continue;
    lines.push_back(text.substr(start, i - start));
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    start = i + 1;
  }
  lines.push_back(text.substr(start));
  return lines;
}

double FlowCanvas::TextWidth(std::string_view text) const {
  double widest = 0;
  for (std::string_view line : TextLines(text))
    widest = std::max(widest, metrics_->LineWidth(line, fontSize_, bold_));
  return widest;
}

double FlowCanvas::TextHeight(std::string_view text) const {
  return static_cast<double>(TextLines(text).size()) * metrics_->LineHeight(fontSize_, bold_);
}

void FlowCanvas::SetSize(int width, int height) {
  width_ = std::max(width, 0);
  height_ = std::max(height, 0);
  Resized();
}

void FlowCanvas::Arc(double cx, double cy, double radius, double start, double end, double aspect) {
  double rx = radius;
  double ry = radius;
  if (aspect < 1) {
    ry = radius * aspect;
  } else if (aspect > 1) {
    rx = radius / aspect;
  }
  const double a0 = std::fabs(start);
  double a1 = std::fabs(end);
  if (a1 <= a0) a1 += 2 * M_PI;
  std::vector<CanvasPoint> points;
  if (start < 0) points.push_back({cx, cy});
  const int steps = std::max(8, static_cast<int>((a1 - a0) * std::max(rx, ry) / 2));
  for (int i = 0; i <= steps; ++i) {
    const double a = a0 + (a1 - a0) * i / steps;
    points.push_back({cx + rx * std::cos(a), cy - ry * std::sin(a)});
  }
  if (end < 0) points.push_back({cx, cy});
  Polyline(points);
}

std::string FlowCanvas::ElideEnd(std::string_view text, double width) const {
  if (TextWidth(text) <= width) return std::string(text);
  std::string cut(text);
  while (!cut.empty() && TextWidth(cut + "...") > width) cut.pop_back();
  return cut + "...";
}

void FlowCanvas::DrawText(std::string_view text, int left, int top, int right, int bottom,
                          std::uint32_t flags) {
  std::vector<std::string> lines;
  if (flags & kTextSingleLine) {
    std::string one;
    for (char c : text) {
      if (c != '\r' && c != '\n') one += c;
    }
    lines.push_back(std::move(one));
  } else {
    for (std::string_view line : TextLines(text)) lines.emplace_back(line);
  }
  if (flags & kTextEndEllipsis) {
    for (std::string& line : lines) line = ElideEnd(line, right - left);
  }
  const double lineHeight = metrics_->LineHeight(fontSize_, bold_);
  const double block = lineHeight * static_cast<double>(lines.size());
  double y = top;
  if ((flags & kTextSingleLine) && (flags & kTextVCenter)) {
    y = top + (bottom - top - block) / 2;
  } else if ((flags & kTextSingleLine) && (flags & kTextBottom)) {
    y = bottom - block;
  }
  for (const std::string& line : lines) {
    const double w = metrics_->LineWidth(line, fontSize_, bold_);
    double x = left;
    if (flags & kTextCenter) {
      x = left + (right - left - w) / 2;
    } else if (flags & kTextRight) {
      x = right - w;
    }
    PaintTextLine(line, x, y);
    y += lineHeight;
  }
}

}  // namespace zol
