#pragma once

// The source page: the hyperlinked, coloured source of a module or
// procedure in a text browser, and its option strip: the
// numeric columns and the colour scheme of the page for the present measure,
// the page's font, printing and print preview.
//
// The browser reads the page file that the core writes and shows a display
// copy of it (see page_display.h). Every link is handed to the window first,
// which decides whether it is followed or opens the statement's menu.
//
// A long page (a module of thousands of statements) is shown a window of rows
// at a time: the browser holds the caption row and the rows that fill the
// screen from the first one shown, and a scroll bar of rows beside it picks
// that first row. Laying out the whole table would take seconds.

#include <QTextBrowser>
#include <array>
#include <functional>
#include <optional>

#include "session/workspace.h"
#include "source_view/page_file.h"
#include "ui/page_display.h"

class QButtonGroup;
class QCheckBox;
class QFontComboBox;
class QPrinter;
class QScrollBar;
class QSpinBox;

namespace zol {

class SourceBrowser : public QTextBrowser, public PageBrowser {
  Q_OBJECT

 public:
  // Pages of more statements than this are shown a window of rows at a time.
  static constexpr std::size_t kRowsShownWhole = 300;

  explicit SourceBrowser(QWidget* parent = nullptr);

  // Shows the page file `file`.
  void Navigate(const std::string& file) override;
  // The statements of the page on display when it is shown a window of rows
  // at a time (0 when it is shown whole), and the first one in the window.
  std::size_t rowCount() const { return rows_ ? rows_->rows.size() : 0; }
  std::size_t firstRow() const;
  // The scroll bar of rows; the pane lays it out beside the browser.
  QScrollBar* rowScrollBar() const { return rowBar_; }
  // Prints the whole page, whatever part of it is on screen.
  void printPage(QPrinter* printer);
  // Shows a notice in place of code, lines separated by CR LF.
  void showNotice(const std::string& text);
  // Brings the statement that links to "|module|procedure|line" into view
  // and marks it; false when the page has no such statement.
  bool scrollToStatement(std::int32_t module, std::int32_t procedure, std::int32_t line);
  // Follows a link inside the page ("#legend").
  void followAnchor(const QString& url);

  const std::string& pageFile() const { return pageFile_; }

  // Decides on each link: returns true when the browser may follow it.
  std::function<bool(const std::string& url)> beforeNavigate;

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // Shows the rows that fill the screen from `first` on.
  void showRows(std::size_t first);
  // Rows of about a screen from `first` on; at least one.
  std::size_t rowsToShow(std::size_t first) const;
  void setHtmlOf(const std::string& page);

  std::string pageFile_;
  std::string page_;              // the page file's bytes, while shown by rows
  std::optional<PageRows> rows_;  // views into page_
  std::size_t lastShown_ = 0;     // one past the last row in the window
  int wheelRest_ = 0;             // wheel turns not yet a whole row
  QScrollBar* rowBar_ = nullptr;
};

class SourcePane : public QWidget {
  Q_OBJECT

 public:
  explicit SourcePane(QWidget* parent = nullptr);

  SourceBrowser* browser() const { return browser_; }
  QWidget* optionStrip() const { return strip_; }

  // Sets the check boxes and the scheme from the options of `measure`.
  void showOptions(const HtmlPageOptions& options);
  HtmlPageOptions options() const;
  // Sets the font choice without telling anybody.
  void showFont(const std::string& family, std::int32_t size);

  void print();
  void printPreview();

 signals:
  // The user changed a column or the colour scheme.
  void optionsChanged();
  // The user chose another font or size for the page.
  void fontChanged(const QString& family, int size);

 private:
  QWidget* makeOptionStrip();

  SourceBrowser* browser_;
  QWidget* strip_;
  std::array<QCheckBox*, 5> columns_{};
  QButtonGroup* scheme_ = nullptr;
  QFontComboBox* font_ = nullptr;
  QSpinBox* size_ = nullptr;
  bool showing_ = false;
};

}  // namespace zol
