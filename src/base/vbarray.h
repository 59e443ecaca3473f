#pragma once

// Arrays with a stated first index. IDs in this program are 1-based and the
// session, group and project tables keep a working slot at index 0; the first
// index is part of each array's type so that code loops from it and a bad ID
// read from a file becomes a clear BoundsError instead of undefined behaviour.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zol {

class BoundsError : public std::out_of_range {
 public:
  using std::out_of_range::out_of_range;
};

template <typename T, int First>
class VBArray {
 public:
  VBArray() = default;

  // An array that is not dimensioned has no elements and UBound() == First - 1.
  bool IsDimensioned() const { return !items_.empty(); }
  int LBound() const { return First; }
  int UBound() const { return First + static_cast<int>(items_.size()) - 1; }
  int Count() const { return static_cast<int>(items_.size()); }
  bool InRange(std::int64_t i) const { return i >= First && i <= UBound(); }

  // ReDim: all elements value-initialised, upper bound `upper`.
  void ReDim(int upper) { items_.assign(SizeFor(upper), T{}); }
  // ReDim Preserve: keeps the elements that remain in range.
  void ReDimPreserve(int upper) { items_.resize(SizeFor(upper)); }
  void Erase() {
    items_.clear();
    items_.shrink_to_fit();
  }

  T& operator()(std::int64_t i) { return items_[Offset(i)]; }
  const T& operator()(std::int64_t i) const { return items_[Offset(i)]; }
  T& operator[](std::int64_t i) { return items_[Offset(i)]; }
  const T& operator[](std::int64_t i) const { return items_[Offset(i)]; }

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  std::vector<T>& Raw() { return items_; }
  const std::vector<T>& Raw() const { return items_; }

  friend bool operator==(const VBArray&, const VBArray&) = default;

 private:
  static std::size_t SizeFor(int upper) {
    if (upper < First - 1) {
      throw BoundsError("array upper bound " + std::to_string(upper) + " below first index " +
                        std::to_string(First));
    }
    return static_cast<std::size_t>(upper - First + 1);
  }
  std::size_t Offset(std::int64_t i) const {
    if (!InRange(i)) {
      throw BoundsError("index " + std::to_string(i) + " out of range " + std::to_string(First) +
                        ".." + std::to_string(UBound()));
    }
    return static_cast<std::size_t>(i - First);
  }

  std::vector<T> items_;
};

template <typename T>
using Array1 = VBArray<T, 1>;
template <typename T>
using Array0 = VBArray<T, 0>;

}  // namespace zol
