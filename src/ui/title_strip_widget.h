#pragma once

// The title strip above the pages (picScope): group, session, module and
// procedure of the selection, each with its icon; labels with nothing to show
// are hidden with their icons. On the right, the colour legend's note
// (lblAnalyzis).

#include <QWidget>
#include <array>

#include "source_view/view_state.h"

class QLabel;

namespace zol {

class TitleStripWidget : public QWidget {
  Q_OBJECT

 public:
  explicit TitleStripWidget(QWidget* parent = nullptr);

  void Show(const TitleStrip& strip);
  void Clear();
  // "Color scheme:", a line break, "(based on ", the measure, ")".
  void UpdateAnalyzis(std::int32_t displayInfoType);

  // The texts on display, for the tests: group, session, module, procedure;
  // empty for a hidden label.
  std::array<QString, 4> Texts() const;

 private:
  struct Slot {
    QLabel* icon = nullptr;
    QLabel* text = nullptr;
    QLabel* separator = nullptr;
  };
  std::array<Slot, 4> slots_{};
  QLabel* lblAnalyzis_;
};

// The text of lblAnalyzis for a measure.
QString AnalyzisText(std::int32_t displayInfoType);

}  // namespace zol
