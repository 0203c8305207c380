#include "SensorFileHandlerImpl.h"

#include <gtest/gtest.h>

#include "ExpectError.h"
#include "FakeLibrary.h"
#include "SK_DynamicSampleInfo.h"
#include "SenmarkImpl.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using senmark_test::ExpectError;

SensorFileHandlerImpl Parsed(std::string const& path, SK_NAMESPACE_INT::eTDJSONVersion version) {
  return SensorFileHandlerImpl(path.c_str(), path.size(), path.c_str(), path.size(), version);
}

class HandlerImpl : public testing::Test {
 protected:
  senmark_test::TempFolder mFolder;
  std::string const mPath = mFolder.Write("a.tdjson", senmark_test::kSmallVersion2);
  SensorFileHandlerImpl mHandler{"native", 6, mPath.c_str(), mPath.size(), SK_NAMESPACE_INT::kTdjsonVersion2};
};

TEST_F(HandlerImpl, KeepsBothPaths) {
  EXPECT_EQ(mHandler.getNativeFilePath(), "native");
  EXPECT_EQ(mHandler.getFilePath(), mPath);
}

TEST_F(HandlerImpl, VersionThatIsNotKnownIsReadFromTheFile) {
  std::string const old = mFolder.Write("b.tdjson", senmark_test::kSmallVersion1);
  SK_FileInfo info;
  Parsed(mPath, SK_NAMESPACE_INT::kNotTdjson).GetFileInfo(&info);
  EXPECT_EQ(info.version, "TDJSON2.0.0");
  Parsed(old, SK_NAMESPACE_INT::kNotTdjson).GetFileInfo(&info);
  EXPECT_EQ(info.version, "anything");
  ExpectError([&] { Parsed(mPath, SK_NAMESPACE_INT::kTdjsonVersion1); }, 30,
              "Invalid top level property. \"dynamicSamplesPresentB\" not defined as a top level property in TDJSON "
              "schema version 2.0.0.",
              static_cast<long long>(std::string(senmark_test::kSmallVersion2).find("true")), -1);
}

/// Paths, ids and times are wrong as well: the result comes first.
TEST_F(HandlerImpl, NullResultsAreRefusedBeforeAllElse) {
  SK_Time const never{0, 0};
  ExpectError([&] { mHandler.GetRootChildren(nullptr); }, 1, "Invalid pointer to \"SK_GroupChildren\".");
  ExpectError([&] { mHandler.GetGroupChildren("", nullptr); }, 1, "Invalid pointer to \"SK_GroupChildren\".");
  ExpectError([&] { mHandler.GetGroupChildInfo("", nullptr); }, 1, "Invalid pointer to \"SK_GroupChildInfo\".");
  ExpectError([&] { mHandler.GetStaticDataInfo("[x]", nullptr); }, 1, "Invalid pointer to \"SK_StaticDataInfo\".");
  ExpectError([&] { mHandler.GetDynamicDataInfo("[0", nullptr); }, 1, "Invalid pointer to \"SK_DynamicDataInfo\".");
  ExpectError([&] { mHandler.GetDynamicSamples("zz", never, never, nullptr); }, 1,
              "Invalid pointer to \"DynamicDataSampleSet\".");
  ExpectError([&] { mHandler.GetAdjacentSamples("zz", never, nullptr); }, 1,
              "Invalid pointer to \"DynamicDataSampleSet\".");
  ExpectError([&] { mHandler.GetFileInfo(nullptr); }, 1, "Invalid pointer to \"SK_FileInfo\".");
  ExpectError([&] { mHandler.GetVideoSyncTime(nullptr); }, 1, "Invalid pointer to \"SK_VideoSyncTimeList\".");
  ExpectError([&] { mHandler.GetSampleInfo("zz", never, never, nullptr, false); }, 1,
              "Invalid pointer to \"SK_DynamicSampleInfo\".");
}

