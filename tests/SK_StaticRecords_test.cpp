#include "SK_StaticRecords.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "FailingMemory.h"

namespace SK_PLUGIN {
namespace {

using Record = SK_StaticRecords::Record;

void ExpectNames(Record const& record, SK_StaticRecords::eKind kind, std::string const& matchName,
                 std::string const& displayName) {
  EXPECT_EQ(record.kind, kind);
  EXPECT_EQ(record.matchName, matchName);
  EXPECT_EQ(record.displayName, displayName);
}

TEST(SK_StaticRecords, KeepNodesOfAllKindsInTheirOrderForAnyReader) {
  SK_StaticRecords records;
  records.AddNumber("n1", "a number", -2.5);
  records.AddString("s1", "a text", "value");
  records.AddBool("b1", "a flag", true);
  records.AddBool("b2", "", false);
  records.AddString("", "", "");
  records.AddNumber("n2", "none", std::numeric_limits<double>::quiet_NaN());
  records.AddNumber("n3", "zero", -0.0);
  for (int round = 0; round < 2; ++round) {
    SK_StaticRecords::Reader reader(records);
    Record record = reader.Next();
    ExpectNames(record, SK_StaticRecords::kNumber, "n1", "a number");
    EXPECT_EQ(record.number, -2.5);
    record = reader.Next();
    ExpectNames(record, SK_StaticRecords::kString, "s1", "a text");
    EXPECT_EQ(record.text, "value");
    record = reader.Next();
    ExpectNames(record, SK_StaticRecords::kBool, "b1", "a flag");
    EXPECT_TRUE(record.flag);
    record = reader.Next();
    ExpectNames(record, SK_StaticRecords::kBool, "b2", "");
    EXPECT_FALSE(record.flag);
    record = reader.Next();
    ExpectNames(record, SK_StaticRecords::kString, "", "");
    EXPECT_EQ(record.text, "");
    EXPECT_TRUE(std::isnan(reader.Next().number));
    EXPECT_TRUE(std::signbit(reader.Next().number));
  }
}

TEST(SK_StaticRecords, EscapeDisplayNamesAndTextsAndNoMatchNames) {
  SK_StaticRecords records;
  records.AddString("m\"\n", "d\"\n", "v\\\t");
  records.AddNumber("m\"", "a long name with a \"quotation\"", 1);
  records.AddBool("m\"", "\b", true);
  SK_StaticRecords::Reader reader(records);
  Record const string = reader.Next();
  ExpectNames(string, SK_StaticRecords::kString, "m\"\n", R"(d\"\n)");
  EXPECT_EQ(string.text, R"(v\\\t)");
  ExpectNames(reader.Next(), SK_StaticRecords::kNumber, "m\"", R"(a long name with a \"quotation\")");
  ExpectNames(reader.Next(), SK_StaticRecords::kBool, "m\"", R"(\b)");
}

TEST(SK_StaticRecords, TextsHaveAnyLengthAndAnyByte) {
  std::mt19937 random(3);
  std::vector<std::string> texts;
  for (std::size_t const size : {0, 1, 50, 64, 127, 128, 16383, 16384, 65536, 3000000, 2}) {
    texts.emplace_back(size, static_cast<char>('A' + texts.size()));
  }
  for (int i = 0; i < 20000; ++i) {
    texts.emplace_back(random() % 20, static_cast<char>('\x80' + random() % 128));
  }
  texts.emplace_back("a\0b", 3);
  SK_StaticRecords records;
  for (std::string const& text : texts) {
    records.AddString(text, text, text);
  }
  SK_StaticRecords::Reader reader(records);
  for (std::string const& text : texts) {
    Record const record = reader.Next();
    ASSERT_TRUE(record.matchName == text && record.displayName == text && record.text == text) << text.size();
  }
}

TEST(SK_StaticRecords, GroupsAreCopiedWithWhatIsInThem) {
  SK_StaticRecords inner;
  inner.AddBool("b", "a flag", true);
  for (int i = 0; i < 50; ++i) {
    inner.AddNumber("n", "a number in a further piece", i);
  }
  SK_StaticRecords outer;
  outer.AddBool("first", "first", true);
  ASSERT_TRUE(outer.AddSmallGroup("g", "escaped \\n", inner));
  SK_StaticRecords records;
  ASSERT_TRUE(records.AddSmallGroup("h", "H", outer));
  records.AddBool("last", "last", true);
  inner.AddBool("too late", "", true);

  SK_StaticRecords::Reader reader(records);
  ExpectNames(reader.Next(), SK_StaticRecords::kGroup, "h", "H");
  ExpectNames(reader.Next(), SK_StaticRecords::kBool, "first", "first");
  ExpectNames(reader.Next(), SK_StaticRecords::kGroup, "g", "escaped \\n");
  ExpectNames(reader.Next(), SK_StaticRecords::kBool, "b", "a flag");
  for (int i = 0; i < 50; ++i) {
    Record const record = reader.Next();
    ExpectNames(record, SK_StaticRecords::kNumber, "n", "a number in a further piece");
    EXPECT_EQ(record.number, i);
  }
  ExpectNames(reader.Next(), SK_StaticRecords::kEndOfGroup, "", "");
  ExpectNames(reader.Next(), SK_StaticRecords::kEndOfGroup, "", "");
  ExpectNames(reader.Next(), SK_StaticRecords::kBool, "last", "last");
}

TEST(SK_StaticRecords, LargeGroupsAreNotCopied) {
  SK_StaticRecords children;
  children.AddBool("b", "B", true);
  SK_StaticRecords records;
  // The group's kind, two lengths of two bytes and of one, the flag with its six bytes, and the end.
  std::string const name(4096 - 1 - 2 - 1 - 6 - 1, 'n');
  EXPECT_FALSE(records.AddSmallGroup(name + 'n', "", children));
  EXPECT_TRUE(records.AddSmallGroup(name, "", children));
  SK_StaticRecords::Reader reader(records);
  EXPECT_EQ(reader.Next().matchName, name);
}

TEST(SK_StaticRecords, WithoutMemoryNothingIsAdded) {
  SK_StaticRecords records;
  records.AddBool("first", "first", true);
  std::string const longText(1000, '"');
  int failures = 0;
  for (bool isAdded = false; !isAdded;) {
    senmark_test::FailingMemory const memory(static_cast<std::uint64_t>(failures) + 1);
    try {
      records.AddString("second", longText, longText);
      isAdded = true;
    } catch (std::bad_alloc const&) {
      ++failures;
    }
  }
  EXPECT_GE(failures, 3);  // two escaped texts and a piece of memory
  records.AddBool("third", "third", true);
  SK_StaticRecords::Reader reader(records);
  EXPECT_EQ(reader.Next().matchName, "first");
  EXPECT_EQ(reader.Next().matchName, "second");
  EXPECT_EQ(reader.Next().matchName, "third");
}

}  // namespace
}  // namespace SK_PLUGIN
