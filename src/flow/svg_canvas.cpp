#include "flow/svg_canvas.h"

#include <cstdio>
#include <map>

#include "base/cp1252.h"

namespace zol {

namespace {

// Numbers as short as they can be: whole ones without decimals.
std::string Num(double v) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.2f", v);
  std::string s = buffer;
  while (!s.empty() && s.back() == '0') s.pop_back();
  if (!s.empty() && s.back() == '.') s.pop_back();
  if (s == "-0") s = "0";
  return s;
}

std::string Escape(std::string_view cp1252) {
  std::string out;
  for (char c : Cp1252ToUtf8(cp1252)) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      // Viewers collapse runs of spaces and drop those at the ends; the
      // no-break space keeps each one with the same width.
      case ' ':
        out += "&#160;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

// The icons on their 16 by 16 grid, in the colours of the window's icons.
const std::map<std::string, std::string, std::less<>>& Icons() {
  static const std::map<std::string, std::string, std::less<>> icons = {
      // Standard module: a sheet with lines of text.
      {"TYPE1",
       R"(<path d="M2.5 1.5H10L13.5 5V14.5H2.5Z" fill="#fbfbf8" stroke="#333d4d" stroke-width="0.9"/>)"
       R"(<path d="M4.5 6H11.5M4.5 8.5H9.5M4.5 11H11.5M4.5 13.5H9.5" stroke="#2f6fd0"/>)"},
      // Class: a box of three compartments.
      {"TYPE2",
       R"(<g stroke="#333d4d" stroke-width="0.9"><rect x="2.5" y="1.5" width="11" height="4" fill="#f4c430"/>)"
       R"(<rect x="2.5" y="5.5" width="11" height="4" fill="#fbfbf8"/><rect x="2.5" y="9.5" width="11" height="5" fill="#fbfbf8"/></g>)"
       R"(<path d="M4.5 7.5H10M4.5 11.5H11.5" stroke="#c77319"/>)"},
      // Form: a window with a title bar.
      {"TYPE5",
       R"(<rect x="1.5" y="2.5" width="13" height="11" rx="1.2" fill="#fbfbf8" stroke="#333d4d" stroke-width="0.9"/>)"
       R"(<rect x="2" y="3" width="12" height="3" fill="#2f6fd0"/>)"
       R"(<rect x="3.5" y="8" width="5" height="3.5" fill="#d6e6fb" stroke="#8a93a0" stroke-width="0.8"/>)"},
      // Property page: a card with a tab.
      {"TYPE7",
       R"(<g stroke="#333d4d" stroke-width="0.9"><rect x="2.5" y="2" width="5" height="3" fill="#d6e6fb"/>)"
       R"(<rect x="1.5" y="4.5" width="13" height="10" fill="#fbfbf8"/></g>)"
       R"(<path d="M3.5 8H12.5M3.5 10.5H10.5M3.5 13H12.5" stroke="#8a4fc9"/>)"},
      // User control: a window with a button.
      {"TYPE8",
       R"(<rect x="1.5" y="2.5" width="13" height="11" rx="1.2" fill="#fbfbf8" stroke="#333d4d" stroke-width="0.9"/>)"
       R"(<rect x="2" y="3" width="12" height="3" fill="#169c9c"/>)"
       R"(<rect x="4" y="8" width="8" height="3.5" rx="1.2" fill="#f4c430" stroke="#333d4d" stroke-width="0.8"/>)"},
      // User document: a sheet with a globe.
      {"TYPE9",
       R"(<path d="M2.5 1.5H10L13.5 5V14.5H2.5Z" fill="#fbfbf8" stroke="#333d4d" stroke-width="0.9"/>)"
       R"(<g fill="none" stroke="#169c9c"><circle cx="8" cy="9.5" r="3.5"/><ellipse cx="8" cy="9.5" rx="1.5" ry="3.5"/>)"
       R"(<path d="M4.5 9.5H11.5"/></g>)"},
      // Designer: a set square and a pencil.
      {"TYPE11",
       R"(<path d="M2 14V2.5L13.5 14Z" fill="#f4c430" stroke="#333d4d" stroke-width="0.9"/>)"
       R"(<path d="M4.5 12V8.5L8 12Z" fill="#fbfbf8" stroke="#333d4d" stroke-width="0.9"/>)"
       R"(<path d="M9 2.5L14 7.5" stroke="#d23f3f" stroke-width="1.6"/>)"},
  };
  return icons;
}

// The "more" mark: a rounded bar with three dots; its inside is what a fill
// colours.
std::string MoreMark(const std::string& inside) {
  return R"(<rect x="1.5" y="4.5" width="13" height="7" rx="3.5" fill=")" + inside +
         R"(" stroke="#333d4d" stroke-width="0.9"/>)"
         R"(<g fill="#2f6fd0"><circle cx="4.8" cy="8" r="1.3"/><circle cx="8" cy="8" r="1.3"/>)"
         R"(<circle cx="11.2" cy="8" r="1.3"/></g>)";
}

}  // namespace

std::string SvgColour(PackedColour colour) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "#%02X%02X%02X", RedOf(colour), GreenOf(colour),
                BlueOf(colour));
  return buffer;
}

SvgCanvas::SvgCanvas() : FlowCanvas(arial_) {}

void SvgCanvas::Clear() {
  body_.clear();
}

void SvgCanvas::FillRect(int x1, int y1, int x2, int y2, PackedColour colour) {
  body_ += "<rect x=\"" + Num(x1) + "\" y=\"" + Num(y1) + "\" width=\"" + Num(x2 - x1) +
           "\" height=\"" + Num(y2 - y1) + "\" fill=\"" + SvgColour(colour) + "\"/>\n";
}

void SvgCanvas::OutlineRect(int x1, int y1, int x2, int y2) {
  // The pen is centred on the edge: inset by half its width so that the
  // outline covers the rectangle's own pixels.
  const double half = PenWidth() / 2.0;
  body_ += "<rect x=\"" + Num(x1 + half) + "\" y=\"" + Num(y1 + half) + "\" width=\"" +
           Num(x2 - x1 - PenWidth()) + "\" height=\"" + Num(y2 - y1 - PenWidth()) +
           "\" fill=\"none\" stroke=\"" + SvgColour(PenColour()) + "\" stroke-width=\"" +
           Num(PenWidth()) + "\"/>\n";
}

void SvgCanvas::Polyline(const std::vector<CanvasPoint>& points) {
  if (points.size() < 2) return;
  std::string d;
  for (const CanvasPoint& p : points) d += (d.empty() ? "" : " ") + Num(p.x) + "," + Num(p.y);
  body_ += "<polyline points=\"" + d + "\" fill=\"none\" stroke=\"" + SvgColour(PenColour()) +
           "\" stroke-width=\"" + Num(PenWidth()) + "\" stroke-linejoin=\"round\"/>\n";
}

void SvgCanvas::DrawImage(std::string_view key, int x, int y) {
  std::string drawing;
  if (key == "GRAPHMORE") {
    drawing = MoreMark("#fbfbf8");
  } else {
    const auto it = Icons().find(key);
    // A module type without an icon of its own shows as a standard module.
    drawing = it != Icons().end() ? it->second : Icons().at("TYPE1");
  }
  body_ += "<g transform=\"translate(" + Num(x) + "," + Num(y) + ")\">" + drawing + "</g>\n";
}

void SvgCanvas::FillImageInside(std::string_view key, int x, int y, PackedColour colour) {
  if (key != "GRAPHMORE") return;
  body_ += "<g transform=\"translate(" + Num(x) + "," + Num(y) + ")\">" +
           MoreMark(SvgColour(colour)) + "</g>\n";
}

void SvgCanvas::PaintTextLine(std::string_view line, double x, double top) {
  if (line.empty()) return;
  const double px = PixelsOfPoints(FontSize());
  const double baseline = top + arial_.Ascent(FontSize(), FontBold());
  body_ += "<text x=\"" + Num(x) + "\" y=\"" + Num(baseline) + "\" font-size=\"" + Num(px) + "\"" +
           (FontBold() ? " font-weight=\"bold\"" : "") + " fill=\"" + SvgColour(PenColour()) +
           "\">" + Escape(line) + "</text>\n";
}

std::string SvgCanvas::Document() const {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
         std::to_string(Width()) + "\" height=\"" + std::to_string(Height()) + "\" viewBox=\"0 0 " +
         std::to_string(Width()) + " " + std::to_string(Height()) +
         "\" font-family=\"Arial, 'Liberation Sans', Helvetica, sans-serif\" "
         "xml:space=\"preserve\" style=\"white-space:pre\">\n" +
         body_ + "</svg>\n";
}

}  // namespace zol
