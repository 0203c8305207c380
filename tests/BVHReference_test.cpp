// A second converter stands here as the reference: plain text streams, nested calls, matrices of their own. What it
// writes, or the error in which it ends, is compared with the converter's for files that are cut and damaged anywhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <queue>
#include <random>
#include <sstream>

#include "BVHConverter.h"
#include "SK_Exception.h"
#include "SK_PluginException.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using SK_NAMESPACE_INT::SK_PathInfo;
using SK_PLUGIN::Writer_Wrapper;

namespace reference {

constexpr int kNone = -1;
char const* const kOrders[] = {"XYZ", "XZY", "YZX", "YXZ", "ZXY", "ZYX"};

struct Joint {
  std::string name;
  double offset[3] = {0, 0, 0};
  int rotation = kNone;
  int position = kNone;
  std::vector<Joint> children;
};

[[noreturn]] void Fail(int code) {
  throw SK_PLUGIN::SK_PluginException(static_cast<eErrorCode>(code), -1, -1);
}

int FindOrder(std::string const& line, std::string const& kind) {
  for (int order = 0; order != 6; ++order) {
    std::string text;
    for (char const* axis = kOrders[order]; *axis != '\0'; ++axis) {
      text += (text.empty() ? "" : " ") + std::string(1, *axis) + kind;
    }
    if (line.find(text) != std::string::npos) {
      return order;
    }
  }
  return kNone;
}

Joint ReadJoint(std::ifstream& file, std::string const& name, bool isEndSite) {
  Joint joint;
  joint.name = name;
  std::string line;
  std::getline(file, line);
  if (line.find('{') == std::string::npos) {
    Fail(1509);
  }
  std::string word;
  do {
    word.clear();
    std::getline(file, line);
    std::stringstream stream(line);
    stream >> word;
    if (word == "OFFSET") {
      if (stream.fail()) {
        Fail(1509);
      }
      double offset[3] = {0, 0, 0};
      stream >> offset[0] >> offset[1] >> offset[2];
      std::string more;
      stream >> more;
      if (!more.empty()) {
        Fail(1509);
      }
      std::copy(offset, offset + 3, joint.offset);
    } else if (word == "CHANNELS" && !isEndSite) {
      int count = 0;
      stream >> count;
      if (count == 6) {
        joint.position = FindOrder(line, "position");
        joint.rotation = FindOrder(line, "rotation");
      } else if (count == 3) {
        joint.rotation = FindOrder(line, "rotation");
      } else {
        Fail(1509);
      }
    } else if (word == "JOINT" && !isEndSite) {
      std::string child;
      stream >> child;
      joint.children.push_back(ReadJoint(file, child, false));
    } else if (word == "End") {
      std::string site;
      stream >> site;
      if (site != "Site") {
        Fail(1509);
      }
      joint.children.push_back(ReadJoint(file, name + "End", true));
    }
  } while (word != "}" && file.good());
  if (file.fail()) {
    Fail(1509);
  }
  return joint;
}

template <typename Value>
void ReadUntil(std::ifstream& file, std::string const& key, Value& value) {
  std::string line;
  do {
    std::getline(file, line);
  } while (line.find(key) == std::string::npos && file.good());
  if (file.good()) {
    line.erase(line.find(key), key.size());
    std::stringstream(line) >> value;
  }
}

double RateOf(double frameTime) {
  auto const hundredths = static_cast<long long>(std::trunc(100.0 / frameTime));
  switch (hundredths) {
    case 2400:
      return 24;
    case 2500:
      return 25;
    case 2997:
      return 29.97;
    case 3000:
      return 30;
    case 5000:
      return 50;
    case 5994:
      return 59.94;
    case 6000:
      return 60;
    default:
      return static_cast<double>(hundredths / 100);
  }
}

using Matrix = std::vector<std::vector<double>>;

Matrix Product(Matrix const& a, Matrix const& b) {
  Matrix result(3, std::vector<double>(3, 0));
  for (std::size_t i = 0; i != 3; ++i) {
    for (std::size_t j = 0; j != 3; ++j) {
      for (std::size_t k = 0; k != 3; ++k) {
        result[i][j] += a[i][k] * b[k][j];
      }
    }
  }
  return result;
}

std::vector<double> Turned(int order, std::vector<double> const& inFile) {
  double angles[3] = {0, 0, 0};
  for (std::size_t i = 0; i != 3; ++i) {
    angles[kOrders[order][i] - 'X'] = inFile[i] * 0.017453292519943295;
  }
  double const cx = std::cos(angles[0]);
  double const sx = std::sin(angles[0]);
  double const cy = std::cos(angles[1]);
  double const sy = std::sin(angles[1]);
  double const cz = std::cos(angles[2]);
  double const sz = std::sin(angles[2]);
  Matrix const about[] = {{{1, 0, 0}, {0, cx, -sx}, {0, sx, cx}},
                          {{cy, 0, sy}, {0, 1, 0}, {-sy, 0, cy}},
                          {{cz, -sz, 0}, {sz, cz, 0}, {0, 0, 1}}};
  Matrix const p =
      Product(Product(about[kOrders[order][0] - 'X'], about[kOrders[order][1] - 'X']), about[kOrders[order][2] - 'X']);
  // The rotation is the transpose of the product, so each element is looked up the other way round.
  double const toDegrees = 57.29577951308402;
  return {-std::atan2(p[1][2], p[2][2]) * toDegrees,
          std::atan2(-p[0][2], std::sqrt(p[1][2] * p[1][2] + p[2][2] * p[2][2])) * toDegrees,
          std::atan2(p[0][1], p[0][0]) * toDegrees};
}

class Converter {
 public:
  Converter() = default;
  ~Converter() { Writer_Wrapper::RemoveRoot_Wrapper(this); }
  Converter(Converter const&) = delete;
  Converter& operator=(Converter const&) = delete;

