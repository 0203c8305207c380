#include "ModuleManifest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "ModuleFolders.h"
#include "ModuleVariants.h"
#include "senmark/Host.h"

namespace {

using senmark_test::ModuleFolders;
using senmark_tool::eSeverity;
using senmark_tool::Finding;
using senmark_tool::ModuleManifest;

constexpr char kWhere[] = "manifest";
/// With nothing to find fault with.
constexpr char kGood[] = R"({"converter":[{"identifier":"uid","name":[{"localeID":"en_US","value":"N"}],"version":1,)"
                         R"("check_format":[{"byte_seq":"AB","length":2,"offset":0}],"extensions":["ext"]}]})";

/// The good manifest with a part replaced.
std::string With(std::string const& part, std::string const& by) {
  std::string text = kGood;
  std::size_t const at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return text.replace(at, part.size(), by);
}

std::vector<Finding> Findings(std::string const& text) {
  return ModuleManifest(text, kWhere).Findings().All();
}

/// Whether the library uses a module with this manifest, at least for the converter that has the extension "ext".
bool IsListed(ModuleFolders const& modules, std::string const& text, char const* locale,
              std::string const& wanted = "ext") {
  std::ofstream(modules.ResourcePath("M.tdx", "SKPLUGINUIDS"), std::ios::binary) << text;
  senmark::Options options;
  options.pluginFolder = modules.Path();
  options.locale = locale;
  std::vector<senmark::Format> const formats = senmark::Senmark(senmark::Library::Linked(), options).formats();
  return std::any_of(formats.begin(), formats.end(),
                     [&](senmark::Format const& format) { return format.extension == wanted; });
}

/// One rule. In the text, "^" stands before the byte that the finding is about.
struct Rule {
  char const* name;
  eSeverity severity;
  std::string text;
  char const* message;
};

std::ostream& operator<<(std::ostream& out, Rule const& rule) {
  return out << rule.name;
}

constexpr eSeverity kError = eSeverity::kError;
constexpr eSeverity kWarning = eSeverity::kWarning;
constexpr eSeverity kNote = eSeverity::kNote;

std::string LengthText(int length, std::string const& bytes) {
  return With(R"("byte_seq":"AB","length":2)", R"("byte_seq":")" + bytes + R"(","length":)" + std::to_string(length));
}

Rule const kRules[] = {
    {"NoText", kError, "^",
     "this is no JSON: The document is empty. The library reads no manifest behind this one, either."},
    {"NoJson", kError, R"({"converter"^})",
     "this is no JSON: Missing a colon after a name of object member. The library reads no manifest behind this one, "
     "either."},
    {"TextBehindTheEnd", kError, std::string(kGood) + "\n^x",
     "this is no JSON: The document root must not be followed by other values. The library reads no manifest behind "
     "this one, either."},
    {"Mark", kError, std::string("^\xEF\xBB\xBF") + kGood, "the file begins with a byte order mark, which is no JSON"},
    {"NulInText", kWarning, std::string(kGood) + "^" + std::string(1, '\0') + "x",
     "a byte of 0 ends the text: what follows is not read"},
    {"NoUtf8", kWarning, With(R"("N")", "\"^\xFF\""), "from here on this is no UTF-8; hosts cannot show such a text"},
    {"RootIsNoObject", kError, "^[]", "the manifest has to be an object"},
    {"NoConverters", kError, "^{}", "\"converter\" is missing, the array of the module's converters"},
    {"ConvertersAreNoArray", kError, R"({"converter":^{"identifier":"uid"}})",
     "\"converter\" has to be an array, even of one converter"},
    {"NoConverter", kError, R"({"converter":^[]})", "no converter: the module offers nothing"},
    {"ConverterIsNoObject", kError, R"({"converter":[^"uid"]})", "a converter has to be an object"},
    {"UnknownTopKey", kWarning, With(R"({"converter")", R"({^"comment":1,"converter")"),
     "\"comment\" means nothing to the library"},
    {"MisspeltKey", kWarning, With(R"("version")", R"(^"force_convertor":true,"version")"),
     "\"force_convertor\" means nothing to the library; is \"force_converter\" meant?"},
    {"KeyTwice", kWarning, With(R"("version":1)", R"("version":1,^"version":2)"),
     "\"version\" is there already; the first one counts"},
    {"NoIdentifier", kError, With(R"({"identifier":"uid",)", "^{"), "\"identifier\" is missing, a string"},
    {"IdentifierIsNoText", kError, With(R"("uid")", "^7"), "\"identifier\" has to be a string"},
    {"EmptyIdentifier", kError, With(R"("uid")", "^\"\""), "\"identifier\" must not be empty"},
    {"NulInIdentifier", kWarning, With(R"("uid")", R"(^"a\u0000b")"),
     "the module is told the identifier only up to the byte of 0 in it"},
    {"NoName", kWarning,
     With(R"({"identifier":"uid","name":[{"localeID":"en_US","value":"N"}])", R"(^{"identifier":"uid")"),
     "no \"name\": hosts show an empty one"},
    {"NameIsNoArray", kWarning, With(R"([{"localeID":"en_US","value":"N"}])", R"(^"N")"),
     "\"name\" is no array and so ignored: hosts show an empty name"},
    {"NameEntryIsNoObject", kError, With(R"("value":"N"})", R"("value":"N"},^1)"),
     "an entry of \"name\" has to be an object"},
    {"NoLocale", kError, With(R"("value":"N"})", R"("value":"N"},^{"value":"M"})"),
     "\"localeID\" is missing, a string"},
    {"LocaleIsNoText", kError, With(R"("value":"N"})", R"("value":"N"},{"localeID":^1,"value":"M"})"),
     "\"localeID\" has to be a string"},
    {"NoValue", kError, With(R"("value":"N"})", R"("value":"N"},^{"localeID":"de_DE"})"),
     "\"value\" is missing, a string"},
    {"ValueIsNoText", kError, With(R"("value":"N"})", R"("value":"N"},{"localeID":"de_DE","value":^null})"),
     "\"value\" has to be a string"},
    {"EmptyValue", kWarning, With(R"("N")", R"(^"")"), "hosts show an empty name"},
    {"NoEnglishName", kWarning, With(R"([{"localeID":"en_US")", R"(^[{"localeID":"de_DE")"),
     "no name for \"en_US\": hosts of other languages show an empty one"},
    {"LocaleTwice", kWarning, With(R"("value":"N"})", R"("value":"N"},{"localeID":^"en_US","value":"M"})"),
     "\"en_US\" is there already; the first one counts"},
    {"LocaleInAnotherForm", kWarning, With(R"("value":"N"})", R"("value":"N"},{"localeID":^"de-DE","value":"M"})"),
     "\"de-DE\" fits no host: locales are written like \"en_US\""},
    {"UnknownKeyInName", kWarning, With(R"("value":"N"})", R"("value":"N",^"text":"M"})"),
     "\"text\" means nothing to the library"},
    {"NoVersion", kError,
     With(R"({"identifier":"uid","name":[{"localeID":"en_US","value":"N"}],"version":1)",
          R"(^{"identifier":"uid","name":[{"localeID":"en_US","value":"N"}])"),
     "\"version\" is missing, a number"},
    {"VersionIsText", kError, With(R"("version":1)", R"("version":^"1")"),
     "\"version\" has to be a number, without quotes"},
    {"ForceIsNoFlag", kWarning, With(R"("version":1)", R"("version":1,"force_converter":^1)"),
     "\"force_converter\" is neither true nor false and so ignored"},
    {"SignaturesAreNoArray", kWarning, With(R"([{"byte_seq":"AB","length":2,"offset":0}])", R"(^{})"),
     "\"check_format\" is no array and so ignored: the code of the module is loaded for every file"},
    {"SignatureIsNoObject", kError, With(R"("offset":0})", R"("offset":0},^"AB")"),
     "an entry of \"check_format\" has to be an object"},
    {"NoBytes", kError, With(R"({"byte_seq":"AB",)", "^{"), "\"byte_seq\" is missing, a string"},
    {"BytesAreNoText", kError, With(R"("AB")", "^171"), "\"byte_seq\" has to be a string"},
    {"NoLength", kError, With(R"({"byte_seq":"AB","length":2)", R"(^{"byte_seq":"AB")"),
     "\"length\" is missing, an integer"},
    {"LengthIsText", kError, With(R"("length":2)", R"("length":^"2")"),
     "\"length\" has to be an integer, without quotes or a point"},
    {"LengthHasAPoint", kError, With(R"("length":2)", R"("length":^2.0)"),
     "\"length\" has to be an integer, without quotes or a point"},
    {"LengthTooWide", kError, With(R"("length":2)", R"("length":^2147483648)"),
     "\"length\" has to be an integer of 32 bits"},
    {"LengthTooLow", kError, With(R"("length":2)", R"("length":^-2147483649)"),
     "\"length\" has to be an integer of 32 bits"},
    {"NoOffset", kError, With(R"({"byte_seq":"AB","length":2,"offset":0})", R"(^{"byte_seq":"AB","length":2})"),
     "\"offset\" is missing, an integer"},
    {"OffsetHasAPoint", kError, With(R"("offset":0)", R"("offset":^0.5)"),
     "\"offset\" has to be an integer, without quotes or a point"},
    {"OffsetTooWide", kError, With(R"("offset":0)", R"("offset":^9223372036854775808)"),
     "\"offset\" has to be an integer, without quotes or a point"},
    {"OffsetBeforeTheStart", kWarning, With(R"("offset":0)", R"("offset":^-1)"),
     "no file has bytes before its start: the converter takes none"},
    {"NoLengthAtAll", kWarning, With(R"("length":2)", R"("length":^0)"),
     "a signature of no length fits nothing: the converter takes no file"},
    {"NegativeLength", kWarning, With(R"("length":2)", R"("length":^-2147483648)"),
     "a signature of no length fits nothing: the converter takes no file"},
    {"EmptyBytes", kWarning, With(R"("AB")", R"(^"")"), "an empty signature fits nothing: the converter takes no file"},
    {"LengthIsCut", kWarning, With(R"("AB","length":2)", '"' + std::string(1024, 'A') + R"(","length":^1025)"),
     "the length is cut to 1024 bytes, the most that are compared"},
    {"TextTooShort", kWarning, With(R"("AB","length":2)", R"(^"AB","length":3)"),
     "its 2 bytes are fewer than its length of 3: no file ever fits"},
    {"TextTooLong", kWarning, With(R"("AB","length":2)", R"(^"ABC","length":2)"),
     "only the first 2 bytes of it are compared"},
    {"HexadecimalOfOtherLength", kWarning, With(R"("AB","length":2)", R"(^"0x4D5A00","length":2)"),
     "this is compared as text: hexadecimal would have 6 characters, \"0x\" and two for each byte"},
    {"HexadecimalTooShort", kWarning, With(R"("AB","length":2)", R"(^"0x4D","length":5)"),
     "this is compared as text: hexadecimal would have 12 characters, \"0x\" and two for each byte; and it is shorter "
     "than its length, so that no file ever fits"},
    {"HexadecimalOfOtherDigits", kWarning, With(R"("AB","length":2)", R"(^"0x4D5G","length":2)"),
     "there are other characters than hexadecimal digits: no file will fit as meant"},
    {"HexadecimalWithUpperCaseMark", kWarning, With(R"("AB","length":2)", R"(^"0X4D5A","length":2)"),
     "this is compared as text: hexadecimal begins with \"0x\", in lower case"},
    {"UnknownKeyInSignature", kWarning, With(R"("offset":0)", R"("offset":0,^"ofset":1)"),
     "\"ofset\" means nothing to the library; is \"offset\" meant?"},
    {"NoExtensions", kError,
     With(R"(,"extensions":["ext"])", "").replace(With(R"(,"extensions":["ext"])", "").find("{\"identifier"), 1, "^{"),
     "\"extensions\" is missing, an array with at least one"},
    {"ExtensionsAreNoArray", kError, With(R"(["ext"])", R"(^"ext")"), "\"extensions\" has to be an array, even of one"},
    {"ExtensionsAreEmpty", kError, With(R"(["ext"])", "^[]"), "at least one extension is needed"},
    {"ExtensionIsNoText", kError, With(R"(["ext"])", R"(["ext",^1])"), "an extension has to be a string"},
    {"UpperCase", kNote, With(R"(["ext"])", R"([^"EXT"])"),
     "extensions are compared in lower case: this one counts as \"ext\""},
    {"ExtensionTwice", kNote, With(R"(["ext"])", R"(["ext",^"ext"])"), "the extension \"ext\" is there already"},
    {"LeadingPoint", kWarning, With(R"(["ext"])", R"(["ext",^".abc"])"),
     "the point does not belong to the extension: write \"abc\", or no file has this one"},
    {"PointWithin", kWarning, With(R"(["ext"])", R"(["ext",^"tar.gz"])"),
     "no file has this extension: it is what follows the last point of the name"},
    {"OwnFormat", kWarning, With(R"(["ext"])", R"(["ext",^"tdjson"])"),
     "files of this name are the library's own: no converter is asked for them"},
    {"NativeExtension", kNote, With(R"(["ext"])", R"(["ext",^"csv"])"),
     "the library has a converter of its own for \"csv\"; the module is asked first, and hosts show the name of the "
     "library's"},
    {"EmptyExtension", kNote, With(R"(["ext"])", R"(["ext",^""])"), "an empty extension stands for files without any"},
    {"IdentifierTwice", kWarning,
     With("]}]}",
          R"(]},{"identifier":^"uid","name":[{"localeID":"en_US","value":"N"}],"version":1,"extensions":["b"]}]})"),
     "\"uid\" names another converter of this module, too: they cannot be told apart"},
    {"ExtensionOfAnother", kWarning,
     With("]}]}",
          R"(]},{"identifier":"two","name":[{"localeID":"en_US","value":"N"}],"version":1,"extensions":^["ext"]}]})"),
     "\"ext\" goes to the converter \"uid\", which comes before this one"},
};

class ModuleManifestRule : public testing::TestWithParam<Rule> {
 protected:
  ModuleManifestRule() : mText(GetParam().text), mOffset(mText.find('^')) { mText.erase(mOffset, 1); }

