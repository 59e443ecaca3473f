#pragma once

// A layout that sets its widgets side by side and wraps them onto a further
// row when the width runs out: the option strips above the pages keep every
// control whole on a narrow window instead of squeezing them.

#include <QLayout>
#include <QList>

namespace zol {

class FlowLayout : public QLayout {
 public:
  explicit FlowLayout(QWidget* parent = nullptr, int spacing = 6);
  ~FlowLayout() override;

  // A gap of `width` pixels before the next widget, on the same row.
  void addSpacing(int width);

  void addItem(QLayoutItem* item) override;
  int count() const override;
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override;
  bool hasHeightForWidth() const override;
  int heightForWidth(int width) const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& rect) override;
  QSize sizeHint() const override;

 private:
  int doLayout(const QRect& rect, bool testOnly) const;

  QList<QLayoutItem*> items_;
  int spacing_;
};

}  // namespace zol
