#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/text.h"
#include "velweb/positions.h"
#include "velweb/text_scan.h"

namespace vel {
namespace {

constexpr std::size_t kAddressSize = 7;
constexpr std::size_t kRegistrationSize = 7;
constexpr std::string_view kAdsc = ".ADS";

// ARINC 745: a basic report is its tag and 80 bits.
constexpr std::size_t kReportSize = 11;
constexpr unsigned kAcknowledgement = 3;  // the tag and the contract's number
constexpr std::size_t kAcknowledgementSize = 2;

// The bytes that the hexadecimal digits at the start of a text stand for.
std::vector<std::uint8_t> hexBytes(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  unsigned high = 0;
  bool isSecond = false;
  for (const char c : text) {
    if (c == ' ' || c == '\n' || c == '\r') continue;
    const std::optional<unsigned> digit = hexDigit(c);
    // The messages are in capitals: a small letter is none of their digits.
    if (!digit || (c >= 'a' && c <= 'z')) break;
    if (isSecond) {
      bytes.push_back(static_cast<std::uint8_t>(high << 4 | *digit));
    } else {
      high = *digit;
    }
    isSecond = !isSecond;
  }
  return bytes;
}

// Signed bits out of a report, the most significant bit first.
class BitReader {
 public:
  explicit BitReader(const std::uint8_t* bytes) : bytes_(bytes) {}

  std::int32_t takeSigned(unsigned count) {
    std::int32_t value = 0;
    for (unsigned i = 0; i < count; ++i, ++at_) {
      value = value << 1 | (bytes_[at_ / 8] >> (7 - at_ % 8) & 1);
    }
    const std::int32_t sign = std::int32_t{1} << (count - 1);
    return value < sign ? value : value - 2 * sign;
  }

 private:
  const std::uint8_t* bytes_;
  std::size_t at_ = 0;
};

bool isBasicReport(unsigned tag) {
  return tag == 7 || tag == 9 || tag == 10 || tag == 18 || tag == 19 || tag == 20;
}

bool isRegistration(std::string_view text) {
  if (text.size() != kRegistrationSize) return false;
  for (const char c : text) {
    if (!isDigitChar(c) && !isCapitalChar(c) && c != '.' && c != '-') return false;
  }
  return true;
}

}  // namespace

std::optional<Position> adscPosition(std::string_view text) {
  const std::size_t mark = text.find(kAdsc);
  if (mark == std::string_view::npos || mark < kAddressSize + 1) return std::nullopt;
  if (text[mark - kAddressSize - 1] != '/') return std::nullopt;
  for (const char c : text.substr(mark - kAddressSize, kAddressSize)) {
    if (!isDigitChar(c) && !isCapitalChar(c)) return std::nullopt;
  }
  const std::string_view rest = text.substr(mark + kAdsc.size());
  if (!isRegistration(rest.substr(0, kRegistrationSize))) return std::nullopt;
  const std::vector<std::uint8_t> bytes = hexBytes(rest.substr(kRegistrationSize));
  std::size_t at = 0;
  if (bytes.size() > kAcknowledgementSize && bytes[0] == kAcknowledgement) {
    at = kAcknowledgementSize;
  }
  if (bytes.size() < at + kReportSize || !isBasicReport(bytes[at])) return std::nullopt;
  BitReader bits(bytes.data() + at + 1);
  constexpr double kUnit = 180.0 / (1 << 20);
  const double latitude = bits.takeSigned(21) * kUnit;
  const double longitude = bits.takeSigned(21) * kUnit;
  std::optional<Position> position = checkedPosition(latitude, longitude);
  if (position) position->altitudeFeet = checkedAltitude(bits.takeSigned(16) * 4);
  return position;
}

}  // namespace vel
