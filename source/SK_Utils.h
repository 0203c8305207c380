/// Paths, and the time texts of a file's samples.
#pragma once

#include <locale>
#include <string>
#include <string_view>

#include "SK_TimeFormat.h"
#include "senmark/SK_BasicRecords.h"

struct SK_DynamicSampleInfo;

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_DataPath;

class SK_Utils {
 public:
  /// Code 2 for a null or empty path, 3 for one of 65,535 bytes or more. No byte behind the first 65,535
  /// is looked at.
  static void CheckFilePathValidity(char const* path);
  /// The text behind the last "/", or else behind the last backslash; empty without either. `path` is
  /// not null.
  static std::string GetFileName(char const* path);
  /// The text up to and including the last "/", or else the last backslash; empty without either.
  static std::string GetDirName(std::string const& path);
  /// The extension in lower case without its point; empty for a path without a folder, since only a name
  /// behind a "/" or a backslash, whichever comes last, counts as one.
  static void GetFileExtension(std::string const& path, std::string& out);
  /// Changes each byte by the C library's `tolower`.
  static void MakeLowerCase(std::string& text);

  /// Letters and digits, at least one, of which the first is no digit. The default locale says what a letter
  /// is. A null text is not valid.
  static bool IsValidMatchName(std::string_view name);
  /// For many names: `characters` of the default locale, which takes a while to look up.
  static bool IsValidMatchName(std::string_view name, std::ctype<char> const& characters);
  static bool IsValidMatchName(char const* name);

  /// Reads the text form of a data path, like `["arm"][2]["hand"]`. `path` becomes the root and the
  /// segments of `text`; after an error, the root and those in front of the fault.
  ///
  /// Code 1 for an empty text; 33 for a missing "[", 45 for a missing "]", both without positions. An
  /// index that is no number, or none of 32 bits, raises what `std::stoi` raises.
  static void DeSerialize(std::string const& text, SK_DataPath& path);

  /// Whether the first key of the file is "version" with the value of format version 2. Errors of
  /// mapping and scanning the file pass to the caller.
  static bool IsTDJSONVersion2(char const* path);

  /// Orders of two time texts: below 0, 0 or above 0. Zones do not count. An empty text sorts before every
  /// other text and equals itself; a text that is too short counts as followed by bytes of 0. Code 21 for
  /// null. The frames of a time code go through `std::stoi`, whose exceptions pass.
  static int CompareUTCTime(char const* left, char const* right, std::uint16_t precision);
  static int CompareSMPTETime(char const* left, char const* right);
  static int CompareTimeStrings(char const* left, char const* right, SK_TimeFormat const& format);
  /// The same for texts without a closing NUL, as they stand in a mapping. Nothing is allocated for texts
  /// of the format's own form.
  static int CompareUTCTime(std::string_view left, std::string_view right, std::uint16_t precision);
  static int CompareSMPTETime(std::string_view left, std::string_view right);
  static int CompareTimeStrings(std::string_view left, std::string_view right, SK_TimeFormat const& format);

  /// Where the time text of the sample at `begin` starts, or null for a malformed sample. Reads nothing at
  /// or behind `end`; how much of the text lies before it is for the caller to test.
  static char const* GetTimeValueOffset(SK_DynamicSampleInfo const& info, char const* begin, char const* end);

  /// Seconds from the file's base time; 0/1 for an empty text. Without a notation `out` stays as it is.
  /// For many texts of one file see `SK_RelativeTimeReader`.
  static void ConvertTimeStrToRelativeSKTime(std::string_view text, SK_Time& out, SK_TimeFormat const& format);
  /// A negative time leaves `out` as it is.
  static void ConvertSKTimeToRelativeStr(SK_Time const& time, std::string& out, SK_TimeFormat const& format);
};

}  // namespace SK_NAMESPACE_INT
