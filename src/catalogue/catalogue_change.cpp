#include "catalogue/catalogue_change.h"

#include <algorithm>

namespace zol {

namespace {

template <typename T>
void AppendAll(std::vector<T>& to, const std::vector<T>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

}  // namespace

void CatalogueChange::Append(const CatalogueChange& later) {
  AppendAll(added, later.added);
  AppendAll(ticks, later.ticks);
  AppendAll(sessionsTakenOut, later.sessionsTakenOut);
  AppendAll(groupsTakenOut, later.groupsTakenOut);
  // Sessions gone outweighs values changed: the views go back the furthest
  // either asks.
  if (later.viewReset && viewReset != ViewReset::SessionsGone) viewReset = later.viewReset;
}

bool CatalogueChange::ClearsViewsOf(std::int32_t current) const {
  if (viewReset == ViewReset::SessionsGone) return true;
  return std::find(sessionsTakenOut.begin(), sessionsTakenOut.end(), current) !=
         sessionsTakenOut.end();
}

}  // namespace zol
