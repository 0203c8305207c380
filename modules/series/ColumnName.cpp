#include "ColumnName.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <vector>

#include "Ascii.h"

namespace senmark_series {

namespace {

constexpr std::size_t kLongestRoundUnit = 10;
constexpr std::size_t kLongestUnit = 24;

std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

bool IsRoundUnit(std::string_view unit) {
  return CharacterCount(unit) <= kLongestRoundUnit && std::count(unit.begin(), unit.end(), ' ') <= 1;
}

bool IsLetter(char character) {
  char const lower = Lower(character);
  return lower >= 'a' && lower <= 'z';
}

/// The words of a name in lower case; a change from small letters to capitals begins one, and so do digits.
std::vector<std::string> WordsOf(std::string_view name) {
  std::vector<std::string> words;
  char before = ' ';
  for (char const character : name) {
    bool const isWord = IsLetter(character);
    bool const isCapital = isWord && Lower(character) != character;
    bool const wasSmall = IsLetter(before) && Lower(before) == before;
    if (isWord) {
      if (!IsLetter(before) || (isCapital && wasSmall)) {
        words.emplace_back();
      }
      words.back() += Lower(character);
    }
    before = character;
  }
  return words;
}

template <std::size_t N>
bool IsOneOf(std::string_view word, std::string_view const (&words)[N]) {
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

constexpr std::string_view kDateWords[] = {"date", "datetime", "day", "datum", "fecha"};
constexpr std::string_view kTimeWords[] = {"time", "timestamp", "datetime", "clock",    "hour",       "ts",
                                           "utc",  "gmt",       "zeit",     "uhrzeit",  "heure",      "hora",
                                           "when", "epoch",     "stamp",    "unixtime", "zeitstempel"};
// What counts time, and words that may stand with it.
constexpr std::string_view kCountingWords[] = {
    "time",        "timestamp",   "ts",      "elapsed",      "epoch", "unixtime", "uptime",      "stamp",
    "zeit",        "zeitstempel", "seconds", "second",       "secs",  "sec",      "millis",      "milliseconds",
    "millisecond", "msec",        "micros",  "microseconds", "usec",  "nanos",    "nanoseconds", "nsec"};
constexpr std::string_view kCompanions[] = {
    "since", "start",  "from",   "of",          "the",    "in",        "unix", "utc",     "gmt",  "posix", "system",
    "sys",   "device", "sensor", "sample",      "record", "recording", "log",  "logging", "host", "local", "relative",
    "rel",   "run",    "test",   "measurement", "event",  "boot",      "s",    "ms",      "us",   "ns",    "t"};

std::optional<unsigned> DigitsOfUnit(std::string_view unit) {
  static constexpr std::string_view kSeconds[] = {"s", "sec", "secs", "second", "seconds"};
  static constexpr std::string_view kMilliseconds[] = {"ms", "msec", "millis", "millisecond", "milliseconds"};
  static constexpr std::string_view kMicroseconds[] = {"us",           "usec",    "micros", "microsecond",
                                                       "microseconds", "\u00B5s", "\u03BCs"};
  static constexpr std::string_view kNanoseconds[] = {"ns", "nsec", "nanos", "nanosecond", "nanoseconds"};
  if (IsOneOf(unit, kSeconds)) {
    return 0;
  }
  if (IsOneOf(unit, kMilliseconds)) {
    return 3;
  }
  if (IsOneOf(unit, kMicroseconds)) {
    return 6;
  }
  if (IsOneOf(unit, kNanoseconds)) {
    return 9;
  }
  return std::nullopt;
}

bool HasAny(std::string_view name, bool (*matches)(std::string_view)) {
  std::vector<std::string> const words = WordsOf(name);
  return std::any_of(words.begin(), words.end(), matches);
}

}  // namespace

NameAndUnit SplitUnit(std::string_view text) {
  text = Trim(text);
  if (text.size() >= 3 && (text.back() == ']' || text.back() == ')')) {
    bool const isRound = text.back() == ')';
    std::size_t const open = text.find_last_of(isRound ? '(' : '[');
    if (open != std::string_view::npos && open != 0) {
      std::string_view const unit = Trim(text.substr(open + 1, text.size() - open - 2));
      std::string_view const name = Trim(text.substr(0, open));
      if (!unit.empty() && !name.empty() && CharacterCount(unit) <= kLongestUnit && (!isRound || IsRoundUnit(unit))) {
        return {std::string(name), std::string(unit)};
      }
    }
  }
  return {std::string(text), std::string()};
}

std::string_view BareUnit(std::string_view text) {
  text = Trim(text);
  bool const isBracketed =
      text.size() >= 2 && ((text.front() == '[' && text.back() == ']') || (text.front() == '(' && text.back() == ')'));
  text = isBracketed ? Trim(text.substr(1, text.size() - 2)) : text;
  return text == "-" || text == "--" || EqualsLower(text, "n/a") ? std::string_view() : text;
}

bool LooksLikeUnit(std::string_view text) {
  static constexpr std::string_view kUnits[] = {
      "s",         "sec",      "secs",       "seconds",    "ms",         "us",         "ns",      "min",     "h",
      "m",         "mm",       "cm",         "km",         "m/s",        "km/h",       "kn",      "m/s2",    "m/s^2",
      "m/s\u00B2", "g",        "mg",         "kg",         "deg",        "degrees",    "\u00B0",  "rad",     "deg/s",
      "dps",       "\u00B0/s", "rad/s",      "v",          "mv",         "kv",         "a",       "ma",      "w",
      "kw",        "wh",       "kwh",        "j",          "n",          "nm",         "pa",      "hpa",     "kpa",
      "mbar",      "bar",      "psi",        "c",          "\u00B0c",    "degc",       "deg c",   "f",       "\u00B0f",
      "degf",      "k",        "hz",         "khz",        "mhz",        "rpm",        "1/min",   "bpm",     "%",
      "%rh",       "ppm",      "ppb",        "db",         "dbm",        "ut",         "\u00B5t", "\u03BCt", "nt",
      "t",         "lx",       "lux",        "ohm",        "l",          "ml",         "l/min",   "counts",  "count",
      "hh:mm:ss",  "hh:mm",    "yyyy-mm-dd", "dd.mm.yyyy", "dd/mm/yyyy", "mm/dd/yyyy", "utc",     "-",       "--",
      "n/a",       "1",        "none"};
  text = Trim(text);
  if (text.size() >= 2 &&
      ((text.front() == '[' && text.back() == ']') || (text.front() == '(' && text.back() == ')'))) {
    return true;
  }
  return IsOneOf(Lower(text), kUnits);
}

bool SpeaksOfTime(std::string_view name) {
  return HasAny(name, [](std::string_view word) { return IsOneOf(word, kTimeWords) || IsOneOf(word, kDateWords); });
}

bool SpeaksOfDate(std::string_view name) {
  return HasAny(name, [](std::string_view word) { return IsOneOf(word, kDateWords); });
}

std::optional<CountedTimeName> CountedTimeOf(std::string_view name, std::string_view unit) {
  std::vector<std::string> const words = WordsOf(name);
  // A capital T alone is a temperature.
  bool counts = Trim(name) == "t";
  CountedTimeName result;
  for (std::string const& word : words) {
    if (!IsOneOf(word, kCountingWords) && !IsOneOf(word, kCompanions)) {
      return std::nullopt;
    }
    std::optional<unsigned> const digits = DigitsOfUnit(word);
    counts = counts || IsOneOf(word, kCountingWords) || (words.size() == 1 && digits == 3U);
    result.unitDigits = digits ? digits : result.unitDigits;
    result.isEpoch = result.isEpoch || word == "epoch" || word == "unix" || word == "unixtime" || word == "posix";
  }
  if (!counts) {
    return std::nullopt;
  }
  if (!unit.empty()) {
    std::optional<unsigned> const digits = DigitsOfUnit(Lower(unit));
    if (!digits && !EqualsLower(unit, "utc") && !EqualsLower(unit, "gmt") && !EqualsLower(unit, "unix")) {
      return std::nullopt;
    }
    result.unitDigits = digits ? digits : result.unitDigits;
  }
  return result;
}

}  // namespace senmark_series
