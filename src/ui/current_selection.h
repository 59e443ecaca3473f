#pragma once

// The one selection on screen: session, module, procedure, line, tab and
// measure. The window is its only writer; the views read it when they draw,
// and what hangs on the measure (toolbar, tree colours, title) follows the
// `changed` signal.

#include <QObject>

#include "session/selection.h"

namespace zol {

class CurrentSelection : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  const Selection& get() const { return selection_; }

  // Makes `selection` the one on screen; `changed` tells the listeners when
  // it differs from the one before.
  void set(const Selection& selection) {
    if (selection == selection_) return;
    const Selection before = selection_;
    selection_ = selection;
    emit changed(selection_, before);
  }

 signals:
  void changed(const zol::Selection& now, const zol::Selection& before);

 private:
  Selection selection_;
};

}  // namespace zol
