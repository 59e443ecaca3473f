// Arbitrary bytes as a session file: a group file when it starts with the
// group magic, else a .pfd. Read as the catalogue reads them: the header
// first, then the whole file. Project files of the demo and of the test
// fixtures stand beside the input, so that seeds taken from them get past
// the project lookup. A file may be refused (SessionFileError, or false
// after a message); anything else escaping is a finding.

#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_file.h"
#include "profile/session_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool projects = [] {
    for (const char* name : {"Orders.vbp", "Test.vbp", "Demo.vbp", "Project1.vbp"}) {
      zol::fuzz::WriteInput(name, "Type=Exe\r\nModule=Module1; Module1.bas\r\n");
    }
    return true;
  }();
  (void)projects;
  const std::string path = zol::fuzz::WriteInput("run.pfd", zol::fuzz::Bytes(data, size));
  zol::Workspace ws;
  try {
    if (zol::IsGroupFile(path)) {
      ws.nSessionGroup = 1;
      ws.SessionGroup.ReDimPreserve(1);
      zol::ReadGroupHeader(ws.SessionGroup(1), path);
      ws.SessionGroup(1).SessionFile = path;
      zol::LoadSessionInfoGroup(ws, 1, path);
    } else {
      ws.nSession = 1;
      zol::Session& s = ws.SessionSlot(1);
      s.SessionFile = path;
      if (zol::ReadSessionHeader(ws, s, path)) zol::LoadSessionInfo(ws, 1, path);
    }
  } catch (const zol::SessionFileError&) {
  }
  return 0;
}
