#include "SK_SampleBlock.h"

#include <limits>

#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

double const SK_SampleBlock::kNoNumber = 0.0;

namespace {

/// Whether so many items are a number of bytes.
bool IsCountable(std::uint64_t count, std::uint64_t itemSize) {
  return itemSize == 0 || count <= std::numeric_limits<std::size_t>::max() / itemSize;
}

}  // namespace

template <typename Item>
bool SK_SampleBlock::Allocate(std::uint64_t count, Column<Item>& column) {
  column.reset(count == 0 ? nullptr : static_cast<Item*>(std::malloc(count * sizeof(Item))));
  return column != nullptr || count == 0;
}

bool SK_SampleBlock::Start(ns_sensor::eDataValueType valueType, std::uint64_t count, std::uint64_t numbersPerSample) {
  *this = SK_SampleBlock();
  bool const isCountable = IsCountable(count, sizeof(SK_Time)) && IsCountable(numbersPerSample, sizeof(double)) &&
                           IsCountable(count, numbersPerSample * sizeof(double));
  if (!isCountable || !Allocate(count, mTimes) || !Allocate(count * numbersPerSample, mNumbers)) {
    *this = SK_SampleBlock();
    return false;
  }
  mValueType = valueType;
  mCount = count;
  mNumbersPerSample = numbersPerSample;
  if (valueType == ns_sensor::kStringValue) {
    mTextStarts.push_back(0);
  }
  return true;
}

void SK_SampleBlock::AddText(SK_Time const& time, std::string_view text) {
  mText.append(text).push_back('\0');
  mTextStarts.push_back(mText.size());
  *NextTime() = time;
  Advance(1);
}

void SK_SampleBlock::CopyTo(std::uint64_t i, ns_sensor::SK_DynamicDataSample& out) const {
  out.time = Time(i);
  void const* const value = ValuePointer(i);
  switch (ValueType(i)) {
    case ns_sensor::kStringValue:
      out.value.value = std::string(static_cast<char const*>(value), ValueSize(i));
      break;
    case ns_sensor::kNumberArrayValue: {
      auto const* const numbers = static_cast<double const*>(value);
      out.value.value = std::vector<double>(numbers, numbers + ValueSize(i));
      break;
    }
    default:
      out.value.value = *static_cast<double const*>(value);
  }
}

}  // namespace SK_NAMESPACE_INT