  std::string mText;
  std::size_t mOffset;
};

TEST_P(ModuleManifestRule, IsToldWithItsPlace) {
  std::vector<Finding> findings = Findings(mText);
  if (GetParam().severity == kError && mText.find("converter") != std::string::npos && findings.size() > 1) {
    EXPECT_EQ(findings.back().text,
              "the library stops at the first error: converters from there on are not used, and neither are modules "
              "that it would read after this one");
    findings.pop_back();
  }
  findings.erase(std::remove_if(findings.begin(), findings.end(), [](Finding const& f) { return !f.place; }),
                 findings.end());
  ASSERT_EQ(findings.size(), 1u) << mText;
  Finding const& finding = findings.front();
  EXPECT_EQ(finding.text, GetParam().message);
  EXPECT_EQ(finding.severity, GetParam().severity);
  EXPECT_EQ(finding.where, kWhere);
  EXPECT_EQ(finding.place->offset, mOffset) << mText;
  std::string const before = mText.substr(0, mOffset);
  EXPECT_EQ(finding.place->line, 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')));
  EXPECT_EQ(finding.place->column, mOffset - (before.rfind('\n') + 1) + 1);
}

// A host whose locale no name fits reads all of them.
TEST_P(ModuleManifestRule, IsAnErrorIfTheLibraryRefusesIt) {
  senmark_test::TempFolder const folder;
  ModuleFolders const modules(folder);
  modules.Add("M.tdx", "", "good", senmark_test::kBareModule);
  EXPECT_EQ(IsListed(modules, mText, "zz_ZZ"), GetParam().severity != kError) << mText;
}

INSTANTIATE_TEST_SUITE_P(Rules, ModuleManifestRule, testing::ValuesIn(kRules),
                         [](auto const& rule) { return std::string(rule.param.name); });

TEST(ModuleManifest, GoodOneHasNoFindings) {
  ModuleManifest const manifest(kGood, kWhere);
  EXPECT_TRUE(manifest.Findings().All().empty());
  ASSERT_EQ(manifest.Converters().size(), 1u);
  EXPECT_EQ(manifest.Converters()[0].identifier, "uid");
  EXPECT_EQ(manifest.Converters()[0].extensions, std::vector<std::string>{"ext"});
  EXPECT_TRUE(manifest.Converters()[0].hasSignature);
  EXPECT_FALSE(
      ModuleManifest(With(R"({"byte_seq":"AB","length":2,"offset":0})", ""), kWhere).Converters()[0].hasSignature);
}

TEST(ModuleManifest, WhatIsRightAtItsLimitsHasNoFindings) {
  for (std::string const& text : {
           LengthText(1, "A"),
           LengthText(1024, std::string(1024, 'A')),
           LengthText(2, "0x4d5A"),
           LengthText(1024, "0x" + std::string(2048, '0')),
           LengthText(6, "0x4D5A"),
           With(R"("version":1)", R"("version":-1.5e3)"),
           With(R"("version":1)", R"("version":1,"force_converter":true)"),
           With(R"("offset":0)", R"("offset":9223372036854775807)"),
           With(R"("en_US")", R"("en_US_POSIX")"),
           With(R"("value":"N"})", R"("value":"N"},{"localeID":"de_DE","value":"M"})"),
       }) {
    std::vector<Finding> const findings = Findings(text);
    // Six characters that begin with 0x are text of length 6, which is worth a word.
    bool const isMarked = text.find("0x4D5A") != std::string::npos && text.find("\"length\":6") != std::string::npos;
    EXPECT_EQ(findings.size(), isMarked ? 1u : 0u) << text << '\n' << (findings.empty() ? "" : findings[0].text);
  }
}

TEST(ModuleManifest, EveryViolationIsToldInTheOrderOfTheText) {
  std::vector<Finding> const findings = Findings(R"({"converter":[
  {"identifier":"", "version":"2"},
  {"version":1, "check_format":[{"byte_seq":1}], "extensions":[2]}
]})");
  std::vector<std::string> lines;
  for (Finding const& finding : findings) {
    lines.push_back(finding.place ? std::to_string(finding.place->line) + ':' + std::to_string(finding.place->column) +
                                        ' ' + finding.text
                                  : "note");
  }
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "2:17 \"identifier\" must not be empty",
                       "2:3 no \"name\": hosts show an empty one",
                       "2:31 \"version\" has to be a number, without quotes",
                       "2:3 \"extensions\" is missing, an array with at least one",
                       "3:3 \"identifier\" is missing, a string",
                       "3:3 no \"name\": hosts show an empty one",
                       "3:45 \"byte_seq\" has to be a string",
                       "3:33 \"length\" is missing, an integer",
                       "3:33 \"offset\" is missing, an integer",
                       "3:64 an extension has to be a string",
                       "note",
                   }));
}

