#include "SK_JsonNumber.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "SK_JsonBytes.h"
#include "SK_JsonError.h"
#include "SK_TdjsonParserUtils.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr int kMaxExponent = 308;

constexpr double kPowersOfTen[kMaxExponent + 1] = {
    1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,
    1e16,  1e17,  1e18,  1e19,  1e20,  1e21,  1e22,  1e23,  1e24,  1e25,  1e26,  1e27,  1e28,  1e29,  1e30,  1e31,
    1e32,  1e33,  1e34,  1e35,  1e36,  1e37,  1e38,  1e39,  1e40,  1e41,  1e42,  1e43,  1e44,  1e45,  1e46,  1e47,
    1e48,  1e49,  1e50,  1e51,  1e52,  1e53,  1e54,  1e55,  1e56,  1e57,  1e58,  1e59,  1e60,  1e61,  1e62,  1e63,
    1e64,  1e65,  1e66,  1e67,  1e68,  1e69,  1e70,  1e71,  1e72,  1e73,  1e74,  1e75,  1e76,  1e77,  1e78,  1e79,
    1e80,  1e81,  1e82,  1e83,  1e84,  1e85,  1e86,  1e87,  1e88,  1e89,  1e90,  1e91,  1e92,  1e93,  1e94,  1e95,
    1e96,  1e97,  1e98,  1e99,  1e100, 1e101, 1e102, 1e103, 1e104, 1e105, 1e106, 1e107, 1e108, 1e109, 1e110, 1e111,
    1e112, 1e113, 1e114, 1e115, 1e116, 1e117, 1e118, 1e119, 1e120, 1e121, 1e122, 1e123, 1e124, 1e125, 1e126, 1e127,
    1e128, 1e129, 1e130, 1e131, 1e132, 1e133, 1e134, 1e135, 1e136, 1e137, 1e138, 1e139, 1e140, 1e141, 1e142, 1e143,
    1e144, 1e145, 1e146, 1e147, 1e148, 1e149, 1e150, 1e151, 1e152, 1e153, 1e154, 1e155, 1e156, 1e157, 1e158, 1e159,
    1e160, 1e161, 1e162, 1e163, 1e164, 1e165, 1e166, 1e167, 1e168, 1e169, 1e170, 1e171, 1e172, 1e173, 1e174, 1e175,
    1e176, 1e177, 1e178, 1e179, 1e180, 1e181, 1e182, 1e183, 1e184, 1e185, 1e186, 1e187, 1e188, 1e189, 1e190, 1e191,
    1e192, 1e193, 1e194, 1e195, 1e196, 1e197, 1e198, 1e199, 1e200, 1e201, 1e202, 1e203, 1e204, 1e205, 1e206, 1e207,
    1e208, 1e209, 1e210, 1e211, 1e212, 1e213, 1e214, 1e215, 1e216, 1e217, 1e218, 1e219, 1e220, 1e221, 1e222, 1e223,
    1e224, 1e225, 1e226, 1e227, 1e228, 1e229, 1e230, 1e231, 1e232, 1e233, 1e234, 1e235, 1e236, 1e237, 1e238, 1e239,
    1e240, 1e241, 1e242, 1e243, 1e244, 1e245, 1e246, 1e247, 1e248, 1e249, 1e250, 1e251, 1e252, 1e253, 1e254, 1e255,
    1e256, 1e257, 1e258, 1e259, 1e260, 1e261, 1e262, 1e263, 1e264, 1e265, 1e266, 1e267, 1e268, 1e269, 1e270, 1e271,
    1e272, 1e273, 1e274, 1e275, 1e276, 1e277, 1e278, 1e279, 1e280, 1e281, 1e282, 1e283, 1e284, 1e285, 1e286, 1e287,
    1e288, 1e289, 1e290, 1e291, 1e292, 1e293, 1e294, 1e295, 1e296, 1e297, 1e298, 1e299, 1e300, 1e301, 1e302, 1e303,
    1e304, 1e305, 1e306, 1e307, 1e308};

constexpr std::uint64_t kMaxExactInDouble = 9007199254740991;  // 2 to the 53rd, minus 1
constexpr int kMaxSignificantDigits = 17;
constexpr double kLargestDoubleByTen = 1.7976931348623157e307;
constexpr std::int64_t kNegativeExponentLimit = 214748364;
constexpr std::int64_t kLowestExponent = -2000;  // with this one and those below it every result is 0

/// Where an integer must leave its type: at `value`, followed by a digit above `lastDigit`, or behind it.
template <typename Integer>
struct Limit {
  Integer value;
  unsigned lastDigit;

