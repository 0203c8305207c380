#include "SK_TimeText.h"

#include <string>

namespace SK_NAMESPACE_INT {

std::int32_t NominalRate(SK_Time const& rate) {
  if (rate.scale == 0) return 0;
  return static_cast<std::int32_t>(static_cast<double>(rate.value) / static_cast<double>(rate.scale) + 0.5);
}

std::uint32_t PowerOfTen(std::uint16_t exponent) {
  if (exponent > 18) return 0;
  std::uint32_t power = 1;
  for (std::uint16_t i = 0; i < exponent; ++i) power *= 10;
  return power;
}

std::int32_t ReadField(std::string_view text, std::size_t position, std::size_t width) {
  constexpr std::size_t kDigitsThatFit = 9;
  std::string_view const field = text.substr(position, width);
  std::int32_t value = 0;
  bool plain = !field.empty() && field.size() <= kDigitsThatFit;
  for (std::size_t i = 0; plain && i < field.size(); ++i) {
    plain = IsDigit(field[i]);
    if (plain) value = value * 10 + (field[i] - '0');
  }
  return plain ? value : std::stoi(std::string(field));
}

}  // namespace SK_NAMESPACE_INT
