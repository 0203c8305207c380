// Files as devices, editors and services write them: each is opened and thereby converted, walked whole, sampled and
// saved, or refused for a reason that is listed here.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <limits>
#include <map>
#include <regex>
#include <set>
#include <vector>

#include "TempFolder.h"
#include "senmark/Senmark.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

using ns_sensor::ISensorFileHandler;

struct Refused {
  int code;
  char const* reason;
};

/// Files that the rules refuse, by their name.
std::map<std::string, Refused> const kRefused = {
    {"boxing_cmu_120hz.bvh", {32, "an angle's range ends at 3.160428069068301e-05, which an outline cannot hold"}},
    {"dance_100hz.bvh", {32, "a range ends at 9.999999999863222e-05, which an outline cannot hold"}},
    {"imu_9dof_100hz.csv", {32, "a cell is 7.04e-06, which an outline cannot hold"}},
    {"mixed_rotation_orders_30hz.bvh",
     {32, "an angle's range ends at -5.226532051377869e-05, which an outline cannot hold"}},
    {"edge_cases_top_array.json", {32, "a member is 0.123456789e-12, which an outline cannot hold"}},
    {"numbers_top_array.json", {32, "an element is 5.52288047857e-05, which an outline cannot hold"}},
    {"walk01_exponents_24hz.bvh", {32, "an angle's range ends at 4.17233e-07, which an outline cannot hold"}},
    {"figure8_walk_120hz.bvh", {2022, "a joint is named LeftHand_End, and names have letters and digits alone"}},
    {"pose_mixed_3_and_6ch.bvh", {2022, "a joint is named pelvis.R, and names have letters and digits alone"}},
    {"trackers_exponents_100hz.bvh", {2022, "a joint is named Left-Hip, and names have letters and digits alone"}},
    {"trackers_tiny_100hz.bvh", {2022, "a joint is named Left-Hip, and names have letters and digits alone"}},
    {"zombie_walk_24hz.bvh", {2022, "a joint is named __Jaw, and names have letters and digits alone"}},
};

/// Files with sets whose samples cannot be delivered: a number is padded to the width of its set by zeros behind it
/// also where it ends in an exponent, which then is beyond any double.
std::map<std::string, Refused> const kUnreadable = {
    {"all_joints_6ch_125hz.bvh", {34, "an angle of 5.4e-05 becomes +05.4e-0500000000000000"}},
    {"big_positions.bvh", {34, "a position of 1.5e+20 becomes +000000001.5e+2000000000000"}},
};

/// Small files made for the tests with samples at 0 frames per second: no time of theirs is behind another.
std::set<std::string> const kTimeless = {"frame_time_2.bvh", "rate_of_zero_counts_seconds.bvh"};

/// The least and the largest of some numbers.
struct Extent {
  double min = std::numeric_limits<double>::max();
  double max = std::numeric_limits<double>::lowest();

  void Take(double number) {
    min = std::min(min, number);
    max = std::max(max, number);
  }
  /// Numbers of an outline are read with a few units in the last place less than those of samples.
  bool operator==(Extent const& other) const { return AreClose(min, other.min) && AreClose(max, other.max); }

 private:
  static bool AreClose(double left, double right) {
    return left == right || std::abs(left - right) <= 1e-15 * std::abs(right);
  }
};

std::ostream& operator<<(std::ostream& out, Extent const& extent) {
  return out << std::setprecision(17) << extent.min << " to " << extent.max;
}

struct Time {
  std::int32_t value;
  std::uint32_t scale;

  double Seconds() const { return static_cast<double>(value) / scale; }
};

/// What the procs received since the last question.
struct Answer {
  std::vector<std::string> children;
  std::uint8_t childType = ns_sensor::kInvalidChild;
  int infos = 0;
  std::uint8_t dataType = ns_sensor::kInvalidValue;
  std::vector<double> numbers;
  std::string sampleSetID;
  std::uint64_t sampleCount = 0;
  Time start{0, 1};
  Time duration{0, 1};
  std::vector<Extent> occurring;
  std::uint64_t announced = 0;
  std::vector<Time> times;
  std::vector<std::array<double, 3>> samples;
  std::string error;
  int code = 0;
};