  bool IsPassed(Integer current, unsigned digit) const {
    return current >= value && (current != value || digit > lastDigit);
  }
};

/// One number, read in stages of growing range: 32 bits, 64 bits, double.
class NumberScanner {
 public:
  NumberScanner(char const* p, char const* end, char const* base, SK_JsonName const& name)
      : mP(p), mEnd(end), mBase(base), mName(name) {}

  double Scan() {
    mIsNegative = PeekIs(mP, mEnd, '-');
    mP += mIsNegative ? 1 : 0;
    ScanInteger();
    if (PeekIs(mP, mEnd, '.')) {
      ++mP;
      ScanFraction();
    }
    if (PeekIs(mP, mEnd, 'e') || PeekIs(mP, mEnd, 'E')) {
      ++mP;
      ScanExponent();
    }
    return GetResult();
  }

  char const* GetPosition() const { return mP; }

 private:
  bool IsAtDigit() const { return mP < mEnd && IsJsonDigit(*mP); }
  bool IsAtNonZeroDigit() const { return IsAtDigit() && *mP != '0'; }
  unsigned PeekDigit() const { return static_cast<unsigned>(*mP - '0'); }
  unsigned TakeDigit() { return static_cast<unsigned>(*mP++ - '0'); }
  void StepOverAnyByte() { mP += mP < mEnd ? 1 : 0; }

  void ScanInteger() {
    if (PeekIs(mP, mEnd, '0')) {
      ++mP;  // a zero takes no further digits, so 012 ends behind it
      return;
    }
    if (!IsAtDigit()) {
      ThrowJsonTypeError(mP, mBase, mName, "JSON Number");
    }
    mInt = static_cast<std::int32_t>(TakeDigit());
    mDigitCount = 1;
    Scan32BitDigits();
    if (mUse64Bit) {
      Scan64BitDigits();
    }
    if (mUseDouble) {
      ScanDoubleDigits();
    }
  }

  /// The limits are those of unsigned integers while `mInt` is signed: a value from 2147483648 to
  /// 4294967295 comes out negative, and one that wrapped goes on wrapping.
  void Scan32BitDigits() {
    Limit<std::int32_t> const limit =
        mIsNegative ? Limit<std::int32_t>{214748364, 8} : Limit<std::int32_t>{429496729, 5};
    while (IsAtDigit()) {
      if (limit.IsPassed(mInt, PeekDigit())) {
        mUint64 = GetIntAs64Bit();
        mUse64Bit = true;
        return;
      }
      mInt = static_cast<std::int32_t>(static_cast<std::uint32_t>(mInt) * 10 + TakeDigit());
      ++mDigitCount;
    }
  }

  void Scan64BitDigits() {
    Limit<std::uint64_t> const limit =
        mIsNegative ? Limit<std::uint64_t>{922337203685477580, 8} : Limit<std::uint64_t>{1844674407370955161, 5};
    while (IsAtDigit()) {
      if (limit.IsPassed(mUint64, PeekDigit())) {
        SetDouble(mUint64);
        return;
      }
      mUint64 = mUint64 * 10 + TakeDigit();
      ++mDigitCount;
    }
  }

  void ScanDoubleDigits() {
    while (IsAtDigit()) {
      if (mDouble >= kLargestDoubleByTen) {
        ThrowTooBig(SK_Message::kNumberTooBig);
      }
      mDouble = mDouble * 10 + TakeDigit();
    }
  }

  void ScanFraction() {
    if (!IsAtDigit()) {
      ThrowJsonError(SK_Message::kMissingFractionPart, mP, mBase);
    }
    if (!mUseDouble) {
      ScanExactFractionDigits();
    }
    while (IsAtDigit()) {
      unsigned const digit = TakeDigit();
      if (mDigitCount < kMaxSignificantDigits) {
        mDouble = mDouble * 10 + digit;
        --mFractionExponent;
        mDigitCount += mDouble > 0 ? 1 : 0;
      }
    }
  }

  /// Digits behind the point for as long as their integer is exact in a double.
  void ScanExactFractionDigits() {
    std::uint64_t digits = mUse64Bit ? mUint64 : GetIntAs64Bit();
    while (IsAtDigit() && digits <= kMaxExactInDouble) {
      digits = digits * 10 + TakeDigit();
      --mFractionExponent;
      mDigitCount += digits != 0 ? 1 : 0;
    }
    SetDouble(digits);
  }

