#include "support/vb_fixture_project.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <stdexcept>

#include "base/files.h"
#include "session/records.h"

namespace zol::fixture {

namespace {

class Rng {
 public:
  explicit Rng(std::uint32_t seed) : gen_(seed) {}
  int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(gen_); }
  bool Chance(double p) { return std::uniform_real_distribution<double>(0, 1)(gen_) < p; }
  template <typename T>
  const T& Pick(const std::vector<T>& v) {
    return v[static_cast<std::size_t>(Int(0, static_cast<int>(v.size()) - 1))];
  }
  std::mt19937& engine() { return gen_; }

 private:
  std::mt19937 gen_;
};

// The lines of one source file.
class Source {
 public:
  void Add(int indent, const std::string& text) {
    lines_.push_back(text.empty() ? text
                                  : std::string(static_cast<std::size_t>(indent) * 4, ' ') + text);
  }
  void Raw(const std::string& line) { lines_.push_back(line); }
  std::string Text(const std::string& eol) const {
    std::string out;
    for (const std::string& l : lines_) out += l + eol;
    return out;
  }

 private:
  std::vector<std::string> lines_;
};

// What a procedure is, as far as its body is concerned.
struct ProcKind {
  std::string exitStatement;  // "Exit Sub", "Exit Function", "Exit Property"
  std::string resultName;     // a function or Property Get assigns its result to its name
};

// Statements of a procedure body, nested up to a depth.
class BodyWriter {
 public:
  BodyWriter(Rng& rng, Source& src, const ProcKind& kind) : rng_(rng), src_(src), kind_(kind) {}

  void Write(int indent, int count, int depth) {
    for (int i = 0; i < count; ++i) Statement(indent, depth);
  }

 private:
  void Statement(int indent, int depth) {
    const int pick = rng_.Int(0, depth > 0 ? 21 : 15);
    const int n = rng_.Int(1, 99);
    const std::string N = std::to_string(n);
    switch (pick) {
      case 0:
        src_.Add(indent, "total = total + " + N + " * i");
        break;
      case 1:
        src_.Add(indent, "msg = \"End Sub reached: \" & CStr(total)");
        break;
      case 2:
        src_.Add(indent, "Debug.Print \"Function F() ' not a comment\"");
        break;
      case 3:
        src_.Add(indent, "Subtotal = Subtotal + " + N + " ' running Sub total");
        break;
      case 4:
        src_.Add(indent, "i = 0: Rem reset the counter");
        break;
      // Windows-1252: "Größe prüfen".
      case 5:
        src_.Add(indent,
                 "' Gr\xF6\xDF"
                 "e pr\xFC"
                 "fen");
        break;
      case 6:
        src_.Add(indent, "Rem a Rem comment, with ' inside");
        break;
      case 7:
        src_.Add(0, "");
        break;
      case 8:
        src_.Add(indent, "msg = \"Total: \" & _");
        src_.Add(indent + 2, "Format$(total, \"0.00\") & _");
        src_.Add(indent + 2, "\" EUR\"");
        break;
      case 9:
        src_.Add(indent, "If i > " + N + " Then i = " + N);
        break;
      case 10:
        src_.Add(indent, "If total < -" + N + " Then " + kind_.exitStatement);
        break;
      case 11:
        src_.Add(indent, "msg = \"Don't stop: rem\"");
        break;
      case 12:
        src_.Add(indent, "Debug.Print msg; Tab(" + N + "); \"Sub x(\"");
        break;
      case 13:
        src_.Add(indent, "Call DoEvents");
        break;
      case 14:
        src_.Add(indent, "total = total / 2 ' halve: Exit Sub isn't run here");
        break;
      case 15:
        src_.Add(indent, "If total > " + N + " And _");
        src_.Add(indent + 2, "i < " + N + " Then " + kind_.exitStatement);
        break;
      case 16:
        IfBlock(indent, depth);
        break;
      case 17:
        SelectBlock(indent, depth);
        break;
      case 18:
        src_.Add(indent, "For i = 1 To " + N);
        Write(indent + 1, rng_.Int(1, 3), depth - 1);
        src_.Add(indent, "Next i");
        break;
      case 19:
        src_.Add(indent, "Do While total < " + N);
        Write(indent + 1, rng_.Int(1, 2), depth - 1);
        src_.Add(indent + 1, "total = total + 1");
        src_.Add(indent, "Loop");
        break;
      case 20:
        src_.Add(indent, "With New Collection");
        src_.Add(indent + 1, ".Add msg");
        Write(indent + 1, 1, depth - 1);
        src_.Add(indent, "End With");
        break;
      default:
        src_.Add(indent, "If total > " + N + " Then");
        Write(indent + 1, rng_.Int(0, 1), depth - 1);
        src_.Add(indent + 1, kind_.exitStatement);
        src_.Add(indent, "End If");
        break;
    }
  }

