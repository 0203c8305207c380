// Recordings of real devices, opened and read whole through the border, against the same files read by a
// general JSON library.

#include <dirent.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "TempFolder.h"
#include "senmark/Senmark.h"

namespace senmark_test {
namespace {

using rapidjson::Value;

struct Sample {
  double seconds;
  std::vector<double> numbers;
  std::string text;

  bool operator==(Sample const& other) const {
    return seconds == other.seconds && numbers == other.numbers && text == other.text;
  }
};

/// What the procs of one walk received.
struct Collector {
  std::vector<std::pair<std::string, std::int32_t>> leaves;
  std::uint8_t childType = ns_sensor::kInvalidChild;
  std::string sampleSetID;
  std::uint64_t sampleCount = 0;
  std::uint64_t announced = 0;
  std::vector<Sample> samples;
  std::string error;
};

Collector& Of(void* client) {
  return *static_cast<Collector*>(client);
}

ns_sensor::SK_ClientProcs* Procs() {
  static ns_sensor::SK_PathProcs path = {
      [](void* client, char const* matchName, std::int32_t index, std::uint64_t, std::uint8_t isLast) {
        if (isLast != 0) {
          Of(client).leaves.emplace_back(matchName, index);
        }
      }};
  static ns_sensor::SK_PropertyProcs property{};
  static ns_sensor::SK_ClientProcs table{};
  table.path = &path;
  table.property = &property;
  table.staticDataInfo = [](void*, char const*, char const*, void*, std::uint8_t, void const*, std::uint64_t) {};
  table.dynamicDataInfo = [](void* client, char const*, char const*, std::uint8_t, void*, char const* sampleSetID,
                             std::uint64_t sampleCount, std::uint8_t, bool, std::int32_t, std::uint32_t, std::int32_t,
                             std::uint32_t, char const*) {
    Of(client).sampleSetID = sampleSetID;
    Of(client).sampleCount = sampleCount;
  };
  table.groupChildInfo = [](void* client, std::uint8_t childType, char const*, char const*) {
    Of(client).childType = childType;
  };
  table.sample = [](void* client, std::int32_t timeValue, std::uint32_t timeScale, void const* value,
                    std::uint64_t valueSize, std::uint8_t valueType) {
    Sample sample{static_cast<double>(timeValue) / timeScale, {}, ""};
    if (valueType == ns_sensor::kStringValue) {
      sample.text.assign(static_cast<char const*>(value), valueSize);
    } else {
      auto const* const numbers = static_cast<double const*>(value);
      sample.numbers.assign(numbers, numbers + (valueType == ns_sensor::kNumberValue ? 1 : valueSize));
    }
    Of(client).samples.push_back(sample);
  };
  table.sampleCount = [](void* client, std::uint64_t* count) { Of(client).announced = *count; };
  table.error = [](void* client, std::int32_t code, char const* message, std::int64_t, std::int64_t) {
    Of(client).error += std::to_string(code) + ' ' + message + '\n';
  };
  return &table;
}

std::string FileText(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

int FieldAt(std::string const& text, std::size_t at, std::size_t count) {
  return std::stoi(text.substr(at, count));
}

/// The time of a text in seconds from an origin of its notation.
double Seconds(std::string const& text, Value const& timeInfo) {
  if (timeInfo.HasMember("frameRate")) {
    Value const& rate = timeInfo["frameRate"];
    int const clock = (FieldAt(text, 0, 2) * 60 + FieldAt(text, 3, 2)) * 60 + FieldAt(text, 6, 2);
    return clock + std::stoi(text.substr(9)) * rate["scale"].GetDouble() / rate["value"].GetDouble();
  }
  std::tm calendar{};
  calendar.tm_year = FieldAt(text, 0, 4) - 1900;
  calendar.tm_mon = FieldAt(text, 5, 2) - 1;
  calendar.tm_mday = FieldAt(text, 8, 2);
  calendar.tm_hour = FieldAt(text, 11, 2);
  calendar.tm_min = FieldAt(text, 14, 2);
  calendar.tm_sec = FieldAt(text, 17, 2);
  return static_cast<double>(timegm(&calendar)) + std::stod("0." + text.substr(20, 3));
}

std::vector<Sample> ExpectedSamples(Value const& set, Value const& timeInfo, double origin) {
  std::vector<Sample> samples;
  for (Value const& entry : set["samples"].GetArray()) {
    Sample sample{Seconds(entry["time"].GetString(), timeInfo) - origin, {}, ""};
    Value const& value = entry["value"];
    if (value.IsString()) {
      sample.numbers.push_back(std::strtod(value.GetString(), nullptr));
    } else if (value.IsArray()) {
      for (Value const& number : value.GetArray()) {
        sample.numbers.push_back(std::strtod(number.GetString(), nullptr));
      }
    } else {
      Value const& length = value["length"];
      int const bytes = length.IsString() ? std::stoi(length.GetString()) : length.GetInt();
      sample.text.assign(value["str"].GetString(), static_cast<std::size_t>(bytes));
    }
    samples.push_back(sample);
  }
  return samples;
}

class RealFile : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    void* api = nullptr;
    CreateSenmark_1(&mManager, nullptr, nullptr, nullptr, &mCollector, Procs(), &api);
    std::string const path = std::string(SENMARK_TEST_DATA) + '/' + GetParam() + ".tdjson";
    mManager->openFile(&mHandler, path.c_str(), nullptr, &mCollector);
    ASSERT_EQ(mCollector.error, "");
    ASSERT_FALSE(mDocument.Parse(FileText(path).c_str()).HasParseError());
    Value const& holder = mDocument.HasMember("dynamicDataInfo") ? mDocument["dynamicDataInfo"] : mDocument;
    mTimeInfo = &(holder["useTimecodeB"].GetBool() ? holder["timecodeInfo"] : holder["utcInfo"]);
    for (Value const& set : mDocument["dataDynamicSamples"].GetArray()) {
      mSets[set["sampleSetID"].GetString()] = &set;
      mOrigin = std::min(mOrigin, Seconds(set["samples"][0]["time"].GetString(), *mTimeInfo));
    }
  }
  void TearDown() override {
    mManager->closeFile(&mHandler, &mCollector);
    DestroySenmark_1(&mManager, &mCollector);
    EXPECT_EQ(mCollector.error, "");
  }