  void Convert(std::string const& path, std::string const& outputPath) {
    std::ifstream file(path);
    if (!file.is_open()) {
      Fail(1006);
    }
    std::string line;
    std::string word;
    std::getline(file, line);
    std::stringstream(line) >> word;
    if (word != "HIERARCHY") {
      Fail(1001);
    }
    word.clear();
    std::getline(file, line);
    std::stringstream stream(line);
    stream >> word;
    if (word != "ROOT") {
      Fail(1001);
    }
    std::string name;
    stream >> name;
    Joint const skeleton = ReadJoint(file, name, false);
    std::uint64_t count = 0;
    ReadUntil(file, "Frames:", count);
    double frameTime = 0;
    ReadUntil(file, "Frame Time:", frameTime);
    if (!(frameTime > 0.001)) {
      Fail(1508);
    }
    mRate = RateOf(frameTime);
    SK_DynamicFileInfo info;
    SK_TimeCodeInfo timeCode;
    timeCode.frameRate = {static_cast<std::int32_t>(mRate), 1};
    timeCode.dropFrame = 0;
    if (mRate == 29.97 || mRate == 59.94) {
      timeCode.frameRate = {mRate == 29.97 ? 30000 : 60000, 1001};
      timeCode.dropFrame = 1;
    }
    info.timeInfo = timeCode;
    auto const root = Writer_Wrapper::CreateRoot_Wrapper(this, outputPath.c_str(), &info);
    root->SetCreator("com.velmo.sensor.bvh");
    root->AddGroup(GroupOf(skeleton));
    ReadMotion(file);
    root->Commit();
  }

 private:
  using Channels = std::shared_ptr<SK_PLUGIN::ITdjsonDynamicDataNumArr_v1>;

  static SK_NumberArrayProperties Properties(int order, std::string const& kind, bool isPoint) {
    SK_NumberArrayProperties properties;
    properties.arraySize = 3;
    properties.isPoint = isPoint;
    for (char const* axis = kOrders[order]; *axis != '\0'; ++axis) {
      properties.arrayDisplayNames.push_back(std::string(1, *axis) + '_' + kind);
    }
    return properties;
  }

  Channels NewChannels(std::string const& name, SK_NumberArrayProperties const& properties) {
    SK_DynamicDataFields fields;
    fields.displayName = name;
    fields.matchName = "mn" + name;
    fields.sampleSetID = std::to_string(mCounter++);
    fields.interpolation = kLinearInterpolation;
    return Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, fields, properties);
  }

