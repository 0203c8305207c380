// The names of static nodes, on the only kind of node that has nothing else.
#include "TdjsonStaticDataImpl.h"

#include <gtest/gtest.h>

#include <string>

namespace SK_PLUGIN {
namespace {

class Named : public TdjsonStaticDataImpl {
 public:
  using TdjsonStaticDataImpl::TdjsonStaticDataImpl;
  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kInvalidValue; }
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }
};

TEST(StaticData, TakesTheNameForPeopleFirst) {
  Named const node("display", "match");
  EXPECT_EQ(node.GetDisplayName(), "display");
  EXPECT_EQ(node.GetMatchName(), "match");
}

TEST(StaticData, EscapesTheNameForPeopleAlone) {
  Named const node("\b\t\n\f\r\"\\/\x01", "\b\t\n\f\r\"\\/\x01");
  EXPECT_EQ(node.GetDisplayName(), "\\b\\t\\n\\f\\r\\\"\\\\/\x01");
  EXPECT_EQ(node.GetMatchName(), "\b\t\n\f\r\"\\/\x01");
}

TEST(StaticData, TakesNamesWhole) {
  std::string const whole("a\0b", 3);
  Named const node(whole, whole);
  EXPECT_EQ(node.GetDisplayName(), whole);
  EXPECT_EQ(node.GetMatchName(), whole);
}

TEST(StaticData, NamesMayBeEmpty) {
  Named const node("", "");
  EXPECT_EQ(node.GetDisplayName(), "");
  EXPECT_EQ(node.GetMatchName(), "");
}

}  // namespace
}  // namespace SK_PLUGIN
