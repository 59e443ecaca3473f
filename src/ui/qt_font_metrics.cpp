#include "ui/qt_font_metrics.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QStringList>
#include <algorithm>

#include "ui/qt_text.h"

namespace zol {

namespace {

QFont fontOf(const std::string& font, double size) {
  QFont f(Q(font));
  f.setPointSizeF(size);
  return f;
}

}  // namespace

std::optional<double> QtFontMetrics::TextHeight(const std::string& font, double size,
                                                std::string_view text) const {
  if (size <= 0) return std::nullopt;
  const QFontMetricsF metrics(fontOf(font, size));
  const double height = text.empty() ? metrics.height() : metrics.boundingRect(Q(text)).height();
  // Line height, as a text box of one line measures it.
  return std::max(height, metrics.height());
}

double QtFontMetrics::ActualSize(const std::string& font, double size) const {
  return QFontInfo(fontOf(font, size)).pointSizeF();
}

void installFontSubstitutions() {
  const QStringList mono = {"Liberation Mono", "DejaVu Sans Mono", "Noto Mono", "Courier",
                            "Monospace"};
  const QStringList sans = {"Liberation Sans", "DejaVu Sans", "Noto Sans", "Helvetica", "Sans"};
  const QStringList families = QFontDatabase::families();
  if (!families.contains("Courier New", Qt::CaseInsensitive)) {
    QFont::insertSubstitutions("Courier New", mono);
  }
  if (!families.contains("Arial", Qt::CaseInsensitive)) QFont::insertSubstitutions("Arial", sans);
}

}  // namespace zol