  std::shared_ptr<SK_PLUGIN::ITdjsonGroup_v1> GroupOf(Joint const& joint) {
    auto group = Writer_Wrapper::CreateGroup_Wrapper(this, "mn" + joint.name, joint.name);
    group->AddStaticData(Writer_Wrapper::CreateStaticDataNumArr_Wrapper(
        this, "mn" + joint.name + "OFFSET", joint.name + "OFFSET", {joint.offset[0], joint.offset[1], joint.offset[2]},
        Properties(0, "OFFSET", true)));
    if (joint.position != kNone) {
      Channels const node = NewChannels(joint.name + "POSITION", Properties(joint.position, "POSITION", true));
      group->AddDynamicData(node);
      mNodes.emplace_back(node, kNone);
    }
    if (joint.rotation != kNone) {
      Channels const node = NewChannels(joint.name + "ROTATION", Properties(0, "ROTATION", false));
      group->AddDynamicData(node);
      mNodes.emplace_back(node, joint.rotation);
    }
    for (Joint const& child : joint.children) {
      group->AddGroup(GroupOf(child));
    }
    return group;
  }

  void ReadMotion(std::ifstream& file) {
    while (file.good()) {
      std::string line;
      std::getline(file, line);
      std::stringstream stream(line);
      std::queue<double> numbers;
      double number = 0;
      while (stream >> number) {
        numbers.push(number);
      }
      if (numbers.empty()) {
        continue;
      }
      if (numbers.size() != 3 * mNodes.size()) {
        Fail(1509);
      }
      for (auto const& [node, order] : mNodes) {
        std::vector<double> values;
        for (int i = 0; i != 3; ++i) {
          values.push_back(numbers.front());
          numbers.pop();
        }
        if (order == kNone) {
          values[1] = -values[1];
          values[2] = -values[2];
        } else {
          values = Turned(order, values);
        }
        node->AddSample(mTime, values);
      }
      Step();
    }
    for (auto const& node : mNodes) {
      node.first->Commit();
    }
  }

  void Step() {
    int const dropStart = mRate == 29.97 ? 2 : mRate == 59.94 ? 4 : 0;
    if (static_cast<double>(mTime.frames) < mRate - 1.0) {
      ++mTime.frames;
    } else if (mTime.seconds < 59) {
      mTime.frames = 0;
      ++mTime.seconds;
    } else if (mTime.minutes >= 59) {
      mTime = {mTime.hours + 1, 0, 0, 0};
    } else {
      mTime = {mTime.hours, mTime.minutes + 1, 0, 0};
      mTime.frames = mTime.minutes % 10 == 0 ? 0 : dropStart;
    }
  }

  double mRate = 0;
  int mCounter = 0;
  SK_DateTimeSMPTE mTime;
  std::vector<std::pair<Channels, int>> mNodes;
};

}  // namespace reference

/// What stands in the output file, or the error.
template <typename Convert>
std::string Outcome(senmark_test::TempFolder const& folder, std::string const& outputPath, Convert&& convert) {
  try {
    convert();
  } catch (SK_PLUGIN::SK_PluginException const& error) {
    return "error " + std::to_string(error.GetErrorCode()) + " at " + std::to_string(error.GetFileOffset()) + ',' +
           std::to_string(error.GetFileLineNo());
  } catch (SK_Exception const& error) {
    return "writer " + std::to_string(error.GetErrorCode());
  }
  return folder.Read(outputPath);
}

class BVHReference : public testing::Test {
 protected:
  void ExpectAlike(std::string const& content) {
    SK_PathInfo info(mFolder.Write("input.bvh", content), "bvh");
    info.outputPath = mFolder.Path("out.tdjson");
    mOutcome = Outcome(mFolder, info.outputPath, [&] {
      BVHConverter converter(info);
      EXPECT_TRUE(converter.convertToTDJSON());
    });
    std::string const expectedPath = mFolder.Path("expected.tdjson");
    std::string const expected = Outcome(mFolder, expectedPath, [&] {
      reference::Converter converter;
      converter.Convert(info.filePath, expectedPath);
    });
    if (mOutcome != expected) {
      auto const differs = std::mismatch(mOutcome.begin(), mOutcome.end(), expected.begin(), expected.end());
      auto const at = static_cast<std::size_t>(differs.first - mOutcome.begin());
      FAIL() << "instead of: " << expected.substr(at, 200) << "\nthere is: " << mOutcome.substr(at, 200)
             << "\nfor: " << content.substr(0, 2000);
    }
  }

