#pragma once

// The Reports page: seven steps that collect what the user wants (which
// sessions, what data, an export or an HTML report and its details, the
// target folder, whether to open the result) and "GO!", which writes the
// report with the progress bar moving and opens what it wrote with the
// desktop's default program. Every control writes its choice at once; the
// choices are saved with the window's settings.

#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "report/report_driver.h"
#include "report/report_options.h"
#include "session/selection.h"
#include "session/workspace.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QStackedWidget;
class QToolButton;

namespace zol {

class ReportPane : public QWidget {
  Q_OBJECT

 public:
  explicit ReportPane(Workspace& ws, QWidget* parent = nullptr);

  // Reads the choices from the settings file and shows them.
  void loadOptions(const std::string& iniFile);
  // Writes them back. Throws FileError.
  void saveOptions(const std::string& iniFile) const;

  const ReportOptions& options() const { return options_; }
  // Sets every control from `options` (and the workspace's report page options).
  void showOptions(const ReportOptions& options);

  // What "Current Session" and the rankings refer to: asked of the window
  // when "GO!" is pressed.
  std::function<Selection()> currentSelection;
  // Opens a file written: the desktop's default program unless replaced.
  std::function<void(const std::string& file)> openFile;

  // "GO!": writes the report. Returns its outcome.
  ReportOutcome generate();

  // The controls, for the tests.
  QComboBox* scopeBox() const { return scope_; }
  QToolButton* dataButton(int data) const { return data_[data]; }
  QRadioButton* reportTypeButton(bool exportData) const;
  QCheckBox* exportWhatBox(int what) const { return exportWhat_[what]; }
  QCheckBox* separateFilesBox() const { return separate_; }
  QCheckBox* reportWhatBox(int what) const { return reportWhat_[what]; }
  QSpinBox* topItemsBox() const { return topItems_; }
  QCheckBox* columnBox(int column) const { return columns_[column]; }
  QRadioButton* colorButton(int scheme) const;
  QCheckBox* htmBox() const { return htm_; }
  QCheckBox* chmBox() const { return chm_; }
  QRadioButton* targetButton(ReportTarget target) const;
  QLineEdit* targetFolderEdit() const { return folder_; }
  QCheckBox* openReportBox() const { return open_; }
  QPushButton* goButton() const { return go_; }
  QStackedWidget* fineTuneFrames() const { return frames_; }

 private:
  QGroupBox* step(const char* caption);
  void connectControls();
  void readControls();

  Workspace& ws_;
  ReportOptions options_;
  bool showing_ = false;

  QComboBox* scope_ = nullptr;
  std::array<QToolButton*, 3> data_{};
  QButtonGroup* reportType_ = nullptr;
  QStackedWidget* frames_ = nullptr;
  std::array<QCheckBox*, 4> exportWhat_{};
  QCheckBox* separate_ = nullptr;
  std::array<QCheckBox*, 2> reportWhat_{};
  QSpinBox* topItems_ = nullptr;
  std::array<QCheckBox*, 5> columns_{};
  QButtonGroup* colors_ = nullptr;
  QCheckBox* htm_ = nullptr;
  QCheckBox* chm_ = nullptr;
  QButtonGroup* target_ = nullptr;
  QLineEdit* folder_ = nullptr;
  QCheckBox* open_ = nullptr;
  QPushButton* go_ = nullptr;
};

}  // namespace zol