  /// Compares the children of one group with the file's own text, and what is below them.
  void Walk(std::string const& path, Value const& nodes) {
    mCollector.leaves.clear();
    if (path.empty()) {
      mHandler->getRootChildren(&mCollector, &mCollector);
    } else {
      mHandler->getGroupChildren(path.c_str(), path.size(), &mCollector, &mCollector);
    }
    auto const leaves = mCollector.leaves;
    ASSERT_EQ(leaves.size(), nodes.Size()) << path;
    for (rapidjson::SizeType i = 0; i != nodes.Size(); ++i) {
      Value const& node = nodes[i];
      ASSERT_EQ(leaves[i].first, node["matchName"].GetString());
      ASSERT_EQ(leaves[i].second, static_cast<int>(i));
      std::string const child = path + "[\"" + leaves[i].first + "\"]";
      mHandler->getGroupChildInfo(child.c_str(), child.size(), &mCollector, &mCollector);
      std::string const kind = node["objectType"].GetString();
      if (kind == "dataGroup") {
        EXPECT_EQ(mCollector.childType, ns_sensor::kGroupChild);
        Walk(child, node["children"]);
      } else if (kind == "dataDynamic") {
        EXPECT_EQ(mCollector.childType, ns_sensor::kDynamicChild);
        CompareSamples(child, node);
      } else {
        EXPECT_EQ(mCollector.childType, ns_sensor::kStaticChild);
        mHandler->getStaticDataInfo(child.c_str(), child.size(), &mCollector, &mCollector);
      }
      ASSERT_FALSE(HasFailure()) << child;
    }
  }

  void CompareSamples(std::string const& path, Value const& node) {
    mHandler->getDynamicDataInfo(path.c_str(), path.size(), &mCollector, &mCollector);
    std::string const id = node["sampleSetID"].GetString();
    ASSERT_EQ(mCollector.sampleSetID, id);
    std::vector<Sample> const expected = ExpectedSamples(*mSets.at(id), *mTimeInfo, mOrigin);
    ASSERT_EQ(mCollector.sampleCount, expected.size());
    mCollector.samples.clear();
    // A time code counts the hours of one day only, so its times end there.
    int const end = mTimeInfo->HasMember("frameRate") ? 86000 : 33000000;
    mHandler->getDynamicSamples(id.c_str(), id.size(), -1, 1, end, 1, &mCollector, &mCollector);
    ASSERT_EQ(mCollector.announced, expected.size());
    ASSERT_EQ(mCollector.samples.size(), expected.size());
    for (std::size_t i = 0; i != expected.size(); ++i) {
      // Times that are longer than a rational of 32 bits can hold are rounded to the precision of a float.
      EXPECT_NEAR(mCollector.samples[i].seconds, expected[i].seconds, expected[i].seconds / 8e6 + 1e-9) << i;
      EXPECT_EQ(mCollector.samples[i].numbers, expected[i].numbers) << i;
      EXPECT_EQ(mCollector.samples[i].text, expected[i].text) << i;
      ASSERT_FALSE(HasFailure());
    }
  }

  TempFolder mFolder;
  ns_sensor::ISenmark* mManager = nullptr;
  ns_sensor::ISensorFileHandler* mHandler = nullptr;
  Collector mCollector;
  rapidjson::Document mDocument;
  Value const* mTimeInfo = nullptr;
  std::map<std::string, Value const*> mSets;
  double mOrigin = 1e300;
};

TEST_P(RealFile, IsReadWhole) {
  Walk("", mDocument["dataOutline"]);
}

INSTANTIATE_TEST_SUITE_P(RealFiles, RealFile,
                         testing::Values("dab_30hz_v2", "jumping_119hz_v2", "jumping_jacks_v1_pretty",
                                         "weather_montreal_utc_v2"),
                         [](auto const& row) { return row.param; });

}  // namespace
}  // namespace senmark_test
