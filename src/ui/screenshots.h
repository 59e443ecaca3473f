#pragma once

// Pictures of the main window, one per scope tab, for the documentation and
// for checking the look of a change by eye.

#include <QString>
#include <QStringList>

namespace zol {

class MainWindow;

// Shows each tab in turn and saves the window as "<n>-<tab>.png" in
// `folder`; returns the files written.
// Also saves the icon sheet, "icons.png".
QStringList saveTabScreenshots(MainWindow& window, const QString& folder);

// Every icon of the program at 16 and 32 pixels with its key, on one sheet.
bool saveIconSheet(const QString& file);

}  // namespace zol
