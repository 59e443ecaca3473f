#include "ui/ui_test_support.h"

#include <filesystem>

#include "project/project_info.h"

namespace zol::testing {

DemoCopy::DemoCopy() {
  std::filesystem::copy(std::string(ZOL_SOURCE_DIR) + "/examples/demo/instrumented", dir_.path(),
                        std::filesystem::copy_options::recursive);
  std::filesystem::create_directories(AppFolder());
}

std::unique_ptr<Workspace> DemoWorkspace(const DemoCopy& demo) {
  auto ws = std::make_unique<Workspace>();
  ws->appFolder = demo.AppFolder();
  ResetRtfPath(*ws);
  return ws;
}

DemoWindow::DemoWindow(const std::vector<std::string>& files, const std::string& selectKey)
    : ws(DemoWorkspace(demo)) {
  StartOptions start;
  for (const std::string& f : files) start.files.push_back(demo.File(f));
  start.selectKey = selectKey;
  window = std::make_unique<MainWindow>(*ws, start);
  window->resize(1200, 800);
  window->show();
  QApplication::processEvents();
  // The sessions load on a worker thread; the tests begin once they are in.
  WaitFor([this] { return !window->busy(); }, 60000);
  QApplication::processEvents();
}

DemoWindow::~DemoWindow() {
  window->close();
  window.reset();
}

}  // namespace zol::testing
