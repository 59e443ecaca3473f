#pragma once

// The surface a flow chart is drawn on, in pixels, with the few operations
// the chart needs: a font (size in points, bold) that measures text, the
// canvas size, filled and outlined rectangles, lines and arcs with the
// current pen, 16 by 16 images by key, text in a rectangle laid out by
// format flags, and the fill of an image's inside.
//
// Text placement (alignment, lines, the ellipsis at the end) is worked out
// here once, from the canvas's own measures, so every canvas places text the
// same way; a canvas only paints one line of text at a given place.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zol {

// A colour packed as the settings store them: 0x00BBGGRR.
using PackedColour = std::int32_t;
constexpr PackedColour PackRgb(int red, int green, int blue) {
  return red | (green << 8) | (blue << 16);
}
constexpr int RedOf(PackedColour c) {
  return c & 0xFF;
}
constexpr int GreenOf(PackedColour c) {
  return (c >> 8) & 0xFF;
}
constexpr int BlueOf(PackedColour c) {
  return (c >> 16) & 0xFF;
}

// Format flags of text in a rectangle (the values the platform's text
// drawing uses, which the settings of older charts name).
enum TextFlags : std::uint32_t {
  kTextLeft = 0x0,
  kTextCenter = 0x1,
  kTextRight = 0x2,
  kTextVCenter = 0x4,
  kTextBottom = 0x8,
  kTextSingleLine = 0x20,
  kTextNoClip = 0x100,
  kTextEndEllipsis = 0x8000,
  kTextModifyString = 0x10000,
};

// How a family of fonts measures, in pixels, at a size in points.
class FlowTextMetrics {
 public:
  virtual ~FlowTextMetrics() = default;
  // The size the font really takes when `size` is asked for. Taking it again
  // gives the same size.
  virtual double SizeInForce(double size) const = 0;
  // Width of one line of text.
  virtual double LineWidth(std::string_view line, double size, bool bold) const = 0;
  // Height of one line, from its top to the next line's top.
  virtual double LineHeight(double size, bool bold) const = 0;
  // From the top of a line to its baseline.
  virtual double Ascent(double size, bool bold) const = 0;
};

struct CanvasPoint {
  double x = 0;
  double y = 0;
};

class FlowCanvas {
 public:
  explicit FlowCanvas(const FlowTextMetrics& metrics) : metrics_(&metrics) {}
  virtual ~FlowCanvas() = default;

  // --- Font ---
  void SetFontSize(double size) { fontSize_ = metrics_->SizeInForce(size); }
  double FontSize() const { return fontSize_; }
  void SetFontBold(bool bold) { bold_ = bold; }
  bool FontBold() const { return bold_; }
  // The widest line of `text` (lines end at CR LF, CR or LF), and the height
  // of all its lines, in the current font.
  double TextWidth(std::string_view text) const;
  double TextHeight(std::string_view text) const;
  const FlowTextMetrics& Metrics() const { return *metrics_; }

  // --- Size and pen ---
  void SetSize(int width, int height);
  int Width() const { return width_; }
  int Height() const { return height_; }
  void SetPen(PackedColour colour, int width) {
    penColour_ = colour;
    penWidth_ = width;
  }
  void SetPenColour(PackedColour colour) { penColour_ = colour; }
  void SetPenWidth(int width) { penWidth_ = width; }
  PackedColour PenColour() const { return penColour_; }
  int PenWidth() const { return penWidth_; }

  // --- Drawing ---
  // Empties the surface (to white).
  virtual void Clear() = 0;
  // The rectangle from (x1, y1) to (x2, y2), the far edges excluded.
  virtual void FillRect(int x1, int y1, int x2, int y2, PackedColour colour) = 0;
  // Its outline, with the pen.
  virtual void OutlineRect(int x1, int y1, int x2, int y2) = 0;
  // Connected straight runs with the pen; the runs meet without gaps.
  virtual void Polyline(const std::vector<CanvasPoint>& points) = 0;
  void Line(double x1, double y1, double x2, double y2) { Polyline({{x1, y1}, {x2, y2}}); }
  // An elliptic arc with the pen, counter-clockwise from `start` to `end`
  // (radians, 0 at three o'clock); `radius` is the larger half-axis and
  // `aspect` the height over the width. A negative angle also draws the
  // radius to that end.
  void Arc(double cx, double cy, double radius, double start, double end, double aspect);
  // The 16 by 16 image of `key` with its top left corner at (x, y).
  virtual void DrawImage(std::string_view key, int x, int y) = 0;
  // Paints the inside of that image in `colour`, keeping its outline and marks.
  virtual void FillImageInside(std::string_view key, int x, int y, PackedColour colour) = 0;
  // Text in the rectangle, laid out by `flags`, in the font and pen colour.
  void DrawText(std::string_view text, int left, int top, int right, int bottom,
                std::uint32_t flags);

  // One line of text already laid out, the top of its line box at `top`.
  void DrawTextLine(std::string_view line, double x, double top) { PaintTextLine(line, x, top); }

  // The text cut at the end with "..." so that it fits in `width`.
  std::string ElideEnd(std::string_view text, double width) const;

 protected:
  // One line of text with the top of its line box at `top`.
  virtual void PaintTextLine(std::string_view line, double x, double top) = 0;
  virtual void Resized() {}

 private:
  const FlowTextMetrics* metrics_;
  double fontSize_ = 8;
  bool bold_ = false;
  int width_ = 0;
  int height_ = 0;
  PackedColour penColour_ = 0;
  int penWidth_ = 1;
};

// Splits at CR LF, CR or LF.
std::vector<std::string_view> TextLines(std::string_view text);

}  // namespace zol
