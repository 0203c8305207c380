// Texts of times of several files. Its calls of the system are the real ones, so that it runs under any sanitizer.

#include <gtest/gtest.h>

#include <atomic>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "SK_NumberAnalysis.h"
#include "SK_SampleTimeText.h"
#include "SK_TimeWindowReader.h"
#include "SharedObjectImpl.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;

// Streams of several files, on one thread or on several, share the last text.

/// A file of one time base, and the texts of its times as they are made without any other.
class OneFile {
 public:
  OneFile(std::uint16_t precision, bool isGMT)
      : mRoot(OwnNewObject(new TdjsonRootImpl(nullptr, "out.tdjson"))), mPrecision(precision), mIsGMT(isGMT) {
    mRoot->SetUTCTimeInfo(precision, isGMT);
    mText = std::make_unique<SK_SampleTimeText>(*mRoot);
  }
  explicit OneFile(std::uint32_t rate)
      : mRoot(OwnNewObject(new TdjsonRootImpl(nullptr, "out.tdjson"))), mFrameDigits(rate > 99 ? 3 : 2) {
    mRoot->SetSMPTETimeInfo(false, rate, 1);
    mText = std::make_unique<SK_SampleTimeText>(*mRoot);
  }

  /// Whether the text of the time with these numbers is that of the file alone, and its window is one of it.
  bool Agrees(int second, int rest, int zone) {
    return mFrameDigits != 0 ? AgreesOn(SK_DateTimeSMPTE{1, 2, second, rest})
                             : AgreesOn(SK_DateTimeUTC{2020, 1, 2, 3, 4, second,
                                                       static_cast<signed char>(mIsGMT ? 'Z' : '+'), zone, 30, rest});
  }

 private:
  template <typename Time>
  bool AgreesOn(Time const& time) {
    std::string expected = Alone(time);
    if (expected.size() != mText->Length()) {
      expected.clear();
    }
    SK_WaitingTime const made = mText->Make(time);
    bool const agrees = made.text == expected && HasItsWindow(made);
    EXPECT_TRUE(agrees) << made.text << " instead of " << expected;
    return agrees;
  }
  std::string Alone(SK_DateTimeSMPTE const& time) const {
    std::string text;
    serializeTimeSMPTE(text, time.hours, time.minutes, time.seconds, time.frames, mFrameDigits);
    return text;
  }
  std::string Alone(SK_DateTimeUTC const& time) const {
    std::string text;
    serializeTimeUTC(text, time.year, time.month, time.day, time.hour, time.minute, time.second, time.offsetSign,
                     time.offsetHour, time.offsetMinute, time.fraction, mPrecision);
    return text;
  }
  static bool HasItsWindow(SK_WaitingTime const& time) {
    if (!SK_TimeWindow::AreFor(time.text.size())) {
      return time.window == nullptr;
    }
    char stored[SK_TimeWindow::kRoom];
    time.window->Put(time.window->PutBase(stored));
    SK_TimeWindowReader reader;
    reader.Reset(time.text.size());
    char const* const window = reader.TakeBase(stored);
    char read[SK_TimeWindow::kLongest];
    reader.CopyBaseTo(read);
    SK_TimeWindowReader::CopyWindowTo(read, window);
    return time.text == std::string_view(read, time.text.size());
  }

  std::shared_ptr<TdjsonRootImpl> mRoot;
  std::unique_ptr<SK_SampleTimeText> mText;
  unsigned short mFrameDigits = 0;
  std::uint16_t mPrecision = 0;
  bool mIsGMT = false;
};

std::vector<std::unique_ptr<OneFile>> MakeFiles() {
  std::vector<std::unique_ptr<OneFile>> files;
  for (int const precision : {0, 1, 2, 3, 6, 9, 11, 12}) {
    files.push_back(std::make_unique<OneFile>(static_cast<std::uint16_t>(precision), true));
    files.push_back(std::make_unique<OneFile>(static_cast<std::uint16_t>(precision), false));
  }
  files.push_back(std::make_unique<OneFile>(25U));
  files.push_back(std::make_unique<OneFile>(120U));
  return files;
}

// Few times, so that most of them were made shortly before, for this file or another one.
bool UseInTurn(unsigned seed, int times) {
  constexpr int kRests[] = {0, 1, 9, 10, 99, 100, 999, 1000, 123456789, 1000000000, 2147483647, -1, -10};
  std::mt19937 random(seed);
  std::vector<std::unique_ptr<OneFile>> const files = MakeFiles();
  for (int i = 0; i != times; ++i) {
    OneFile& file = *files[random() % files.size()];
    int const second = random() % 50 == 0 ? 100 : 5 + static_cast<int>(random() % 2);
    if (!file.Agrees(second, kRests[random() % std::size(kRests)], static_cast<int>(random() % 2))) {
      return false;
    }
  }
  return true;
}

TEST(SampleTimeTexts, AreThoseOfTheirFileAlone) {
  for (unsigned seed = 0; seed != 5; ++seed) {
    ASSERT_TRUE(UseInTurn(seed, 60000));
  }
}

TEST(SampleTimeTexts, OfThreadsDoNotMeet) {
  std::vector<std::thread> threads;
  std::atomic<int> agreeing{0};
  for (unsigned i = 0; i != 4; ++i) {
    threads.emplace_back([&agreeing, i] { agreeing += UseInTurn(100 + i, 400000) ? 1 : 0; });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(agreeing, 4);
}

// Two files that differ in nothing but how their length comes about.
TEST(SampleTimeTexts, OfOneLengthAreToldApartByTheirDigits) {
  // 20 + 1 + 7 in GMT, and 20 + 1 + 2 and a zone.
  OneFile gmt(7, true);
  OneFile local(2, false);
  for (int i = 0; i != 3; ++i) {
    EXPECT_TRUE(gmt.Agrees(5, 12, 6));
    EXPECT_TRUE(local.Agrees(5, 12, 6));
    EXPECT_TRUE(gmt.Agrees(5, 13 + i, 6));
    EXPECT_TRUE(local.Agrees(5, 13 + i, 6));
  }
}

}  // namespace
}  // namespace SK_PLUGIN
