#include "ui/source_pane.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFontComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTextBlock>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "base/files.h"
#include "base/text.h"
#include "ui/flow_layout.h"
#include "ui/page_display.h"
#include "ui/qt_text.h"

namespace zol {

SourceBrowser::SourceBrowser(QWidget* parent)
    : QTextBrowser(parent), rowBar_(new QScrollBar(Qt::Vertical, this)) {
  setObjectName("sourceBrowser");
  rowBar_->setObjectName("sourceRows");
  rowBar_->hide();
  connect(rowBar_, &QScrollBar::valueChanged, this,
          [this](int first) { showRows(static_cast<std::size_t>(first)); });
  setOpenLinks(false);
  setOpenExternalLinks(false);
  // The page is drawn on white with its own colours, whatever the theme.
  QPalette pal = palette();
  pal.setColor(QPalette::Base, Qt::white);
  pal.setColor(QPalette::Text, Qt::black);
  setPalette(pal);
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
    // The page's own links are written as plain text ("|5|21|40", "#legend");
    // a whole URL can't be asked for fully decoded, so its encoded form is
    // decoded here.
    const QString text = QUrl::fromPercentEncoding(url.toEncoded());
    if (beforeNavigate && !beforeNavigate(toCp1252(text))) return;
    followAnchor(text);
  });
}

void SourceBrowser::Navigate(const std::string& file) {
  pageFile_ = file;
  rows_.reset();
  page_ = LoadFile(file);
  std::optional<PageRows> parts = splitPageRows(page_);
  if (!parts || parts->rows.size() <= kRowsShownWhole) {
    rowBar_->hide();
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setHtmlOf(page_);
    page_.clear();
    return;
  }
  rows_ = std::move(parts);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  {
    const QSignalBlocker block(rowBar_);
    rowBar_->setRange(0, static_cast<int>(rows_->rows.size()) - 1);
    rowBar_->setValue(0);
  }
  rowBar_->show();
  showRows(0);
}

void SourceBrowser::setHtmlOf(const std::string& page) {
  setExtraSelections({});
  setHtml(Q(pageForDisplay(page)));
}

std::size_t SourceBrowser::firstRow() const {
  return rows_ ? static_cast<std::size_t>(rowBar_->value()) : 0;
}

std::size_t SourceBrowser::rowsToShow(std::size_t first) const {
  // The page's font is seldom smaller than 8 pixels a line; a few rows too
  // many cost little, too few leave the foot of the screen empty.
  const int lines = viewport()->height() / 8 + 2;
  std::size_t last = first;
  for (int used = 0; last < rows_->rows.size() && used < lines; ++last) {
    used += rows_->linesOf(last);
  }
  return std::max<std::size_t>(last - first, 1);
}

void SourceBrowser::showRows(std::size_t first) {
  if (!rows_) return;
  first = std::min(first, rows_->rows.size() - 1);
  lastShown_ = first + rowsToShow(first);
  setHtmlOf(rows_->slice(first, lastShown_));
  rowBar_->setPageStep(static_cast<int>(std::max<std::size_t>(lastShown_ - first, 2) - 1));
}

void SourceBrowser::wheelEvent(QWheelEvent* event) {
  if (!rows_ || event->modifiers() & Qt::ControlModifier) {
    QTextBrowser::wheelEvent(event);
    return;
  }
  // Three rows a notch, as the platform scrolls lines; a touchpad's small
  // moves add up.
  wheelRest_ += event->angleDelta().y();
  const int steps = wheelRest_ / 40;
  wheelRest_ -= steps * 40;
  // Past the last row the window itself scrolls, down to the end of the
  // legend, and back up before the rows move again.
  const bool down = event->angleDelta().y() < 0;
  if ((down && rowBar_->value() == rowBar_->maximum()) ||
      (!down && verticalScrollBar()->value() > 0)) {
    wheelRest_ = 0;
    QTextBrowser::wheelEvent(event);
    return;
  }
  if (steps != 0) rowBar_->setValue(rowBar_->value() - steps);
  event->accept();
}

