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
#include <QSpinBox>
#include <QTextBlock>
#include <QVBoxLayout>

#include "base/files.h"
#include "base/text.h"
#include "ui/flow_layout.h"
#include "ui/page_display.h"
#include "ui/qt_text.h"

namespace zol {

SourceBrowser::SourceBrowser(QWidget* parent) : QTextBrowser(parent) {
  setObjectName("sourceBrowser");
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
    if (beforeNavigate && !beforeNavigate(ToCp1252(text))) return;
    FollowAnchor(text);
  });
}

void SourceBrowser::Navigate(const std::string& file) {
  pageFile_ = file;
  setHtml(Q(PageForDisplay(LoadFile(file))));
}

void SourceBrowser::ShowNotice(const std::string& text) {
  pageFile_.clear();
  QString html = "<html><body><br><br><p align=center><b>";
  const auto lines = Split(text, "\r\n");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i) html += "<br>";
    html += Q(lines[i]).toHtmlEscaped();
  }
  html += "</b></p></body></html>";
  setHtml(html);
}

void SourceBrowser::FollowAnchor(const QString& url) {
  const int hash = url.indexOf('#');
  if (hash < 0) return;
  const QString name = url.mid(hash + 1);
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

bool SourceBrowser::ScrollToStatement(std::int32_t module, std::int32_t procedure,
                                      std::int32_t line) {
  const QString href = QString("|%1|%2|%3").arg(module).arg(procedure).arg(line);
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
  strip_ = MakeOptionStrip();
  // The strip wraps onto a second row on a narrow page.
  strip_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(strip_);
  layout->addWidget(browser_, 1);
}

QWidget* SourcePane::MakeOptionStrip() {
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
  connect(print, &QPushButton::clicked, this, &SourcePane::Print);
  connect(preview, &QPushButton::clicked, this, &SourcePane::PrintPreview);
  return strip;
}

void SourcePane::ShowOptions(const HtmlPageOptions& options) {
  showing_ = true;
  for (std::size_t i = 0; i < columns_.size(); ++i) columns_[i]->setChecked(options.Column[i]);
  if (QAbstractButton* b = scheme_->button(options.ColorScheme)) b->setChecked(true);
  showing_ = false;
}

HtmlPageOptions SourcePane::Options() const {
  HtmlPageOptions o;
  for (std::size_t i = 0; i < columns_.size(); ++i) o.Column[i] = columns_[i]->isChecked();
  o.ColorScheme = scheme_->checkedId() < 1 ? 1 : scheme_->checkedId();
  return o;
}

void SourcePane::ShowFont(const std::string& family, std::int32_t size) {
  showing_ = true;
  font_->setCurrentFont(QFont(Q(family)));
  size_->setValue(size);
  showing_ = false;
}

void SourcePane::Print() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, this);
  dialog.setWindowTitle(tr("Print the source page"));
  if (dialog.exec() == QDialog::Accepted) browser_->print(&printer);
}

void SourcePane::PrintPreview() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintPreviewDialog preview(&printer, this);
  preview.setWindowTitle(tr("Print preview of the source page"));
  connect(&preview, &QPrintPreviewDialog::paintRequested, browser_,
          [this](QPrinter* p) { browser_->print(p); });
  preview.exec();
}

}  // namespace zol
