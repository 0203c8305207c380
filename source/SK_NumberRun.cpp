#include "SK_NumberRun.h"

#include "SK_Prefetch.h"

namespace SK_NAMESPACE_INT {
namespace {

/// The numbers of one array. The frame has shown its last byte.
template <unsigned kChunks>
inline bool ReadArray(SK_NumberRun const& run, char const* value, double* out) {
  if (LoadTwo(value) != TwoBytes('[', '"')) {
    return false;
  }
  char const* text = value + 2;
  for (std::uint64_t left = run.count; left != 0; --left) {
    if (!run.layout.Read<kChunks>(text, *out++) || text[run.textLength] != '"') {
      return false;
    }
    text += run.textLength + 1;
    if (left != 1 && LoadTwo(text) != TwoBytes(',', '"')) {
      return false;
    }
    text += 2;
  }
  return true;
}

template <unsigned kChunks>
std::uint64_t DecodeChunks(SK_NumberRun const& run, char const* first, std::uint64_t most, double* out) {
  std::uint64_t taken = 0;
  for (; taken != most; ++taken) {
    char const* const sample = first + taken * run.step;
    char const* const value = sample + run.frame.valueOffset;
    double* const numbers = out + taken * run.count;
    PrefetchAhead(sample, static_cast<std::ptrdiff_t>(run.step), run.end);
    if (!run.frame.Fits(sample)) {
      break;
    }
    bool const isRead = run.isArray ? ReadArray<kChunks>(run, value, numbers)
                                    : *value == '"' && run.layout.Read<kChunks>(value + 1, *numbers);
    if (!isRead) {
      break;
    }
  }
  return taken;
}

}  // namespace

std::uint64_t DecodeNumbersByWords(SK_NumberRun const& run, char const* first, std::uint64_t most, double* out) {
  switch (run.layout.DecimalChunks()) {
    case 0:
      return DecodeChunks<0>(run, first, most, out);
    case 1:
      return DecodeChunks<1>(run, first, most, out);
    case 2:
      return DecodeChunks<2>(run, first, most, out);
    default:
      return DecodeChunks<SK_NumberLayout::kMostDecimalChunks>(run, first, most, out);
  }
}

}  // namespace SK_NAMESPACE_INT
