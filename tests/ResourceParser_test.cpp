#include "ResourceParser.h"

#include <gtest/gtest.h>

#include <limits>

#include "ExpectError.h"
#include "SK_ConverterHandler.h"
#include "SK_ConverterRegistry.h"
#include "SK_Localizer.h"
#include "SK_Module.h"
#include "SK_PluginManager.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::ExpectError;
using SK_NAMESPACE_INT::SK_Localizer;

class ResourceParserTest : public testing::Test {
 protected:
  ResourceParserTest() {
    SK_PluginManager::initialize("", "");
    ResourceParser::initialize();
  }
  ~ResourceParserTest() override {
    SK_PluginManager::terminate();
    SK_Localizer::Terminate();
  }

  void Parse(std::string const& converters) {
    SK_NAMESPACE_INT::JDocument document;
    ASSERT_FALSE(document.Parse(converters.c_str()).HasParseError()) << converters;
    ResourceParser(mModule).parseConverterArray(document);
  }

  static std::shared_ptr<SK_ConverterHandler> Handler(std::string const& extension) {
    return SK_PluginManager::getConverterHandler(extension);
  }

  std::shared_ptr<SK_Module> mModule = std::make_shared<SK_Module>("/no/such/module.tdx");
};

TEST_F(ResourceParserTest, ReadsEveryProperty) {
  Parse(R"([{"identifier":"com.example.one","name":[{"localeID":"en_US","value":"One"}],"version":2.5,)"
        R"("force_converter":true,"check_format":[{"byte_seq":"0x4D5A","length":2,"offset":0},)"
        R"({"byte_seq":"a\u0000b","length":3,"offset":5000000000}],"extensions":["one","ONE2"]}])");
  std::shared_ptr<SK_ConverterHandler> const handler = Handler("one");
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(Handler("one2"), handler);
  EXPECT_EQ(Handler("ONE2"), nullptr);
  EXPECT_EQ(handler->getUID(), "com.example.one");
  EXPECT_EQ(handler->getName(), "One");
  EXPECT_EQ(handler->getVersion(), 2.5);
  EXPECT_TRUE(handler->isForceConverter());
  EXPECT_EQ(handler->getModule(), mModule);
  ASSERT_EQ(handler->getCheckFormatSize(), 2u);
  EXPECT_EQ(handler->getCheckFormat(0).mByteSequence, "0x4D5A");
  EXPECT_EQ(handler->getCheckFormat(0).mLength, 2);
  EXPECT_EQ(handler->getCheckFormat(0).mOffset, 0);
  EXPECT_EQ(handler->getCheckFormat(1).mByteSequence, std::string("a\0b", 3));
  EXPECT_EQ(handler->getCheckFormat(1).mLength, 3);
  EXPECT_EQ(handler->getCheckFormat(1).mOffset, 5000000000);
}

TEST_F(ResourceParserTest, OptionalPropertiesHaveDefaults) {
  Parse(R"([{"identifier":"a","version":2,"extensions":["x","x","X"]}])");
  std::shared_ptr<SK_ConverterHandler> const handler = Handler("x");
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(handler->getName(), "");
  EXPECT_EQ(handler->getVersion(), 2.0);
  EXPECT_FALSE(handler->isForceConverter());
  EXPECT_EQ(handler->getCheckFormatSize(), 0u);
  // Duplicates collapse: this test and one entry of the manager.
  EXPECT_EQ(handler.use_count(), 2);
}

TEST_F(ResourceParserTest, OptionalPropertiesOfAnotherTypeAreIgnored) {
  Parse(R"([{"identifier":"a","name":"text","version":1,"force_converter":1,"check_format":{"byte_seq":7},)"
        R"("extensions":["x"],"unknown":[]}])");
  std::shared_ptr<SK_ConverterHandler> const handler = Handler("x");
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(handler->getName(), "");
  EXPECT_FALSE(handler->isForceConverter());
  EXPECT_EQ(handler->getCheckFormatSize(), 0u);
}

TEST_F(ResourceParserTest, NothingPassesFromOneConverterToTheNext) {
  Parse(R"([{"identifier":"a","name":[{"localeID":"en_US_x","value":"A"},{"localeID":"zz","value":"Z"}],"version":1,)"
        R"("force_converter":true,"check_format":[{"byte_seq":"a","length":1,"offset":0}],"extensions":["x"]},)"
        R"({"identifier":"b","name":[{"localeID":"zz","value":"Z"}],"version":2,"extensions":["y"]}])");
  std::shared_ptr<SK_ConverterHandler> const second = Handler("y");
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(Handler("x")->getName(), "A");
  EXPECT_EQ(Handler("x")->getUID(), "a");
  EXPECT_EQ(second->getName(), "");
  EXPECT_FALSE(second->isForceConverter());
  EXPECT_EQ(second->getCheckFormatSize(), 0u);
  EXPECT_EQ(second->getModule(), mModule);
}

