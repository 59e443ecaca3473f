#pragma once

// The title strip above the pages: group, session, module and
// procedure of the selection, each with its icon; labels with nothing to show
// are hidden with their icons. On the right, the colour legend's note
// (the analysis label).

#include <QWidget>
#include <array>

#include "source_view/view_state.h"

class QLabel;

namespace zol {

class TitleStripWidget : public QWidget {
  Q_OBJECT

 public:
  explicit TitleStripWidget(QWidget* parent = nullptr);

  void showStrip(const TitleStrip& strip);
  void Clear();
  // "Color scheme:", a line break, "(based on ", the measure, ")".
  void updateAnalysis(std::int32_t displayInfoType);

  // The texts on display, for the tests: group, session, module, procedure;
  // empty for a hidden label.
  std::array<QString, 4> texts() const;

 private:
  struct Slot {
    QLabel* icon = nullptr;
    QLabel* text = nullptr;
    QLabel* separator = nullptr;
  };
  std::array<Slot, 4> slots_{};
  QLabel* analysisLabel_;
};

// The text of the analysis label for a measure.
QString analysisText(std::int32_t displayInfoType);

}  // namespace zol
