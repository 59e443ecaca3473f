#pragma once

// A session to report on, built by hand: the one-module project of the source
// view's tests (with its side file, so that source pages can be made), its
// line texts (one holding commas and quotes), module values, and a session
// file in a folder of the test's own, ticked.

#include <string>

#include "source_view/page_fixture.h"

namespace zol::testing {

struct ReportFixture : PageFixture {
  ReportFixture();
  // A second session of the same project, ticked, as Session(2).
  std::int32_t AddSecondSession();
  std::string sessionFile;
};

}  // namespace zol::testing
