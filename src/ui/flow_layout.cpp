#include "ui/flow_layout.h"

#include <QSpacerItem>
#include <QWidget>
#include <algorithm>

namespace zol {

FlowLayout::FlowLayout(QWidget* parent, int spacing) : QLayout(parent), spacing_(spacing) {
  setContentsMargins(4, 2, 4, 2);
}

FlowLayout::~FlowLayout() {
  while (QLayoutItem* item = takeAt(0)) delete item;
}

void FlowLayout::addSpacing(int width) {
  addItem(new QSpacerItem(width, 1, QSizePolicy::Fixed, QSizePolicy::Minimum));
}

void FlowLayout::addItem(QLayoutItem* item) {
  items_.append(item);
}

int FlowLayout::count() const {
  return static_cast<int>(items_.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return items_.value(index);
}

QLayoutItem* FlowLayout::takeAt(int index) {
  return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

Qt::Orientations FlowLayout::expandingDirections() const {
  return {};
}

bool FlowLayout::hasHeightForWidth() const {
  return true;
}

int FlowLayout::heightForWidth(int width) const {
  return doLayout(QRect(0, 0, width, 0), true);
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const QLayoutItem* item : items_) size = size.expandedTo(item->minimumSize());
  const QMargins m = contentsMargins();
  return size + QSize(m.left() + m.right(), m.top() + m.bottom());
}

QSize FlowLayout::sizeHint() const {
  return minimumSize();
}

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  doLayout(rect, false);
}

int FlowLayout::doLayout(const QRect& rect, bool testOnly) const {
  const QMargins m = contentsMargins();
  const QRect area = rect.adjusted(m.left(), m.top(), -m.right(), -m.bottom());
  int x = area.x();
  int y = area.y();
  int rowHeight = 0;
  for (QLayoutItem* item : items_) {
    if (item->widget() && item->widget()->isHidden()) continue;
    const QSize hint = item->sizeHint();
    const bool spacer = item->spacerItem() != nullptr;
    if (x + hint.width() > area.right() + 1 && rowHeight > 0) {
      x = area.x();
      y += rowHeight + spacing_ / 2;
      rowHeight = 0;
      if (spacer) continue;  // no gap at the start of a row
    }
    if (!testOnly) {
      // Widgets of one row share its middle line.
      item->setGeometry(QRect(QPoint(x, y), hint));
    }
    x += hint.width() + (spacer ? 0 : spacing_);
    rowHeight = std::max(rowHeight, hint.height());
  }
  return y + rowHeight - rect.y() + m.bottom();
}

}  // namespace zol
