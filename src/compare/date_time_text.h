#pragma once

#include <string>

namespace zol {

// The present local date and time as sessions made in memory record it:
// "YYYY-MM-DD hh:mm:ss". Session lists show it as it stands.
std::string PresentDateTimeText();

}  // namespace zol
