#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

#include "JsonArrayIterator.h"
#include "JsonObjectIterator.h"
#include "SK_RapidJson.h"

namespace ns_sensor {
namespace {

using SK_NAMESPACE_INT::JDocument;

static_assert(std::is_abstract_v<JsonIterator> && std::has_virtual_destructor_v<JsonIterator>);

/// An iterator over a text's array or object, by the kind of its bracket.
class Items {
 public:
  explicit Items(std::string const& text) {
    mDocument.Parse(text.c_str(), text.size());
    EXPECT_FALSE(mDocument.HasParseError()) << text;
    if (mDocument.IsArray()) {
      mIterator = std::make_unique<JsonArrayIterator>("top", mDocument);
    } else {
      mIterator = std::make_unique<JsonObjectIterator>(mDocument);
    }
  }

  JsonIterator* operator->() const { return mIterator.get(); }

 private:
  JDocument mDocument;
  std::unique_ptr<JsonIterator> mIterator;
};

/// Both kinds of iterator, at an item with this value.
std::string const kAround[][2] = {{"[", "]"}, {"{\"k\":", "}"}};

TEST(JsonIterators, EmptyContainersHaveNoItem) {
  EXPECT_FALSE(Items("[]")->HasNext());
  EXPECT_FALSE(Items("{}")->HasNext());
}

TEST(JsonIterators, ItemsComeInTheOrderOfTheFile) {
  Items const array("[true, false]");
  Items const object("{\"b\": true, \"a\": false}");
  EXPECT_EQ(array->GetPropertyKey(), "top 0");
  EXPECT_EQ(object->GetPropertyKey(), "b");
  array->Increment();
  object->Increment();
  ASSERT_TRUE(array->HasNext());
  ASSERT_TRUE(object->HasNext());
  EXPECT_EQ(array->GetPropertyKey(), "top 1");
  EXPECT_EQ(object->GetPropertyKey(), "a");
  array->Increment();
  object->Increment();
  EXPECT_FALSE(array->HasNext());
  EXPECT_FALSE(object->HasNext());
}

TEST(JsonIterators, KindsOfValues) {
  struct Row {
    char const* text;
    int kind;
  };
  for (Row const& row : {Row{"null", 0}, Row{"\"\"", 1}, Row{"0", 2}, Row{"-1", 2}, Row{"1e5", 2},
                         Row{"18446744073709551615", 2}, Row{"true", 3}, Row{"false", 3}, Row{"[]", 4}, Row{"{}", 5}}) {
    for (auto const& [before, after] : kAround) {
      EXPECT_EQ(Items(before + row.text + after)->GetPropertyValueType(), row.kind) << before << row.text;
    }
  }
}

TEST(JsonIterators, NumbersOfEveryWidthBecomeDoubles) {
  struct Row {
    char const* text;
    double value;
  };
  Row const rows[] = {
      {"0", 0},
      {"-1", -1},
      {"2147483647", 2147483647.0},
      {"-2147483648", -2147483648.0},
      {"2147483648", 2147483648.0},
      {"-2147483649", -2147483649.0},
      {"4294967295", 4294967295.0},
      {"4294967296", 4294967296.0},
      {"9007199254740993", 9007199254740992.0},
      {"9223372036854775807", 0x1p63},
      {"-9223372036854775808", -0x1p63},
      {"9223372036854775808", 0x1p63},
      {"18446744073709551615", 0x1p64},
      {"18446744073709551616", 0x1p64},
      {"-9223372036854775809", -0x1p63},
      {"1.5", 1.5},
      {"-2.5e3", -2500},
      {"1E300", 1e300},
      {"0e308", 0},
      {"1e-400", 0},
      {"1e-999999999999", 0},
  };
  for (Row const& row : rows) {
    for (auto const& [before, after] : kAround) {
      double value = std::numeric_limits<double>::quiet_NaN();
      Items(before + row.text + after)->GetPropertyDoubleValue(value);
      EXPECT_EQ(value, row.value) << before << row.text;
      EXPECT_FALSE(std::signbit(value) && value == 0) << row.text;
    }
  }
}

TEST(JsonIterators, ZeroHasASignOnlyWithAPointOrAnExponent) {
  struct Row {
    char const* text;
    bool isNegative;
  };
  for (Row const& row : {Row{"-0", false}, Row{"-0.0", true}, Row{"-0e1", true}, Row{"0.0", false}}) {
    for (auto const& [before, after] : kAround) {
      double value = 1;
      Items(before + row.text + after)->GetPropertyDoubleValue(value);
      EXPECT_EQ(value, 0);
      EXPECT_EQ(std::signbit(value), row.isNegative) << row.text;
    }
  }
}

TEST(JsonIterators, StringsReplaceWhatWasThereWithEveryByte) {
  struct Row {
    char const* text;
    std::string value;
  };
  for (Row const& row :
       {Row{"\"\"", ""}, Row{"\"a\"", "a"},
        Row{"\"a text that is too long to be kept in place\"", "a text that is too long to be kept in place"},
        Row{"\"a\\u0000b\"", std::string("a\0b", 3)}, Row{"\"\xFF\xC3\"", "\xFF\xC3"}}) {
    for (auto const& [before, after] : kAround) {
      std::string value = "before";
      Items(before + row.text + after)->GetPropertyStringValue(value);
      EXPECT_EQ(value, row.value) << before << row.text;
    }
  }
}

TEST(JsonIterators, Booleans) {
  for (auto const& [before, after] : kAround) {
    bool value = false;
    Items(before + "true" + after)->GetPropertyBoolValue(value);
    EXPECT_TRUE(value);
    Items(before + "false" + after)->GetPropertyBoolValue(value);
    EXPECT_FALSE(value);
  }
}

TEST(JsonIterators, CountsEveryItem) {
  for (auto const& [before, after] : kAround) {
    EXPECT_EQ(Items(before + "[]" + after)->GetMemberCount(), 0u);
    EXPECT_EQ(Items(before + "[null, 1, []]" + after)->GetMemberCount(), 3u);
    EXPECT_EQ(Items(before + "{}" + after)->GetMemberCount(), 0u);
    EXPECT_EQ(Items(before + "{\"a\": null, \"a\": 1}" + after)->GetMemberCount(), 2u);
  }
}

TEST(JsonIterators, NestedArraysCollectIndices) {
  Items const items("[0, [[1], [2, 3]]]");
  items->Increment();
  std::shared_ptr<JsonIterator> const inner = items->GetArrayIterator();
  EXPECT_EQ(inner->GetPropertyKey(), "top 1 0");
  inner->Increment();
  std::shared_ptr<JsonIterator> const innermost = inner->GetArrayIterator();
  innermost->Increment();
  EXPECT_EQ(innermost->GetPropertyKey(), "top 1 1 1");
}

TEST(JsonIterators, ArrayInAnObjectIsNamedAfterItsMember) {
  EXPECT_EQ(Items("{\"k\": [1]}")->GetArrayIterator()->GetPropertyKey(), "k 0");
  EXPECT_EQ(Items("{\"\": [1]}")->GetArrayIterator()->GetPropertyKey(), " 0");
  EXPECT_EQ(Items("{\"a\\u0000b\": [1]}")->GetArrayIterator()->GetPropertyKey(), std::string("a\0b 0", 5));
}

TEST(JsonIterators, ObjectLosesTheNameOfItsArray) {
  EXPECT_EQ(Items("[{\"k\": 1}]")->GetObjectIterator()->GetPropertyKey(), "k");
  EXPECT_EQ(Items("{\"a\": {\"k\": 1}}")->GetObjectIterator()->GetPropertyKey(), "k");
}

TEST(JsonIterators, IndicesCountPastOneDigit) {
  std::string text = "[0";
  for (int i = 1; i < 1235; ++i) {
    text += ",0";
  }
  Items const items(text + ']');
  for (int i = 0; i < 1234; ++i) {
    items->Increment();
  }
  EXPECT_EQ(items->GetPropertyKey(), "top 1234");
  items->Increment();
  EXPECT_FALSE(items->HasNext());
}

struct WrongKind {
  char const* function;
  char const* holds;  ///< what is asserted, of an array's element
  void (*use)(JsonIterator&);
  char const* value;
};

WrongKind const kWrongKinds[] = {
    {"GetObjectIterator", "mMemberCurrent->IsObject()", [](JsonIterator& i) { i.GetObjectIterator(); }, "[]"},
    {"GetArrayIterator", "mMemberCurrent->IsArray()", [](JsonIterator& i) { i.GetArrayIterator(); }, "{}"},
    {"GetPropertyStringValue", "mMemberCurrent->IsString()",
     [](JsonIterator& i) {
       std::string value;
       i.GetPropertyStringValue(value);
     },
     "1"},
    {"GetPropertyDoubleValue", "mMemberCurrent->IsNumber()",
     [](JsonIterator& i) {
       double value;
       i.GetPropertyDoubleValue(value);
     },
     "\"1\""},
    {"GetPropertyBoolValue", "mMemberCurrent->IsBool()",
     [](JsonIterator& i) {
       bool value;
       i.GetPropertyBoolValue(value);
     },
     "null"},
    {"GetMemberCount", "mMemberCurrent->IsObject() || mMemberCurrent->IsArray()",
     [](JsonIterator& i) { i.GetMemberCount(); }, "true"},
};

std::string NameOfRow(testing::TestParamInfo<WrongKind> const& row) {
  return row.param.function;
}

class JsonIteratorsDeathTest : public testing::TestWithParam<WrongKind> {};

void UseWith(std::string const& text, void (*use)(JsonIterator&)) {
  JDocument document;
  document.Parse(text.c_str());
  if (document.IsArray()) {
    JsonArrayIterator items("top", document);
    use(items);
  } else {
    JsonObjectIterator items(document);
    use(items);
  }
}

/// The report of a stop, as a regular expression.
std::string Stopped(std::string const& source, char const* function, std::string const& expression) {
  std::string quoted;
  for (char const c : expression) {
    quoted += std::string("()|").find(c) == std::string::npos ? std::string(1, c) : std::string("\\") + c;
  }
  return "source/NativeConverters/JSON/" + source + ":[0-9]+: " + function + ": Assertion `" + quoted + "' failed";
}

TEST_P(JsonIteratorsDeathTest, ValueOfAnotherKindStops) {
  WrongKind const& row = GetParam();
  EXPECT_DEATH(UseWith(std::string("[") + row.value + ']', row.use),
               Stopped("JsonArrayIterator", row.function, row.holds));
  std::string ofMember = row.holds;
  std::string const element = "mMemberCurrent->";
  for (std::size_t at = 0; (at = ofMember.find(element, at)) != std::string::npos;) {
    at += element.size();
    ofMember.insert(at, "value.");
  }
  EXPECT_DEATH(UseWith(std::string("{\"k\":") + row.value + '}', row.use),
               Stopped("JsonObjectIterator", row.function, ofMember));
}

INSTANTIATE_TEST_SUITE_P(Rows, JsonIteratorsDeathTest, testing::ValuesIn(kWrongKinds), NameOfRow);

}  // namespace
}  // namespace ns_sensor