TEST_F(ResourceParserTest, NextConverterClaimsNoExtensionOfTheOneBefore) {
  Parse(R"([{"identifier":"a","version":1,"extensions":["x"]},{"identifier":"a","version":2,"extensions":["y"]}])");
  ASSERT_NE(Handler("x"), nullptr);
  EXPECT_EQ(Handler("x")->getVersion(), 1);
  EXPECT_EQ(Handler("y")->getVersion(), 2);
}

TEST_F(ResourceParserTest, LengthsAreIntegersOf32BitsWithASign) {
  Parse(R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":-2147483648,"offset":-7},)"
        R"({"byte_seq":"a","length":2147483647,"offset":9223372036854775807}],"extensions":["x"]}])");
  ASSERT_NE(Handler("x"), nullptr);
  EXPECT_EQ(Handler("x")->getCheckFormat(0).mLength, std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(Handler("x")->getCheckFormat(0).mOffset, -7);
  EXPECT_EQ(Handler("x")->getCheckFormat(1).mLength, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(Handler("x")->getCheckFormat(1).mOffset, std::numeric_limits<std::int64_t>::max());
}

TEST_F(ResourceParserTest, AnEmptyArrayHasNoConverters) {
  EXPECT_NO_THROW(Parse("[]"));
}

struct VersionRow {
  char const* text;
  double expected;
};
VersionRow const kVersions[] = {{"2", 2}, {"-3", -3}, {"0.25", 0.25}, {"1e3", 1000}, {"5000000000", 5e9}};

TEST_F(ResourceParserTest, VersionsAreNumbersOfAnyKind) {
  for (VersionRow const& row : kVersions) {
    SK_PluginManager::initialize("", "");
    Parse(std::string(R"([{"identifier":"a","version":)") + row.text + R"(,"extensions":["x"]}])");
    ASSERT_NE(Handler("x"), nullptr) << row.text;
    EXPECT_EQ(Handler("x")->getVersion(), row.expected) << row.text;
  }
}

struct NameRow {
  char const* locale;
  char const* names;
  char const* expected;
};
NameRow const kNames[] = {
    {"de_DE", R"([{"localeID":"en_US","value":"E"},{"localeID":"de_DE","value":"D"}])", "D"},
    {"de_DE", R"([{"localeID":"fr_FR","value":"F"},{"localeID":"en_US","value":"E"}])", "E"},
    {"de_DE", R"([{"localeID":"en_US_POSIX","value":"first"},{"localeID":"en_US","value":"second"}])", "first"},
    {"de_DE", R"([{"localeID":"en_GB","value":"B"},{"localeID":"de","value":"D"}])", ""},
    {"de_DE", R"([{"localeID":"en_U","value":"U"},{"localeID":"xen_US","value":"X"}])", ""},
    {"de_DE", R"([])", ""},
    {"de_DE", R"([{"localeID":"de_DE","value":"first"},{"localeID":"de_DE","value":"second"}])", "first"},
    {"en_US", R"([{"localeID":"en_US_POSIX","value":"P"},{"localeID":"en_US","value":"E"}])", "E"},
    // The walk ends at the match: what comes behind it is not looked at.
    {"de_DE", R"([{"localeID":"de_DE","value":"D"},{"localeID":7},8])", "D"},
};

TEST_F(ResourceParserTest, NameIsThatOfTheLocaleElseAmericanEnglish) {
  for (NameRow const& row : kNames) {
    SK_Localizer::Terminate();
    SK_Localizer::Initialize(row.locale);
    SK_PluginManager::initialize("", "");
    Parse(std::string(R"([{"identifier":"a","name":)") + row.names + R"(,"version":1,"extensions":["x"]}])");
    ASSERT_NE(Handler("x"), nullptr) << row.names;
    EXPECT_EQ(Handler("x")->getName(), row.expected) << row.names;
  }
}

struct Refused {
  char const* name;
  char const* converters;
  int code;
  char const* message;
};

#define SCHEMA(key) 1504, "Schema violation of Property: \"" key "\"."
#define MANDATORY 1503, "Mandatory property not present."

Refused const kRefused[] = {
    {"NoArray", R"({})", 1504, R"(Invalid : "converter" type, expected type : "JSON Array".)"},
    {"Null", R"(null)", 1504, R"(Invalid : "converter" type, expected type : "JSON Array".)"},
    {"ElementNoObject", R"([5])", SCHEMA("identifier")},
    {"IdentifierMissing", R"([{"version":1,"extensions":["x"]}])", SCHEMA("identifier")},
    {"IdentifierNoText", R"([{"identifier":5,"version":1,"extensions":["x"]}])", SCHEMA("identifier")},
    {"IdentifierEmpty", R"([{"identifier":"","version":1,"extensions":["x"]}])", MANDATORY},
    {"NameEntryNoObject", R"([{"identifier":"a","name":["A"],"version":1,"extensions":["x"]}])", SCHEMA("localeID")},
    {"LocaleMissing", R"([{"identifier":"a","name":[{"value":"A"}],"version":1,"extensions":["x"]}])",
     SCHEMA("localeID")},
    {"LocaleNoText", R"([{"identifier":"a","name":[{"localeID":1,"value":"A"}],"version":1,"extensions":["x"]}])",
     SCHEMA("localeID")},
    {"ValueMissing", R"([{"identifier":"a","name":[{"localeID":"en_US"}],"version":1,"extensions":["x"]}])",
     SCHEMA("value")},
    {"ValueNoText", R"([{"identifier":"a","name":[{"localeID":"en_US","value":1}],"version":1,"extensions":["x"]}])",
     SCHEMA("value")},
    {"VersionMissing", R"([{"identifier":"a","extensions":["x"]}])", SCHEMA("version")},
    {"VersionText", R"([{"identifier":"a","version":"1","extensions":["x"]}])", SCHEMA("version")},
    {"VersionFlag", R"([{"identifier":"a","version":true,"extensions":["x"]}])", SCHEMA("version")},
    {"CheckFormatNoObject", R"([{"identifier":"a","version":1,"check_format":[1],"extensions":["x"]}])",
     SCHEMA("byte_seq")},
    {"BytesMissing", R"([{"identifier":"a","version":1,"check_format":[{"length":1,"offset":0}],"extensions":["x"]}])",
     SCHEMA("byte_seq")},
    {"BytesNoText",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":1,"length":1,"offset":0}],"extensions":["x"]}])",
     SCHEMA("byte_seq")},
    {"LengthMissing",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","offset":0}],"extensions":["x"]}])",
     SCHEMA("length")},
    {"LengthFraction",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":1.0,"offset":0}],"extensions":["x"]}])",
     SCHEMA("length")},
    {"LengthText",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":"1","offset":0}],"extensions":["x"]}])",
     SCHEMA("length")},
    {"LengthOfMoreThan32Bits",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":4294967297,"offset":0}]}])",
     SCHEMA("length")},
    {"LengthOf32BitsWithoutSign",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":2147483648,"offset":0}]}])",
     SCHEMA("length")},
    {"OffsetMissing",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":1}],"extensions":["x"]}])",
     SCHEMA("offset")},
    {"OffsetFraction",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":1,"offset":0.5}],"extensions":["x"]}])",
     SCHEMA("offset")},
    {"OffsetOfMoreThan64Bits",
     R"([{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":1,"offset":9223372036854775808}]}])",
     SCHEMA("offset")},
    {"ExtensionNoText", R"([{"identifier":"a","version":1,"extensions":["x",1]}])", SCHEMA("extensions")},
    {"ExtensionsMissing", R"([{"identifier":"a","version":1}])", MANDATORY},
    {"ExtensionsNoArray", R"([{"identifier":"a","version":1,"extensions":"x"}])", MANDATORY},
    {"ExtensionsEmpty", R"([{"identifier":"a","version":1,"extensions":[]}])", MANDATORY},
};

TEST_F(ResourceParserTest, RefusesWhatBreaksARule) {
  for (Refused const& row : kRefused) {
    SCOPED_TRACE(row.name);
    ExpectError([&] { Parse(row.converters); }, row.code, row.message);
    EXPECT_EQ(Handler("x"), nullptr);
  }
}

TEST_F(ResourceParserTest, StopsAtTheFirstFault) {
  ExpectError(
      [&] {
        Parse(R"([{"identifier":"a","version":1,"extensions":["x"]},{"identifier":"b"},)"
              R"({"identifier":"c","version":1,"extensions":["z"]}])");
      },
      SCHEMA("version"));
  EXPECT_NE(Handler("x"), nullptr);
  EXPECT_EQ(Handler("z"), nullptr);
}

TEST_F(ResourceParserTest, NothingUnderConstructionCannotBeAdded) {
  ExpectError([&] { ResourceParser(mModule).addHandler(); }, MANDATORY);
}

}  // namespace
}  // namespace SK_PLUGIN
