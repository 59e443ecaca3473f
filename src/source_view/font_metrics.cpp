#include "source_view/font_metrics.h"

#include <cmath>

#include "base/numbers.h"

namespace zol {

namespace {
constexpr double kPixelsPerPoint = 96.0 / 72.0;
constexpr double kLineEm = 1.1328;
constexpr std::int32_t kSmallestFont = 5;
}  // namespace

std::optional<double> FixedFontMetrics::TextHeight(const std::string& /*font*/, double size,
                                                   std::string_view /*text*/) const {
  if (size <= 0) return std::nullopt;
  return std::ceil(size * kPixelsPerPoint * kLineEm);
}

double FixedFontMetrics::ActualSize(const std::string& /*font*/, double size) const {
  return size;
}

std::int32_t GetLineHeightHTML(const Workspace& ws, const FontMetrics& metrics) {
  const std::optional<double> height =
      metrics.TextHeight(ws.view.FontHTML, ws.view.FontSizeHTML, "H");
  if (!height) return ws.view.FontSizeHTML - 2;
  return static_cast<std::int32_t>(RoundHalfEven(*height - ws.view.FontSizeHTML + 2));
}

std::int32_t GetNextSmallerFontHTML(const Workspace& ws, const FontMetrics& metrics) {
  const double fontHeight = metrics.ActualSize(ws.view.FontHTML, ws.view.FontSizeHTML);
  double inForce = fontHeight;
  std::int32_t smallFontHeight = ws.view.FontSizeHTML;
  while (inForce == fontHeight && smallFontHeight > kSmallestFont) {
    --smallFontHeight;
    inForce = metrics.ActualSize(ws.view.FontHTML, smallFontHeight);
  }
  return smallFontHeight;
}

void SetFontHTML(Workspace& ws, const FontMetrics& metrics, const std::string& font,
                 std::int32_t size) {
  ws.view.FontHTML = font;
  ws.view.FontSizeHTML = size;
  ws.view.LineHeightHTML = GetLineHeightHTML(ws, metrics);
  ws.view.SmallFontSizeHTML = GetNextSmallerFontHTML(ws, metrics);
}

}  // namespace zol
