#include "SK_NumberText.h"

#include <stdlib.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <locale>  // brings the functions that take a locale on every platform
#include <stdexcept>

#include "SK_ExactDecimal.h"

namespace SK_NAMESPACE_INT {
namespace {

/// Made once and kept: a host may change its own locale at any time.
locale_t PlainLocale() {
  static locale_t const locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

/// Keeps the caller's `errno`, as `std::stod` does.
class ErrnoGuard {
 public:
  ErrnoGuard() : mBefore(errno) { errno = 0; }
  ~ErrnoGuard() { errno = mBefore; }
  ErrnoGuard(ErrnoGuard const&) = delete;
  ErrnoGuard& operator=(ErrnoGuard const&) = delete;

 private:
  int mBefore;
};

/// A number with its sign apart.
struct SignedText {
  explicit SignedText(std::string_view text)
      : isNegative(!text.empty() && text.front() == '-'),
        digits(isNegative || (!text.empty() && text.front() == '+') ? text.substr(1) : text) {}

  double WithSign(double number) const { return isNegative ? -number : number; }

  bool isNegative;
  std::string_view digits;
};

/// Digits with at most one point, too few to leave the range of a double on either side.
struct PlainText {
  explicit PlainText(std::string_view text);

  bool isPlain = false;
  std::uint64_t mantissa = 0;  ///< all digits as an integer, wrapped around if there are too many
  std::ptrdiff_t digitCount = 0;
  int decimalCount = 0;
};

PlainText::PlainText(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  if (text.size() > kLongest) {
    return;
  }
  char const* next = text.data();
  char const* const end = next + text.size();
  auto const takeDigits = [&] {
    char const* const first = next;
    for (; next != end; ++next) {
      unsigned const digit = static_cast<unsigned>(static_cast<unsigned char>(*next)) - '0';
      if (digit > 9) {
        break;
      }
      mantissa = mantissa * 10 + digit;
    }
    return next - first;
  };
  digitCount = takeDigits();
  if (next != end && *next == '.') {
    ++next;
    decimalCount = static_cast<int>(takeDigits());
    digitCount += decimalCount;
  }
  isPlain = next == end && digitCount != 0;
}

/// `strtod` in the plain locale. read: the bytes that belong to the number; error: as `errno` tells it.
double ReadDouble(char const* text, std::size_t& read, int& error) {
  ErrnoGuard const guard;
  char* end = nullptr;
  double const number = strtod_l(text, &end, PlainLocale());
  read = static_cast<std::size_t>(end - text);
  error = errno;
  return number;
}

}  // namespace

double SK_NumberText::ToDouble(std::string const& text) {
  std::size_t read = 0;
  int error = 0;
  double const number = ReadDouble(text.c_str(), read, error);
  if (read == 0) {
    throw std::invalid_argument("stod");
  }
  if (error == ERANGE) {
    throw std::out_of_range("stod");
  }
  return number;
}

bool SK_NumberText::IsWholeNumber(std::string_view text) {
  SignedText const parts(text);
  if (PlainText(parts.digits).isPlain) {
    return true;
  }
  double number = 0;
  if (DecimalToDouble(parts.digits.data(), parts.digits.data() + parts.digits.size(), number)) {
    return true;
  }
  std::size_t read = 0;
  int error = 0;
  ReadDouble(std::string(text).c_str(), read, error);
  return read != 0 && read == text.size() && error != ERANGE;
}

double SK_NumberText::WholeToDouble(std::string_view text) {
  SignedText const parts(text);
  char const* const first = parts.digits.data();
  char const* const last = first + parts.digits.size();
  PlainText const plain(parts.digits);
  double number = 0;
  if (plain.isPlain) {
    if (plain.digitCount > kDigitsOfAnyInteger || !ExactDecimalToDouble(plain.mantissa, -plain.decimalCount, number)) {
      number = PlainToDouble(first, last);
    }
    return parts.WithSign(number);
  }
  if (DecimalToDouble(first, last, number)) {
    return parts.WithSign(number);
  }
  return ToDouble(std::string(text));
}

double SK_NumberText::NearestDouble(char const* first, char const* last) {
  double number = 0;
  if (!DecimalToDouble(first, last, number)) {
    std::size_t read = 0;
    int error = 0;
    number = ReadDouble(std::string(first, last).c_str(), read, error);
  }
  return number;
}

}  // namespace SK_NAMESPACE_INT
