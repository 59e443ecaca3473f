#include "ui/screenshots.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QTabBar>

#include "ui/icons.h"
#include "ui/main_window.h"

namespace zol {

QStringList saveTabScreenshots(MainWindow& window, const QString& folder) {
  QDir().mkpath(folder);
  QStringList written;
  QTabBar* tabs = window.pageTabs();
  for (int tab = 1; tab <= tabs->count(); ++tab) {
    window.selectScopeTab(TabFromIndex(tab));
    // Let the layout settle and the chart draw before the picture is taken.
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    const QString file =
        QDir(folder).filePath(QString("%1-%2.png").arg(tab).arg(tabs->tabText(tab - 1).toLower()));
    if (window.grab().save(file)) written << file;
  }
  const QString sheet = QDir(folder).filePath("icons.png");
  if (saveIconSheet(sheet)) written << sheet;
  return written;
}

bool saveIconSheet(const QString& file) {
  const QStringList keys = zolIconKeys();
  constexpr int kCell = 150;
  constexpr int kRow = 44;
  constexpr int kPerLine = 6;
  const int lines = (static_cast<int>(keys.size()) + kPerLine - 1) / kPerLine;
  QPixmap sheet(kCell * kPerLine, kRow * lines);
  sheet.fill(Qt::white);
  QPainter p(&sheet);
  for (int i = 0; i < keys.size(); ++i) {
    const int x = (i % kPerLine) * kCell + 6;
    const int y = (i / kPerLine) * kRow + 6;
    const QIcon icon = zolIcon(keys[i].toStdString());
    p.drawPixmap(x, y + 8, icon.pixmap(16, 16));
    p.drawPixmap(x + 22, y, icon.pixmap(32, 32));
    p.drawText(QRect(x + 58, y, kCell - 60, 32), Qt::AlignVCenter, keys[i]);
  }
  p.end();
  return sheet.save(file);
}

}  // namespace zol
