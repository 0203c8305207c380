#include "SK_Localizer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "SK_Error.h"

namespace {

using SK_NAMESPACE_INT::SK_Localizer;

// Each test begins without an instance in force, whatever ran before it.
class Localizer : public testing::Test {
 protected:
  void SetUp() override { EXPECT_TRUE(SK_Localizer::Terminate()); }
  void TearDown() override { SK_Localizer::Terminate(); }
};

std::u16string Localized(std::string const& literal) {
  std::basic_string<unsigned short> const text = SK_Localizer::GetInstance()->GetLocalizedString(literal.c_str());
  return std::u16string(text.begin(), text.end());
}

TEST_F(Localizer, TextStandsBehindTheFirstEqualsSign) {
  EXPECT_EQ(Localized("$$$/SKError/EmptyFile=Empty Input file."), u"Empty Input file.");
  EXPECT_EQ(Localized("$$$/key=b=c"), u"b=c");
  EXPECT_EQ(Localized("$$$/=only text"), u"only text");
  EXPECT_EQ(Localized("$$$/key="), u"");
}

TEST_F(Localizer, KeyWithoutEqualsSignHasNoText) {
  EXPECT_EQ(Localized("$$$/SKError/EmptyFile"), u"");
  EXPECT_EQ(Localized("$$$/"), u"");
}

TEST_F(Localizer, PlainTextIsItself) {
  for (std::string const text : {"Plain text.", "a=b", "$$$", "$$", "", "$$$=x", " $$$/key=text", "$$/key=text"}) {
    EXPECT_EQ(Localized(text), std::u16string(text.begin(), text.end())) << text;
  }
}

TEST_F(Localizer, TextIsReadAsUTF8) {
  EXPECT_EQ(Localized("$$$/k\xC3\xA4y=t\xC3\xB6ne \xF0\x9F\x98\x80"), u"t\u00F6ne \U0001F600");
  EXPECT_EQ(Localized("t\xC3\xB6ne"), u"t\u00F6ne");
}

TEST_F(Localizer, BadUTF8EndsTheText) {
  EXPECT_EQ(Localized("$$$/key=before\xFF behind"), u"before");
  // What stands in the key is never read.
  EXPECT_EQ(Localized("$$$/k\xFFy=text"), u"text");
}

TEST_F(Localizer, EqualKeysShowTheirOwnTexts) {
  EXPECT_EQ(Localized(SK_Message::kRenameFailed), u"^1, Rename failure.");
  EXPECT_EQ(Localized(SK_Message::kRenameTargetExists), u"^1, New path does not exists.");
}

TEST_F(Localizer, DefaultLocaleIsTakenOnFirstUse) {
  EXPECT_EQ(SK_Localizer::GetInstance()->GetLocaleId(), "en_US");
  EXPECT_EQ(std::string(ns_sensor::SKEnglishUSCode), "en_US");
}

TEST_F(Localizer, FirstLocaleStaysUntilTheEnd) {
  EXPECT_TRUE(SK_Localizer::Initialize("de_DE"));
  EXPECT_EQ(SK_Localizer::GetInstance()->GetLocaleId(), "de_DE");
  EXPECT_TRUE(SK_Localizer::Initialize("fr_FR"));
  EXPECT_EQ(SK_Localizer::GetInstance()->GetLocaleId(), "de_DE");
  EXPECT_TRUE(SK_Localizer::Terminate());
  EXPECT_TRUE(SK_Localizer::Initialize("fr_FR"));
  EXPECT_EQ(SK_Localizer::GetInstance()->GetLocaleId(), "fr_FR");
}

TEST_F(Localizer, LocaleBehindTheDefaultIsIgnored) {
  SK_Localizer* const first = SK_Localizer::GetInstance();
  EXPECT_TRUE(SK_Localizer::Initialize("de_DE"));
  EXPECT_EQ(SK_Localizer::GetInstance(), first);
  EXPECT_EQ(SK_Localizer::GetInstance()->GetLocaleId(), "en_US");
}

TEST_F(Localizer, LocaleDecidesNothing) {
  SK_Localizer::Initialize("xx_XX");
  EXPECT_EQ(Localized("$$$/key=text"), u"text");
}

TEST_F(Localizer, OldInstanceStaysUsable) {
  SK_Localizer::Initialize("de_DE");
  SK_Localizer* const old = SK_Localizer::GetInstance();
  SK_Localizer::Terminate();
  SK_Localizer::Initialize("fr_FR");
  EXPECT_NE(SK_Localizer::GetInstance(), old);
  EXPECT_EQ(old->GetLocaleId(), "de_DE");
}

TEST_F(Localizer, FirstErrorsOfManyThreadsShareOneInstance) {
  for (int round = 0; round < 100; ++round) {
    SK_Localizer::Initialize("of the round before");
    SK_Localizer::Terminate();
    constexpr std::size_t kThreads = 4;
    std::atomic<std::size_t> ready{0};
    std::vector<SK_Localizer*> instances(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        for (++ready; ready < kThreads;) {
          std::this_thread::yield();
        }
        instances[i] = SK_Localizer::GetInstance();
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    EXPECT_EQ(instances, std::vector<SK_Localizer*>(kThreads, SK_Localizer::GetInstance()));
    EXPECT_EQ(instances[0]->GetLocaleId(), "en_US");
  }
}

}  // namespace
