#include "ModuleVariants.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string_view>

namespace senmark_tool {

namespace {

constexpr std::size_t kTruncatedCount = 40;
constexpr std::size_t kMutatedCount = 60;

/// Texts that numbers, names and limits break at.
constexpr std::array<std::string_view, 12> kAwkward = {
    "-1", "99999999999999999999", "1e400", "nan", "\n", "\r\n", "\"", "\xFF\xFE", "0", "{[", "\xC3\x28", "1e-7"};

/// Numbers that follow from their start alone, on every machine.
class Numbers {
 public:
  explicit Numbers(std::uint64_t start) : mState(start) {}

  std::size_t Below(std::size_t limit) {
    // Steps and mixing of splitmix64.
    std::uint64_t value = (mState += 0x9E3779B97F4A7C15u);
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return static_cast<std::size_t>((value ^ (value >> 31)) % limit);
  }

 private:
  std::uint64_t mState;
};

void Change(std::string& bytes, Numbers& numbers) {
  constexpr std::size_t kLongestRun = 64;
  if (bytes.empty()) {
    bytes = kAwkward[numbers.Below(kAwkward.size())];
    return;
  }
  std::size_t const at = numbers.Below(bytes.size());
  std::size_t const run = 1 + numbers.Below(std::min(kLongestRun, bytes.size() - at));
  switch (numbers.Below(7)) {
    case 0:
      bytes[at] = static_cast<char>(bytes[at] ^ (1 << numbers.Below(8)));
      break;
    case 1:
      bytes[at] = static_cast<char>(numbers.Below(256));
      break;
    case 2:
      bytes[at] = numbers.Below(2) == 0 ? '\0' : '\xFF';
      break;
    case 3:
      bytes.erase(at, run);
      break;
    case 4:
      bytes.insert(at, bytes.substr(at, run));
      break;
    case 5:
      bytes.replace(at, std::min<std::size_t>(run, 4), kAwkward[numbers.Below(kAwkward.size())]);
      break;
    default:
      bytes.insert(at, kAwkward[numbers.Below(kAwkward.size())]);
      break;
  }
}

}  // namespace

std::vector<Variant> Truncated(std::string const& bytes) {
  std::size_t const size = bytes.size();
  std::set<std::size_t> lengths = {0, 1};
  for (std::size_t power = 2; power < size; power *= 2) {
    lengths.insert(power);
  }
  for (std::size_t missing = 1; missing <= 4; ++missing) {
    lengths.insert(size - std::min(missing, size));
  }
  Numbers numbers(size);
  for (std::size_t tries = 0; size > 1 && lengths.size() < kTruncatedCount && tries < 4 * kTruncatedCount; ++tries) {
    lengths.insert(numbers.Below(size));
  }
  std::vector<Variant> variants;
  for (std::size_t const length : lengths) {
    if (length < size || length == 0) {
      variants.push_back(
          {"cut to " + std::to_string(length) + (length == 1 ? " byte" : " bytes"), bytes.substr(0, length)});
    }
  }
  return variants;
}

std::vector<Variant> Mutated(std::string const& bytes) {
  std::vector<Variant> variants;
  for (std::size_t i = 0; !bytes.empty() && i < kMutatedCount; ++i) {
    Numbers numbers(i);
    Variant variant = {"changed in way " + std::to_string(i + 1), bytes};
    for (std::size_t changes = 1 + i % 8; changes != 0; --changes) {
      Change(variant.bytes, numbers);
    }
    variants.push_back(std::move(variant));
  }
  return variants;
}

}  // namespace senmark_tool
