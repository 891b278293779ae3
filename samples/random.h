#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vel::samples {

/// Random numbers that are the same on every machine and with every standard
/// library for one seed and key (SplitMix64), so that a sample folder can be
/// made again byte for byte.
class Random {
 public:
  /// `key` names what the numbers are for: two keys give independent numbers,
  /// and more numbers drawn for one of them do not shift the other.
  Random(std::uint64_t seed, std::string_view key) : state_(seed) {
    std::uint64_t hash = 0xcbf29ce484222325ULL;
    for (const char c : key) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3ULL;
    state_ ^= hash;
    next();
  }

  std::uint64_t next() {
    state_ += 0x9e3779b97f4a7c15ULL;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
  }

  /// 0 to `count` - 1; `count` must be above 0.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

  /// `low` to `high`, both included.
  int between(int low, int high) {
    return low + static_cast<int>(below(static_cast<std::size_t>(high - low + 1)));
  }

  /// 0 to 1, 1 excluded.
  double real() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

  bool chance(double probability) { return real() < probability; }

  template <typename T>
  const T& pick(const std::vector<T>& from) {
    return from[below(from.size())];
  }

  /// An index, each as likely as its weight; the weights' sum must be above 0.
  std::size_t weighted(const std::vector<double>& weights) {
    double sum = 0;
    for (const double weight : weights) sum += weight;
    double left = real() * sum;
    for (std::size_t i = 0; i + 1 < weights.size(); ++i) {
      left -= weights[i];
      if (left < 0) return i;
    }
    return weights.size() - 1;
  }

 private:
  std::uint64_t state_;
};

}  // namespace vel::samples
