#include "BVHInput.h"

#include "BVHLine.h"

namespace ns_sensor {

std::string_view BVHInput::ReadLine() {
  if (!mIsGood) {
    mHasFailed = true;
    return {};
  }
  mBroken = std::string();
  while (true) {
    std::string_view const window = mBytes.Window();
    if (window.empty()) {
      mIsGood = false;
      mHasFailed = mBroken.empty();
      return mBroken;
    }
    std::size_t const lineEnd = window.find('\n');
    if (lineEnd == std::string_view::npos) {
      mBroken += window;
      mBytes.Skip(window.size());
      continue;
    }
    std::string_view const part = window.substr(0, lineEnd);
    mBytes.Skip(lineEnd + 1);
    if (mBroken.empty()) {
      return part;
    }
    mBroken += part;
    return mBroken;
  }
}

namespace {

template <typename Value>
void ReadValueBeside(BVHInput& input, std::string_view key, Value& value) {
  while (input.IsGood()) {
    std::string_view const line = input.ReadLine();
    std::size_t const at = line.find(key);
    if (at == std::string_view::npos) {
      continue;
    }
    if (input.IsGood()) {
      std::string const rest = std::string(line).erase(at, key.size());
      BVHLine(rest).Read(value);
    }
    return;
  }
}

}  // namespace

void StraightUntilYouHit(BVHInput& input, std::string_view key, std::uint64_t& value) {
  ReadValueBeside(input, key, value);
}

void StraightUntilYouHit(BVHInput& input, std::string_view key, double& value) {
  ReadValueBeside(input, key, value);
}

}  // namespace ns_sensor
