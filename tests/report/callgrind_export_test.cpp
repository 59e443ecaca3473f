#include "report/callgrind_export.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "base/files.h"
#include "compare/hand_sessions.h"

namespace zol {
namespace {

// A reader of the callgrind grammar as far as the export uses it: header
// lines, the lines naming files and functions (names compressed or not),
// cost lines of position and event values, and call lines each followed by
// its cost line. Any line it can't place fails the test.
struct Callgrind {
  std::vector<std::string> events;
  std::vector<std::int64_t> summary;
  // Own costs per function name, summed: one total per event.
  std::map<std::string, std::vector<std::int64_t>> self;
  struct Call {
    std::string from, to;
    std::int64_t count = 0;
    std::int64_t inclusiveTime = 0;
  };
  std::vector<Call> calls;
};

std::vector<std::int64_t> Numbers(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::int64_t> values;
  for (std::string word; in >> word;) {
    std::size_t used = 0;
    values.push_back(std::stoll(word, &used));
    if (used != word.size()) throw std::runtime_error("not a number: " + word);
  }
  return values;
}

Callgrind Parse(const std::string& text) {
  Callgrind out;
  std::map<std::string, std::map<std::string, std::string>> names;  // kind -> id -> name
  auto resolve = [&](const std::string& kind, const std::string& named) {
    if (named.empty() || named[0] != '(') return named;
    const auto close = named.find(')');
    if (close == std::string::npos) throw std::runtime_error("bad name: " + named);
    const std::string id = named.substr(1, close - 1);
    if (close + 1 < named.size()) {
      if (named[close + 1] != ' ') throw std::runtime_error("bad name: " + named);
      const std::string name = named.substr(close + 2);
      if (names[kind].count(id) && names[kind][id] != name) {
        throw std::runtime_error("id " + id + " names two things");
      }
      names[kind][id] = name;
      return name;
    }
    if (!names[kind].count(id)) throw std::runtime_error("id " + id + " used before named");
    return names[kind][id];
  };
  std::istringstream in(text);
  std::string line;
  std::getline(in, line);
  if (line != "# callgrind format") throw std::runtime_error("no format line");
  std::string function, callee;
  bool costOfCall = false;
  Callgrind::Call call;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (costOfCall) {
      const auto v = Numbers(line);
      if (v.size() < 2 || v.size() > out.events.size() + 1) throw std::runtime_error(line);
      call.inclusiveTime = v[1];
      out.calls.push_back(call);
      costOfCall = false;
      continue;
    }
    const auto colon = line.find(": ");
    const auto equals = line.find('=');
    if (std::isdigit(static_cast<unsigned char>(line[0]))) {
      if (function.empty()) throw std::runtime_error("cost outside a function: " + line);
      const auto v = Numbers(line);
      if (v.size() < 2 || v.size() > out.events.size() + 1) throw std::runtime_error(line);
      auto& sums = out.self[function];
      sums.resize(out.events.size());
      for (std::size_t e = 1; e < v.size(); ++e) sums[e - 1] += v[e];
    } else if (equals != std::string::npos && (colon == std::string::npos || equals < colon)) {
      const std::string key = line.substr(0, equals);
      const std::string value = line.substr(equals + 1);
      if (key == "fl" || key == "fi" || key == "fe" || key == "cfl" || key == "cfi") {
        resolve("file", value);
      } else if (key == "fn") {
        function = resolve("fn", value);
      } else if (key == "cfn") {
        callee = resolve("fn", value);
      } else if (key == "calls") {
        const auto v = Numbers(value);
        if (v.size() != 2 || callee.empty()) throw std::runtime_error(line);
        call = {function, callee, v[0], 0};
        costOfCall = true;
      } else {
        throw std::runtime_error("unknown line: " + line);
      }
    } else if (colon != std::string::npos) {
      const std::string key = line.substr(0, colon);
      const std::string value = line.substr(colon + 2);
      if (key == "events") {
        std::istringstream words(value);
        for (std::string w; words >> w;) out.events.push_back(w);
      } else if (key == "summary") {
        out.summary = Numbers(value);
      } else if (key != "version" && key != "creator" && key != "cmd" && key != "positions" &&
                 key != "event") {
        throw std::runtime_error("unknown header: " + line);
      }
    } else {
      throw std::runtime_error("unknown line: " + line);
    }
  }
  if (costOfCall) throw std::runtime_error("a call without its cost line");
  return out;
}

std::vector<std::int64_t> Totals(const Callgrind& c) {
  std::vector<std::int64_t> totals(c.events.size());
  for (const auto& [name, sums] : c.self) {
    for (std::size_t e = 0; e < sums.size(); ++e) totals[e] += sums[e];
  }
  return totals;
}

TEST(CallgrindExport, LinesAndCallsOfAHandSession) {
  Workspace ws;
  const auto runs = testing::TwoRunsOfOneProject(ws);
  ws.Project(runs.cp).Module(1).FileName = "Main.bas";
  const Callgrind c = Parse(CallgrindText(ws, runs.one));

  EXPECT_EQ(c.events, (std::vector<std::string>{"Time_us", "Hits"}));
  EXPECT_EQ(c.summary, Totals(c));
  // Start's own lines: 0.2 s and 0.1 s, 2 + 1 + 2 hits; Idle has no line
  // probes, so its 0.3 s and 3 entries stand at its head.
  EXPECT_EQ(c.self.at("Main.Start"), (std::vector<std::int64_t>{300000, 5}));
  EXPECT_EQ(c.self.at("Main.Idle"), (std::vector<std::int64_t>{300000, 3}));
  EXPECT_EQ(c.self.count("Main.Old"), 0u);  // never run, nothing to show

  // The calls are the flow pairs: 1 -> 5 once in 0.2 s, 1 -> 3 twice in 0.3 s.
  ASSERT_EQ(c.calls.size(), 2u);
  EXPECT_EQ(c.calls[0].from, "Main.Start");
  EXPECT_EQ(c.calls[0].to, "Calc.Sum");
  EXPECT_EQ(c.calls[0].count, 1);
  EXPECT_EQ(c.calls[0].inclusiveTime, 200000);
  EXPECT_EQ(c.calls[1].to, "Main.Idle");
  EXPECT_EQ(c.calls[1].count, 2);
  EXPECT_EQ(c.calls[1].inclusiveTime, 300000);
}

TEST(CallgrindExport, TimesAreWholeMicroseconds) {
  EXPECT_EQ(CallgrindMicroseconds(0.0000014), 1);
  EXPECT_EQ(CallgrindMicroseconds(1.5), 1500000);
  EXPECT_EQ(CallgrindMicroseconds(-0.001), 0);
}

// The demo session's export, as the zolprof golden case keeps it, reads back
// whole: its calls add up to the demo's flow pairs (119 pairs, 5,308 calls, as
// `zolprof dump --json` lists them) and its own costs to its summary.
TEST(CallgrindExport, DemoSessionReadsBack) {
  const std::string file =
      std::string(ZOL_SOURCE_DIR) + "/tests/cli/export_callgrind/out/work/callgrind.out.Monday";
  ASSERT_TRUE(FileExist(file)) << file;
  const Callgrind c = Parse(LoadFile(file));
  EXPECT_EQ(c.summary, Totals(c));
  EXPECT_EQ(c.calls.size(), 119u);
  std::int64_t count = 0;
  for (const auto& call : c.calls) count += call.count;
  EXPECT_EQ(count, 5308);
}

}  // namespace
}  // namespace zol