  senmark_test::TempFolder mFolder;
  std::string mOutcome;  ///< of the last file that was compared
};

/// Positions first, as usual, with ends that hang on ends.
char const* const kUsualFile =
    "HIERARCHY\n"
    "ROOT Hips\n"
    "{\n"
    "\tOFFSET 0.00 1.5 -2e-1\n"
    "\tCHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
    "\tJOINT Leg\n"
    "\t{\n"
    "\t\tOFFSET 3 0 0\n"
    "\t\tCHANNELS 3 Yrotation Zrotation Xrotation\n"
    "\t\tEnd Site\n"
    "\t\t{\n"
    "\t\t\tOFFSET 0 -4 0\n"
    "\t\t\tEnd Site\n"
    "\t\t\t{\n"
    "\t\t\t\tOFFSET 0 1\n"
    "\t\t\t}\n"
    "\t\t}\n"
    "\t}\n"
    "}\n"
    "MOTION\n"
    "Frames: 2\n"
    "Frame Time: 0.0333333\n"
    "1 2 3 10 20 30 -40 50 60\n"
    "-0 0 1e-3 0 -0 180 -90 1e22 360\n"
    "\n"
    "1 .5 3. 10 20 30 -40 50 60\n";

/// Rotations first, joints with nothing but positions or nothing at all, the line ends of another system.
char const* const kRotationFirst =
    " HIERARCHY of\r\n"
    "\tROOT a b\r\n"
    "x{\r\n"
    "CHANNELS 6 Zrotation Yrotation Xrotation Zposition Xposition Yposition\r\n"
    "OFFSET 1 2 3 \r\n"
    "JOINT p\r\n"
    "{ }\r\n"
    "CHANNELS 6 Yposition Zposition Xposition none at all\r\n"
    "}\r\n"
    "JOINT n\r\n"
    "{\r\n"
    "CHANNELS 3 Xposition Yposition Zposition\r\n"
    "} }\r\n"
    "} \r\n"
    "Frame Time: 9\r\n"
    "\tFrames:\t-1\r\n"
    "0.0Frame Time:333667 s\r\n"
    "10 20 30 1 2 3 4 5 6\r\n"
    " \t\r\n"
    "90 0 -90 -1 -2 -3 -4 -5 -6 x 7\r\n"
    "none 1 2\r\n";

/// Every order of rotations, one joint each, nested.
std::string AllOrders() {
  std::string content = "HIERARCHY\nROOT r\n{\n";
  std::string motion;
  int joint = 0;
  for (char const* const channels :
       {"Xrotation Yrotation Zrotation", "Xrotation Zrotation Yrotation", "Yrotation Zrotation Xrotation",
        "Yrotation Xrotation Zrotation", "Zrotation Xrotation Yrotation", "Zrotation Yrotation Xrotation"}) {
    content += "JOINT j" + std::to_string(++joint) + "\n{\nCHANNELS 3 " + channels + "\n";
    motion += "10 -20 30.5 ";
  }
  for (; joint != 0; --joint) {
    content += "}\n";
  }
  return content + "}\nFrames: 1\nFrame Time: .0166833\n" + motion + '\n' + motion;
}

struct GoodFile {
  char const* name;
  std::string content;
};

std::ostream& operator<<(std::ostream& out, GoodFile const& row) {
  return out << row.name;
}

class BVHReferenceFile : public BVHReference, public testing::WithParamInterface<GoodFile> {};

TEST_P(BVHReferenceFile, IsConvertedAlikeHoweverItIsCut) {
  std::string const& content = GetParam().content;
  int converted = 0;
  for (std::size_t length = 0; length <= content.size(); ++length) {
    ASSERT_NO_FATAL_FAILURE(ExpectAlike(content.substr(0, length)));
    converted += mOutcome[0] == '{' ? 1 : 0;
  }
  EXPECT_EQ(mOutcome[0], '{') << "the whole file must be a good one: " << mOutcome;
  EXPECT_GT(converted, 10);
}

