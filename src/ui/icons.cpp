#include "ui/icons.h"

#include <QFont>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <functional>
#include <map>

namespace zol {

namespace {

using Draw = std::function<void(QPainter&)>;

// A small palette, chosen to read on light and dark backgrounds alike.
const QColor kInk(0x33, 0x3d, 0x4d);
const QColor kBlue(0x2f, 0x6f, 0xd0);
const QColor kLightBlue(0xd6, 0xe6, 0xfb);
const QColor kGreen(0x2e, 0x9d, 0x4f);
const QColor kOrange(0xef, 0x8a, 0x1f);
const QColor kRed(0xd2, 0x3f, 0x3f);
const QColor kPurple(0x8a, 0x4f, 0xc9);
const QColor kTeal(0x16, 0x9c, 0x9c);
const QColor kYellow(0xf4, 0xc4, 0x30);
const QColor kPaper(0xfb, 0xfb, 0xf8);
const QColor kGrey(0x8a, 0x93, 0xa0);

QPen Pen(const QColor& c, double w = 1.0) {
  QPen pen(c, w);
  pen.setJoinStyle(Qt::RoundJoin);
  pen.setCapStyle(Qt::RoundCap);
  return pen;
}

// A page with a folded corner.
void sheet(QPainter& p, const QRectF& r, const QColor& fill = kPaper) {
  QPainterPath path;
  const double fold = 3.5;
  path.moveTo(r.left(), r.top());
  path.lineTo(r.right() - fold, r.top());
  path.lineTo(r.right(), r.top() + fold);
  path.lineTo(r.right(), r.bottom());
  path.lineTo(r.left(), r.bottom());
  path.closeSubpath();
  p.setPen(Pen(kInk, 0.9));
  p.setBrush(fill);
  p.drawPath(path);
  p.drawLine(QPointF(r.right() - fold, r.top()), QPointF(r.right() - fold, r.top() + fold));
  p.drawLine(QPointF(r.right() - fold, r.top() + fold), QPointF(r.right(), r.top() + fold));
}

void TextLines(QPainter& p, double left, double right, double top, int count, const QColor& c) {
  p.setPen(Pen(c, 1.0));
  for (int i = 0; i < count; ++i) {
    const double y = top + i * 2.5;
    p.drawLine(QPointF(left, y), QPointF(right - (i % 2) * 2.0, y));
  }
}

// A window with a coloured title bar.
void Window(QPainter& p, const QRectF& r, const QColor& title) {
  p.setPen(Pen(kInk, 0.9));
  p.setBrush(kPaper);
  p.drawRoundedRect(r, 1.2, 1.2);
  p.setPen(Qt::NoPen);
  p.setBrush(title);
  p.drawRect(QRectF(r.left() + 0.5, r.top() + 0.5, r.width() - 1.0, 3.0));
}

// A round badge with a letter: the procedure kinds.
void badge(QPainter& p, const QString& letter, const QColor& c) {
  p.setPen(Pen(c.darker(130), 0.9));
  p.setBrush(c);
  p.drawRoundedRect(QRectF(1.5, 1.5, 13, 13), 3.5, 3.5);
  QFont f;
  f.setFamily("DejaVu Sans");
  f.setBold(true);
  f.setPixelSize(11);
  p.setFont(f);
  p.setPen(Qt::white);
  p.drawText(QRectF(1.5, 1.0, 13, 13), Qt::AlignCenter, letter);
}

void stopwatch(QPainter& p, const QPointF& c, double radius, const QColor& rim) {
  p.setPen(Pen(kInk, 0.9));
  p.setBrush(rim);
  p.drawRect(QRectF(c.x() - 1.2, c.y() - radius - 2.2, 2.4, 1.8));
  p.setBrush(kPaper);
  p.setPen(Pen(rim.darker(120), 1.6));
  p.drawEllipse(c, radius, radius);
  p.setPen(Pen(kInk, 1.2));
  p.drawLine(c, QPointF(c.x(), c.y() - radius * 0.65));
  p.drawLine(c, QPointF(c.x() + radius * 0.5, c.y() + radius * 0.2));
}

void arrow(QPainter& p, const QPointF& from, const QPointF& to, const QColor& c, double w = 1.6) {
  p.setPen(Pen(c, w));
  p.drawLine(from, to);
  const QLineF line(to, from);
  QLineF a = line;
  a.setLength(3.2);
  a.setAngle(line.angle() + 35);
  QLineF b = line;
  b.setLength(3.2);
  b.setAngle(line.angle() - 35);
  p.drawLine(a);
  p.drawLine(b);
}

void Plus(QPainter& p, const QPointF& c, const QColor& color) {
  p.setPen(Qt::NoPen);
  p.setBrush(color);
  p.drawEllipse(c, 3.4, 3.4);
  p.setPen(Pen(Qt::white, 1.3));
  p.drawLine(QPointF(c.x() - 1.8, c.y()), QPointF(c.x() + 1.8, c.y()));
  p.drawLine(QPointF(c.x(), c.y() - 1.8), QPointF(c.x(), c.y() + 1.8));
}

// A hierarchy of three boxes: the measures that count the children.
void hierarchy(QPainter& p, const QColor& c) {
  p.setPen(Pen(kInk, 0.9));
  p.drawLine(QPointF(4, 5), QPointF(4, 12));
  p.drawLine(QPointF(4, 8.5), QPointF(8, 8.5));
  p.drawLine(QPointF(4, 12), QPointF(8, 12));
  p.setBrush(c);
  p.drawRect(QRectF(1.5, 1.5, 5, 4));
  p.setBrush(c.lighter(140));
  p.drawRect(QRectF(8, 7, 4, 3));
  p.drawRect(QRectF(8, 10.5, 4, 3));
}

void letter(QPainter& p, const QRectF& r, const QString& text, const QColor& c, int px,
            bool italic = false) {
  QFont f;
  f.setFamily("DejaVu Serif");
  f.setBold(true);
  f.setItalic(italic);
  f.setPixelSize(px);
  p.setFont(f);
  p.setPen(c);
  p.drawText(r, Qt::AlignCenter, text);
}

void funnel(QPainter& p, const QColor& c) {
  QPainterPath path;
  path.moveTo(1.5, 2.5);
  path.lineTo(14.5, 2.5);
  path.lineTo(9.5, 8.5);
  path.lineTo(9.5, 13.5);
  path.lineTo(6.5, 14.5);
  path.lineTo(6.5, 8.5);
  path.closeSubpath();
  p.setPen(Pen(c.darker(140), 0.9));
  p.setBrush(c);
  p.drawPath(path);
}

void gear(QPainter& p) {
  p.setPen(Qt::NoPen);
  p.setBrush(kGrey.darker(130));
  for (int i = 0; i < 8; ++i) {
    p.save();
    p.translate(8, 8);
    p.rotate(i * 45.0);
    p.drawRoundedRect(QRectF(-1.4, -7.2, 2.8, 3.4), 0.6, 0.6);
    p.restore();
  }
  p.drawEllipse(QPointF(8, 8), 5.2, 5.2);
  p.setBrush(kPaper);
  p.drawEllipse(QPointF(8, 8), 2.1, 2.1);
}

void disc(QPainter& p, const QString& text, const QColor& c) {
  p.setPen(Qt::NoPen);
  p.setBrush(c);
  p.drawEllipse(QPointF(8, 8), 7, 7);
  letter(p, QRectF(1, 1, 14, 14), text, Qt::white, 11);
}

void floppy(QPainter& p) {
  p.setPen(Pen(kInk, 0.9));
  p.setBrush(kBlue);
  p.drawRoundedRect(QRectF(1.5, 1.5, 13, 13), 1.5, 1.5);
  p.setBrush(kPaper);
  p.drawRect(QRectF(4, 1.5, 8, 5));
  p.setBrush(kLightBlue);
  p.drawRect(QRectF(4, 9, 8, 5.5));
}

const std::map<std::string, Draw>& iconDrawings() {
  static const std::map<std::string, Draw> drawings = {
      // --- The tree and the title strip ---
      {"SESSION", [](QPainter& p) { stopwatch(p, QPointF(8, 9), 5.6, kBlue); }},
      {"GROUP",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kLightBlue);
         p.drawRoundedRect(QRectF(4.5, 1.5, 10, 8), 1.2, 1.2);
         p.setBrush(kLightBlue.darker(108));
         p.drawRoundedRect(QRectF(3, 3.5, 10, 8), 1.2, 1.2);
         stopwatch(p, QPointF(7, 10), 4.2, kBlue);
       }},
      {"MERGE",
       [](QPainter& p) {
         p.setPen(Pen(kGreen, 1.7));
         p.setBrush(Qt::NoBrush);
         QPainterPath upper;
         upper.moveTo(1.5, 3);
         upper.cubicTo(6, 3, 6, 8, 10, 8);
         QPainterPath lower;
         lower.moveTo(1.5, 13);
         lower.cubicTo(6, 13, 6, 8, 10, 8);
         p.drawPath(upper);
         p.drawPath(lower);
         arrow(p, QPointF(9, 8), QPointF(14.5, 8), kGreen, 1.7);
       }},
      {"COMPARE",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.8));
         p.setBrush(kBlue);
         p.drawRect(QRectF(2, 6, 3, 8));
         p.drawRect(QRectF(9, 3, 3, 11));
         p.setBrush(kOrange);
         p.drawRect(QRectF(5, 2, 3, 12));
         p.drawRect(QRectF(12, 8, 3, 6));
         p.setPen(Pen(kInk, 1.0));
         p.drawLine(QPointF(1, 14.5), QPointF(15.5, 14.5));
       }},
      // Module types: standard module, class, form, property page, user
      // control, user document, designer.
      {"TYPE1",
       [](QPainter& p) {
         sheet(p, QRectF(2.5, 1.5, 11, 13));
         TextLines(p, 4.5, 11.5, 6, 4, kBlue);
       }},
      {"TYPE2",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kYellow);
         p.drawRect(QRectF(2.5, 1.5, 11, 4));
         p.setBrush(kPaper);
         p.drawRect(QRectF(2.5, 5.5, 11, 4));
         p.drawRect(QRectF(2.5, 9.5, 11, 5));
         p.setPen(Pen(kOrange.darker(120), 1.0));
         p.drawLine(QPointF(4.5, 7.5), QPointF(10, 7.5));
         p.drawLine(QPointF(4.5, 11.5), QPointF(11.5, 11.5));
       }},
      {"TYPE5",
       [](QPainter& p) {
         Window(p, QRectF(1.5, 2.5, 13, 11), kBlue);
         p.setPen(Pen(kGrey, 0.8));
         p.setBrush(kLightBlue);
         p.drawRect(QRectF(3.5, 8, 5, 3.5));
         p.setBrush(kPaper);
         p.drawRect(QRectF(10, 9.5, 3, 2));
       }},
      {"TYPE7",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kLightBlue);
         p.drawRect(QRectF(2.5, 2, 5, 3));
         p.setBrush(kPaper);
         p.drawRect(QRectF(1.5, 4.5, 13, 10));
         TextLines(p, 3.5, 12.5, 8, 3, kPurple);
       }},
      {"TYPE8",
       [](QPainter& p) {
         Window(p, QRectF(1.5, 2.5, 13, 11), kTeal);
         p.setPen(Pen(kInk, 0.8));
         p.setBrush(kYellow);
         p.drawRoundedRect(QRectF(4, 8, 8, 3.5), 1.2, 1.2);
       }},
      {"TYPE9",
       [](QPainter& p) {
         sheet(p, QRectF(2.5, 1.5, 11, 13));
         p.setPen(Pen(kTeal, 1.0));
         p.setBrush(Qt::NoBrush);
         p.drawEllipse(QPointF(8, 9.5), 3.5, 3.5);
         p.drawLine(QPointF(4.5, 9.5), QPointF(11.5, 9.5));
         p.drawEllipse(QPointF(8, 9.5), 1.5, 3.5);
       }},
      {"TYPE11",
       [](QPainter& p) {
         QPainterPath tri;
         tri.moveTo(2, 14);
         tri.lineTo(2, 2.5);
         tri.lineTo(13.5, 14);
         tri.closeSubpath();
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kYellow);
         p.drawPath(tri);
         p.setBrush(kPaper);
         p.drawPolygon(QPolygonF({QPointF(4.5, 12), QPointF(4.5, 8.5), QPointF(8, 12)}));
         p.setPen(Pen(kRed, 1.6));
         p.drawLine(QPointF(9, 2.5), QPointF(14, 7.5));
       }},
      // Procedure kinds: function, sub, property; others are plain.
      {"PROC1", [](QPainter& p) { badge(p, "F", kPurple); }},
      {"PROC2", [](QPainter& p) { badge(p, "S", kTeal); }},
      {"PROC3", [](QPainter& p) { badge(p, "P", kOrange); }},
      {"PROC0", [](QPainter& p) { badge(p, "?", kGrey); }},
      {"PROC98", [](QPainter& p) { badge(p, "D", kGrey); }},
      {"GRAPHMORE",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kPaper);
         p.drawRoundedRect(QRectF(1.5, 4.5, 13, 7), 3.5, 3.5);
         p.setPen(Qt::NoPen);
         p.setBrush(kBlue);
         for (double x : {4.8, 8.0, 11.2}) p.drawEllipse(QPointF(x, 8), 1.3, 1.3);
       }},
      // --- The toolbar ---
      {"OPEN",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kYellow);
         p.drawRect(QRectF(1.5, 4.5, 12, 9));
         p.drawRect(QRectF(1.5, 3, 5, 2));
         p.setBrush(kGreen);
         p.drawPolygon(QPolygonF({QPointF(9, 7), QPointF(15, 10.5), QPointF(9, 14)}));
       }},
      {"CONSOLE",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(QColor(0x24, 0x2a, 0x33));
         p.drawRoundedRect(QRectF(1.5, 2.5, 13, 11), 1.5, 1.5);
         p.setPen(Pen(kGreen.lighter(140), 1.3));
         p.drawPolyline(QPolygonF({QPointF(4, 6), QPointF(6.5, 8), QPointF(4, 10)}));
         p.drawLine(QPointF(8, 10.5), QPointF(11.5, 10.5));
       }},
      {"ADDSESSION",
       [](QPainter& p) {
         stopwatch(p, QPointF(7, 9), 5.2, kBlue);
         Plus(p, QPointF(12, 12), kGreen);
       }},
      {"SAVEMERGED",
       [](QPainter& p) {
         floppy(p);
         p.setPen(Pen(kGreen.darker(110), 1.3));
         p.setBrush(Qt::NoBrush);
         p.drawLine(QPointF(5, 10.5), QPointF(8, 12.5));
         p.drawLine(QPointF(11, 10.5), QPointF(8, 12.5));
       }},
      {"CLEAR",
       [](QPainter& p) {
         p.setPen(Pen(kInk, 0.9));
         p.setBrush(kPaper);
         p.drawRect(QRectF(2.5, 1.5, 10, 12));
         TextLines(p, 4, 11, 4.5, 4, kGrey);
         p.setPen(Pen(kRed, 2.0));
         p.drawLine(QPointF(8.5, 8.5), QPointF(14.5, 14.5));
         p.drawLine(QPointF(14.5, 8.5), QPointF(8.5, 14.5));
       }},
      {"TOTALTIME",
       [](QPainter& p) {
         stopwatch(p, QPointF(8, 9), 5.8, kBlue);
         letter(p, QRectF(5, 5.5, 11, 11), QString(QChar(0x03A3)), kRed, 8);
       }},
      {"AVERAGETIME",
       [](QPainter& p) {
         stopwatch(p, QPointF(8, 9), 5.8, kBlue);
         letter(p, QRectF(5, 5.5, 11, 11), QString(QChar(0x00D8)), kRed, 8);
       }},
      {"CHILDTOTALTIME",
       [](QPainter& p) {
         hierarchy(p, kBlue);
         letter(p, QRectF(7, 0, 9, 8), QString(QChar(0x03A3)), kRed, 8);
       }},
      {"CHILDAVERAGETIME",
       [](QPainter& p) {
         hierarchy(p, kBlue);
         letter(p, QRectF(7, 0, 9, 8), QString(QChar(0x00D8)), kRed, 8);
       }},
      {"COVERAGE",
       [](QPainter& p) {
         p.setPen(Qt::NoPen);
         p.setBrush(kLightBlue);
         p.drawEllipse(QPointF(8, 8), 6.5, 6.5);
         p.setBrush(kGreen);
         p.drawPie(QRectF(1.5, 1.5, 13, 13), 90 * 16, -270 * 16);
         p.setBrush(kPaper);
         p.drawEllipse(QPointF(8, 8), 2.5, 2.5);
       }},
      {"BACK", [](QPainter& p) { arrow(p, QPointF(14, 8), QPointF(2.5, 8), kBlue, 2.2); }},
      {"FWD", [](QPainter& p) { arrow(p, QPointF(2, 8), QPointF(13.5, 8), kBlue, 2.2); }},
      {"FILTERS", [](QPainter& p) { funnel(p, kOrange); }},
      {"OPTIONS", [](QPainter& p) { gear(p); }},
      {"ABOUT", [](QPainter& p) { disc(p, "i", kBlue); }},
      {"HELP", [](QPainter& p) { disc(p, "?", kGreen); }},
  };
  return drawings;
}