void SourceBrowser::keyPressEvent(QKeyEvent* event) {
  if (rows_) {
    switch (event->key()) {
      case Qt::Key_PageDown:
        rowBar_->triggerAction(QAbstractSlider::SliderPageStepAdd);
        return;
      case Qt::Key_PageUp:
        rowBar_->triggerAction(QAbstractSlider::SliderPageStepSub);
        return;
      case Qt::Key_Down:
        rowBar_->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        return;
      case Qt::Key_Up:
        rowBar_->triggerAction(QAbstractSlider::SliderSingleStepSub);
        return;
      case Qt::Key_Home:
        if (event->modifiers() & Qt::ControlModifier) return rowBar_->setValue(0);
        break;
      case Qt::Key_End:
        if (event->modifiers() & Qt::ControlModifier) return rowBar_->setValue(rowBar_->maximum());
        break;
      default:
        break;
    }
  }
  QTextBrowser::keyPressEvent(event);
}

void SourceBrowser::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  // A taller window needs more rows than the window holds.
  if (rows_ && lastShown_ < rows_->rows.size() &&
      lastShown_ - firstRow() < rowsToShow(firstRow())) {
    showRows(firstRow());
  }
}

void SourceBrowser::printPage(QPrinter* printer) {
  if (!rows_) {
    print(printer);
    return;
  }
  QTextDocument whole;
  whole.setHtml(Q(pageForDisplay(page_)));
  whole.print(printer);
}

void SourceBrowser::showNotice(const std::string& text) {
  pageFile_.clear();
  rows_.reset();
  page_.clear();
  rowBar_->hide();
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  QString html = "<html><body><br><br><p align=center><b>";
  const auto lines = Split(text, "\r\n");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i) html += "<br>";
    html += Q(lines[i]).toHtmlEscaped();
  }
  html += "</b></p></body></html>";
  setHtml(html);
}

void SourceBrowser::followAnchor(const QString& url) {
  const int hash = url.indexOf('#');
  if (hash < 0) return;
  const QString name = url.mid(hash + 1);
  if (rows_) {
    // The row that holds the anchor comes first in the window; the legend
    // stands after the last row.
    const std::optional<std::size_t> row = rows_->rowNamed(toCp1252(name));
    if (!row) return;
    rowBar_->setValue(static_cast<int>(*row));
  }
  // The legend is linked as "#legend" and named "Legend": names are matched
  // without regard to case, as a web browser of the page's time did. Only a
  // name the page holds is scrolled to; the view would go to the top for
  // any other.
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (!fragment.isValid()) continue;
      for (const QString& anchor : fragment.charFormat().anchorNames()) {
        if (anchor.compare(name, Qt::CaseInsensitive) == 0) {
          scrollToAnchor(anchor);
          return;
        }
      }
    }
  }
}

bool SourceBrowser::scrollToStatement(std::int32_t module, std::int32_t procedure,
                                      std::int32_t line) {
  const QString href = QString("|%1|%2|%3").arg(module).arg(procedure).arg(line);
  if (rows_) {
    const std::optional<std::size_t> row = rows_->rowLinkedTo(toCp1252(href));
    if (!row) return false;
    // A few rows of what leads to the statement stay in view above it.
    const int first = static_cast<int>(*row > 3 ? *row - 3 : 0);
    if (first == rowBar_->value()) {
      showRows(static_cast<std::size_t>(first));
    } else {
      rowBar_->setValue(first);
    }
  }
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (!fragment.isValid() || fragment.charFormat().anchorHref() != href) continue;
      QTextCursor cursor(document());
      cursor.setPosition(fragment.position());
      cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
      QTextEdit::ExtraSelection mark;
      mark.cursor = cursor;
      mark.format.setBackground(QColor(0xff, 0xf2, 0x9e));
      setExtraSelections({mark});
      setTextCursor(cursor);
      ensureCursorVisible();
      return true;
    }
  }
  return false;
}

SourcePane::SourcePane(QWidget* parent) : QWidget(parent), browser_(new SourceBrowser(this)) {
  setObjectName("sourcePane");
  strip_ = makeOptionStrip();
  // The strip wraps onto a second row on a narrow page.
  strip_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(strip_);
  auto* page = new QHBoxLayout;
  page->setContentsMargins(0, 0, 0, 0);
  page->setSpacing(0);
  page->addWidget(browser_, 1);
  page->addWidget(browser_->rowScrollBar());
  layout->addLayout(page, 1);
}

