// Static nodes that are true or false.
#include "TdjsonStaticDataBoolImpl.h"

#include <gtest/gtest.h>

namespace SK_PLUGIN {
namespace {

TEST(StaticDataBool, IsWhatItWasMadeOf) {
  for (bool const value : {true, false}) {
    TdjsonStaticDataBoolImpl const node(nullptr, "a \"flag\"", "flag", value);
    EXPECT_EQ(node.GetType(), 3);
    EXPECT_EQ(node.GetDataValue(), value);
    EXPECT_EQ(node.GetDisplayName(), R"(a \"flag\")");
    EXPECT_EQ(node.GetMatchName(), "flag");
  }
}

TEST(StaticDataBool, IsItsOwnRealObject) {
  TdjsonStaticDataBoolImpl node(nullptr, "flag", "flag", true);
  EXPECT_EQ(node.GetActualITdjsonStaticData(), static_cast<ITdjsonStaticData_v1*>(&node));
}

}  // namespace
}  // namespace SK_PLUGIN