  void IfBlock(int indent, int depth) {
    src_.Add(indent, "If i = " + std::to_string(rng_.Int(0, 9)) + " Then");
    Write(indent + 1, rng_.Int(1, 3), depth - 1);
    if (rng_.Chance(0.4)) {
      src_.Add(indent, "ElseIf i > " + std::to_string(rng_.Int(10, 20)) + " Then");
      Write(indent + 1, rng_.Int(1, 2), depth - 1);
    }
    if (rng_.Chance(0.6)) {
      src_.Add(indent, rng_.Chance(0.5) ? "Else" : "Else ' otherwise");
      Write(indent + 1, rng_.Int(1, 2), depth - 1);
    }
    src_.Add(indent, "End If");
  }

  void SelectBlock(int indent, int depth) {
    src_.Add(indent, "Select Case i");
    const int cases = rng_.Int(1, 3);
    for (int c = 0; c < cases; ++c) {
      src_.Add(indent, "Case " + std::to_string(c * 2) + ", " + std::to_string(c * 2 + 1));
      Write(indent + 1, rng_.Int(0, 2), depth - 1);
    }
    if (rng_.Chance(0.5)) {
      src_.Add(indent, "Case Else: msg = \"Case Else\"");
      Write(indent + 1, rng_.Int(0, 1), depth - 1);
    }
    src_.Add(indent, "End Select");
  }

  Rng& rng_;
  Source& src_;
  const ProcKind& kind_;
};

struct ModuleSpec {
  std::int32_t Type;
  std::string extension;
  std::string vbpKey;
};

const std::vector<ModuleSpec>& ModuleSpecs() {
  static const std::vector<ModuleSpec> specs{
      {kModuleStandard, "bas", "Module"},
      {kModuleClass, "cls", "Class"},
      {kModuleForm, "frm", "Form"},
      {kModuleUserControl, "ctl", "UserControl"},
      {kModulePropertyPage, "pag", "PropertyPage"},
      {kModuleUserDocument, "dob", "UserDocument"},
      {kModuleDesigner, "dsr", "Designer"},
  };
  return specs;
}

class ProjectWriter {
 public:
  ProjectWriter(std::uint32_t seed, const FixtureOptions& options)
      : rng_(seed), eol_(options.lfOnly ? "\n" : "\r\n") {}

  VbProjectFiles Make() {
    VbProjectFiles p;
    p.Name = rng_.Pick(std::vector<std::string>{"Orders", "Billing", "Stock", "Ledger"}) +
             std::to_string(rng_.Int(1, 9));
    p.vbpDiskPath = p.Name + "/" + p.Name + ".vbp";
    for (const ModuleSpec& spec : ModuleSpecs()) {
      const int count =
          spec.Type == kModuleStandard || spec.Type == kModuleClass || spec.Type == kModuleForm
              ? rng_.Int(2, 3)
              : rng_.Int(1, 2);
      for (int i = 0; i < count; ++i) p.files.push_back(Module(spec, p.Name));
    }
    std::shuffle(p.files.begin(), p.files.end(), rng_.engine());
    p.vbpText = VbpText(p);
    return p;
  }

 private:
  std::string UniqueName(const std::string& prefix, const std::vector<std::string>& pool) {
    for (;;) {
      std::string name = prefix + rng_.Pick(pool);
      if (used_.insert(name).second) return name;
      name += std::to_string(rng_.Int(2, 99));
      if (used_.insert(name).second) return name;
    }
  }