QWidget* SourcePane::makeOptionStrip() {
  auto* strip = new QWidget(this);
  strip->setObjectName("sourceOptions");
  auto* row = new FlowLayout(strip);
  const char* names[] = {"Hits", "Avg. Time", "Total Time", "Avg. Children", "Total Children"};
  const char* objects[] = {"showHits", "showAvgTime", "showTotalTime", "showAvgChildTime",
                           "showTotalChildTime"};
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i] = new QCheckBox(tr(names[i]), strip);
    columns_[i]->setObjectName(objects[i]);
    row->addWidget(columns_[i]);
    connect(columns_[i], &QCheckBox::toggled, this, [this] {
      if (!showing_) emit optionsChanged();
    });
  }
  row->addSpacing(12);
  scheme_ = new QButtonGroup(strip);
  const char* schemes[] = {"No Colors", "Color by Rank", "Color by Value"};
  for (int i = 0; i < 3; ++i) {
    auto* b = new QRadioButton(tr(schemes[i]), strip);
    b->setObjectName(QString("colorScheme%1").arg(i + 1));
    scheme_->addButton(b, i + 1);
    row->addWidget(b);
  }
  connect(scheme_, &QButtonGroup::idClicked, this, [this](int) {
    if (!showing_) emit optionsChanged();
  });
  row->addSpacing(12);
  font_ = new QFontComboBox(strip);
  font_->setObjectName("sourceFont");
  font_->setFontFilters(QFontComboBox::MonospacedFonts);
  font_->setToolTip(tr("Font of the source text"));
  font_->setMaximumWidth(180);
  size_ = new QSpinBox(strip);
  size_->setObjectName("sourceFontSize");
  size_->setRange(6, 36);
  size_->setSuffix(" pt");
  row->addWidget(font_);
  row->addWidget(size_);
  auto emitFont = [this] {
    if (!showing_) emit fontChanged(font_->currentFont().family(), size_->value());
  };
  connect(font_, &QFontComboBox::currentFontChanged, this, emitFont);
  connect(size_, &QSpinBox::valueChanged, this, emitFont);
  auto* print = new QPushButton(tr("Print..."), strip);
  print->setObjectName("printSource");
  auto* preview = new QPushButton(tr("Print Preview..."), strip);
  preview->setObjectName("previewSource");
  row->addWidget(print);
  row->addWidget(preview);
  connect(print, &QPushButton::clicked, this, &SourcePane::print);
  connect(preview, &QPushButton::clicked, this, &SourcePane::printPreview);
  return strip;
}

void SourcePane::showOptions(const HtmlPageOptions& options) {
  showing_ = true;
  for (std::size_t i = 0; i < columns_.size(); ++i) columns_[i]->setChecked(options.Column[i]);
  if (QAbstractButton* b = scheme_->button(options.ColorScheme)) b->setChecked(true);
  showing_ = false;
}

HtmlPageOptions SourcePane::options() const {
  HtmlPageOptions o;
  for (std::size_t i = 0; i < columns_.size(); ++i) o.Column[i] = columns_[i]->isChecked();
  o.ColorScheme = scheme_->checkedId() < 1 ? 1 : scheme_->checkedId();
  return o;
}

void SourcePane::showFont(const std::string& family, std::int32_t size) {
  showing_ = true;
  font_->setCurrentFont(QFont(Q(family)));
  size_->setValue(size);
  showing_ = false;
}

void SourcePane::print() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, this);
  dialog.setWindowTitle(tr("Print the source page"));
  if (dialog.exec() == QDialog::Accepted) browser_->printPage(&printer);
}

void SourcePane::printPreview() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintPreviewDialog preview(&printer, this);
  preview.setWindowTitle(tr("Print preview of the source page"));
  connect(&preview, &QPrintPreviewDialog::paintRequested, browser_,
          [this](QPrinter* p) { browser_->printPage(p); });
  preview.exec();
}

}  // namespace zol