QPixmap Render(const Draw& draw, int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter p(&pixmap);
  p.setRenderHint(QPainter::Antialiasing);
  p.setRenderHint(QPainter::TextAntialiasing);
  p.scale(size / 16.0, size / 16.0);
  draw(p);
  return pixmap;
}

}  // namespace

bool hasZolIcon(const std::string& key) {
  return iconDrawings().count(key) != 0;
}

QIcon zolIcon(const std::string& keyIn) {
  // The grids name module icons the other way round: "5TYPE" for "TYPE5".
  std::string key = keyIn;
  if (key.size() > 4 && key.compare(key.size() - 4, 4, "TYPE") == 0 &&
      key.find_first_not_of("0123456789") == key.size() - 4) {
    key = "TYPE" + key.substr(0, key.size() - 4);
  }
  static QHash<QString, QIcon> cache;
  const QString name = QString::fromStdString(key);
  if (auto it = cache.constFind(name); it != cache.constEnd()) return *it;
  QIcon icon;
  const auto& drawings = iconDrawings();
  auto found = drawings.find(key);
  // A procedure kind without a drawing of its own looks like an unknown one.
  if (found == drawings.end() && key.rfind("PROC", 0) == 0) found = drawings.find("PROC0");
  if (found == drawings.end() && key.rfind("TYPE", 0) == 0) found = drawings.find("TYPE1");
  if (found != drawings.end()) {
    for (int size : {16, 24, 32, 48}) icon.addPixmap(Render(found->second, size));
  }
  cache.insert(name, icon);
  return icon;
}

QStringList zolIconKeys() {
  QStringList keys;
  for (const auto& [key, draw] : iconDrawings()) keys << QString::fromStdString(key);
  return keys;
}

}  // namespace zol
