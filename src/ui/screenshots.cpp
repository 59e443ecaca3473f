#include "ui/screenshots.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTabBar>

#include "ui/main_window.h"

namespace zol {

QStringList SaveTabScreenshots(MainWindow& window, const QString& folder) {
  QDir().mkpath(folder);
  QStringList written;
  QTabBar* tabs = window.tbsScope();
  for (int tab = 1; tab <= tabs->count(); ++tab) {
    window.SelectScopeTab(tab);
    // Let the layout settle and the chart draw before the picture is taken.
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    const QString file =
        QDir(folder).filePath(QString("%1-%2.png").arg(tab).arg(tabs->tabText(tab - 1).toLower()));
    if (window.grab().save(file)) written << file;
  }
  return written;
}

}  // namespace zol
