#include "Words.h"

#include <algorithm>

namespace senmark_motion {
namespace {

char LowerCase(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool IsBrace(char byte) {
  return byte == '{' || byte == '}';
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

bool IsSameWord(std::string_view text, std::string_view keyword) {
  return std::equal(text.begin(), text.end(), keyword.begin(), keyword.end(),
                    [](char left, char right) { return LowerCase(left) == LowerCase(right); });
}

bool Words::next(std::string_view& word) {
  if (!FindWord()) {
    return false;
  }
  std::size_t const start = mPosition;
  mWordOffset = mSource.lineOffset() + static_cast<std::int64_t>(start);
  if (IsBrace(mLine[start])) {
    ++mPosition;
  } else {
    while (mPosition != mLine.size() && !IsBlank(mLine[mPosition]) && !IsBrace(mLine[mPosition])) {
      ++mPosition;
    }
  }
  word = mLine.substr(start, mPosition - start);
  return true;
}

std::string_view Words::restOfName() {
  std::size_t end = mLine.size();
  for (std::size_t i = mPosition; i != mLine.size(); ++i) {
    bool const isAlone = i + 1 == mLine.size() || (IsBlank(mLine[i + 1]) && IsBlank(mLine[i - 1]));
    if (mLine[i] == '{' && isAlone) {
      end = i;
      break;
    }
  }
  // Blanks behind a brace at the end of the line.
  std::string_view const trimmed = Trimmed(mLine.substr(mPosition, end - mPosition));
  if (end == mLine.size() && !trimmed.empty() && trimmed.back() == '{') {
    end = static_cast<std::size_t>(trimmed.data() + trimmed.size() - 1 - mLine.data());
  }
  std::string_view const name = Trimmed(mLine.substr(mPosition, end - mPosition));
  mPosition = end;
  return name;
}

bool Words::FindWord() {
  for (;;) {
    while (mPosition != mLine.size() && IsBlank(mLine[mPosition])) {
      ++mPosition;
    }
    std::string_view const rest = mLine.substr(mPosition);
    if (!rest.empty() && rest.front() != '#' && rest.substr(0, 2) != "//") {
      return true;
    }
    if (!mSource.nextLine(mLine)) {
      mLine = std::string_view();
      mPosition = 0;
      mWordOffset = mSource.offset();
      return false;
    }
    mPosition = 0;
  }
}

}  // namespace senmark_motion
