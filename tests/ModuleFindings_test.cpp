#include "ModuleFindings.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using senmark_tool::eSeverity;
using senmark_tool::ModuleFindings;

ModuleFindings Some() {
  ModuleFindings findings;
  findings.Error("Contents", "missing");
  findings.Add({eSeverity::kWarning, "manifest", senmark_tool::TextPlace{17, 2, 5}, "a \"key\""});
  findings.Warning("code", "loud");
  findings.Note("stray\x1b", "of no use");
  return findings;
}

std::string Printed(ModuleFindings const& findings) {
  std::ostringstream out;
  findings.Print(out, "A.tdx");
  return out.str();
}

TEST(ModuleFindings, ALineForEachAndASum) {
  EXPECT_EQ(Printed(Some()),
            "Contents: error: missing\n"
            "manifest:2:5: warning: a \"key\" (byte 17)\n"
            "code: warning: loud\n"
            "stray?: note: of no use\n"
            "A.tdx: 1 error, 2 warnings, 1 note\n");
}

TEST(ModuleFindings, NoneIsTold) {
  EXPECT_EQ(Printed(ModuleFindings()), "A.tdx: nothing to find fault with\n");
}

TEST(ModuleFindings, OnlyErrorsAreErrors) {
  EXPECT_TRUE(Some().HasErrors());
  ModuleFindings findings;
  findings.Warning("a", "b");
  findings.Note("a", "b");
  EXPECT_FALSE(findings.HasErrors());
  EXPECT_EQ(Printed(findings), "a: warning: b\na: note: b\nA.tdx: 0 errors, 1 warning, 1 note\n");
}

TEST(ModuleFindings, JsonHasTheSame) {
  std::ostringstream out;
  Some().WriteJson(out, "A.tdx");
  EXPECT_EQ(out.str(),
            R"({"module":"A.tdx","ok":false,"errors":1,"warnings":2,"notes":1,"findings":[)"
            "\n"
            R"({"severity":"error","where":"Contents","text":"missing"},)"
            "\n"
            R"({"severity":"warning","where":"manifest","line":2,"column":5,"offset":17,"text":"a \"key\""},)"
            "\n"
            R"({"severity":"warning","where":"code","text":"loud"},)"
            "\n"
            R"({"severity":"note","where":"stray\u001b","text":"of no use"})"
            "\n]}\n");
  std::ostringstream none;
  ModuleFindings().WriteJson(none, "A.tdx");
  EXPECT_EQ(none.str(), "{\"module\":\"A.tdx\",\"ok\":true,\"errors\":0,\"warnings\":0,\"notes\":0,\"findings\":[]}\n");
}

}  // namespace
