#include "support/instrument_module.h"

#include <optional>
#include <string_view>
#include <vector>

#include "support/vb_statements.h"

namespace zol::fixture {

namespace {

constexpr std::string_view kNameAttribute = "attribute vb_name = \"";

std::string Lower(std::string_view s) {
  std::string out(s);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return out;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::size_t lf = text.find('\n', pos);
    const std::size_t end = lf == std::string_view::npos ? text.size() : lf;
    std::string line(text.substr(pos, end - pos));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    pos = end + 1;
  }
  return lines;
}

// The statements that end a procedure, by the first 7 characters of the line.
bool IsExitText(std::string_view t) {
  const std::string_view head = t.substr(0, 7);
  for (const char* e : {"End Sub", "End Fun", "Exit Su", "Exit Fu", "End Pro", "Exit Pr"}) {
    if (head == e) return true;
  }
  return false;
}

class ModuleWalk {
 public:
  ModuleWalk(const ModuleInput& input, const InstrumentOptions& options, InstrumentTruth& truth)
      : in_(input), opt_(options), truth_(truth) {}

  std::string Run() {
    const std::vector<std::string> lines = SplitLines(in_.source);
    std::size_t bodyStart = 0;
    std::string name;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const std::size_t at = Lower(lines[i]).find(kNameAttribute);
      if (at == std::string::npos) continue;
      const std::size_t start = at + kNameAttribute.size();
      name = lines[i].substr(start, lines[i].find('"', start) - start);
      bodyStart = i + 1;
      break;
    }
    if (bodyStart == 0) name = FileBody(in_.fileName);
    for (std::size_t i = 0; i < bodyStart; ++i) out_.push_back(lines[i]);

    TruthModule& module = ModuleTruth();
    module.Name = name;
    truth_.ListOfModule += name + "\r";
    const std::vector<std::string> body(lines.begin() + static_cast<std::ptrdiff_t>(bodyStart),
                                        lines.end());
    const std::vector<Statement> statements = GroupStatements(body);
    std::int32_t shown = 0;
    for (const Statement& st : statements) {
      if (!st.attribute) shown = st.position + static_cast<std::int32_t>(st.lines.size()) - 1;
    }
    module.RTFLine.ReDim(shown);
    for (const Statement& st : statements) Take(st);
    if (!moduleLineDone_) AddModuleLine();

    const bool crlf = in_.source.find("\r\n") != std::string::npos || in_.source.empty();
    const std::string eol = crlf ? "\r\n" : "\n";
    std::string text;
    for (const std::string& l : out_) text += l + eol;
    return text;
  }

 private:
  struct OpenProcedure {
    ProcedureHead head;
    std::int32_t id = 0;  // 0: excluded
    ProcedurePlan plan;
    bool entryPending = false;
  };

  static std::string FileBody(const std::string& file) {
    const std::size_t slash = file.find_last_of("\\/");
    std::string name = slash == std::string::npos ? file : file.substr(slash + 1);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? name : name.substr(0, dot);
  }

  TruthModule& ModuleTruth() { return truth_.Modules(in_.index); }

  void Emit(const Statement& st) {
    for (const std::string& l : st.lines) out_.push_back(l);
  }

  void AddModuleLine() {
    out_.push_back("Private Const zolModuleIndex As Long = " + std::to_string(in_.index) + " 'ID");
    moduleLineDone_ = true;
  }

  void Take(const Statement& st) {
    if (st.attribute) {
      out_.insert(out_.end(), st.lines.begin(), st.lines.end());
      return;
    }
    if (!proc_) {
      TakeOutside(st);
      return;
    }
    if (proc_->entryPending) AddEntry();
    if (proc_->id == 0) {
      Emit(st);
      if (TrimBlanks(CodeOnly(st.Code())) == proc_->head.endStatement) proc_.reset();
      return;
    }
    TakeBody(st);
  }

  void TakeOutside(const Statement& st) {
    const std::optional<ProcedureHead> head = RecognizeHead(st.Code());
    if (!head) {
      Emit(st);
      return;
    }
    if (!moduleLineDone_) AddModuleLine();
    truth_.ListOfProc += head->name + "\r";
    const std::string stored =
        head->type == 3 ? head->name + "[" + head->accessor + "]" : head->name;
    OpenProcedure p{*head, 0, opt_.plan ? opt_.plan(ModuleTruth().Name, stored) : ProcedurePlan{}};
    if (!p.plan.excluded) {
      p.id = truth_.Procedures.UBound() + 1;
      truth_.Procedures.ReDimPreserve(p.id);
      TruthProcedure& t = truth_.Procedures(p.id);
      t.module = in_.index;
      t.name = stored;
      t.type = head->type;
      t.position = st.position;
      t.isCritical = p.plan.critical;
      t.isDead = p.plan.dead;
      t.isProfiled = p.plan.timed && !p.plan.dead;
      truth_.ContainsCritical = truth_.ContainsCritical || p.plan.critical;
      ModuleTruth().RTFLine(st.position) = {kRtfProcedureHead, p.id};
      p.entryPending = true;
    }
    proc_ = p;
    Emit(st);
  }

