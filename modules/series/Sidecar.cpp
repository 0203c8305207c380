#include "Sidecar.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <sys/stat.h>

#include "Ascii.h"
#include "Dialect.h"

namespace senmark_series {

namespace {

using rapidjson::Value;

constexpr std::size_t kLargestSidecar = std::size_t{1} << 20;

[[noreturn]] void Refuse(std::string const& key, std::string const& why) {
  throw kit::Failure("sidecar: \"" + key + "\" " + why);
}

std::string TextOf(std::string const& key, Value const& value) {
  if (!value.IsString()) {
    Refuse(key, "has to be a text");
  }
  return {value.GetString(), value.GetStringLength()};
}

std::int64_t LineOf(std::string const& key, Value const& value, std::int64_t least) {
  if (!value.IsInt64() || value.GetInt64() < least) {
    Refuse(key, "has to be the number of a line, " + std::to_string(least) + " or more");
  }
  return value.GetInt64();
}

Value::ConstObject ObjectOf(std::string const& key, Value const& value) {
  if (!value.IsObject()) {
    Refuse(key, "has to be an object");
  }
  return value.GetObject();
}

/// One of a list of words.
template <typename Choice, std::size_t N>
Choice ChoiceOf(std::string const& key, Value const& value, std::pair<char const*, Choice> const (&choices)[N]) {
  std::string const text = TextOf(key, value);
  std::string all;
  for (auto const& [word, choice] : choices) {
    if (EqualsLower(text, word)) {
      return choice;
    }
    all += (all.empty() ? "" : ", ") + std::string(word);
  }
  Refuse(key, "has to be one of: " + all);
}

bool IsSign(std::string const& text) {
  return text.size() == 1 && static_cast<unsigned char>(text[0]) < 0x80 && text[0] != '\n' && text[0] != '\r' &&
         text[0] != '\0';
}

char DelimiterOf(std::string const& key, Value const& value) {
  std::string const text = TextOf(key, value);
  for (char const delimiter : kDelimiters) {
    if (EqualsLower(text, NameOfDelimiter(delimiter))) {
      return delimiter;
    }
  }
  if (!IsSign(text)) {
    Refuse(key, "has to be comma, semicolon, tab, pipe, blanks, or one ASCII character");
  }
  return text[0];
}

char MarkOf(std::string const& key, Value const& value) {
  std::string const text = TextOf(key, value);
  if (text != "." && text != ",") {
    Refuse(key, "has to be a point or a comma");
  }
  return text[0];
}

char QuoteOf(std::string const& key, Value const& value) {
  std::string const text = TextOf(key, value);
  if (!text.empty() && !IsSign(text)) {
    Refuse(key, "has to be one ASCII character, or empty");
  }
  return text.empty() ? '\0' : text[0];
}

Sidecar::ColumnReference ReferenceOf(std::string const& key, Value const& value) {
  if (value.IsString()) {
    return {TextOf(key, value), 0};
  }
  if (!value.IsUint() || value.GetUint() == 0) {
    Refuse(key, "has to be the name of a column, or its number from 1");
  }
  return {std::string(), value.GetUint()};
}

constexpr std::pair<char const*, Sidecar::TimeChoice> kForms[] = {
    {"iso", {eTimeKind::kIso, 0}},
    {"date", {eTimeKind::kDate, 0}},
    {"epoch-s", {eTimeKind::kEpoch, 0}},
    {"epoch-ms", {eTimeKind::kEpoch, 3}},
    {"epoch-us", {eTimeKind::kEpoch, 6}},
    {"epoch-ns", {eTimeKind::kEpoch, 9}},
    {"elapsed-s", {eTimeKind::kElapsed, 0}},
    {"elapsed-ms", {eTimeKind::kElapsed, 3}},
    {"elapsed-us", {eTimeKind::kElapsed, 6}},
    {"elapsed-ns", {eTimeKind::kElapsed, 9}},
    {"clock", {eTimeKind::kClock, 0}},
};
constexpr std::pair<char const*, eDateOrder> kOrders[] = {{"day-month", eDateOrder::kDayFirst},
                                                          {"month-day", eDateOrder::kMonthFirst}};
constexpr std::pair<char const*, eColumnKind> kKinds[] = {{"number", eColumnKind::kNumber},
                                                          {"text", eColumnKind::kText}};

void TakeTime(Sidecar& sidecar, Value const& time) {
  for (auto const& member : ObjectOf("time", time)) {
    std::string const name(member.name.GetString(), member.name.GetStringLength());
    std::string const key = "time." + name;
    Value const& value = member.value;
    if (name == "column" || name == "columns") {
      if (!sidecar.timeColumns.empty()) {
        Refuse(key, "stands beside another choice of columns");
      }
      if (name == "column") {
        sidecar.timeColumns.push_back(ReferenceOf(key, value));
        continue;
      }
      if (!value.IsArray() || value.Size() < 1 || value.Size() > 2) {
        Refuse(key, "has to be a list of one or two columns");
      }
      for (Value const& column : value.GetArray()) {
        sidecar.timeColumns.push_back(ReferenceOf(key, column));
      }
    } else if (name == "form") {
      sidecar.timeForm = ChoiceOf(key, value, kForms);
    } else if (name == "zone") {
      sidecar.zoneMinutes = kit::ParseZone(TextOf(key, value));
      if (!sidecar.zoneMinutes) {
        Refuse(key, "has to be Z or +hh:mm");
      }
    } else if (name == "dateOrder") {
      sidecar.dateOrder = ChoiceOf(key, value, kOrders);
    } else {
      Refuse(key, "is no key of a sidecar");
    }
  }
}

Sidecar::ColumnChoice ColumnOf(std::string const& path, Value const& column) {
  Sidecar::ColumnChoice choice;
  for (auto const& member : ObjectOf(path, column)) {
    std::string const name(member.name.GetString(), member.name.GetStringLength());
    std::string key = path;
    key.append(".").append(name);
    Value const& value = member.value;
    if (name == "kind") {
      choice.kind = ChoiceOf(key, value, kKinds);
    } else if (name == "unit") {
      choice.unit = TextOf(key, value);
    } else if (name == "name") {
      choice.name = TextOf(key, value);
    } else if (name == "decimals") {
      constexpr unsigned kMostDecimals = 15;
      if (!value.IsUint() || value.GetUint() > kMostDecimals) {
        Refuse(key, "has to be a number from 0 to 15");
      }
      choice.decimals = value.GetUint();
    } else if (name == "skip") {
      if (!value.IsBool()) {
        Refuse(key, "has to be true or false");
      }
      choice.skips = value.GetBool();
    } else {
      Refuse(key, "is no key of a sidecar");
    }
  }
  return choice;
}

void TakeKey(Sidecar& sidecar, std::string const& key, Value const& value) {
  if (key == "delimiter") {
    sidecar.delimiter = DelimiterOf(key, value);
  } else if (key == "decimalMark") {
    sidecar.decimalMark = MarkOf(key, value);
  } else if (key == "quote") {
    sidecar.quote = QuoteOf(key, value);
  } else if (key == "comment") {
    sidecar.comment = TextOf(key, value);
  } else if (key == "encoding") {
    sidecar.encoding = EncodingOf(TextOf(key, value));
    if (!sidecar.encoding) {
      Refuse(key, "has to be utf-8, utf-16le, utf-16be, windows-1252 or latin-1");
    }
  } else if (key == "headerRow") {
    sidecar.headerRow = LineOf(key, value, 0);
  } else if (key == "unitsRow") {
    sidecar.unitsRow = LineOf(key, value, 0);
  } else if (key == "firstDataRow") {
    sidecar.firstDataRow = LineOf(key, value, 1);
  } else if (key == "time") {
    TakeTime(sidecar, value);
  } else if (key == "columns") {
    for (auto const& member : ObjectOf(key, value)) {
      std::string const name(member.name.GetString(), member.name.GetStringLength());
      sidecar.columns[name] = ColumnOf("columns." + name, member.value);
    }
  } else {
    Refuse(key, "is no key of a sidecar");
  }
}

}  // namespace

std::string SidecarPath(std::string const& path) {
  return path + ".senmark.json";
}

std::optional<Sidecar> ReadSidecar(kit::Input const& input) {
  std::string const path = SidecarPath(input.path());
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  std::string const json = kit::Input(path, "json", input.uid()).head(kLargestSidecar + 1);
  if (json.size() > kLargestSidecar) {
    throw kit::Failure("sidecar: larger than 1 MiB");
  }
  return ParseSidecar(json);
}

Sidecar ParseSidecar(std::string const& json) {
  rapidjson::Document document;
  std::size_t const mark = senmark_series::MarkOf(json).size;
  document.Parse<rapidjson::kParseIterativeFlag>(json.data() + mark, json.size() - mark);
  if (document.HasParseError()) {
    throw kit::Failure(std::string("sidecar: no JSON: ") + rapidjson::GetParseError_En(document.GetParseError()) +
                       " At byte " + std::to_string(document.GetErrorOffset() + mark) + '.');
  }
  if (!document.IsObject()) {
    throw kit::Failure("sidecar: it has to be an object");
  }
  Sidecar sidecar;
  for (auto const& member : document.GetObject()) {
    TakeKey(sidecar, std::string(member.name.GetString(), member.name.GetStringLength()), member.value);
  }
  bool const isPair = sidecar.timeColumns.size() == 2;
  if (isPair && sidecar.timeForm && sidecar.timeForm->kind != eTimeKind::kDate) {
    Refuse("time.form", "has to be date for two columns");
  }
  return sidecar;
}

}  // namespace senmark_series
