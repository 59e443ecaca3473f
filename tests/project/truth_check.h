#pragma once

// The comparison of a scanned project with the instrumenter's truth.

#include <gtest/gtest.h>

#include "session/records.h"
#include "support/instrumenter.h"

namespace zol::testing {

inline void ExpectMatchesTruth(const Project& p, const fixture::InstrumentTruth& t) {
  ASSERT_EQ(p.ModulesNumber, t.Modules.UBound());
  ASSERT_EQ(p.ProceduresNumber, t.Procedures.UBound());
  ASSERT_EQ(p.LinesNumber, t.Lines.UBound());
  EXPECT_EQ(p.ListOfModule, t.ListOfModule);
  EXPECT_EQ(p.ListOfProc, t.ListOfProc);
  EXPECT_EQ(static_cast<bool>(p.ContainsCritical), t.ContainsCritical);
  for (int m = 1; m <= t.Modules.UBound(); ++m) {
    const Module& got = p.Module(m);
    const fixture::TruthModule& want = t.Modules(m);
    EXPECT_EQ(got.FileName, want.FileName);
    EXPECT_EQ(got.Name, want.Name);
    EXPECT_EQ(got.Type, want.Type);
    ASSERT_GE(got.RTFLine.UBound(), want.RTFLine.UBound()) << want.Name;
    for (int i = 1; i <= got.RTFLine.UBound(); ++i) {
      const RTFLine expected = i <= want.RTFLine.UBound() ? want.RTFLine(i) : RTFLine{};
      EXPECT_EQ(got.RTFLine(i), expected) << want.Name << " line " << i;
    }
  }
  for (int id = 1; id <= t.Procedures.UBound(); ++id) {
    const Procedure& got = p.Procedure(id);
    const fixture::TruthProcedure& want = t.Procedures(id);
    EXPECT_EQ(got.Name, want.name) << id;
    EXPECT_EQ(got.Type, want.type) << want.name;
    EXPECT_EQ(got.BelongToModule, want.module) << want.name;
    EXPECT_EQ(got.Position, want.position) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsProfiled), want.isProfiled) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsCovered), want.isCovered) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsCritical), want.isCritical) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsDead), want.isDead) << want.name;
  }
  for (int id = 1; id <= t.Lines.UBound(); ++id) {
    const CodeLine& got = p.CodeLine(id);
    const fixture::TruthLine& want = t.Lines(id);
    EXPECT_EQ(got.Text, want.text) << id;
    EXPECT_EQ(got.BelongToProcedure, want.procedure) << want.text;
    EXPECT_EQ(got.Position, want.position) << want.text;
    EXPECT_EQ(static_cast<bool>(got.IsProcedureExit), want.isProcedureExit) << want.text;
  }
}

}  // namespace zol::testing