  VbSourceFile Module(const ModuleSpec& spec, const std::string& projectName) {
    static const std::vector<std::string> kWords{"Main",   "Invoice", "Customer", "Tax",   "Report",
                                                 "Stock",  "Price",   "Order",    "Util",  "Format",
                                                 "Ledger", "Gauge",   "Print",    "Export"};
    static const std::map<std::int32_t, std::string> kPrefix{
        {kModuleStandard, "mod"},    {kModuleClass, "C"},          {kModuleForm, "frm"},
        {kModuleUserControl, "ctl"}, {kModulePropertyPage, "ppg"}, {kModuleUserDocument, "doc"},
        {kModuleDesigner, "de"}};
    VbSourceFile f;
    f.Type = spec.Type;
    f.Name = UniqueName(kPrefix.at(spec.Type), kWords);
    const std::string file = f.Name + "." + spec.extension;
    if (spec.Type == kModuleStandard && !sharedModuleDone_) {
      // A module shared with other projects, beside the project's folder.
      sharedModuleDone_ = true;
      f.vbpPath = "..\\Common\\" + file;
      f.diskPath = rng_.Chance(0.5) ? "Common/" + file : "common/" + ToLower(file);
    } else if (spec.Type == kModuleForm && rng_.Chance(0.5)) {
      f.vbpPath = "Forms\\" + file;
      f.diskPath = projectName + "/Forms/" + file;
    } else {
      f.vbpPath = file;
      f.diskPath = projectName + "/" + file;
    }
    Source src;
    Header(src, spec, f.Name);
    Declarations(src, spec);
    Procedures(src, spec);
    f.text = src.Text(eol_);
    return f;
  }

  static std::string ToLower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  }

  void Header(Source& src, const ModuleSpec& spec, const std::string& name) {
    auto attributes = [&](bool creatable, bool predeclared) {
      src.Raw("Attribute VB_Name = \"" + name + "\"");
      src.Raw("Attribute VB_GlobalNameSpace = False");
      src.Raw(std::string("Attribute VB_Creatable = ") + (creatable ? "True" : "False"));
      src.Raw(std::string("Attribute VB_PredeclaredId = ") + (predeclared ? "True" : "False"));
      src.Raw("Attribute VB_Exposed = False");
    };
    auto block = [&](const std::string& begin) {
      src.Raw("VERSION 5.00");
      src.Raw("Begin " + begin + " " + name + " ");
      src.Raw("   Caption         =   \"Sub Main() - " + name + "\"");
      src.Raw("   ClientHeight    =   " + std::to_string(rng_.Int(2000, 6000)));
      src.Raw("   ClientWidth     =   " + std::to_string(rng_.Int(3000, 9000)));
      src.Raw("   ScaleHeight     =   3195");
      src.Raw("   ScaleWidth      =   4680");
      if (spec.Type == kModuleForm) {
        src.Raw("   Begin VB.CommandButton cmdOK ");
        src.Raw("      Caption         =   \"&OK\"");
        src.Raw("      Height          =   375");
        src.Raw("   End");
      }
      src.Raw("End");
    };
    switch (spec.Type) {
      case kModuleStandard:
        src.Raw("Attribute VB_Name = \"" + name + "\"");
        break;
      case kModuleClass:
        src.Raw("VERSION 1.0 CLASS");
        src.Raw("BEGIN");
        src.Raw("  MultiUse = -1  'True");
        src.Raw("  Persistable = 0  'NotPersistable");
        src.Raw("END");
        attributes(true, false);
        break;
      case kModuleForm:
        block("VB.Form");
        attributes(false, true);
        break;
      case kModuleUserControl:
        block("VB.UserControl");
        attributes(true, false);
        break;
      case kModulePropertyPage:
        block("VB.PropertyPage");
        attributes(true, false);
        break;
      case kModuleUserDocument:
        block("VB.UserDocument");
        attributes(true, false);
        break;
      default:
        block("{C0E45035-5775-11D0-B388-00A0C9055D8E}");
        attributes(true, true);
        break;
    }
  }

