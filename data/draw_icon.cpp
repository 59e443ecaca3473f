// Renders the program's window icon (the stopwatch that marks a session,
// drawn in code) as the PNG files of the desktop's icon theme:
//   zol_draw_icon OUTDIR SIZE...   writes OUTDIR/SIZE.png for each size

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <cstdio>

#include "ui/icons.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: zol_draw_icon OUTDIR SIZE...\n");
    return 2;
  }
  // No display is needed to paint into an image.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  const QDir out(QString::fromLocal8Bit(argv[1]));
  if (!out.mkpath(".")) {
    std::fprintf(stderr, "zol_draw_icon: can't make %s\n", argv[1]);
    return 1;
  }
  const QIcon icon = zol::zolIcon("SESSION");
  for (int i = 2; i < argc; ++i) {
    const int size = QString::fromLocal8Bit(argv[i]).toInt();
    const QString file = out.filePath(QString::number(size) + ".png");
    if (size <= 0 || !icon.pixmap(size, size).save(file, "PNG")) {
      std::fprintf(stderr, "zol_draw_icon: can't write %s\n", qPrintable(file));
      return 1;
    }
  }
  return 0;
}
