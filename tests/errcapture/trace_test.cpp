#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "errcapture/dump.h"
#include "errcapture/trace.h"
#include "errcapture/value_text.h"

namespace zol {
namespace {

class TraceTest : public ::testing::Test {
 protected:
  void Start(bool traceProc, bool params = false) {
    ProtectorSettings s = DefaultProtectorSettings(dir_.path(), "zoltest");
    s.zolTraceProc = traceProc;
    s.zolTraceParameters = params;
    s.zolLogTraceToFile = traceProc;
    zolInitializeProtector(s);
    TakeFault();
  }
  void TearDown() override { zolInitializeProtector(ProtectorSettings{}); }

  testing::ScopedTempDir dir_;
};

TEST_F(TraceTest, StackTextIsUnavailableOffEmptyAtDepthZeroAndIndentedFromTheTop) {
  Start(false);
  {
    ZOL_TRACE("Loader.Load");
    EXPECT_EQ(zolGetStack(), "{Unavailable}");
  }
  EXPECT_EQ(zolTraceCallsNumber(), 0);

  Start(true);
  EXPECT_EQ(zolGetStack(), "{Empty}");
  zolProcOut("Loader.Load");  // an exit without an entry stays at depth 0
  EXPECT_EQ(zolTraceCallsNumber(), 0);
  EXPECT_EQ(zolGetStack(), "{Empty}");
  {
    ZOL_TRACE("MainWindow.openSessions");
    {
      ZOL_TRACE("Catalogue.LoadSession");
      ZOL_TRACE("LogReader.ReadProfileFile");
      EXPECT_EQ(zolGetStack(),
                "LogReader.ReadProfileFile\r\n\tCatalogue.LoadSession\r\n\t\tMainWindow."
                "openSessions\r\n");
    }
    EXPECT_EQ(zolGetStack(), "MainWindow.openSessions\r\n");
  }
  EXPECT_EQ(zolGetStack(), "{Empty}");
}

TEST_F(TraceTest, LogLinesAreIndentedByDepthWithTheirArgumentsAndKeepErrno) {
  Start(true, true);
  {
    ZOL_TRACE_ARGS("Report.Write", [] { return zolParamsText({zolParamToText("Folder", "out")}); });
    errno = EACCES;
    ZOL_TRACE_ARGS("Report.Page", [] { return zolParamsText({}); });
    EXPECT_EQ(errno, EACCES);
  }
  EXPECT_EQ(LoadFile(CurrentProtectorSettings().zolLogFile),
            "Report.Write(Folder = out) \r\n\tReport.Page()\r\n");
}

TEST_F(TraceTest, TheFirstUnwoundProcedureNamesTheFaultAndKeepsTheStackOfThatMoment) {
  Start(true);
  try {
    ZOL_TRACE("MainWindow.exportGrid");
    ZOL_TRACE("Export.WriteCsv");
    throw std::runtime_error("disk full");
  } catch (const std::exception&) {
  }
  const FaultPlace f = TakeFault();
  ASSERT_TRUE(f.found);
  EXPECT_EQ(f.procedure, "Export.WriteCsv");
  EXPECT_GT(f.line, 0);
  EXPECT_EQ(f.stack, "Export.WriteCsv\r\n\tMainWindow.exportGrid\r\n");
  EXPECT_FALSE(TakeFault().found);  // taken once
  EXPECT_EQ(zolTraceCallsNumber(), 0);
}

// A value record is dumped from the same field list as its file image: every
// field, in image order, with its type.
TEST_F(TraceTest, ValueRecordsAreDumpedFieldByFieldInImageOrder) {
  Start(false);
  const std::string file = dir_.path() + "/dump.txt";
  zolSetDumpFile(file);
  FlowPair pair;
  pair.FromProc = 3;
  pair.ToProc = 7;
  pair.Hits = 2;
  pair.ChildTime = 0.5;
  DumpRecord("Pair", pair, 1);
  zolCloseDumpFile();
  EXPECT_EQ(LoadFile(file),
            "\tPair.FromProc = 3 (Long)\r\n\tPair.ToProc = 7 (Long)\r\n\tPair.Hits = 2 "
            "(Long)\r\n\tPair.ChildTime = 0.5 (Double)\r\n");
}

TEST(ValueText, ArgumentTextsOfArraysAndScalars) {
  EXPECT_EQ(zolParamToText("Lines", Array1<int>()), "Lines(Undimensioned Array)");
  Array1<int> three;
  three.ReDim(3);
  EXPECT_EQ(zolParamToText("Lines", three), "Lines(1 To 3)");
  ArrayShape five{{{0, 1}, {1, 2}, {0, 3}, {1, 4}, {0, 5}}};
  EXPECT_EQ(zolParamToText("Cube", five), "Cube(0 To 1, 1 To 2, 0 To 3, 1 To 4, 0 To 5)");
  EXPECT_EQ(zolParamToText("Fast", true), "Fast = True");
  EXPECT_EQ(zolParamToText("Time", 0.25), "Time = 0.25");
  EXPECT_EQ(zolParamsText({zolParamToText("a", 1), zolParamToText("b", "x")}), "(a = 1, b = x) ");
  EXPECT_EQ(zolParamsText({}), "()");
}

}  // namespace
}  // namespace zol

namespace zol {
namespace {

TEST(ProtectorSettings, DefaultsAndTheKeysOfTheSettingsFile) {
  testing::ScopedTempDir dir;
  ProtectorSettings d = DefaultProtectorSettings("/opt/zol", "zolprof");
  EXPECT_TRUE(d.zolCatchException);
  EXPECT_FALSE(d.zolTraceProc || d.zolTraceParameters || d.zolTraceLine || d.zolCallStack);
  EXPECT_FALSE(d.zolLogTraceToFile || d.zolScreenshot);
  EXPECT_TRUE(d.zolSystemInfo);
  EXPECT_EQ(d.zolDumpStringMaxLength, 128);
  EXPECT_EQ(d.zolLogFile, "/opt/zol/zolzolprof.exe.log");
  EXPECT_EQ(d.zolDumpFile, "/opt/zol/zolzolprof.exe.dmp");

  const std::string ini = dir.Put("Zolmark.ini",
                                  "[ErrorCapture]\nCallStack=True\nDumpStringMaxLength=12\n"
                                  "EmailRecipientAdress=bugs@example.org\n");
  ProtectorSettings s = ReadProtectorSettings(ini, dir.path(), "zolprof");
  EXPECT_TRUE(s.zolCallStack);
  EXPECT_TRUE(s.zolLogTraceToFile);  // a stack is kept, so its trace is written
  EXPECT_EQ(s.zolDumpStringMaxLength, 12);
  EXPECT_EQ(s.zolEmailRecipientAdress, "bugs@example.org");
  zolInitializeProtector(s);
  EXPECT_TRUE(CurrentProtectorSettings().zolTraceProc);  // forced by the call stack
  EXPECT_EQ(zolGetStack(), "{Empty}");
  zolInitializeProtector(ProtectorSettings{});
}

}  // namespace
}  // namespace zol