TEST_F(HandlerImpl, FailingPathLeavesACleanRecord) {
  std::vector<SK_DataPath> children(3);
  ExpectError([&] { mHandler.GetGroupChildren("", &children); }, 1, "Empty SK_DataPath string.");
  EXPECT_TRUE(children.empty());

  SK_GroupChildInfo child;
  mHandler.GetGroupChildInfo("[0]", &child);
  EXPECT_EQ(child.displayName, "Arm");
  ExpectError([&] { mHandler.GetGroupChildInfo("", &child); }, 1, "Empty SK_DataPath string.");
  EXPECT_EQ(child.type, kInvalidChild);
  EXPECT_EQ(child.displayName + child.matchName, "");

  SK_StaticDataInfo fixed;
  mHandler.GetStaticDataInfo(R"(["arm"]["label"])", &fixed);
  EXPECT_EQ(fixed.displayName, "Label");
  ExpectError([&] { mHandler.GetStaticDataInfo("", &fixed); }, 1, "Empty SK_DataPath string.");
  EXPECT_EQ(fixed.displayName + fixed.matchName, "");
  EXPECT_EQ(boost::get<double>(fixed.value.value), 0.0);
  EXPECT_EQ(fixed.dataType.type, kInvalidValue);
  EXPECT_EQ(fixed.dataType.properties.value.which(), 0);

  SK_DynamicDataInfo moving;
  mHandler.GetDynamicDataInfo(R"(["arm"]["angle"])", &moving);
  EXPECT_EQ(moving.fields.sampleCount, 4u);
  ExpectError([&] { mHandler.GetDynamicDataInfo("", &moving); }, 1, "Empty SK_DataPath string.");
  EXPECT_EQ(moving.fields.displayName + moving.fields.matchName + moving.fields.sampleSetID +
                moving.fields.expectedMaxInterSampleDuration,
            "");
  EXPECT_EQ(moving.fields.sampleCount, 0u);
  EXPECT_EQ(moving.fields.interpolation, 0);
  EXPECT_FALSE(moving.fields.hasExpectedFrequencyB);
  EXPECT_EQ(moving.fields.temporalExtent.duration.value, 0);
  EXPECT_EQ(moving.fields.temporalExtent.duration.scale, 1u);
  EXPECT_EQ(moving.dataType.type, kInvalidValue);
}

TEST_F(HandlerImpl, FailingQueryLeavesNoOldSamples) {
  std::vector<SK_DynamicDataSample> samples(3);
  ExpectError(
      [&] {
        mHandler.GetDynamicSamples("a1", {0, 1}, {0, 0}, &samples);
      },
      1, "scale value cannot be zero for parameter \"endTime\".");
  EXPECT_TRUE(samples.empty());
  samples.resize(3);
  ExpectError(
      [&] {
        mHandler.GetAdjacentSamples("zz", {0, 1}, &samples);
      },
      35, "Data Outline does not contain any dynamic node for sample id : \"zz\".");
  EXPECT_TRUE(samples.empty());
}

TEST_F(HandlerImpl, SamplesAsRecords) {
  std::vector<SK_DynamicDataSample> samples;
  mHandler.GetDynamicSamples("a1", {1, 1}, {2, 3}, &samples);
  ASSERT_EQ(samples.size(), 2u);
  EXPECT_EQ(boost::get<double>(samples[0].value.value), 99.5) << "start behind end: reversed";
  EXPECT_EQ(boost::get<double>(samples[1].value.value), 10.0);
  mHandler.GetAdjacentSamples("n1", {5, 2}, &samples);
  ASSERT_EQ(samples.size(), 2u);
  EXPECT_EQ(boost::get<std::string>(samples[0].value.value), "a b");
  EXPECT_EQ(boost::get<std::string>(samples[1].value.value), "");

  SK_DynamicDataSample* array = nullptr;
  unsigned long long count = 0;
  bool reversed = true;
  mHandler.GetDynamicSamples_I("p1", {0, 1}, {1, 1}, array, count, reversed);
  std::unique_ptr<SK_DynamicDataSample[]> owner(array);
  ASSERT_EQ(count, 3u);
  EXPECT_FALSE(reversed);
  EXPECT_EQ(boost::get<std::vector<double>>(array[2].value.value), (std::vector<double>{9.5, 0.25}));
  mHandler.GetAdjacentSamples_I("p1", {1, 2}, array, count);
  owner.reset(array);
  EXPECT_EQ(count, 3u);
}

TEST_F(HandlerImpl, SampleInfoOfAFailedQueryIsUntouched) {
  SK_DynamicSampleInfo info;
  info.sampleCount = 77;
  info.valueType = kBooleanValue;
  ExpectError(
      [&] {
        mHandler.GetSampleInfo("e1", {0, 1}, {1, 1}, &info, false);
      },
      38, "No dynamic sample data present for sample id : \"e1\".");
  EXPECT_EQ(info.sampleCount, 77u);
  EXPECT_EQ(info.valueType, kBooleanValue);
}

/// A handler that no manager has opened, and an object of another kind.
TEST_F(HandlerImpl, ManagerClosesOnlyItsOwn) {
  SenmarkImpl* const manager = SenmarkImpl::Initialize(nullptr, nullptr, nullptr);
  ISensorFileHandler* open = nullptr;
  manager->OpenFile(&open, mPath.c_str(), nullptr);
  ISensorFileHandler* foreign = &mHandler;
  ExpectError([&] { manager->CloseFile(&foreign); }, 27, "File handler is not created by this Senmark instance.");
  EXPECT_EQ(foreign, &mHandler);
  senmark_test::FakeHandler other;
  foreign = &other;
  ExpectError([&] { manager->CloseFile(&foreign); }, 34, "Unknown exception occurred.");
  manager->CloseFile(&open);
  EXPECT_EQ(open, nullptr);
  EXPECT_TRUE(SenmarkImpl::Terminate());
}

}  // namespace
}  // namespace ns_sensor
