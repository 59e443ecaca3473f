#pragma once

// A workspace for catalogue tests: its settings go to a Zolmark.ini in a
// fresh folder, and messages to a RecordingPrompter.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "catalogue/catalogue_change.h"
#include "project/project_info.h"
#include "session/prompter.h"
#include "session/workspace.h"

namespace zol::testing {

// Answers the "don't show again" questions from the same queue as Ask, and
// ticks the box when told to.
class DontShowPrompter : public RecordingPrompter {
 public:
  DontShowReply AskDontShowAgain(const std::string& title, const std::string& text) override {
    titles.push_back(title);
    return {Ask(text), tickDontShowAgain};
  }
  std::vector<std::string> titles;
  bool tickDontShowAgain = false;
};

class CatalogueTest : public ::testing::Test {
 protected:
  CatalogueTest() { ws_ = NewWorkspace(); }

  // A fresh workspace on the same application folder, as a new process of
  // the program would have.
  std::unique_ptr<Workspace> NewWorkspace() {
    auto ws = std::make_unique<Workspace>(prompter_);
    ws->appFolder = dir_ / "app";
    ResetRtfPath(*ws);
    return ws;
  }

  std::string Ini() const { return GetIniFile(dir_ / "app"); }
  std::string Setting(const std::string& key) const {
    return VBGetPrivateProfileString("Profiler", key, "", Ini());
  }
  void SetSetting(const std::string& key, const std::string& value) const {
    VBWritePrivateProfileString("Profiler", key, value, Ini());
  }

  ScopedTempDir dir_;
  std::shared_ptr<DontShowPrompter> prompter_ = std::make_shared<DontShowPrompter>();
  std::unique_ptr<Workspace> ws_;
};

}  // namespace zol::testing
