#pragma once

// The source page: the hyperlinked, coloured source of a module or
// procedure in a text browser, and its option strip: the
// numeric columns and the colour scheme of the page for the present measure,
// the page's font, printing and print preview.
//
// The browser reads the page file that the core writes and shows a display
// copy of it (see page_display.h). Every link is handed to the window first,
// which decides whether it is followed or opens the statement's menu.

#include <QTextBrowser>
#include <array>
#include <functional>

#include "session/workspace.h"
#include "source_view/page_file.h"

class QButtonGroup;
class QCheckBox;
class QFontComboBox;
class QSpinBox;

namespace zol {

class SourceBrowser : public QTextBrowser, public PageBrowser {
  Q_OBJECT

 public:
  explicit SourceBrowser(QWidget* parent = nullptr);

  // Shows the page file `file`.
  void Navigate(const std::string& file) override;
  // Shows a notice in place of code, lines separated by CR LF.
  void ShowNotice(const std::string& text);
  // Brings the statement that links to "|module|procedure|line" into view
  // and marks it; false when the page has no such statement.
  bool ScrollToStatement(std::int32_t module, std::int32_t procedure, std::int32_t line);
  // Follows a link inside the page ("#legend").
  void FollowAnchor(const QString& url);

  const std::string& PageFile() const { return pageFile_; }

  // Decides on each link: returns true when the browser may follow it.
  std::function<bool(const std::string& url)> beforeNavigate;

 private:
  std::string pageFile_;
};

class SourcePane : public QWidget {
  Q_OBJECT

 public:
  explicit SourcePane(QWidget* parent = nullptr);

  SourceBrowser* Browser() const { return browser_; }
  QWidget* OptionStrip() const { return strip_; }

  // Sets the check boxes and the scheme from the options of `measure`.
  void ShowOptions(const HtmlPageOptions& options);
  HtmlPageOptions Options() const;
  // Sets the font choice without telling anybody.
  void ShowFont(const std::string& family, std::int32_t size);

  void Print();
  void PrintPreview();

 signals:
  // The user changed a column or the colour scheme.
  void optionsChanged();
  // The user chose another font or size for the page.
  void fontChanged(const QString& family, int size);

 private:
  QWidget* MakeOptionStrip();

  SourceBrowser* browser_;
  QWidget* strip_;
  std::array<QCheckBox*, 5> columns_{};
  QButtonGroup* scheme_ = nullptr;
  QFontComboBox* font_ = nullptr;
  QSpinBox* size_ = nullptr;
  bool showing_ = false;
};

}  // namespace zol