// The walk over names ends at the first that fits: hosts of that locale do not see the rest.
TEST(ModuleManifest, ErrorThatOnlySomeHostsMeetIsOne) {
  senmark_test::TempFolder const folder;
  ModuleFolders const modules(folder);
  modules.Add("M.tdx", "", "good", senmark_test::kBareModule);
  std::string const text = With(R"("value":"N"})", R"("value":"N"},{"localeID":"de_DE"})");
  EXPECT_TRUE(ModuleManifest(text, kWhere).Findings().HasErrors());
  EXPECT_TRUE(IsListed(modules, text, "en_US"));
  EXPECT_FALSE(IsListed(modules, text, "fr_FR"));
}

TEST(ModuleManifest, ConvertersBeforeAnErrorAreUsedAllTheSame) {
  senmark_test::TempFolder const folder;
  ModuleFolders const modules(folder);
  modules.Add("M.tdx", "", "good", senmark_test::kBareModule);
  std::string const text = With("]}]}", R"(]},{"identifier":"two","version":"x","extensions":["b"]}]})");
  EXPECT_TRUE(ModuleManifest(text, kWhere).Findings().HasErrors());
  EXPECT_TRUE(IsListed(modules, text, "en_US"));
  EXPECT_FALSE(IsListed(modules, text, "en_US", "b"));
}

