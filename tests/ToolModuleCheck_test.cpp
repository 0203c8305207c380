// The checks of modules through the program.
#include <gtest/gtest.h>

#include "ModuleFolders.h"
#include "ToolRunner.h"

namespace {

using senmark_test::Lines;
using senmark_test::Manifest;
using senmark_test::Outcome;

class ToolModuleCheck : public senmark_test::ToolTest {
 protected:
  ToolModuleCheck() : mModules(mFolder), mInput(mFolder.Write("in.ext", "FMabcdefghijkl.")) {}

  std::string Add(char const* identifier) {
    return mModules.Add("M.tdx", Manifest("uid", R"("ext")").c_str(), identifier, senmark_test::kFaultyModule);
  }

  senmark_test::ModuleFolders mModules;
  std::string mInput;
};

TEST_F(ToolModuleCheck, StatusTellsWhetherThereAreErrors) {
  Outcome const good = Run({"module", "check", Add("good") + '/', mInput, mInput, "--time-limit", "600000"});
  EXPECT_EQ(good.status, 0) << good.err;
  EXPECT_EQ(good.out, "M.tdx: nothing to find fault with\n");
  EXPECT_EQ(good.err, "");
  Outcome const bad = Run({"module", "check", mFolder.Path("nothing.tdx")});
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.out,
            "nothing.tdx: error: there is no such folder\n"
            "behaviour: note: not tried: first the errors above have to go\n"
            "nothing.tdx: 1 error, 0 warnings, 1 note\n");
}

TEST_F(ToolModuleCheck, JsonHasTheFindings) {
  rapidjson::Document const found = RunJson({"module", "check", Add("disorder"), mInput, "--time-limit", "600000"}, 1);
  EXPECT_FALSE(found["ok"].GetBool());
  EXPECT_EQ(found["errors"].GetUint(), 1u);
  ASSERT_EQ(found["findings"].Size(), 1u);
  EXPECT_STREQ(found["findings"][0]["severity"].GetString(), "error");
  EXPECT_STREQ(found["findings"][0]["where"].GetString(), "in.ext");
}

TEST_F(ToolModuleCheck, UsageIsChecked) {
  std::string const module = Add("good");
  EXPECT_EQ(Run({"module"}).status, 2);
  EXPECT_EQ(Run({"module", "check"}).status, 2);
  EXPECT_EQ(Run({"module", "check", module, "--time-limit", "0"}).status, 2);
  Outcome const missing = Run({"module", "check", module, mFolder.Path("nothing")});
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(missing.err, "senmark: there is no file \"" + mFolder.Path("nothing") + "\"\n");
}

}  // namespace
