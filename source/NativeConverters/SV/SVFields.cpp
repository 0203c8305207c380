#include "SVFields.h"

#include <algorithm>

namespace ns_sensor {

namespace {

constexpr char kQuote = '"';

}  // namespace

bool SVFields::Next(std::string_view& field) {
  if (mNext >= mLine.size()) {
    return false;
  }
  if (mLine[mNext] == kQuote) {
    field = NextQuoted();
    return true;
  }
  std::size_t const end = FindDelimiter(mNext);
  field = mLine.substr(mNext, end - mNext);
  mNext = end + 1;
  return true;
}

std::string_view SVFields::NextQuoted() {
  mUnquoted.clear();
  std::size_t position = mNext + 1;
  mNext = mLine.size();  // unless a delimiter ends the field
  while (position < mLine.size()) {
    std::size_t const quote = std::min(mLine.find(kQuote, position), mLine.size());
    mUnquoted.append(mLine, position, quote - position);
    position = quote + 1;
    if (position >= mLine.size()) {
      break;
    }
    if (mLine[position] != kQuote) {
      std::size_t const end = FindDelimiter(position);
      mUnquoted.append(mLine, position, end - position);
      mNext = end + 1;
      break;
    }
    mUnquoted += kQuote;
    ++position;
  }
  return mUnquoted;
}

std::size_t SVFields::FindDelimiter(std::size_t from) const {
  // Fields are short, so a call that gets ready for long stretches does not pay.
  if (mDelimiters.size() == 1) {
    char const delimiter = mDelimiters.front();
    while (from != mLine.size() && mLine[from] != delimiter) {
      ++from;
    }
    return from;
  }
  return std::min(mLine.find_first_of(mDelimiters, from), mLine.size());
}

}  // namespace ns_sensor
