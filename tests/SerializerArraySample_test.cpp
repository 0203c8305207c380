#include "SerializerArraySample.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "NumberTexts.h"
#include "SampleBuffers.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::Pattern;
using senmark_test::TextOf;

struct Elements {
  char const* name;
  char const* value;
  char const* text;
};

void PrintTo(Elements const& row, std::ostream* out) {
  *out << row.name;
}

class NumberArraySample : public testing::TestWithParam<Elements> {};

TEST_P(NumberArraySample, HasTheTextOfItsRow) {
  Elements const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) { AppendNumberArraySample(out, "T", row.value, Pattern(2, 1, true)); }),
            std::string(R"({"time":"T","value":[)") + row.text + "]}");
}

Elements const kElements[] = {
    {"One", "7", R"("+07.0")"},
    {"Three", "1.5,-2,10", R"("+01.5","-02.0","+10.0")"},
    {"EmptyOneInBetween", "1,,2", R"("+01.0","+00.0","+02.0")"},
    {"EmptyFirstOne", ",1", R"("+00.0","+01.0")"},
    {"CommaAtTheEndIsNoFurtherOne", "1,2,", R"("+01.0","+02.0")"},
    {"CommaAlone", ",", R"("+00.0")"},
};

INSTANTIATE_TEST_SUITE_P(SerializerArraySample, NumberArraySample, testing::ValuesIn(kElements),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace SK_PLUGIN