TEST_P(BVHReferenceFile, IsConvertedAlikeHoweverItIsDamaged) {
  std::mt19937 random(static_cast<unsigned>(GetParam().content.size()));
  auto const below = [&](std::size_t count) { return random() % static_cast<std::mt19937::result_type>(count); };
  std::string const bytes = " \t\r\n\n\v{}0123456789.-+eXYZ\xa0" + std::string(1, '\0');
  for (int round = 0; round != 600; ++round) {
    std::string content = GetParam().content;
    for (auto left = 1 + below(3); left != 0; --left) {
      std::size_t const at = below(content.size());
      switch (below(4)) {
        case 0:
          content[at] = bytes[below(bytes.size())];
          break;
        case 1:
          content.erase(at, 1 + below(3));
          break;
        case 2:
          content.insert(at, 1, bytes[below(bytes.size())]);
          break;
        default: {
          // A whole line goes to another place.
          std::size_t const begin = content.rfind('\n', at) + 1;
          std::string const line = content.substr(begin, content.find('\n', at) - begin) + '\n';
          content.insert(content.rfind('\n', below(content.size())) + 1, line);
        }
      }
      if (content.empty()) {
        content = "x";
      }
    }
    ASSERT_NO_FATAL_FAILURE(ExpectAlike(content));
  }
}

GoodFile const kGoodFiles[] = {{"Usual", kUsualFile}, {"RotationFirst", kRotationFirst}, {"AllOrders", AllOrders()}};
INSTANTIATE_TEST_SUITE_P(Table, BVHReferenceFile, testing::ValuesIn(kGoodFiles),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BVHReference, EveryRateIsTheSame) {
  for (char const* const frameTime : {"0.001",
                                      "0.0010000000000000002",
                                      "0.0010000000000000001",
                                      "0.0011",
                                      "0.008333",
                                      "0.0099999",
                                      "0.01",
                                      "0.0100001",
                                      "0.0166666",
                                      "0.01666666666666666",
                                      "0.0166666666666666667",
                                      "0.016666666666666668",
                                      "0.0166667",
                                      "0.0166805",
                                      "0.016683",
                                      "0.0166833",
                                      "0.01668335",
                                      "0.0166834",
                                      "0.02",
                                      "0.020000000000000004",
                                      "0.0333333",
                                      "0.03333333333333333",
                                      "0.033333333333333333",
                                      "0.033333333333333337",
                                      "0.033333",
                                      "0.0333334",
                                      "0.03336",
                                      "0.033355",
                                      "0.0333556",
                                      "0.0333666",
                                      "0.03336669",
                                      "0.033366666666666666",
                                      "0.0333667",
                                      "0.033366700033366700",
                                      "0.03336670003336671",
                                      "0.04",
                                      "0.040000000000000008",
                                      "0.0400001",
                                      "0.0416666",
                                      "0.04166666666666666",
                                      "0.041666666666666664",
                                      "0.04166666666666667",
                                      "0.0416667",
                                      "1",
                                      "1.0000001",
                                      "100",
                                      "100.00001",
                                      "1e300",
                                      "1e308",
                                      "-0.04",
                                      "nan",
                                      "inf"}) {
    ASSERT_NO_FATAL_FAILURE(
        ExpectAlike("HIERARCHY\nROOT r\n{\nCHANNELS 3 Zrotation Xrotation Yrotation\n}\nFrames: "
                    "1\nFrame Time: " +
                    std::string(frameTime) + "\n1 2 3\n4 5 6\n"));
  }
}

TEST_F(BVHReference, MoreThanAnHourOfDropFrames) {
  std::string motion;
  for (int frame = 0; frame != 12 * 17982 + 3; ++frame) {
    motion += "1 2 3\n";
  }
  std::string const head =
      "HIERARCHY\nROOT r\n{\nCHANNELS 6 Zposition Xposition Yposition none\n}\nFrames: 1\nFrame Time: ";
  for (char const* const frameTime : {"0.0333667", "0.0166833"}) {
    ASSERT_NO_FATAL_FAILURE(ExpectAlike(head + frameTime + '\n' + motion));
    EXPECT_EQ(mOutcome[0], '{');
  }
}

}  // namespace
}  // namespace ns_sensor