Answer gAnswer;
ns_sensor::SK_HostPropertyAPI* gPropertyAPI = nullptr;

void PushProperties(std::uint8_t dataType, void* properties) {
  if (dataType == ns_sensor::kNumberValue) {
    gPropertyAPI->pushNumber(properties, nullptr);
  } else if (dataType == ns_sensor::kNumberArrayValue) {
    gPropertyAPI->pushNumberArray(properties, nullptr);
  } else if (dataType == ns_sensor::kStringValue) {
    gPropertyAPI->pushString(properties, nullptr);
  }
}

ns_sensor::SK_ClientProcs* Procs() {
  static ns_sensor::SK_PathProcs path = {
      [](void*, char const* matchName, std::int32_t, std::uint64_t, std::uint8_t isLast) {
        if (isLast != 0) {
          gAnswer.children.emplace_back(matchName);
        }
      }};
  static ns_sensor::SK_PropertyProcs property = {
      [](void*, std::uint64_t const*, std::uint64_t const*, bool const*, double const* min, double const* max,
         double const*, double const*) {
        gAnswer.occurring.push_back({*min, *max});
      },
      [](void*, std::uint64_t const*, std::uint64_t const*, bool const*) {},
      [](void*, std::uint64_t const*, std::uint64_t const*, bool const*, std::uint64_t const*, bool const*) {},
      [](void*, char const*, std::uint64_t) {},
      [](void*, double const* min, double const* max, double const*, double const*) {
        gAnswer.occurring.push_back({*min, *max});
      }};
  static ns_sensor::SK_ClientProcs table{};
  table.path = &path;
  table.property = &property;
  table.staticDataInfo = [](void*, char const*, char const*, void* properties, std::uint8_t dataType, void const* value,
                            std::uint64_t valueSize) {
    ++gAnswer.infos;
    gAnswer.dataType = dataType;
    if (dataType == ns_sensor::kNumberValue) {
      gAnswer.numbers.assign(1, *static_cast<double const*>(value));
    } else if (dataType == ns_sensor::kNumberArrayValue) {
      auto const* const numbers = static_cast<double const*>(value);
      gAnswer.numbers.assign(numbers, numbers + valueSize);
    } else if (dataType == ns_sensor::kStringValue) {
      EXPECT_EQ(static_cast<char const*>(value)[valueSize], '\0');
    }
    PushProperties(dataType, properties);
  };
  table.dynamicDataInfo = [](void*, char const*, char const*, std::uint8_t dataType, void* properties,
                             char const* sampleSetID, std::uint64_t sampleCount, std::uint8_t, bool,
                             std::int32_t startValue, std::uint32_t startScale, std::int32_t durationValue,
                             std::uint32_t durationScale, char const*) {
    ++gAnswer.infos;
    gAnswer.dataType = dataType;
    gAnswer.sampleSetID = sampleSetID;
    gAnswer.sampleCount = sampleCount;
    gAnswer.start = {startValue, startScale};
    gAnswer.duration = {durationValue, durationScale};
    PushProperties(dataType, properties);
  };
  table.groupChildInfo = [](void*, std::uint8_t childType, char const*, char const*) {
    ++gAnswer.infos;
    gAnswer.childType = childType;
  };
  table.sample = [](void*, std::int32_t timeValue, std::uint32_t timeScale, void const* value, std::uint64_t valueSize,
                    std::uint8_t valueType) {
    ASSERT_EQ(valueType, ns_sensor::kNumberArrayValue);
    ASSERT_EQ(valueSize, 3u);
    auto const* const numbers = static_cast<double const*>(value);
    gAnswer.times.push_back({timeValue, timeScale});
    gAnswer.samples.push_back({numbers[0], numbers[1], numbers[2]});
  };
  table.fileInfo = [](void*, std::int32_t durationValue, std::uint32_t durationScale, char const*, std::uint64_t,
                      char const*, std::uint64_t) {
    ++gAnswer.infos;
    gAnswer.duration = {durationValue, durationScale};
  };
  table.sampleCount = [](void*, std::uint64_t* count) { gAnswer.announced = *count; };
  table.error = [](void*, std::int32_t code, char const* message, std::int64_t, std::int64_t) {
    gAnswer.code = code;
    gAnswer.error += std::to_string(code) + ' ' + message + '\n';
  };
  return &table;
}

