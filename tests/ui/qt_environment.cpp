// One QApplication for the whole suite, made before the first test: widgets
// can't exist without it. The offscreen platform is set by the test runner.

#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>

#include "ui/qt_font_metrics.h"

namespace {

class QtEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static int argc = 1;
    static char name[] = "test_ui";
    static char* argv[] = {name, nullptr};
    app_ = new QApplication(argc, argv);
    zol::installFontSubstitutions();
  }
  void TearDown() override {
    delete app_;
    app_ = nullptr;
  }

 private:
  QApplication* app_ = nullptr;
};

const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
