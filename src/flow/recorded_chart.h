#pragma once

// A chart painted once into a list of operations and replayed as often as
// needed onto another canvas, only the operations that meet the region to
// show. A chart of a thousand nodes is tens of thousands of pixels wide: the
// window keeps this list instead of an image of that size, and a scroll
// repaints only what comes into view.

#include <cstdint>
#include <string>
#include <vector>

#include "flow/flow_canvas.h"

namespace zol {

struct CanvasRect {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  bool Meets(const CanvasRect& o) const {
    return left < o.right && o.left < right && top < o.bottom && o.top < bottom;
  }
};

class RecordingCanvas : public FlowCanvas {
 public:
  // Text is measured as the canvas it will be replayed on measures it.
  explicit RecordingCanvas(const FlowTextMetrics& metrics) : FlowCanvas(metrics) {}

  void Clear() override { ops_.clear(); }
  void FillRect(int x1, int y1, int x2, int y2, PackedColour colour) override;
  void OutlineRect(int x1, int y1, int x2, int y2) override;
  void Polyline(const std::vector<CanvasPoint>& points) override;
  void DrawImage(std::string_view key, int x, int y) override;
  void FillImageInside(std::string_view key, int x, int y, PackedColour colour) override;

  enum class Kind { Fill, Outline, Polyline, Image, ImageFill, Text };
  struct Op {
    Op(Kind k, CanvasRect b) : kind(k), bounds(b) {}
    Kind kind;
    CanvasRect bounds;
    PackedColour colour = 0;
    int penWidth = 1;
    double fontSize = 0;
    bool bold = false;
    std::string text;  // image key or text line
    std::vector<CanvasPoint> points;
  };

  // Paints the operations that meet `region` onto `target`, in their order.
  void Replay(FlowCanvas& target, const CanvasRect& region) const;
  const std::vector<Op>& Operations() const { return ops_; }
  // The smallest rectangle that holds every operation.
  CanvasRect Extent() const;

 protected:
  void PaintTextLine(std::string_view line, double x, double top) override;

 private:
  std::vector<Op> ops_;
};

}  // namespace zol
