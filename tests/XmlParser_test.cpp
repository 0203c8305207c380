// XML in pieces: what a handler gets, and files that are made to harm.
#include "XmlParser.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

namespace senmark_gpx {
namespace {

/// Keeps what it gets as text.
class Recorder : public XmlHandler {
 public:
  void start(XmlName const& name, XmlAttributes const& attributes) override {
    mLog += '<' + std::string(name.space()) + '|' + std::string(name.local());
    if (std::optional<std::string_view> const a = attributes.find("a")) {
      mLog += " a=" + std::string(*a);
    }
    mLog += '>';
    onStart();
  }
  void end(XmlName const& name) override { mLog += "</" + std::string(name.local()) + '>'; }
  void text(std::string_view text) override { mLog += text; }

  std::string const& Log() const { return mLog; }

  std::function<void()> onStart = [] {};

 private:
  std::string mLog;
};

std::string Parse(std::string_view document, std::size_t piece = 1000) {
  Recorder recorder;
  XmlParser parser(recorder);
  for (; document.size() > piece; document.remove_prefix(piece)) {
    parser.feed(document.substr(0, piece), false);
  }
  parser.feed(document, true);
  return recorder.Log();
}

kit::Failure FailureOf(std::function<void()> const& work) {
  try {
    work();
  } catch (kit::Failure const& failure) {
    return failure;
  }
  ADD_FAILURE() << "no failure";
  return kit::Failure("none");
}

TEST(XmlParser, GivesNamesWithTheirSpaces) {
  EXPECT_EQ(Parse(R"(<g xmlns="urn:g" xmlns:x="urn:x"><b a="1" x:a="2"/><x:b x:a="3"/><c xmlns=""/></g>)"),
            "<urn:g|g><urn:g|b a=1></b><urn:x|b></b><|c></c></g>");
}

TEST(XmlParser, GivesNamesWithoutTheirPrefixes) {
  Recorder recorder;
  XmlParser(recorder, eXmlNames::kLocal).feed("<x:g xmlns='urn:g'><b/><y:z:c/></x:g>", true);
  EXPECT_EQ(recorder.Log(), "<|g><|b></b><|c></c></g>");
}

TEST(XmlParser, PiecesMakeNoDifference) {
  std::string const document =
      "\xEF\xBB\xBF<?xml version=\"1.0\"?><!-- c --><g><b a=\"\u00E9\">x<![CDATA[<y>]]>z&amp;</b>\r\n</g>";
  std::string const expected = "<|g><|b a=\u00E9>x<y>z&</b>\n</g>";
  for (std::size_t piece = 1; piece != document.size(); ++piece) {
    EXPECT_EQ(Parse(document, piece), expected) << piece;
  }
}

TEST(XmlParser, EncodingsAreThoseOfTheParser) {
  EXPECT_EQ(Parse("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><g>\xE9</g>"), "<|g>\u00E9</g>");
  EXPECT_EQ(Parse(std::string("\xFF\xFE<\0g\0/\0>\0", 10)), "<|g></g>");
  EXPECT_EQ(Parse(std::string("\xFE\xFF\0<\0g\0/\0>", 10)), "<|g></g>");
}

struct Malformed {
  char const* document;
  std::int64_t offset;
  std::int64_t line;
  char const* message;
};

TEST(XmlParser, FailuresHaveTheirPlace) {
  Malformed const rows[] = {
      {"", 0, 1, "no element found"},
      {"<g>", 3, 1, "no element found"},
      {"<g>\n<b", 4, 2, "unclosed token"},
      {"<g>\n</b></g>", 6, 2, "mismatched tag"},
      {"<g/><g/>", 4, 1, "junk after document element"},
      {"<g>&x;</g>", 3, 1, "undefined entity"},
      {"<x:g/>", 0, 1, "unbound prefix"},
      {"<g a='1' a='2'/>", 9, 1, "duplicate attribute"},
      {"<g>\xFF</g>", 3, 1, "not well-formed (invalid token)"},
      {"<?xml version='1.0' encoding='klingon'?><g/>", 30, 1, "unknown encoding"},
      // Of a declaration, the place is that of its value or, without one, its end.
      {"<!DOCTYPE g [\n<!ENTITY e 'x'>]><g/>", 25, 2, "an entity is declared: e"},
      {"<!DOCTYPE g [\n<!ENTITY % p 'x'>]><g/>", 27, 2, "an entity is declared: p"},
      {"<!DOCTYPE g [\n<!ENTITY e SYSTEM '/etc/hostname'>]><g>&e;</g>", 47, 2, "an entity is declared: e"},
  };
  for (Malformed const& row : rows) {
    kit::Failure const failure = FailureOf([&] { Parse(row.document); });
    EXPECT_STREQ(failure.what(), row.message) << row.document;
    EXPECT_EQ(failure.offset(), row.offset) << row.document;
    EXPECT_EQ(failure.line(), row.line) << row.document;
    EXPECT_EQ(failure.code(), kit::Failure::kMalformedInput);
  }
}

TEST(XmlParser, NothingOutsideIsLoaded) {
  EXPECT_EQ(Parse("<!DOCTYPE g SYSTEM 'file:///etc/hostname'><g>&e;</g>"), "<|g></g>");
}

TEST(XmlParser, WhatAHandlerThrowsEndsTheParsing) {
  Recorder recorder;
  int calls = 0;
  recorder.onStart = [&] {
    if (++calls == 2) {
      throw kit::Failure("enough");
    }
  };
  XmlParser parser(recorder);
  kit::Failure const failure = FailureOf([&] { parser.feed("<g>\n<b/><c/></g>", true); });
  EXPECT_STREQ(failure.what(), "enough");
  EXPECT_EQ(failure.offset(), 4);
  EXPECT_EQ(failure.line(), 2);
  EXPECT_EQ(recorder.Log(), "<|g>\n<|b>");

  recorder.onStart = [] { throw std::bad_alloc(); };
  EXPECT_THROW(XmlParser(recorder).feed("<g/>", true), std::bad_alloc);
  recorder.onStart = [] { throw kit::Failure("placed", 7, 8, 9); };
  kit::Failure const placed = FailureOf([&] { XmlParser(recorder).feed("<g/>", true); });
  EXPECT_EQ(placed.offset(), 7);
  EXPECT_EQ(placed.code(), 9);
}

std::string Nested(unsigned depth) {
  std::string document;
  for (unsigned i = 0; i != depth; ++i) {
    document += "<d>";
  }
  for (unsigned i = 0; i != depth; ++i) {
    document += "</d>";
  }
  return document;
}

TEST(XmlParser, DepthHasALimit) {
  EXPECT_NO_THROW(Parse(Nested(XmlParser::kDeepest)));
  kit::Failure const failure = FailureOf([] { Parse(Nested(XmlParser::kDeepest + 1)); });
  EXPECT_STREQ(failure.what(), "more than 100 elements within each other");
  EXPECT_EQ(failure.offset(), 300);
}

TEST(XmlParser, WhatHasNoEndHasALimit) {
  std::string const filler(4 << 20, 'x');
  for (char const* const start : {"<g><!--", "<g a='", "<g><", "<g></", "<g><?pi ", "<!DOCTYPE g [<!-- "}) {
    kit::Failure const failure = FailureOf([&] { Parse(std::string(start) + filler, 65536); });
    EXPECT_STREQ(failure.what(), "a tag, comment or declaration of more than 1048576 bytes") << start;
  }
  // Characters are handed on as they come.
  EXPECT_EQ(Parse("<g>" + filler + "</g>", 65536).size(), filler.size() + 8);
  EXPECT_EQ(Parse("<g><![CDATA[" + filler + "]]></g>", 65536).size(), filler.size() + 8);
  // Half of it is always read.
  EXPECT_NO_THROW(Parse("<g><!--" + std::string(500000, 'x') + "--></g>", 65536));
}

TEST(XmlParser, NamesHaveALimit) {
  for (char const* const attribute : {"", " name"}) {
    std::string document = "<g>";
    for (int i = 0; i != 600000; ++i) {
      document +=
          *attribute == '\0' ? "<n" + std::to_string(i) + "/>" : "<n" + (attribute + std::to_string(i)) + "=''/>";
    }
    kit::Failure const failure = FailureOf([&] { Parse(document + "</g>", 65536); });
    EXPECT_STREQ(failure.what(), "names and tags take more than 16 MiB");
    EXPECT_GT(failure.offset(), 1000000);
  }
}

TEST(XmlParser, ParsersStandSideBySide) {
  Recorder outer;
  std::string inner;
  outer.onStart = [&] { inner = Parse("<i>x</i>"); };
  XmlParser parser(outer);
  parser.feed("<g><b/>", false);
  EXPECT_EQ(Parse("<j/>"), "<|j></j>");
  parser.feed("</g>", true);
  EXPECT_EQ(outer.Log(), "<|g><|b></b></g>");
  EXPECT_EQ(inner, "<|i>x</i>");
}

TEST(XmlParser, TheRootIsFoundInTheFirstBytes) {
  EXPECT_EQ(FindRoot("<?xml version='1.0'?><!-- c --><p:gpx xmlns:p='urn:p' a='cut"), std::nullopt);
  EXPECT_EQ(FindRoot("<?xml version='1.0'?><!-- c --><p:gpx xmlns:p='urn:p'><cut"), "gpx");
  EXPECT_EQ(FindRoot("<gpx><a/></b>"), "gpx");
  EXPECT_EQ(FindRoot("<kml/>"), "kml");
  EXPECT_EQ(FindRoot("<!DOCTYPE gpx [<!ENTITY e 'x'>]><gpx/>"), "gpx");
  EXPECT_EQ(FindRoot("<!DOCTYPE p:gpx><kml/>"), "kml");
  EXPECT_EQ(FindRoot("gpx"), std::nullopt);
  EXPECT_EQ(FindRoot(""), std::nullopt);
  EXPECT_EQ(FindRoot("\x89PNG\r\n\x1A\n"), std::nullopt);
}

}  // namespace
}  // namespace senmark_gpx
