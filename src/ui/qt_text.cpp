#include "ui/qt_text.h"

#include <QFile>

#include "base/cp1252.h"

namespace zol {

QString Q(std::string_view cp1252) {
  const std::string utf8 = Cp1252ToUtf8(cp1252);
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString plainToolTip(const QString& text) {
  if (text.isEmpty()) return text;
  return "<p style='white-space:pre'>" + plainForRichText(text) + "</p>";
}

QString plainForRichText(const QString& text) {
  QString html = text.toHtmlEscaped();
  html.replace("\r\n", "<br>");
  html.replace('\n', "<br>");
  return html;
}

std::string toCp1252(const QString& text) {
  const QByteArray whole = text.toUtf8();
  if (auto all = Utf8ToCp1252(
          std::string_view(whole.constData(), static_cast<std::size_t>(whole.size())))) {
    return *all;
  }
  std::string out;
  out.reserve(static_cast<std::size_t>(text.size()));
  for (const QChar c : text) {
    const QByteArray utf8 = QString(c).toUtf8();
    const auto one =
        Utf8ToCp1252(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
    out += one ? *one : std::string("?");
  }
  return out;
}

QString QPath(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}

std::string fromQPath(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

}  // namespace zol