  void AddEntry() {
    const ProcedurePlan& plan = proc_->plan;
    std::string marks;
    if (plan.critical) marks += " 'C";
    if (plan.dead) marks += " 'D";
    const std::string id = std::to_string(proc_->id);
    out_.push_back(plan.timed ? "    " + opt_.AppPrefix + "zolProcIn " + id + marks
                              : "'zolProcIn " + id + marks);
    proc_->entryPending = false;
  }

  std::int32_t NewLine(const Statement& st, std::string text, bool behind, bool rewritten) {
    const std::int32_t id = truth_.Lines.UBound() + 1;
    truth_.Lines.ReDimPreserve(id);
    TruthLine& t = truth_.Lines(id);
    t.module = in_.index;
    t.procedure = proc_->id;
    t.position = st.position;
    t.behind = behind;
    t.rewritten = rewritten;
    t.isProcedureExit = !behind && !rewritten && IsExitText(text);
    t.text = std::move(text);
    truth_.Procedures(proc_->id).lines.push_back(id);
    if (!rewritten) truth_.Procedures(proc_->id).isCovered = true;
    ModuleTruth().RTFLine(st.position) = {t.isProcedureExit ? kRtfProcedureEnd : kRtfCodeLine, id};
    return id;
  }

  void AddLineProbe(const Statement& st, bool behind) {
    const std::int32_t id = NewLine(st, st.FirstTrimmed(), behind, false);
    out_.push_back(st.Indent() + opt_.AppPrefix + "zolExecuteLine " + std::to_string(id) +
                   (behind ? " 'B" : ""));
  }

  void AddExitProbe(const Statement& st) {
    out_.push_back(st.Indent() + opt_.AppPrefix + "zolProcOut " + std::to_string(proc_->id));
    ModuleTruth().RTFLine(st.position).LineType = kRtfProcedureEnd;
  }

  void TakeBody(const Statement& st) {
    const bool probes = !proc_->plan.dead;
    const bool timed = proc_->plan.timed;
    switch (ClassifyBody(st, proc_->head)) {
      case BodyKind::Plain:
        Emit(st);
        break;
      case BodyKind::Behind:
        Emit(st);
        if (probes) AddLineProbe(st, true);
        break;
      case BodyKind::Before:
        if (probes) AddLineProbe(st, false);
        Emit(st);
        break;
      case BodyKind::ExitingIf:
        if (timed) {
          Rewrite(st, probes);
        } else {
          if (probes) AddLineProbe(st, false);
          Emit(st);
        }
        break;
      case BodyKind::Exit:
      case BodyKind::End:
        if (probes) AddLineProbe(st, false);
        if (timed) AddExitProbe(st);
        Emit(st);
        break;
    }
    if (TrimBlanks(CodeOnly(st.Code())) == proc_->head.endStatement) proc_.reset();
  }

  // The marker keeps the original statement as a comment (its continuation
  // lines continue the comment); the rewritten statement calls the probes.
  void Rewrite(const Statement& st, bool probes) {
    std::string joined;
    for (const std::string& l : st.lines) joined += (joined.empty() ? "" : "\r\n") + l;
    const std::int32_t id = NewLine(st, TrimBlanks(joined), false, true);
    out_.push_back("'zolLine " + std::to_string(id) + ":" + st.lines.front());
    out_.insert(out_.end(), st.lines.begin() + 1, st.lines.end());
    const std::string out = opt_.AppPrefix + "zolProcOut " + std::to_string(proc_->id) + ": ";
    for (std::size_t i = 0; i < st.lines.size(); ++i) {
      std::string line = st.lines[i];
      for (const char* exit : {"Exit Sub", "Exit Function", "Exit Property"}) {
        line = ReplaceInCode(line, exit, out + exit);
      }
      if (i == 0 && probes) {
        const std::size_t indent = st.Indent().size();
        line.insert(indent, opt_.AppPrefix + "zolExecuteLine " + std::to_string(id) + ": ");
      }
      out_.push_back(line);
    }
  }

  const ModuleInput& in_;
  const InstrumentOptions& opt_;
  InstrumentTruth& truth_;
  std::vector<std::string> out_;
  std::optional<OpenProcedure> proc_;
  bool moduleLineDone_ = false;
};

}  // namespace

std::string InstrumentModule(const ModuleInput& input, const InstrumentOptions& options,
                             InstrumentTruth& truth) {
  return ModuleWalk(input, options, truth).Run();
}

}  // namespace zol::fixture
