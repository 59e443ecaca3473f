#include "ui/session_header_bar.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionHeader>
#include <QTableView>
#include <cmath>

#include "ui/qt_text.h"

namespace zol {

namespace {

// Guards the two arranging routines against each other: resizing one side
// sends the very signals that would arrange the other again.
class ArrangeGuard {
 public:
  explicit ArrangeGuard(bool& flag) : flag_(flag), entered_(!flag) { flag_ = true; }
  ~ArrangeGuard() {
    if (entered_) flag_ = false;
  }
  bool Entered() const { return entered_; }

 private:
  bool& flag_;
  bool entered_;
};

// A header section without text.
class BlankSection : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QStyleOptionHeader option;
    option.initFrom(this);
    option.rect = rect();
    option.position = QStyleOptionHeader::Beginning;
    style()->drawControl(QStyle::CE_Header, &option, &painter, this);
  }
};

}  // namespace

SessionHeaderBar::SessionHeaderBar(QTableView* grid, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), grid_(grid), corner_(new BlankSection(this)) {
  setObjectName("sessionHeaders");
  setModel(&names_);
  setSectionsClickable(false);
  setSectionsMovable(false);
  setStretchLastSection(false);
  setDefaultAlignment(Qt::AlignCenter);
  setMinimumSectionSize(1);
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  // One line of names, as high as the grid's own header.
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  setFixedHeight(QFontMetrics(bold).height() + 10);
  hide();
  QHeaderView* gridHeader = grid_->horizontalHeader();
  connect(gridHeader, &QHeaderView::sectionResized, this, [this] { arrangeHeaders(); });
  connect(gridHeader, &QHeaderView::sectionMoved, this, [this] { arrangeHeaders(); });
  connect(this, &QHeaderView::sectionResized, this, [this] { arrangeList(); });
  connect(grid_->horizontalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { setOffset(value); });
}

void SessionHeaderBar::prepareFakeHeaders(const FakeHeaders& headers) {
  headers_ = headers;
  {
    ArrangeGuard guard(fDuringArrange_);
    names_.clear();
    QStringList labels{QString()};
    for (const std::string& name : headers_.SessionNames) labels << Q(name);
    names_.setColumnCount(static_cast<int>(labels.size()));
    names_.setHorizontalHeaderLabels(labels);
    // The leading columns' section only stands in for their width.
    setSectionResizeMode(0, QHeaderView::Fixed);
  }
  show();
  arrangeHeaders();
  setOffset(grid_->horizontalScrollBar()->value());
}

void SessionHeaderBar::release() {
  headers_ = FakeHeaders{};
  hide();
}

void SessionHeaderBar::resizeEvent(QResizeEvent* event) {
  QHeaderView::resizeEvent(event);
  corner_->setGeometry(0, 0, corner_->width(), height());
}

int SessionHeaderBar::gridColumnAt(int visual) const {
  return grid_->horizontalHeader()->logicalIndex(visual);
}

void SessionHeaderBar::arrangeHeaders() {
  if (headers_.SessionNames.empty()) return;
  ArrangeGuard guard(fDuringArrange_);
  if (!guard.Entered()) return;
  QHeaderView* gridHeader = grid_->horizontalHeader();
  int left = 0;
  for (int v = 0; v < headers_.FirstColumn && v < gridHeader->count(); ++v) {
    left += gridHeader->sectionSize(gridColumnAt(v));
  }
  resizeSection(0, left);
  corner_->setGeometry(0, 0, left, height());
  corner_->raise();
  int currentCol = headers_.FirstColumn;
  for (int i = 1; i <= static_cast<int>(headers_.SessionNames.size()); ++i) {
    int colWidth = 0;
    for (int k = 0; k < headers_.RunColumns(i - 1); ++k, ++currentCol) {
      if (currentCol < gridHeader->count())
        colWidth += gridHeader->sectionSize(gridColumnAt(currentCol));
    }
    if (i < count()) resizeSection(i, colWidth);
  }
}

void SessionHeaderBar::arrangeList() {
  if (headers_.NumberOfColumnsPerSession <= 0) return;
  ArrangeGuard guard(fDuringArrange_);
  if (!guard.Entered()) return;
  QHeaderView* gridHeader = grid_->horizontalHeader();
  int currentCol = headers_.FirstColumn;
  for (int i = 1; i <= static_cast<int>(headers_.SessionNames.size()) && i < count(); ++i) {
    const int perSession = headers_.RunColumns(i - 1);
    const int fakeWidth = sectionSize(i);
    const int colWidth = static_cast<int>(std::lround(static_cast<double>(fakeWidth) / perSession));
    for (int k = 0; k < perSession; ++k, ++currentCol) {
      if (currentCol >= gridHeader->count()) break;
      // The last column of the run takes what the others leave.
      const int width = k + 1 < perSession ? colWidth : fakeWidth - colWidth * (perSession - 1);
      gridHeader->resizeSection(gridColumnAt(currentCol), std::max(width, 1));
    }
  }
}

}  // namespace zol
