#include "SvgPlot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <set>
#include <sstream>

namespace senmark_tool {
namespace {

/// A chart of ten seconds.
Chart ChartOf(eJoin join, std::size_t curves = 1, bool isArray = false, std::size_t columns = 11) {
  Chart chart;
  chart.name = "Wind";
  chart.extent = {{0, 1}, {10, 1}};
  chart.join = join;
  chart.isArray = isArray;
  chart.curves.assign(curves, Curve(columns));
  for (std::size_t i = 0; isArray && i != curves; ++i) {
    chart.elements.push_back("e" + std::to_string(i));
  }
  return chart;
}

std::string Svg(Chart const& chart) {
  std::ostringstream out;
  WriteSvgPlot(out, chart);
  return out.str();
}

std::size_t Count(std::string const& text, std::string const& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

/// Data of the first path with an attribute.
std::string PathWith(std::string const& svg, std::string const& attribute) {
  std::size_t const at = svg.find(attribute);
  EXPECT_NE(at, std::string::npos) << attribute;
  std::size_t const start = svg.rfind("<path d=\"", at) + 9;
  return svg.substr(start, svg.find('"', start) - start);
}

constexpr char kLine[] = "stroke-width=\"1.6\"";
constexpr char kDot[] = "stroke-linecap=\"round\"";

/// Every element that is opened is closed in its order, and no mark stands in a text.
testing::AssertionResult IsWellFormed(std::string const& xml) {
  std::vector<std::string> open;
  for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
    std::size_t const end = xml.find('>', at);
    if (end == std::string::npos || xml.find('<', at + 1) < end) {
      return testing::AssertionFailure() << "no end of the tag at " << at;
    }
    std::string const tag = xml.substr(at + 1, end - at - 1);
    if (Count(tag, "\"") % 2 != 0) {
      return testing::AssertionFailure() << "quotes in <" << tag << ">";
    }
    if (tag[0] == '/') {
      if (open.empty() || open.back() != tag.substr(1)) {
        return testing::AssertionFailure() << "<" << tag << "> closes nothing";
      }
      open.pop_back();
    } else if (tag.back() != '/') {
      open.push_back(tag.substr(0, tag.find(' ')));
    }
  }
  return open.empty() ? testing::AssertionSuccess() : testing::AssertionFailure() << open.back() << " is left open";
}

/// Numbers of a path in their order.
std::vector<double> NumbersOf(std::string const& path) {
  std::vector<double> numbers;
  for (char const* p = path.c_str(); *p != '\0';) {
    char* end = nullptr;
    double const number = std::strtod(p, &end);
    if (end == p) {
      ++p;
    } else {
      numbers.push_back(number);
      p = end;
    }
  }
  return numbers;
}

TEST(SvgPlot, LinesJoinTheSamples) {
  Chart chart = ChartOf(eJoin::kLines);
  chart.curves[0].Add(0, 0);
  chart.curves[0].Add(5, 10);
  chart.curves[0].Add(10, 0);
  // From the left to the right edge of the area, and from its bottom to its top.
  std::string const path = PathWith(Svg(chart), kLine);
  std::vector<double> const numbers = NumbersOf(path);
  ASSERT_EQ(numbers.size(), 6u) << path;
  EXPECT_EQ(Count(path, "L"), 2u) << path;
  EXPECT_EQ(numbers[1], 476);
  EXPECT_EQ(numbers[3], 64);
  EXPECT_EQ(numbers[5], 476);
  EXPECT_EQ(numbers[4], 932);
  EXPECT_NEAR(numbers[2], (numbers[0] + numbers[4]) / 2, 0.011);
}

TEST(SvgPlot, StepsHoldTheEarlierValue) {
  Chart chart = ChartOf(eJoin::kSteps);
  chart.curves[0].Add(0, 0);
  chart.curves[0].Add(10, 10);
  std::string const path = PathWith(Svg(chart), kLine);
  EXPECT_EQ(path.substr(path.find(' ')), " 476H932V64") << path;
}

TEST(SvgPlot, DotsAreNotJoined) {
  Chart chart = ChartOf(eJoin::kDots);
  chart.curves[0].Add(0, 0);
  chart.curves[0].Add(10, 10);
  std::string const svg = Svg(chart);
  EXPECT_EQ(Count(svg, kLine), 0u);
  std::string const path = PathWith(svg, kDot);
  EXPECT_EQ(Count(path, "M"), 2u) << path;
  EXPECT_EQ(Count(path, "h0"), 2u) << path;
}

TEST(SvgPlot, ColumnShowsItsExtremes) {
  Chart chart = ChartOf(eJoin::kLines);
  for (double const value : {4.0, 0.0, 10.0, 6.0}) {
    chart.curves[0].Add(5, value);
  }
  chart.curves[0].Add(10, 6);
  std::string const path = PathWith(Svg(chart), kLine);
  // 4 is at 4/10 above the bottom, then come 0, 10 and 6.
  EXPECT_EQ(path.substr(path.find(' ')), " 311.2V476V64V228.8L932 228.8") << path;
  chart.join = eJoin::kDots;
  EXPECT_EQ(Count(PathWith(Svg(chart), kDot), "M"), 5u);
}

TEST(SvgPlot, FewSamplesAreMarkedAndManyAreNot) {
  Chart few = ChartOf(eJoin::kLines, 1, false, 100);
  Chart many = few;
  for (std::size_t i = 0; i != 100; ++i) {
    many.curves[0].Add(i, static_cast<double>(i));
    if (i < 60) {
      few.curves[0].Add(i, static_cast<double>(i));
    }
  }
  EXPECT_EQ(Count(Svg(few), kDot), 1u);
  EXPECT_EQ(Count(Svg(many), kDot), 0u);
}

TEST(SvgPlot, OneSampleIsADotInTheMiddle) {
  Chart chart = ChartOf(eJoin::kLines);
  chart.extent = {{5, 1}, {5, 1}};
  chart.curves[0].Add(5, 3);
  std::string const svg = Svg(chart);
  std::vector<double> const numbers = NumbersOf(PathWith(svg, kDot));
  ASSERT_GE(numbers.size(), 2u);
  EXPECT_NE(svg.find(">5.0</text>"), std::string::npos);
  // Under the point stands the tick of its time.
  std::size_t const label = svg.find(">5.0</text>");
  std::size_t const start = svg.rfind("<text x=\"", label) + 9;
  EXPECT_NEAR(std::strtod(svg.c_str() + start, nullptr), numbers[0], 0.011);
}

TEST(SvgPlot, HasTitleAxesAndUnits) {
  Chart chart = ChartOf(eJoin::kLines);
  chart.name = "Wind speed [m/s]";
  chart.curves[0].Add(0, 1);
  std::string const svg = Svg(chart);
  EXPECT_NE(svg.find("<title>Wind speed</title>"), std::string::npos) << svg;
  EXPECT_NE(svg.find(">Wind speed</text>"), std::string::npos);
  EXPECT_NE(svg.find(">Wind speed [m/s]</text>"), std::string::npos);
  EXPECT_NE(svg.find(">time [s]</text>"), std::string::npos);
  EXPECT_TRUE(IsWellFormed(svg));
}

TEST(SvgPlot, LegendNamesTheElementsInTheirColours) {
  Chart chart = ChartOf(eJoin::kLines, 7, true);
  for (Curve& curve : chart.curves) {
    curve.Add(0, 1);
    curve.Add(10, 2);
  }
  std::string const svg = Svg(chart);
  std::set<std::string> colours;
  for (std::size_t i = 0; i != 7; ++i) {
    std::size_t const label = svg.find(">e" + std::to_string(i) + "</text>");
    ASSERT_NE(label, std::string::npos) << i;
    std::size_t const stroke = svg.rfind("stroke=\"", label);
    std::string const colour = svg.substr(stroke + 8, 7);
    EXPECT_GE(Count(svg, "stroke=\"" + colour + "\""), 2u) << "legend and curve";
    colours.insert(colour);
  }
  EXPECT_EQ(colours.size(), 7u);
  EXPECT_EQ(svg.find("stroke-dasharray"), std::string::npos);
  EXPECT_TRUE(IsWellFormed(svg));
}

TEST(SvgPlot, NumbersHaveNoLegend) {
  Chart chart = ChartOf(eJoin::kLines);
  chart.curves[0].Add(0, 1);
  EXPECT_EQ(Svg(chart).find("stroke-width=\"3\""), std::string::npos);
}

TEST(SvgPlot, ManyCurvesAreToldApartByBrokenLines) {
  Chart chart = ChartOf(eJoin::kLines, 28, true);
  for (Curve& curve : chart.curves) {
    curve.Add(0, 1);
    curve.Add(10, 2);
  }
  std::string const svg = Svg(chart);
  std::set<std::string> strokes;
  for (std::size_t at = svg.find(kLine); at != std::string::npos; at = svg.find(kLine, at + 1)) {
    std::size_t const start = svg.rfind("fill=\"none\" ", at);
    strokes.insert(svg.substr(start, at - start));
  }
  EXPECT_EQ(strokes.size(), 28u);
  // There is no room for all of their names.
  EXPECT_NE(svg.find(">e16</text>"), std::string::npos);
  EXPECT_EQ(svg.find(">e17</text>"), std::string::npos);
  EXPECT_NE(svg.find(">11 more</text>"), std::string::npos);
}

TEST(SvgPlot, CurveWithoutSamplesIsLeftOut) {
  Chart chart = ChartOf(eJoin::kLines, 2, true);
  chart.curves[1].Add(0, 100);
  chart.curves[1].Add(10, 200);
  std::string const svg = Svg(chart);
  EXPECT_EQ(Count(svg, kLine), 1u);
  EXPECT_EQ(svg.find(">0</text></g>"), std::string::npos);
  EXPECT_NE(svg.find(">100</text>"), std::string::npos);
}

TEST(SvgPlot, TextsOfAFileCannotLeaveTheirPlace) {
  Chart chart = ChartOf(eJoin::kLines, 1, true);
  chart.name = "</text><script>alert(\"1\" & 'x')</script>\x01\xFF";
  chart.elements[0] = "<&>";
  chart.curves[0].Add(0, 1);
  std::string const svg = Svg(chart);
  EXPECT_TRUE(IsWellFormed(svg));
  EXPECT_EQ(svg.find("<script"), std::string::npos);
  EXPECT_NE(svg.find("&lt;script&gt;alert(&quot;1&quot; &amp; 'x')&lt;/script&gt;??"), std::string::npos) << svg;
  EXPECT_NE(svg.find(">&lt;&amp;&gt;</text>"), std::string::npos);
}

TEST(SvgPlot, LongNamesAreCutBetweenCharacters) {
  Chart chart = ChartOf(eJoin::kLines, 1, true);
  for (int i = 0; i != 100; ++i) {
    chart.elements[0] += "\xC3\xA9";
    chart.name += "\xC3\xA9";
  }
  chart.curves[0].Add(0, 1);
  std::string const svg = Svg(chart);
  std::string cut;
  for (int i = 0; i != 24; ++i) {
    cut += "\xC3\xA9";
  }
  // The elements begin with "e0".
  EXPECT_NE(svg.find(">e0" + cut.substr(4) + "\xE2\x80\xA6</text>"), std::string::npos) << svg;
}

TEST(SvgPlot, SizeDoesNotGrowWithTheSamples) {
  Chart chart = ChartOf(eJoin::kLines, 1, false, kSvgColumns);
  for (std::size_t i = 0; i != 1000000; ++i) {
    chart.curves[0].Add(i * kSvgColumns / 1000000, std::sin(static_cast<double>(i)));
  }
  // At most four places in each column.
  EXPECT_LT(Svg(chart).size(), kSvgColumns * 4 * 10);
}

TEST(SvgPlot, LongLabelsOfTimesStayInside) {
  Chart chart = ChartOf(eJoin::kLines);
  chart.extent = {{2000000000, 1}, {2000000010, 1}};
  chart.curves[0].Add(0, 1);
  std::string const svg = Svg(chart);
  std::size_t const label = svg.find(">2\u202F000\u202F000\u202F010</text>");
  ASSERT_NE(label, std::string::npos) << svg;
  double const middle = std::strtod(svg.c_str() + svg.rfind("x=\"", label) + 3, nullptr);
  // 13 characters, each at most 7.4 wide.
  EXPECT_LE(middle + 13 * 7.4 / 2, 960);
}

TEST(SvgPlot, HugeNumbersStayInside) {
  constexpr double kMost = std::numeric_limits<double>::max();
  Chart chart = ChartOf(eJoin::kLines);
  chart.curves[0].Add(0, -kMost);
  chart.curves[0].Add(10, kMost);
  std::string const svg = Svg(chart);
  EXPECT_EQ(svg.find("inf"), std::string::npos) << svg;
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  std::vector<double> const numbers = NumbersOf(PathWith(svg, kLine));
  ASSERT_EQ(numbers.size(), 4u);
  EXPECT_EQ(numbers[1], 476);
  EXPECT_EQ(numbers[3], 64);
}

struct NameRow {
  char const* displayName;
  char const* title;
};

TEST(NamesOfPlot, UnitInBracketsIsForTheAxis) {
  for (NameRow const& row : {NameRow{"Speed [m/s]", "Speed"},
                             {"Speed[m/s]", "Speed"},
                             {"A [x] b [y]", "A [x] b"},
                             {"Speed", "Speed"},
                             {"Speed []", "Speed []"},
                             {"[m/s]", "[m/s]"},
                             {" [m]", " [m]"},
                             {"a [m] b", "a [m] b"},
                             {"a]", "a]"},
                             {"", ""}}) {
    PlotNames const names = NamesOfPlot(row.displayName);
    EXPECT_EQ(names.title, row.title) << row.displayName;
    EXPECT_EQ(names.axis, row.displayName);
  }
}

TEST(XmlText, HasNothingThatXmlForbids) {
  EXPECT_EQ(XmlText("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c'");
  EXPECT_EQ(XmlText(std::string_view("\0\n\x7F", 3)), "???");
  EXPECT_EQ(XmlText("\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBD"), "??\xEF\xBF\xBD");
  EXPECT_EQ(XmlText("\xC3("), "?(");
}

}  // namespace
}  // namespace senmark_tool
