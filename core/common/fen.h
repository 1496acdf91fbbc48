#pragma once
// An amount of money in fen (1/100 yuan), exact: sums and comparisons are integer, so a
// balance equal to a total covers it. Texts shown to the member keep their "%.2f" formats
// through yuanForFormat.
#include <compare>
#include <cstdint>

namespace qmv {

class Fen {
 public:
  constexpr Fen() = default;
  constexpr explicit Fen(std::int64_t count) : count_(count) {}

  constexpr std::int64_t count() const { return count_; }
  // For printf-style yuan formats only.
  constexpr double yuanForFormat() const { return static_cast<double>(count_) / 100; }

  friend constexpr auto operator<=>(Fen, Fen) = default;
  friend constexpr Fen operator+(Fen a, Fen b) { return Fen(a.count_ + b.count_); }
  friend constexpr Fen operator-(Fen a, Fen b) { return Fen(a.count_ - b.count_); }

 private:
  std::int64_t count_ = 0;
};

}  // namespace qmv
