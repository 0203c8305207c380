#include "InputFile.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "NumberSetFile.h"
#include "TempFolder.h"

namespace senmark_tool {
namespace {

using senmark_test::NumberSetFile;

class InputFile : public testing::Test {
 protected:
  using Input = senmark_tool::InputFile;

  static std::string Data(std::string const& name) { return std::string(SENMARK_TEST_DATA) + '/' + name; }

  senmark_test::TempFolder mFolder;
  senmark::Senmark mManager{senmark::Library::Linked()};
};

TEST_F(InputFile, TimeBaseOfAConvertedFile) {
  Input const input(mManager, Data("dab_30hz.bvh"), Input::eText::kKept);
  std::optional<TimeBase> const base = input.FindTimeBase();
  ASSERT_TRUE(base.has_value());
  EXPECT_EQ(base->Description(), "time code, 30 frames per second");
  EXPECT_EQ(base->Start(), "00:00:00:00");
}

TEST_F(InputFile, TimeBaseOfAFileOfTheFormat) {
  std::string const text = NumberSetFile::Smpte(25).Add("s", {25, 50}).Text();
  // With the format's own name, and known by what is in it.
  for (char const* const name : {"file.tdjson", "file.dat", "file.csv", "file"}) {
    Input const input(mManager, mFolder.Write(name, text), Input::eText::kKept);
    std::optional<TimeBase> const base = input.FindTimeBase();
    ASSERT_TRUE(base.has_value()) << name;
    EXPECT_EQ(base->Start(), "00:00:01:00") << name;
  }
}

TEST_F(InputFile, FileOfTheFormatIsNotCopied) {
  Input const input(mManager, Data("dab_30hz_v2.tdjson"), Input::eText::kKept);
  EXPECT_TRUE(input.FindTimeBase().has_value());
  EXPECT_EQ(mFolder.TempNames().find("senmark_"), std::string::npos);
}

TEST_F(InputFile, ConvertedTextIsKeptAsLongAsItIsNeeded) {
  {
    Input const input(mManager, mFolder.Write("table.csv", "a,b\n1,2\n"), Input::eText::kKept);
    EXPECT_NE(mFolder.TempNames().find("senmark_"), std::string::npos);
    EXPECT_EQ(input.File().children().size(), 2u);
    EXPECT_FALSE(input.FindTimeBase().has_value());
  }
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(InputFile, TextThatIsNotNeededIsNotKept) {
  Input const input(mManager, mFolder.Write("table.csv", "a,b\n1,2\n"), Input::eText::kNotNeeded);
  EXPECT_EQ(mFolder.TempNames().find("senmark_"), std::string::npos);
  EXPECT_FALSE(input.FindTimeBase().has_value());
}

TEST_F(InputFile, ErrorsAreThoseOfOpeningAndNothingIsLeft) {
  std::string const path = mFolder.Write("broken.json", "{\"a\":[1,}");
  for (Input::eText const text : {Input::eText::kNotNeeded, Input::eText::kKept}) {
    try {
      Input const input(mManager, path, text);
      ADD_FAILURE() << "opened";
    } catch (senmark::Error const& error) {
      EXPECT_EQ(error.code(), 1506);
    }
    EXPECT_EQ(mFolder.TempNames(), "");
  }
}

}  // namespace
}  // namespace senmark_tool
