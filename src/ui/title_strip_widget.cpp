#include "ui/title_strip_widget.h"

#include <QHBoxLayout>
#include <QLabel>

#include "ui/icons.h"
#include "ui/qt_text.h"

namespace zol {

QString analysisText(std::int32_t displayInfoType) {
  static const char* const kMeasures[] = {"total time)", "average time)", "total children time)",
                                          "avg. children time)", "hits)"};
  const int i = displayInfoType >= 0 && displayInfoType <= 4 ? displayInfoType : 0;
  return QString("Color scheme:\n(based on ") + kMeasures[i];
}

TitleStripWidget::TitleStripWidget(QWidget* parent)
    : QWidget(parent), analysisLabel_(new QLabel(this)) {
  setObjectName("titleStrip");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(6, 3, 6, 3);
  row->setSpacing(4);
  const char* names[] = {"groupTitle", "sessionTitle", "moduleTitle", "procedureTitle"};
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    Slot& s = slots_[i];
    if (i > 0) {
      s.separator = new QLabel(QString::fromUtf8("\u203a"), this);
      s.separator->setStyleSheet("color: #8a93a0; font-weight: bold;");
      row->addWidget(s.separator);
    }
    s.icon = new QLabel(this);
    s.text = new QLabel(this);
    s.text->setObjectName(names[i]);
    QFont f = s.text->font();
    f.setBold(true);
    s.text->setFont(f);
    s.text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Names of sessions, modules and procedures are never markup.
    s.text->setTextFormat(Qt::PlainText);
    row->addWidget(s.icon);
    row->addWidget(s.text);
  }
  row->addStretch(1);
  analysisLabel_->setObjectName("analysisLabel");
  analysisLabel_->setTextFormat(Qt::PlainText);
  analysisLabel_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  QFont small = analysisLabel_->font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  analysisLabel_->setFont(small);
  row->addWidget(analysisLabel_);
  Clear();
}

void TitleStripWidget::showStrip(const TitleStrip& strip) {
  const TitleLabel* labels[] = {&strip.Group, &strip.Session, &strip.Module, &strip.Procedure};
  bool first = true;
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const TitleLabel& label = *labels[i];
    Slot& s = slots_[i];
    s.icon->setVisible(label.Visible);
    s.text->setVisible(label.Visible);
    if (s.separator) s.separator->setVisible(label.Visible && !first);
    if (!label.Visible) continue;
    first = false;
    s.icon->setPixmap(zolIcon(label.Icon).pixmap(16, 16));
    s.text->setText(Q(label.Text));
  }
}

void TitleStripWidget::Clear() {
  showStrip(TitleStrip{});
}

void TitleStripWidget::updateAnalysis(std::int32_t displayInfoType) {
  analysisLabel_->setText(analysisText(displayInfoType));
}

std::array<QString, 4> TitleStripWidget::texts() const {
  std::array<QString, 4> texts;
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    if (!slots_[i].text->isHidden()) texts[i] = slots_[i].text->text();
  }
  return texts;
}

}  // namespace zol
