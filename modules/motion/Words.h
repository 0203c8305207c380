/// Words in lines of text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Source.h"

namespace senmark_motion {

/// Without blanks at its ends.
std::string_view Trimmed(std::string_view text);

/// Whether the two are the same, letters of ASCII in any case.
bool IsSameWord(std::string_view text, std::string_view keyword);

/// Reads a file word by word, over the ends of lines. Empty lines are left out, and so is what stands behind `#` or
/// `//` where a word would begin.
class Words {
 public:
  explicit Words(Source& source) : mSource(source) {}

  /// The next word; a brace is one also where it has no blank around it. Valid until the next call. False at the end
  /// of the file.
  bool next(std::string_view& word);
  /// The rest of the line, with whatever characters, up to a word that is a brace.
  std::string_view restOfName();
  /// Ends the reading: the file goes on behind the word that was read last.
  void leave() { mSource.giveBack(mLine.size() - mPosition); }

  /// Of the word that was read last.
  kit::Failure failure(std::string const& message) const { return mSource.failure(message, mWordOffset); }

 private:
  bool FindWord();

  Source& mSource;
  std::string_view mLine;
  std::size_t mPosition = 0;
  std::int64_t mWordOffset = 0;
};

}  // namespace senmark_motion
