#include "ui/options_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "base/text.h"
#include "ui/qt_text.h"

namespace zol {

OptionsDialog::OptionsDialog(const ViewSettings& settings, QWidget* parent)
    : QDialog(parent),
      settings_(settings),
      colored_(new QCheckBox(tr("Colour the project tree by rank"), this)),
      filters_(new QPlainTextEdit(this)),
      plan_(new QLineEdit(this)) {
  setObjectName("optionsDialog");
  setWindowTitle(tr("Options"));
  colored_->setChecked(settings.colored);
  QString filters = Q(settings.Filters);
  filters.replace("\r\n", "\n");
  filters_->setPlainText(filters);
  filters_->setToolTip(
      tr("One text per line: the own time of every line whose source holds it is set to 0 by "
         "\"Apply Filters\" (waiting in a message box, say)."));
  plan_->setText(Q(settings.DefaultPlan));
  auto* form = new QFormLayout();
  form->addRow(colored_);
  form->addRow(tr("Timing filters:"), filters_);
  form->addRow(tr("Default instrumentation plan:"), plan_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(buttons);
  resize(460, 320);
}

ViewSettings OptionsDialog::chosenSettings() const {
  ViewSettings o = settings_;
  o.colored = colored_->isChecked();
  QStringList lines = filters_->toPlainText().split('\n');
  QStringList kept;
  for (const QString& line : lines) {
    if (!line.isEmpty()) kept << line;
  }
  o.Filters = toCp1252(kept.join("\r\n"));
  o.DefaultPlan = toCp1252(plan_->text());
  return o;
}

}  // namespace zol
