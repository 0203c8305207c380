#include "SVFields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace ns_sensor {
namespace {

using testing::ElementsAreArray;

using Fields = std::vector<std::string>;

Fields ReadAll(SVFields& fields, std::string_view line) {
  fields.SetLine(line);
  Fields all;
  for (std::string_view field; fields.Next(field);) {
    all.emplace_back(field);
  }
  return all;
}

Fields ReadAll(std::string_view line, std::string_view delimiters) {
  SVFields fields(delimiters);
  return ReadAll(fields, line);
}

struct Cut {
  char const* name;
  char const* line;
  Fields fields;
  char const* delimiters = ",";
};

std::ostream& operator<<(std::ostream& out, Cut const& row) {
  return out << row.line;
}

class CutLine : public testing::TestWithParam<Cut> {};

TEST_P(CutLine, HasItsFields) {
  EXPECT_THAT(ReadAll(GetParam().line, GetParam().delimiters), ElementsAreArray(GetParam().fields));
}

Cut const kCut[] = {
    {"Empty", "", {}},
    {"One", "a", {"a"}},
    {"Three", "a,bc,d", {"a", "bc", "d"}},
    {"EmptyInTheMiddle", "a,,b", {"a", "", "b"}},
    {"EmptyFirst", ",a", {"", "a"}},
    {"EmptyLastIsNone", "a,", {"a"}},
    {"TwoEmptyLastAreOne", "a,,", {"a", ""}},
    {"DelimiterAlone", ",", {""}},
    {"Blanks", " a , b ", {" a ", " b "}},
    {"Tab", "a,b\tc,d", {"a,b", "c,d"}, "\t"},
    {"SetOfDelimiters", "a;b,c;,d", {"a", "b", "c", "", "d"}, ",;"},
    {"SetOfDelimitersBehindQuote", "\"a;b\";c,\"d\"e;f", {"a;b", "c", "de", "f"}, ",;"},
    {"Quoted", "\"a\",\"b\"", {"a", "b"}},
    {"QuotedEmpty", "\"\"", {""}},
    {"QuotedEmptyAndMore", "\"\",a", {"", "a"}},
    {"QuotedDelimiter", "\"a,b\",c", {"a,b", "c"}},
    {"QuotedLineBreak", "\"a\r\nb\",c", {"a\r\nb", "c"}},
    {"DoubledQuoteIsOne", "\"a\"\"b\",c", {"a\"b", "c"}},
    {"DoubledQuoteBeforeTheEnd", "\"a\"\"\"", {"a\""}},
    {"DoubledQuoteAlone", "\"\"\"\",a", {"\"", "a"}},
    {"ThreeQuotes", "\"\"\"", {"\""}},
    {"TextBehindClosingQuoteStays", "\"a\"bc,d", {"abc", "d"}},
    {"BlankBehindClosingQuoteStays", "\"a\" ,b", {"a ", "b"}},
    {"QuotesBehindClosingQuoteStay", "\"a\"b\"c\",d", {"ab\"c\"", "d"}},
    {"DelimiterInSecondQuotationCuts", "\"a\"b\"c,d\",e", {"ab\"c", "d\"", "e"}},
    {"TrailingDelimiterBehindQuote", "\"a\",", {"a"}},
    {"Unterminated", "a,\"b,c", {"a", "b,c"}},
    {"UnterminatedEmpty", "a,\"", {"a", ""}},
    {"UnterminatedWithDoubledQuote", "\"a\"\"b,c", {"a\"b,c"}},
    {"QuoteInMidFieldIsText", "a\"b\",c", {"a\"b\"", "c"}},
    {"QuoteInMidFieldHidesNoDelimiter", "a\"b,c\"d", {"a\"b", "c\"d"}},
    {"BlankBeforeQuote", " \"a,b\"", {" \"a", "b\""}},
    {"OtherBytes", "\xFF\x80,\xC3\xA9", {"\xFF\x80", "\xC3\xA9"}},
};

INSTANTIATE_TEST_SUITE_P(SVFields, CutLine, testing::ValuesIn(kCut),
                         [](auto const& row) { return std::string(row.param.name); });

/// The rules step by step, one byte at a time.
Fields ReferenceFields(std::string const& line, std::string const& delimiters) {
  Fields out;
  std::string token;
  bool isLast = false;
  for (std::size_t i = 0; i < line.size() && !isLast;) {
    if (line[i] == '"') {
      std::size_t j = i + 1;
      while (j < line.size()) {
        if (line[j] == '"') {
          ++j;
          if (j < line.size() && line[j] != '"') {
            std::size_t end = line.find_first_of(delimiters, j);
            if (end == std::string::npos) {
              end = line.size();
              isLast = true;
            }
            token += line.substr(j, end - j);
            j = end;
            break;
          }
        }
        if (j != line.size()) {
          token += line[j];
        }
        ++j;
      }
      i = j + 1;
    } else {
      std::size_t end = line.find_first_of(delimiters, i);
      if (end == std::string::npos) {
        end = line.size();
        isLast = true;
      }
      token = line.substr(i, end - i);
      i = end + 1;
    }
    out.push_back(token);
    token.clear();
  }
  return out;
}

TEST(SVFields, AgreesWithTheStepsOnAnyLine) {
  std::mt19937 random(5);
  for (std::string const delimiters : {",", ",;", "\"", ",\""}) {
    SVFields fields(delimiters);
    for (int i = 0; i < 50000; ++i) {
      std::string line;
      for (auto left = random() % 14; left != 0; --left) {
        line += "\"\"\",,;ab"[random() % 8];
      }
      ASSERT_THAT(ReadAll(fields, line), ElementsAreArray(ReferenceFields(line, delimiters)))
          << line << ' ' << delimiters;
    }
  }
}

TEST(SVFields, NulIsText) {
  EXPECT_THAT(ReadAll(std::string_view("a\0b,\"\0\",c", 9), ","),
              ElementsAreArray({std::string("a\0b", 3), std::string("\0", 1), std::string("c")}));
}

TEST(SVFields, LineOfManyMegabytesIsCut) {
  std::string const half(2000000, '"');
  Fields const found = ReadAll(half + "," + std::string(1000000, ','), ",");
  ASSERT_EQ(found.size(), 1000001U);
  EXPECT_TRUE(found[0] == std::string(999999, '"'));
}

}  // namespace
}  // namespace ns_sensor