  void Declarations(Source& src, const ModuleSpec& spec) {
    src.Raw("Option Explicit");
    if (rng_.Chance(0.6)) src.Raw("' Module-level state. Don't use \"End Sub\" here.");
    if (rng_.Chance(0.5)) {
      src.Raw(spec.Type == kModuleStandard
                  ? "Public Declare Function GetTickCount Lib \"kernel32\" () As Long"
                  : "Private Declare Sub Sleep Lib \"kernel32\" (ByVal dwMilliseconds As Long)");
    }
    src.Raw("Private Const MAX_ITEMS As Long = " + std::to_string(rng_.Int(10, 500)));
    src.Raw("Private mValue As Long");
    src.Raw("Private mName As String");
    src.Raw("Private mItem As Object");
    if (spec.Type == kModuleClass) src.Raw("Public Event Changed(ByVal Value As Long)");
    if (rng_.Chance(0.4)) {
      src.Raw("Private Type ItemRec");
      src.Raw("    Sub_Name As String");
      src.Raw("    Price As Currency");
      src.Raw("End Type");
    }
    if (rng_.Chance(0.3)) {
      src.Raw("Rem Status of an order");
      src.Raw("Public Enum OrderStatus");
      src.Raw("    osOpen = 0");
      src.Raw("    osClosed = 1");
      src.Raw("End Enum");
    }
    src.Raw("");
  }

  std::vector<std::string> EventProcedures(const ModuleSpec& spec) {
    switch (spec.Type) {
      case kModuleClass:
        return {"Class_Initialize", "Class_Terminate"};
      case kModuleForm:
        return {"Form_Load", "cmdOK_Click", "Form_Unload"};
      case kModuleUserControl:
        return {"UserControl_Initialize", "UserControl_Resize"};
      case kModulePropertyPage:
        return {"PropertyPage_ApplyChanges", "PropertyPage_SelectionChanged"};
      case kModuleUserDocument:
        return {"UserDocument_Show", "UserDocument_Hide"};
      case kModuleDesigner:
        return {"DataEnvironment_Initialize"};
      default:
        return {"Main"};
    }
  }

  void Procedures(Source& src, const ModuleSpec& spec) {
    static const std::vector<std::string> kVerbs{"Compute", "Load",   "Save",  "Check", "Print",
                                                 "Update",  "Format", "Parse", "Round", "Sum"};
    static const std::vector<std::string> kNouns{"Net",  "Tax",    "Line",     "Items",
                                                 "Rate", "Header", "Discount", "Amount"};
    std::set<std::string> names;
    auto fresh = [&](std::string name) {
      while (!names.insert(name).second) name += std::to_string(rng_.Int(1, 9));
      return name;
    };
    for (const std::string& e : EventProcedures(spec)) {
      if (rng_.Chance(0.7)) Procedure(src, "Private Sub " + fresh(e) + "()", {"Exit Sub", ""});
    }
    const bool hasProperties = spec.Type != kModuleStandard;
    if (hasProperties && rng_.Chance(0.8)) PropertyPair(src, fresh(rng_.Pick(kNouns)));
    const int more = rng_.Int(1, 4);
    for (int i = 0; i < more; ++i) {
      const std::string name = fresh(rng_.Pick(kVerbs) + rng_.Pick(kNouns));
      switch (rng_.Int(0, 6)) {
        case 0:
          Procedure(src, "Public Sub " + name + "()", {"Exit Sub", ""});
          break;
        case 1:
          Procedure(src, "Private Sub " + name + "(ByVal a As Long, ByRef b As String)",
                    {"Exit Sub", ""});
          break;
        case 2:
          Procedure(src, "Public Function " + name + "(ByVal x As Double) As Double",
                    {"Exit Function", name});
          break;
        case 3:
          Procedure(src,
                    "Public Function " + name + "(ByVal a As Long, _\n    ByVal b As Long) As Long",
                    {"Exit Function", name});
          break;
        case 4:
          Procedure(src, "Private Function " + name + "$(ByVal s As String)",
                    {"Exit Function", name});
          break;
        case 5:
          Procedure(
              src,
              std::string(hasProperties ? "Friend" : "Public") + " Function " + name + "() As Long",
              {"Exit Function", name});
          break;
        default:
          Procedure(src, "Private Static Sub " + name + "()", {"Exit Sub", ""});
          break;
      }
    }
  }

