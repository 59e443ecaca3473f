#pragma once

// A workspace for catalogue tests: its settings go to a Zolmark.ini in a
// fresh folder, messages to a RecordingPrompter, and the window's side of the
// session pane to a RecordingPane that keeps every call it gets and does the
// data side as a window without controls would.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "catalogue/session_pane.h"
#include "project/project_info.h"
#include "session/prompter.h"
#include "session/workspace.h"

namespace zol::testing {

class RecordingPane : public HeadlessSessionPane {
 public:
  void CheckRow(Workspace& ws, const std::string& key) override {
    calls.push_back("check " + key);
    HeadlessSessionPane::CheckRow(ws, key);
  }
  void UncheckRow(Workspace& ws, const std::string& key) override {
    calls.push_back("uncheck " + key);
    HeadlessSessionPane::UncheckRow(ws, key);
  }
  void UnSelectSession(Workspace& ws, std::int32_t cs) override {
    calls.push_back("unselect K" + std::to_string(cs));
    HeadlessSessionPane::UnSelectSession(ws, cs);
  }
  void UnSelectSessionGroup(Workspace& ws, std::int32_t sg) override {
    calls.push_back("unselect G" + std::to_string(sg));
    HeadlessSessionPane::UnSelectSessionGroup(ws, sg);
  }
  void ResetViews(Workspace&, ViewReset how) override {
    calls.push_back(how == ViewReset::SessionsGone ? "reset gone" : "reset values");
  }
  void Refresh(Workspace&) override { calls.push_back("refresh"); }
  void BringToFront() override { calls.push_back("front"); }
  void SetBusy(bool busy) override { calls.push_back(busy ? "busy" : "idle"); }
  bool ShowsSession(std::int32_t cs) const override { return cs == shown; }

  std::vector<std::string> calls;
  std::int32_t shown = -1;  // the session the views show, none at first
};

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
  RecordingPane pane_;
};

}  // namespace zol::testing