/// Asks one question, which must not fail.
template <typename Question>
Answer Ask(Question question) {
  gAnswer = Answer();
  question();
  EXPECT_EQ(gAnswer.error, "");
  return std::move(gAnswer);
}

std::string FileBytes(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::size_t CountIn(std::string const& bytes, std::string const& wanted) {
  std::size_t count = 0;
  for (std::size_t at = bytes.find(wanted); at != std::string::npos; at = bytes.find(wanted, at + wanted.size())) {
    ++count;
  }
  return count;
}

class RealInput : public testing::TestWithParam<std::string> {
 protected:
  RealInput() {
    void* api = nullptr;
    CreateSenmark_1(&mManager, nullptr, nullptr, nullptr, nullptr, Procs(), &api);
    gPropertyAPI = static_cast<ns_sensor::SK_HostPropertyAPI*>(api);
  }
  ~RealInput() override { DestroySenmark_1(&mManager, nullptr); }

  ISensorFileHandler* Open() {
    ISensorFileHandler* handler = nullptr;
    mManager->openFile(&handler, GetParam().c_str(), mOutput.c_str(), nullptr);
    return handler;
  }

  void Walk(std::string const& path) {
    std::vector<std::string> const names =
        Ask([&] {
          path.empty() ? mHandler->getRootChildren(nullptr, nullptr)
                       : mHandler->getGroupChildren(path.c_str(), path.size(), nullptr, nullptr);
        }).children;
    ASSERT_FALSE(names.empty()) << path;
    for (std::string const& name : names) {
      std::string const child = path + "[\"" + name + "\"]";
      Answer const info = Ask([&] { mHandler->getGroupChildInfo(child.c_str(), child.size(), nullptr, nullptr); });
      ASSERT_EQ(info.infos, 1) << child;
      ++mNodes[info.childType];
      if (info.childType == ns_sensor::kGroupChild) {
        Walk(child);
      } else if (info.childType == ns_sensor::kDynamicChild) {
        ReadDynamic(child);
      } else {
        ReadStatic(child);
      }
      ASSERT_FALSE(HasFailure()) << child;
    }
  }

  void ReadStatic(std::string const& path) {
    Answer const node = Ask([&] { mHandler->getStaticDataInfo(path.c_str(), path.size(), nullptr, nullptr); });
    EXPECT_EQ(node.infos, 1);
    // What occurs in a node with one value is that value.
    std::vector<Extent> expected;
    for (double const number : node.numbers) {
      expected.push_back({number, number});
    }
    EXPECT_EQ(node.occurring, expected);
  }

  /// What comes of a question about samples, which may fail.
  Answer Samples(std::string const& id, Time start, Time end) {
    gAnswer = Answer();
    mHandler->getDynamicSamples(id.c_str(), id.size(), start.value, start.scale, end.value, end.scale, nullptr,
                                nullptr);
    return std::move(gAnswer);
  }

  /// Each set that could not be read has the code of its file, and a number whose exponent was padded.
  void CheckUnreadableSets(std::string const& output) {
    auto const known = kUnreadable.find(fs::path(GetParam()).filename().string());
    EXPECT_EQ(mUnreadableSets.empty(), known == kUnreadable.end());
    for (auto const& [id, code] : mUnreadableSets) {
      std::size_t const start = output.find(R"({"sampleSetID":")" + id + R"(","samples":[)");
      ASSERT_NE(start, std::string::npos);
      std::string const set = output.substr(start, output.find("]}]}", start) - start);
      EXPECT_TRUE(std::regex_search(set, std::regex("[0-9]e[-+][0-9]{4,}\""))) << id;
      ASSERT_NE(known, kUnreadable.end()) << id;
      EXPECT_EQ(code, known->second.code) << id << " because " << known->second.reason;
    }
  }

  void ReadDynamic(std::string const& path) {
    Answer const node = Ask([&] { mHandler->getDynamicDataInfo(path.c_str(), path.size(), nullptr, nullptr); });
    ASSERT_EQ(node.infos, 1);
    ASSERT_EQ(node.dataType, ns_sensor::kNumberArrayValue);
    ASSERT_NE(node.sampleCount, 0u);
    std::string const& id = node.sampleSetID;
    EXPECT_TRUE(mSampleSets.insert(id).second);

    Answer const whole = Samples(id, {0, 1}, {100000, 1});
    if (whole.code != 0) {
      mUnreadableSets[id] = whole.code;
      return;
    }
    EXPECT_EQ(whole.error, "");
    ASSERT_EQ(whole.announced, node.sampleCount);
    ASSERT_EQ(whole.samples.size(), node.sampleCount);
    std::vector<Extent> extents(3);
    for (std::array<double, 3> const& sample : whole.samples) {
      for (std::size_t i = 0; i != 3; ++i) {
        extents[i].Take(sample[i]);
      }
    }
    EXPECT_EQ(node.occurring, extents);
    EXPECT_TRUE(std::is_sorted(whole.times.begin(), whole.times.end(),
                               [](Time const& left, Time const& right) { return left.Seconds() < right.Seconds(); }));
    EXPECT_EQ(node.start.Seconds(), 0);
    EXPECT_EQ(whole.times.front().Seconds(), 0);
    EXPECT_EQ(whole.times.back().Seconds(), node.duration.Seconds());

    EXPECT_EQ(Samples(id, {0, 1}, {0, 1}).samples, (std::vector<std::array<double, 3>>{whole.samples.front()}));
    EXPECT_EQ(Samples(id, node.duration, node.duration).samples,
              (std::vector<std::array<double, 3>>{whole.samples.back()}));
    ns_sensor::SK_DynamicSampleInfo info;
    Ask([&] { mHandler->getSampleInfo(id.c_str(), id.size(), 0, 1, 100000, 1, &info, 0, nullptr, nullptr); });
    EXPECT_EQ(info.sampleCount, node.sampleCount);
  }

  TempFolder mFolder;
  std::string const mOutput = mFolder.Path("out.tdjson");
  ns_sensor::ISenmark* mManager = nullptr;
  ISensorFileHandler* mHandler = nullptr;
  std::map<std::uint8_t, std::size_t> mNodes;  ///< how many of each kind
  std::set<std::string> mSampleSets;
  std::map<std::string, int> mUnreadableSets;  ///< with their codes
};

TEST_P(RealInput, IsReadWholeAndSavedOrRefusedForAReason) {
  gAnswer = Answer();
  mHandler = Open();
  auto const refused = kRefused.find(fs::path(GetParam()).filename().string());
  if (refused != kRefused.end()) {
    EXPECT_EQ(gAnswer.code, refused->second.code) << gAnswer.error << "expected because " << refused->second.reason;
    EXPECT_EQ(mHandler, nullptr);
    EXPECT_FALSE(fs::exists(mOutput));
    EXPECT_EQ(mFolder.TempNames(), "");
    return;
  }
  ASSERT_EQ(gAnswer.error, "");
  ASSERT_NE(mHandler, nullptr);
  Walk("");
  ns_sensor::SK_FileInfo info;
  EXPECT_EQ(Ask([&] { mHandler->getFileInfo(&info, nullptr, nullptr); }).infos, 1);
  Ask([&] { mManager->closeFile(&mHandler, nullptr); });
  EXPECT_EQ(mHandler, nullptr);

  // Quotes inside a text are escaped, so these are the nodes and nothing else.
  std::string const output = FileBytes(mOutput);
  EXPECT_EQ(mNodes[ns_sensor::kGroupChild], CountIn(output, R"({"objectType":"dataGroup",)"));
  EXPECT_EQ(mNodes[ns_sensor::kStaticChild], CountIn(output, R"({"objectType":"dataStatic",)"));
  EXPECT_EQ(mNodes[ns_sensor::kDynamicChild], CountIn(output, R"({"objectType":"dataDynamic",)"));
  CheckUnreadableSets(output);

  ns_sensor::ITdjsonStream* stream = nullptr;
  Ask([&] { mManager->createTdjsonStream(&stream, GetParam().c_str(), 1, nullptr); });
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(stream->GetStreamSize(), output.size());
  std::string const saved = mFolder.Path("saved.tdjson");
  Ask([&] { stream->saveStream(saved.c_str(), nullptr); });
  EXPECT_TRUE(FileBytes(saved) == output);
  Ask([&] { mManager->destroyTdjsonStream(&stream, nullptr); });
  EXPECT_EQ(mFolder.TempNames(), "");
}

std::string NameOfFile(testing::TestParamInfo<std::string> const& row) {
  std::string name = fs::path(row.param).filename().string();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char byte) { return std::isalnum(byte) == 0; }, '_');
  return name;
}

