#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>

#include "Options.h"
#include "TempFolder.h"
#include "senmark/module/Failure.h"

namespace senmark_motion {
namespace {

class MotionOptions : public testing::Test {
 protected:
  Options Read(std::string const& text) const { return ReadOptions(mFolder.Write("options.json", text)); }

  std::string MessageOf(std::string const& text) const {
    try {
      Read(text);
      return "none";
    } catch (senmark::kit::Failure const& failure) {
      EXPECT_EQ(failure.offset(), -1);
      return failure.what();
    }
  }

  senmark_test::TempFolder mFolder;
};

TEST_F(MotionOptions, WithoutAFileThereAreNone) {
  Options const options = ReadOptions(mFolder.Path("missing.json"));
  EXPECT_FALSE(options.worldPositions);
  EXPECT_EQ(options.rootPositions, ePositions::kReplace);
  EXPECT_EQ(options.jointPositions, ePositions::kByFile);
}

TEST_F(MotionOptions, AreRead) {
  EXPECT_FALSE(Read("{}").worldPositions);
  EXPECT_FALSE(Read(R"({"worldPositions": false})").worldPositions);
  EXPECT_TRUE(Read(" {\n\"worldPositions\" : true }\r\n").worldPositions);
  Options const options = Read(R"({"rootPositions":"add","jointPositions":"replace","worldPositions":true})");
  EXPECT_TRUE(options.worldPositions);
  EXPECT_EQ(options.rootPositions, ePositions::kAdd);
  EXPECT_EQ(options.jointPositions, ePositions::kReplace);
}

struct Refused {
  char const* text;
  char const* part;  ///< of the message
};

TEST_F(MotionOptions, AnythingElseIsNamed) {
  Refused const kRefused[] = {
      {"", "no JSON"},
      {"{\"worldPositions\": true", "no JSON"},
      {"{\"worldPositions\": true} x", "no JSON"},
      {"[]", "no object"},
      {"true", "no object"},
      {R"({"worldPosition": true})", "\"worldPosition\""},
      {R"({"": true})", "\"\""},
      {R"({"worldPositions": 1})", "\"worldPositions\""},
      {R"({"worldPositions": "true"})", "\"worldPositions\""},
      {R"({"worldPositions": true, "worldPositions": true})", "\"worldPositions\" twice"},
      {R"({"rootPositions": "sum"})", "\"rootPositions\""},
      {R"({"jointPositions": null})", "\"jointPositions\""},
  };
  for (Refused const& refused : kRefused) {
    EXPECT_NE(MessageOf(refused.text).find(refused.part), std::string::npos)
        << refused.text << ": " << MessageOf(refused.text);
  }
}

TEST_F(MotionOptions, DepthAndSizeDoNoHarm) {
  EXPECT_NE(MessageOf(std::string(60000, '[')).find("no JSON"), std::string::npos);
  EXPECT_NE(MessageOf(std::string(70000, ' ') + "{}").find("larger than"), std::string::npos);
}

TEST_F(MotionOptions, FolderOfThatNameIsRefused) {
  std::string const path = mFolder.Path("folder.json");
  ASSERT_EQ(::mkdir(path.c_str(), 0700), 0);
  EXPECT_THROW(ReadOptions(path), senmark::kit::Failure);
}

}  // namespace
}  // namespace senmark_motion