  void PropertyPair(Source& src, const std::string& name) {
    std::vector<std::string> get{"Public Property Get " + name + "() As Long"};
    if (rng_.Chance(0.5)) {
      get.push_back("Attribute " + name + ".VB_Description = \"The " + name + " (Sub total)\"");
    }
    Procedure(src, get, {"Exit Property", name}, "mValue");
    Procedure(src, {"Public Property Let " + name + "(ByVal v As Long)"}, {"Exit Property", ""}, "",
              "mValue = v");
    if (rng_.Chance(0.4)) {
      Procedure(src, {"Public Property Set Item" + name + "(ByVal v As Object)"},
                {"Exit Property", ""}, "", "Set mItem = v");
    }
  }

  void Procedure(Source& src, const std::string& head, const ProcKind& kind) {
    std::vector<std::string> headLines;
    std::size_t from = 0;
    for (;;) {
      const std::size_t nl = head.find('\n', from);
      headLines.push_back(head.substr(from, nl == std::string::npos ? nl : nl - from));
      if (nl == std::string::npos) break;
      from = nl + 1;
    }
    Procedure(src, headLines, kind, kind.resultName.empty() ? "" : "total");
  }

  // A procedure: its head lines (a continued declaration, attributes), locals,
  // a body, the result, an optional error handler, its end.
  void Procedure(Source& src, const std::vector<std::string>& head, const ProcKind& kind,
                 const std::string& result, const std::string& firstStatement = "") {
    if (rng_.Chance(0.3)) src.Raw("' " + Describe(head.front()));
    for (const std::string& l : head) src.Raw(l);
    const bool handler = rng_.Chance(0.3);
    if (handler) src.Add(1, "On Error GoTo Fail");
    src.Add(1, "Dim total As Double, i As Long");
    src.Add(1, "Dim msg As String");
    src.Add(1, "Dim Subtotal As Currency");
    if (!firstStatement.empty()) src.Add(1, firstStatement);
    BodyWriter body(rng_, src, kind);
    body.Write(1, rng_.Int(1, 6), rng_.Int(0, 2));
    if (!kind.resultName.empty() && !result.empty()) src.Add(1, kind.resultName + " = " + result);
    if (handler) {
      src.Add(1, kind.exitStatement);
      src.Raw("Fail:");
      src.Add(1, "Debug.Print Err.Description ' report: Exit Sub");
    }
    src.Raw("End " + kind.exitStatement.substr(5));
    src.Raw("");
  }

  static std::string Describe(const std::string& head) {
    return "Rem-like note on: " + head.substr(0, head.find('('));
  }

  std::string VbpText(const VbProjectFiles& p) {
    Source v;
    v.Raw("Type=Exe");
    v.Raw(
        "Reference=*\\G{00020430-0000-0000-C000-000000000046}#2.0#0#..\\..\\Windows\\system32\\"
        "stdole2.tlb#OLE Automation");
    for (const VbSourceFile& f : p.files) {
      const ModuleSpec& spec = *std::find_if(ModuleSpecs().begin(), ModuleSpecs().end(),
                                             [&](const ModuleSpec& s) { return s.Type == f.Type; });
      const bool named = f.Type == kModuleStandard || f.Type == kModuleClass;
      v.Raw(spec.vbpKey + "=" + (named ? f.Name + "; " : "") + f.vbpPath);
    }
    v.Raw("Startup=\"Sub Main\"");
    v.Raw("ExeName32=\"" + p.Name + ".exe\"");
    v.Raw("Command32=\"\"");
    v.Raw("Name=\"" + p.Name + "\"");
    v.Raw("HelpContextID=\"0\"");
    v.Raw("MajorVer=1");
    v.Raw("MinorVer=0");
    return v.Text(eol_);
  }

  Rng rng_;
  std::string eol_;
  std::set<std::string> used_;
  bool sharedModuleDone_ = false;
};

}  // namespace

VbProjectFiles GenerateVbProject(std::uint32_t seed, const FixtureOptions& options) {
  return ProjectWriter(seed, options).Make();
}

std::string WriteVbProject(const VbProjectFiles& project, const std::string& root) {
  namespace fs = std::filesystem;
  auto write = [&](const std::string& rel, const std::string& bytes) {
    const fs::path path = fs::path(root) / rel;
    fs::create_directories(path.parent_path());
    WriteFile(path.string(), bytes);
    return path.string();
  };
  for (const VbSourceFile& f : project.files) write(f.diskPath, f.text);
  return write(project.vbpDiskPath, project.vbpText);
}

}  // namespace zol::fixture
