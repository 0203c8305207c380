#include "SK_NumberText.h"

#include <stdlib.h>

#include <cerrno>
#include <locale>  // brings the functions that take a locale on every platform
#include <stdexcept>

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

}  // namespace

double SK_NumberText::ToDouble(std::string const& text) {
  ErrnoGuard const guard;
  char* end = nullptr;
  double const number = strtod_l(text.c_str(), &end, PlainLocale());
  if (end == text.c_str()) {
    throw std::invalid_argument("stod");
  }
  if (errno == ERANGE) {
    throw std::out_of_range("stod");
  }
  return number;
}

double SK_NumberText::NearestDoubleOfCopy(char const* first, char const* last) {
  ErrnoGuard const guard;
  return strtod_l(std::string(first, last).c_str(), nullptr, PlainLocale());
}

}  // namespace SK_NAMESPACE_INT
