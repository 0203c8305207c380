/// A root with a time base, in a folder of the test's own, and the three kinds of streams below it.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "FailingCalls.h"
#include "SharedObjectImpl.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TempFolder.h"
#include "senmark/SK_PluginResult.h"

namespace senmark_test {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;
using SK_PLUGIN::SK_PluginResult;
using SK_PLUGIN::TdjsonDynamicDataNumArrImpl;
using SK_PLUGIN::TdjsonDynamicDataNumImpl;
using SK_PLUGIN::TdjsonDynamicDataStringImpl;

constexpr unsigned long long kAutomaticDigits = std::numeric_limits<unsigned long long>::max();
constexpr double kMinMark = std::numeric_limits<double>::max();
constexpr double kMaxMark = std::numeric_limits<double>::lowest();

/// Time codes, 25 frames per second: what `UseTimeCode` gives without arguments.
inline char const kTimeCodeHead[] =
    R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
    R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false}})";

/// Pattern and range from the samples; arrays of three numbers.
inline void SetProperties(TdjsonDynamicDataNumImpl& node, SK_PluginResult& result) {
  node.setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &result);
  node.setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &result);
}
inline void SetProperties(TdjsonDynamicDataNumArrImpl& node, SK_PluginResult& result) {
  node.setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &result);
  node.setArrCount(3, &result);
  for (int element = 0; element < 3; ++element) {
    node.setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &result);
  }
}
inline void SetProperties(TdjsonDynamicDataStringImpl& node, SK_PluginResult& result) {
  node.setStringProperties(0, 0, 0, &result);
}

/// One sample through the border form: 5, the numbers 1, 2 and 3, or the text ab.
inline bool Add(TdjsonDynamicDataNumImpl& node, SK_DateTimeSMPTE const& t, SK_PluginResult& result, double value = 5) {
  return node.addSampleSMPTE(t.hours, t.minutes, t.seconds, t.frames, value, &result);
}
inline bool Add(TdjsonDynamicDataNumImpl& node, SK_DateTimeUTC const& t, SK_PluginResult& result, double value = 5) {
  return node.addSampleUTC(t.year, t.month, t.day, t.hour, t.minute, t.second, t.offsetSign, t.offsetHour,
                           t.offsetMinute, t.fraction, value, &result);
}
inline bool Add(TdjsonDynamicDataNumArrImpl& node, SK_DateTimeSMPTE const& t, SK_PluginResult& result,
                std::vector<double> const& values = {1, 2, 3}) {
  for (double const value : values) {
    EXPECT_TRUE(node.addElement(value, &result));
  }
  return node.addTimeSMPTE(t.hours, t.minutes, t.seconds, t.frames, &result);
}
inline bool Add(TdjsonDynamicDataNumArrImpl& node, SK_DateTimeUTC const& t, SK_PluginResult& result,
                std::vector<double> const& values = {1, 2, 3}) {
  for (double const value : values) {
    EXPECT_TRUE(node.addElement(value, &result));
  }
  return node.addTimeUTC(t.year, t.month, t.day, t.hour, t.minute, t.second, t.offsetSign, t.offsetHour, t.offsetMinute,
                         t.fraction, &result);
}
inline bool Add(TdjsonDynamicDataStringImpl& node, SK_DateTimeSMPTE const& t, SK_PluginResult& result,
                char const* value = "ab") {
  return node.addSampleSMPTE(t.hours, t.minutes, t.seconds, t.frames, value, &result);
}
inline bool Add(TdjsonDynamicDataStringImpl& node, SK_DateTimeUTC const& t, SK_PluginResult& result,
                char const* value = "ab") {
  return node.addSampleUTC(t.year, t.month, t.day, t.hour, t.minute, t.second, t.offsetSign, t.offsetHour,
                           t.offsetMinute, t.fraction, value, &result);
}

/// A time of the file's own kind for the sample at `index`, two seconds at most.
inline SK_DateTimeSMPTE TimeCode(int index) {
  return {0, 0, index / 25, index % 25};
}

class DynamicNodes : public testing::Test {
 protected:
  void SetUp() override {
    mOpenBefore = CountOpenDescriptors();
    mRoot = SK_PLUGIN::OwnNewObject(new SK_PLUGIN::TdjsonRootImpl(Key(), mPath.c_str()));
    SK_PLUGIN::TdjsonRootImpl::RegisterInstance(Key(), mRoot);
  }
  void TearDown() override {
    SK_PLUGIN::TdjsonRootImpl::RemoveInstance(Key());
    EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  }

  void* Key() { return this; }
  void UseTimeCode(std::uint32_t value = 25, std::uint32_t scale = 1) { mRoot->SetSMPTETimeInfo(false, value, scale); }
  void UseUTC(std::uint16_t precision, bool isGMT) { mRoot->SetUTCTimeInfo(precision, isGMT); }

  /// A node with the match name `name`, and the same with a capital S before it as the key of its samples.
  template <typename Node>
  std::shared_ptr<Node> Make(std::string const& name = "arm") {
    std::shared_ptr<Node> node = SK_PLUGIN::OwnNewObject(new Node(Key()));
    SK_PluginResult result;
    node->setDynamicDataInfo("Arm", name.c_str(), ("S" + name).c_str(), 0, 1, 0, "", &result);
    SetProperties(*node, result);
    EXPECT_EQ(result.mErrorCode, 0);
    return node;
  }

  std::string FileText() const { return mFolder.Read(mPath); }

  TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  std::shared_ptr<SK_PLUGIN::TdjsonRootImpl> mRoot;
  std::size_t mOpenBefore = 0;
};

}  // namespace senmark_test
