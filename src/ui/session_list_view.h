#pragma once

// The session list: one row per session or group with its tick
// box, a click on a header sorts, the name can be edited in place, and the
// right button opens the list's menu. The view only
// reports what the user asked; the window acts on the catalogue.

#include <QTreeView>

namespace zol {

class SessionListModel;

class SessionListView : public QTreeView {
  Q_OBJECT

 public:
  explicit SessionListView(SessionListModel* model, QWidget* parent = nullptr);

  SessionListModel* typedModel() const { return model_; }
  // The key of the selected row, empty for none.
  std::string selectedKey() const;
  void selectKey(const std::string& key);
  // Starts the edit of the selected row's name.
  void editSelectedName();

 signals:
  // A click on the header of column `column` (1 to 5).
  void sortRequested(int column);
  void removeRequested(const QString& key);
  void destroyRequested(const QString& key);
  void selectAllRequested();
  void unselectAllRequested();
  void removeAllRequested();
  void destroyAllRequested();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void popupMenu(const QPoint& globalPos);

  SessionListModel* model_;
};

}  // namespace zol