/// Manifests that differ from the good one in one value or key, and some that are no JSON any more.
std::vector<std::string> Others() {
  std::vector<std::string> others;
  for (char const* const part : {R"([{"identifier")",
                                 R"("identifier")",
                                 R"("uid")",
                                 R"("name")",
                                 R"([{"localeID":"en_US","value":"N"}])",
                                 R"("localeID")",
                                 R"("en_US")",
                                 R"("value")",
                                 R"("N")",
                                 R"("version")",
                                 "1,",
                                 R"("check_format")",
                                 R"([{"byte_seq":"AB","length":2,"offset":0}])",
                                 R"("byte_seq")",
                                 R"("AB")",
                                 R"("length")",
                                 "2,",
                                 R"("offset")",
                                 "0}",
                                 R"("extensions")",
                                 R"(["ext"])",
                                 R"("ext")"}) {
    std::string const closing = std::string(part).find_first_of(",}") == 1 ? std::string(part).substr(1) : "";
    for (char const* const by : {"null",
                                 "true",
                                 "0",
                                 "-1",
                                 "1.5",
                                 "2147483647",
                                 "2147483648",
                                 "-2147483649",
                                 "9223372036854775807",
                                 "9223372036854775808",
                                 "18446744073709551616",
                                 "1e400",
                                 R"("")",
                                 R"("ext")",
                                 R"("1")",
                                 "[]",
                                 "{}",
                                 "[1]",
                                 R"(["ext"])",
                                 R"([{"ext":1}])",
                                 R"({"identifier":"a"})",
                                 "",
                                 "nonsense"}) {
      others.push_back(With(part, by + closing));
    }
  }
  for (senmark_tool::Variant const& damaged : senmark_tool::Mutated(kGood)) {
    others.push_back(damaged.bytes);
  }
  return others;
}

// Whatever stands in a manifest, both sides agree.
TEST(ModuleManifest, ErrorsAreWhatTheLibraryRefuses) {
  senmark_test::TempFolder const folder;
  ModuleFolders const modules(folder);
  modules.Add("M.tdx", "", "good", senmark_test::kBareModule);
  std::size_t refused = 0;
  std::size_t taken = 0;
  for (std::string const& text : Others()) {
    ModuleManifest const manifest(text, kWhere);
    bool const isTaken = !manifest.Findings().HasErrors();
    ++(isTaken ? taken : refused);
    std::string const extension = isTaken ? manifest.Converters()[0].extensions[0] : std::string("ext");
    EXPECT_EQ(IsListed(modules, text, "zz_ZZ", extension), isTaken) << text;
  }
  EXPECT_GT(refused, 200u);
  EXPECT_GT(taken, 50u);
}

TEST(ModuleManifest, DeepNestingIsReadWithoutEnd) {
  std::string const deep(1000000, '[');
  std::string const text = With(R"("version":1)", R"("version":1,"x":)" + deep + std::string(deep.size(), ']'));
  std::vector<Finding> const findings = Findings(text);
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(findings[0].text, "\"x\" means nothing to the library");
}

}  // namespace