/// Files of a folder, in order. None if there is no such folder.
std::vector<std::string> FilesIn(fs::path const& folder) {
  std::vector<std::string> files;
  std::error_code ignored;
  for (fs::directory_entry const& entry : fs::directory_iterator(folder, ignored)) {
    files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// Of the suites' own files those that are converted, but for the small ones that another suite knows to be refused.
std::vector<std::string> OwnFiles() {
  fs::path const data = SENMARK_TEST_DATA;
  std::vector<std::string> files = FilesIn(data / "real");
  for (std::string const& file : FilesIn(data)) {
    std::string const extension = fs::path(file).extension().string();
    if (fs::is_regular_file(file) && extension != ".tdjson" && extension != ".md") {
      files.push_back(file);
    }
  }
  for (std::string const& file : FilesIn(data / "convert/inputs")) {
    std::string const name = fs::path(file).filename().string();
    if (fs::exists(data / "convert/expected" / (name + ".tdjson")) && kTimeless.count(name) == 0) {
      files.push_back(file);
    }
  }
  return files;
}

#ifdef __SANITIZE_ADDRESS__
constexpr std::uintmax_t kLargestFile = 200 * 1024;  // the sanitizer takes minutes for the largest ones
#else
constexpr std::uintmax_t kLargestFile = std::numeric_limits<std::uintmax_t>::max();
#endif

/// Files that may lie beside the project: too large for it.
std::vector<std::string> FilesBeside() {
  char const* const chosen = std::getenv("SENMARK_REAL_DATA");
  fs::path const data = chosen != nullptr ? chosen : SENMARK_REAL_DATA;
  std::vector<std::string> files;
  for (char const* const format : {"bvh", "csv", "json", "tsv"}) {
    for (std::string const& file : FilesIn(data / format)) {
      if (fs::file_size(file) <= kLargestFile) {
        files.push_back(file);
      }
    }
  }
  return files;
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RealInput);
INSTANTIATE_TEST_SUITE_P(Own, RealInput, testing::ValuesIn(OwnFiles()), NameOfFile);
INSTANTIATE_TEST_SUITE_P(Beside, RealInput, testing::ValuesIn(FilesBeside()), NameOfFile);

}  // namespace
}  // namespace senmark_test