  /// The byte behind the letter is taken for a sign, whatever it is: 1e5 has no exponent, 1e15 means 1e5.
  void ScanExponent() {
    if (!mUseDouble) {
      SetDouble(mUse64Bit ? mUint64 : GetIntAs64Bit());
    }
    bool const isNegative = PeekIs(mP, mEnd, '-');
    StepOverAnyByte();
    if (!IsAtDigit()) {
      ThrowJsonError(SK_Message::kMissingExponent, mP, mBase);
    }
    mExponent = TakeDigit();
    if (isNegative) {
      ScanNegativeExponentDigits();
      mExponent = -mExponent;
    } else {
      ScanPositiveExponentDigits();
    }
  }

  /// A zero ends the exponent, and every further digit takes the byte behind it along: in 1e-15 that is the
  /// comma or bracket, for which the caller then looks in vain, and 1e-123 means 1e-12.
  void ScanNegativeExponentDigits() {
    while (IsAtNonZeroDigit()) {
      unsigned const digit = TakeDigit();
      if (mExponent < kNegativeExponentLimit) {
        mExponent = mExponent * 10 + digit;
      }
      if (mExponent >= kNegativeExponentLimit) {
        while (IsAtNonZeroDigit()) {
          ++mP;
        }
      }
      StepOverAnyByte();
    }
  }

  void ScanPositiveExponentDigits() {
    std::int64_t const limit = kMaxExponent - mFractionExponent;
    while (IsAtDigit()) {
      mExponent = mExponent * 10 + TakeDigit();
      if (mExponent > limit) {
        ThrowTooBig(SK_Message::kExponentTooBig);
      }
    }
  }

  double GetResult() const {
    if (mUseDouble) {
      // Never above 308, by the limit of positive exponents.
      std::int64_t const exponent = std::max(mExponent + mFractionExponent, kLowestExponent);
      double const result = SK_TdjsonParserUtils::StrtodNormalPrecision(mDouble, static_cast<int>(exponent));
      return mIsNegative ? -result : result;
    }
    if (mUse64Bit) {
      // A negative value of 64 bits is converted like an unsigned one: -5000000000 is a huge positive number.
      return static_cast<double>(mIsNegative ? 0 - mUint64 : mUint64);
    }
    std::uint32_t const bits = static_cast<std::uint32_t>(mInt);
    return static_cast<double>(static_cast<std::int32_t>(mIsNegative ? 0 - bits : bits));
  }

  /// With its sign in all upper bits: a wrapped integer is a huge number from here on.
  std::uint64_t GetIntAs64Bit() const { return static_cast<std::uint64_t>(static_cast<std::int64_t>(mInt)); }

  void SetDouble(std::uint64_t value) {
    mDouble = static_cast<double>(value);
    mUseDouble = true;
  }

  [[noreturn]] void ThrowTooBig(char const* literal) const {
    ThrowJsonError(literal, mP, mBase, Quoted(mName.GetText()), std::string("JSON Number"));
  }

  char const* mP;
  char const* mEnd;
  char const* mBase;
  SK_JsonName const& mName;
  bool mIsNegative = false;
  bool mUse64Bit = false;   ///< the value is in `mUint64`
  bool mUseDouble = false;  ///< the value is in `mDouble`, to be scaled by both exponents
  std::int32_t mInt = 0;
  std::uint64_t mUint64 = 0;
  double mDouble = 0;
  std::int64_t mDigitCount = 0;        ///< significant digits so far
  std::int64_t mFractionExponent = 0;  ///< minus the digits behind the point
  std::int64_t mExponent = 0;
};

}  // namespace

double ScanJsonNumber(char const*& p, char const* end, char const* base, SK_JsonName const& name) {
  NumberScanner scanner(p, end, base, name);
  double const value = scanner.Scan();
  p = scanner.GetPosition();
  return value;
}

double SK_TdjsonParserUtils::StrtodNormalPrecision(double d, int p) {
  if (p < -kMaxExponent) {
    return FastPath(FastPath(d, -kMaxExponent), p + kMaxExponent);
  }
  return FastPath(d, p);
}

double SK_TdjsonParserUtils::FastPath(double d, int p) {
  if (p < -kMaxExponent) {
    return 0.0;
  }
  return p < 0 ? d / Pow10(-p) : d * Pow10(p);
}

double SK_TdjsonParserUtils::Pow10(int n) {
  if (n < 0 || n > kMaxExponent) {
    return std::numeric_limits<double>::infinity();
  }
  return kPowersOfTen[n];
}

}  // namespace SK_NAMESPACE_INT
