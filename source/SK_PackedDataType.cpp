#include "SK_PackedDataType.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "SK_Exception.h"
#include "SK_JsonBytes.h"
#include "SK_JsonName.h"
#include "SK_JsonNumber.h"

namespace SK_NAMESPACE_INT {

namespace {

/// Counts of more digits than this go the long way.
constexpr std::ptrdiff_t kMostDigits = 4;

/// Text that is taken piece by piece. A piece that is not there leaves the position where it is.
class Template {
 public:
  Template(char const* p, char const* end) : mP(p), mEnd(end) {}

  char const* GetPosition() const { return mP; }

  template <std::size_t kSize>
  bool Take(char const (&literal)[kSize]) {
    constexpr std::size_t kLength = kSize - 1;
    if (GetLeft() < kLength || std::memcmp(mP, literal, kLength) != 0) {
      return false;
    }
    mP += kLength;
    return true;
  }

  bool TakeBool(bool& value) {
    value = Take("true");
    return value || Take("false");
  }

  /// A whole number without zeroes in front.
  bool TakeCount(std::uint16_t& count) {
    char const* const limit = mP + std::min(mEnd - mP, kMostDigits + 1);
    char const* p = mP;
    unsigned value = 0;
    while (p < limit && IsJsonDigit(*p)) {
      value = value * 10 + static_cast<unsigned>(*p++ - '0');
    }
    std::ptrdiff_t const digits = p - mP;
    if (digits == 0 || digits > kMostDigits || (*mP == '0' && digits != 1)) {
      return false;
    }
    count = static_cast<std::uint16_t>(value);
    mP = p;
    return true;
  }

  /// Most nodes repeat one number, which is then read once.
  double TakeNumber() {
    std::size_t const size = static_cast<std::size_t>(mNumberEnd - mNumberBegin);
    if (size != 0 && GetLeft() > size && std::memcmp(mP, mNumberBegin, size) == 0 && IsBehindNumber(mP[size])) {
      mP += size;
      return mNumber;
    }
    static std::string const kNoName;
    mNumberBegin = mP;
    mNumber = ScanJsonNumber(mP, mEnd, nullptr, SK_JsonName(kNoName));
    mNumberEnd = mP;
    return mNumber;
  }

 private:
  static bool IsBehindNumber(char byte) { return byte == ',' || byte == '}'; }

  std::size_t GetLeft() const { return static_cast<std::size_t>(mEnd - mP); }

  char const* mP;
  char const* mEnd;
  char const* mNumberBegin = nullptr;
  char const* mNumberEnd = nullptr;
  double mNumber = 0;
};

struct Digits {
  bool isSigned = false;
  std::uint16_t decimal = 0;
  std::uint16_t integer = 0;
};

bool TakeDigits(Template& text, Digits& digits) {
  return text.Take(R"("pattern":{"isSigned":)") && text.TakeBool(digits.isSigned) &&
         text.Take(R"(,"digitsDecimal":)") && text.TakeCount(digits.decimal) && text.Take(R"(,"digitsInteger":)") &&
         text.TakeCount(digits.integer) && text.Take("}");
}

bool TakeMinMax(Template& text, double* numbers) {
  if (!text.Take(R"(:{"min":)")) {
    return false;
  }
  numbers[0] = text.TakeNumber();
  if (!text.Take(R"(,"max":)")) {
    return false;
  }
  numbers[1] = text.TakeNumber();
  return text.Take("}");
}

bool TakeRange(Template& text, double* numbers) {
  return text.Take(R"(,"range":{"occurring")") && TakeMinMax(text, numbers) && text.Take(R"(,"legal")") &&
         TakeMinMax(text, numbers + 2) && text.Take("}");
}

bool AreSame(double const& a, double const& b) {
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): zeroes of both signs are equal, and are kept apart
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

std::string_view SK_PackedDataType::GetType() const {
  switch (mKind) {
    case ns_sensor::kNumberValue:
      return "number";
    case ns_sensor::kStringValue:
      return "string";
    default:
      return "boolean";
  }
}

ns_sensor::SK_NumberProperties SK_PackedDataType::GetNumberProperties() const {
  ns_sensor::SK_NumberProperties properties;
  properties.pattern.isSigned = mFlag;
  properties.pattern.digitsInteger = mFirst;
  properties.pattern.digitsDecimal = mSecond;
  properties.range.occurring.min = GetNumber(0);
  properties.range.occurring.max = GetNumber(1);
  properties.range.legal.min = GetNumber(2);
  properties.range.legal.max = GetNumber(3);
  return properties;
}

ns_sensor::SK_StringProperties SK_PackedDataType::GetStringProperties() const {
  ns_sensor::SK_StringProperties properties;
  properties.maxLen = mFirst;
  properties.maxDigitsInStrLength = mSecond;
  properties.eventMarkerB = mFlag;
  return properties;
}

double SK_PackedDataType::GetNumber(std::size_t index) const {
  double number;
  char const* const numbers = reinterpret_cast<char const*>(this) + sizeof(*this);
  std::memcpy(&number, numbers + (mNumberCount == 1 ? 0 : index) * sizeof number, sizeof number);
  return number;
}

SK_PackedDataType const* SK_DataTypePacker::Pack(char const*& p, char const* end) {
  struct {
    SK_PackedDataType head;
    double numbers[SK_PackedDataType::kMostNumbers];
  } packed = {};
  Template text(p, end);
  try {
    if (!text.Take(R"({"type":")")) {
      return nullptr;
    }
    if (text.Take(R"(number","numberStringProperties":{)")) {
      Digits digits;
      if (!TakeDigits(text, digits) || !TakeRange(text, packed.numbers) || !text.Take("}}")) {
        return nullptr;
      }
      double const& first = packed.numbers[0];
      bool const isOne = std::all_of(std::begin(packed.numbers), std::end(packed.numbers),
                                     [&](double const& number) { return AreSame(number, first); });
      packed.head.mKind = ns_sensor::kNumberValue;
      packed.head.mFlag = digits.isSigned;
      packed.head.mFirst = digits.integer;
      packed.head.mSecond = digits.decimal;
      packed.head.mNumberCount = isOne ? 1 : SK_PackedDataType::kMostNumbers;
    } else if (text.Take(R"(string","paddedStringProperties":{"maxDigitsInStrLength":)")) {
      if (!text.TakeCount(packed.head.mSecond) || !text.Take(R"(,"maxLen":)") || !text.TakeCount(packed.head.mFirst) ||
          !text.Take(R"(,"eventMarkerB":)") || !text.TakeBool(packed.head.mFlag) || !text.Take("}}")) {
        return nullptr;
      }
      packed.head.mKind = ns_sensor::kStringValue;
    } else if (text.Take(R"(boolean"})")) {
      packed.head.mKind = ns_sensor::kBooleanValue;
    } else {
      return nullptr;
    }
  } catch (ns_sensor::SK_Exception const&) {
    return nullptr;  // the long way finds the same, and knows the name of the number
  }
  p = text.GetPosition();
  std::size_t const size = packed.head.GetSize();
  if (mLast == nullptr || mLast->GetSize() != size || std::memcmp(mLast, &packed, size) != 0) {
    void* const memory = mAllocator.Malloc(size);
    std::memcpy(memory, &packed, size);
    mLast = static_cast<SK_PackedDataType const*>(memory);
  }
  return mLast;
}

}  // namespace SK_NAMESPACE_INT
