#include "project/code_parse.h"

#include <gtest/gtest.h>

#include "project/cstack.h"

namespace zol {
namespace {

struct Found {
  bool ok;
  int pos;
  int type;
  int len;
};

Found Next(std::string_view line, int start = 1) {
  NextStructure ns;
  const bool ok = GetNextStructure(line, start, ns);
  return {ok, ns.Structure_Pos, ns.Structure_Type, ns.Structure_Len};
}

void ExpectStructure(std::string_view line, int pos, int type, int len) {
  const Found f = Next(line);
  EXPECT_TRUE(f.ok) << line;
  EXPECT_EQ(f.pos, pos) << line;
  EXPECT_EQ(f.type, type) << line;
  EXPECT_EQ(f.len, len) << line;
}

void ExpectNothing(std::string_view line, int start = 1) {
  EXPECT_FALSE(Next(line, start).ok) << line;
}

TEST(GetNextStructure, FindsDeclarationsWithTheirKeywordPosition) {
  ExpectStructure("Sub Main()", 1, kStructSub, 3);
  ExpectStructure("Private Sub Form_Load()", 9, kStructSub, 3);
  ExpectStructure("Public Function Total(ByVal a As Long) As Double", 8, kStructFunction, 8);
  ExpectStructure("Friend Function Name$(x)", 8, kStructFunction, 8);
  ExpectStructure("Public Property Get Value() As Long", 8, kStructProperty, 12);
  ExpectStructure("Property Let Value(ByVal v As Long)", 1, kStructProperty, 12);
  ExpectStructure("Public Sub Run (x)", 8, kStructSub, 3);
  // A declaration continued on the next line.
  ExpectStructure("Public Function Calc _", 8, kStructFunction, 8);
}

TEST(GetNextStructure, RefusesWhatOnlyLooksLikeADeclaration) {
  ExpectNothing("Public Sub Main");             // no parameter list behind the name
  ExpectNothing("Dim Subtotal As Double");      // not a whole word
  ExpectNothing("s = \"Sub x(\"");              // inside a string
  ExpectNothing("x = 1 ' Sub Foo()");           // inside a comment
  ExpectNothing("x = 1 : Rem Sub Foo()");       // inside a Rem comment
  ExpectNothing("Public Property Foo(x)");      // no accessor
  ExpectNothing("Public Property Put Foo(x)");  // not an accessor of the language
  ExpectNothing("Call Sub  Foo()");             // the name must follow one blank
  ExpectNothing("total = price * qty");         // quick refusal
}

TEST(GetNextStructure, TellsExitAndEndStatements) {
  ExpectStructure("Exit Sub", 1, kStructExitSub, 8);
  ExpectStructure("If x Then Exit Sub", 11, kStructExitSub, 8);
  ExpectStructure("    Exit Function", 5, kStructExitFunction, 13);
  ExpectStructure("Exit Property", 1, kStructExitProperty, 13);
  ExpectStructure("End Sub", 1, kStructEndSub, 7);
  ExpectStructure("End Function", 1, kStructEndFunction, 12);
  ExpectStructure("End Property", 1, kStructEndProperty, 12);
  ExpectStructure(" \tEnd\t ", 3, kStructEnd, 3);
  ExpectNothing("End If");
  ExpectNothing("If x Then End");  // "End" must be the whole line
}

TEST(GetNextStructure, TellsSelectCaseAndOtherStatements) {
  ExpectStructure("Select Case n", 1, kStructSelectCase, 11);
  ExpectStructure("  Case 1, 2", 3, kStructCase, 4);
  ExpectStructure("Case Else", 1, kStructCase, 4);
  ExpectStructure("End Select", 1, kStructEndSelect, 10);
  ExpectStructure("On Error GoTo 0", 1, kStructOnErrorGoto0, 15);
  ExpectStructure("Debug.Print x", 1, kStructDebugPrint, 11);
  ExpectStructure("f = App.Path & \"\\a\"", 5, kStructAppPath, 8);
  ExpectNothing("On Error GoTo Fail");
  ExpectNothing("x = y: Case 1");  // "Case" counts only at the start of the line
}

TEST(GetNextStructure, DeclareStatementsGetTheirOwnType) {
  ExpectStructure("Declare Function GetTickCount Lib \"kernel32\" () As Long", 9, kStructDeclare,
                  8);
  ExpectStructure("Private Declare Sub Sleep Lib \"kernel32\" (ByVal ms As Long)", 17,
                  kStructDeclare, 3);
}

TEST(GetNextStructure, TakesTheEarliestStatementFromTheStartPosition) {
  // Two statements on one line: the first one wins, the second is found from
  // behind it.
  const std::string line = "If a Then Debug.Print a: Exit Sub";
  ExpectStructure(line, 11, kStructDebugPrint, 11);
  const Found second = Next(line, 11 + 11 + 1);
  EXPECT_TRUE(second.ok);
  EXPECT_EQ(second.pos, 26);
  EXPECT_EQ(second.type, kStructExitSub);
  EXPECT_FALSE(Next(line, 26 + 8 + 1).ok);
}

TEST(GetNextStructure, ClearsTheRecordWhenAKeywordDoesNotCount) {
  NextStructure ns;
  ASSERT_TRUE(GetNextStructure("End Sub", 1, ns));
  EXPECT_FALSE(GetNextStructure("Dim Subtotal As Long", 1, ns));
  EXPECT_EQ(ns.Structure_Pos, 0);
  EXPECT_EQ(ns.Structure_Type, 0);
  EXPECT_EQ(ns.Structure_Len, 0);
}

TEST(InStrVB, FindsWholeWordsOutsideStringsAndComments) {
  EXPECT_EQ(InStrVB(1, "x = \"End\" & End", "End", false), 13);
  EXPECT_EQ(InStrVB(1, "Extend = 1: End", "End", false), 13);
  EXPECT_EQ(InStrVB(1, "a:End:b", "End", false), 3);
  EXPECT_EQ(InStrVB(1, "\tEnd\t", "End", false), 2);
  EXPECT_EQ(InStrVB(1, "Ender", "End", false), 0);
  EXPECT_EQ(InStrVB(1, "x = 1 ' End", "End", true), 0);
  EXPECT_EQ(InStrVB(1, "x = 1 ' End", "End", false), 9);
  EXPECT_EQ(InStrVB(1, "End' note", "End", true), 1);
  EXPECT_EQ(InStrVB(2, "End End", "End", false), 5);
  EXPECT_EQ(InStrVB(1, "s = \"a\" & \"End\"", "End", false), 0);
}

TEST(GetCommentPos, FindsApostrophesOutsideStrings) {
  EXPECT_EQ(GetCommentPos(""), 0);
  EXPECT_EQ(GetCommentPos("x = 1"), 0);
  EXPECT_EQ(GetCommentPos("' all comment"), 1);
  EXPECT_EQ(GetCommentPos("x = 1 ' note"), 7);
  EXPECT_EQ(GetCommentPos("s = \"it's\" ' real"), 12);
  EXPECT_EQ(GetCommentPos("s = \"it's\""), 0);
}

TEST(GetCommentPos, FindsRemAtTheStartAndBehindAColon) {
  EXPECT_EQ(GetCommentPos("Rem note"), 1);
  EXPECT_EQ(GetCommentPos("   REM note"), 4);  // behind leading blanks
  EXPECT_EQ(GetCommentPos("rem"), 1);
  EXPECT_EQ(GetCommentPos("x = 1 : rem note"), 7);
  EXPECT_EQ(GetCommentPos("x = 1:Rem note"), 6);
  EXPECT_EQ(GetCommentPos("x = 1: Rem"), 6);
  EXPECT_EQ(GetCommentPos("x = 1:Rem' a"), 6);
  // Not comments: a word that only starts with "rem", a "rem" without a colon
  // before it, one inside a string, one behind a tab.
  EXPECT_EQ(GetCommentPos("Remove x"), 0);
  EXPECT_EQ(GetCommentPos("x = 1:Remark = 2"), 0);
  EXPECT_EQ(GetCommentPos("Call rem 1"), 0);
  EXPECT_EQ(GetCommentPos("s = \":rem\""), 0);
  EXPECT_EQ(GetCommentPos("\tRem note"), 0);
  // The earlier of a Rem and an apostrophe.
  EXPECT_EQ(GetCommentPos("x = 1 : rem a ' b"), 7);
  EXPECT_EQ(GetCommentPos("x = 1 ' a : rem b"), 7);
}

TEST(InStringLiteral, CountsQuotesBeforeThePosition) {
  const std::string code = "a = \"b\" & c";
  EXPECT_FALSE(InStringLiteral(code, 1));
  EXPECT_FALSE(InStringLiteral(code, 5));  // the opening quote itself
  EXPECT_TRUE(InStringLiteral(code, 6));
  EXPECT_TRUE(InStringLiteral(code, 7));  // the closing quote
  EXPECT_FALSE(InStringLiteral(code, 8));
  EXPECT_FALSE(InStringLiteral("\"", 0));
}

TEST(IsContinued, NeedsABlankBeforeTheUnderscore) {
  EXPECT_TRUE(IsContinued("x = a + _"));
  EXPECT_TRUE(IsContinued("x = a + _   "));
  EXPECT_FALSE(IsContinued("x = a_"));
  EXPECT_FALSE(IsContinued("_"));
  EXPECT_FALSE(IsContinued("x = a + _\t"));
  EXPECT_FALSE(IsContinued(""));
}

TEST(NoTabTrim, TakesBlanksAndTabsOffTheEnds) {
  EXPECT_EQ(NoTabTrim(" \t a b\t \t"), "a b");
  EXPECT_EQ(LNoTabTrim("\t a \t"), "a \t");
  EXPECT_EQ(RNoTabTrim("\t a \t"), "\t a");
  EXPECT_EQ(NoTabTrim("  x  "), "x");
  EXPECT_EQ(NoTabTrim(" \t "), "");
}

TEST(CStack, PopsInReverseAndGrowsAndShrinksInSteps) {
  CStack st;
  EXPECT_FALSE(st.Pop().has_value());
  for (int i = 1; i <= 25; ++i) st.Push(i * 7);
  EXPECT_EQ(st.Count(), 25);
  EXPECT_EQ(st.Capacity(), 30);
  for (int i = 25; i >= 1; --i) {
    const auto v = st.Pop();
    ASSERT_TRUE(v.has_value());
    EXPECT_EQ(*v, i * 7);
  }
  EXPECT_EQ(st.Count(), 0);
  EXPECT_EQ(st.Capacity(), 10);
  EXPECT_FALSE(st.Pop().has_value());
}

}  // namespace
}  // namespace zol
