#include "SvgPlot.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "SvgTicks.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

// Sizes in units of the picture, which are pixels unless it is scaled.
constexpr double kWidth = 960;
constexpr double kHeight = 540;
constexpr double kTop = 64;
constexpr double kBottom = kHeight - 64;
constexpr double kEdge = 28;        // between the picture's edge and what is nearest to it
constexpr double kLetter = 7.4;     // width of a letter of the axes, more than most have
constexpr double kLegendLine = 22;  // height
constexpr double kLegendMark = 26;  // width of the piece of a curve
constexpr int kMostTicksAcross = 10;
constexpr int kMostTicksUp = 8;
constexpr std::size_t kLongestTitle = 80;
constexpr std::size_t kLongestLabel = 48;
constexpr std::size_t kLongestName = 24;  // in the legend
constexpr std::size_t kMostNames = 18;
// Of no more samples than this each is marked by a dot.
constexpr std::ptrdiff_t kFewSamples = 60;

// Colours that stay apart for all kinds of colour vision, by Okabe and Ito (jfly.uni-koeln.de/color), without
// the yellow, which is too light for thin lines on white.
constexpr char const* kColours[] = {"#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00", "#56b4e9", "#000000"};
// When all colours are used, they come again in broken lines.
constexpr char const* kDashes[] = {"", "8 4", "2 4", "10 4 2 4"};

struct Area {
  double left;
  double right;
};

std::string Number(double number) {
  std::array<char, 32> text;
  int length = std::snprintf(text.data(), text.size(), "%.2f", number);
  while (text[static_cast<std::size_t>(length) - 1] == '0') {
    --length;
  }
  length -= text[static_cast<std::size_t>(length) - 1] == '.' ? 1 : 0;
  return std::string(text.data(), static_cast<std::size_t>(length));
}

/// At most so many characters, the last of them an ellipsis where some are left out.
std::string Shortened(std::string const& text, std::size_t most) {
  std::string_view rest = text;
  for (std::size_t count = 0; !rest.empty(); ++count) {
    if (count == most) {
      std::string_view const kept = std::string_view(text).substr(0, text.size() - rest.size());
      return std::string(kept) + "\xE2\x80\xA6";
    }
    rest.remove_prefix(std::max<std::size_t>(Utf8Length(rest), 1));
  }
  return text;
}

std::string Shown(std::string const& text, std::size_t most) {
  return XmlText(Shortened(text, most));
}

/// Turns the columns of a curve into the data of a path.
class PathMaker {
 public:
  PathMaker(Curve const& curve, Axis const& values, Area const& area)
      : mCurve(curve), mValues(values), mArea(area), mLast(static_cast<double>(curve.Columns().size() - 1)) {}

  std::string Line(eJoin join) {
    mPath.clear();
    ForEachColumn([&](double x, CurveColumn const& column) {
      std::string const across = Number(x);
      if (mPath.empty()) {
        mPath = 'M' + across + ' ' + Y(column.first);
        mY = Y(column.first);
      } else if (join == eJoin::kSteps) {
        mPath += 'H' + across;
        Up(column.first);
      } else {
        mY = Y(column.first);
        mPath += 'L' + across + ' ' + mY;
      }
      Up(column.min);
      Up(column.max);
      Up(column.last);
    });
    return mPath;
  }

  /// Lines of no length, whose round ends are dots.
  std::string Dots() {
    mPath.clear();
    ForEachColumn([&](double x, CurveColumn const& column) {
      std::array<double, 4> values = {column.first, column.min, column.max, column.last};
      std::sort(values.begin(), values.end());
      auto const end = std::unique(values.begin(), values.end());
      std::for_each(values.begin(), end, [&](double value) { mPath += 'M' + Number(x) + ' ' + Y(value) + "h0"; });
    });
    return mPath;
  }

 private:
  template <class Use>
  void ForEachColumn(Use&& use) const {
    std::vector<CurveColumn> const& columns = mCurve.Columns();
    for (std::size_t i = 0; i != columns.size(); ++i) {
      if (columns[i].isUsed) {
        use(mArea.left + (mArea.right - mArea.left) * static_cast<double>(i) / mLast, columns[i]);
      }
    }
  }

  std::string Y(double value) const { return Number(kBottom - (kBottom - kTop) * mValues.Share(value)); }

  void Up(double value) {
    std::string y = Y(value);
    if (y != mY) {
      mPath += 'V' + y;
      mY = std::move(y);
    }
  }

  Curve const& mCurve;
  Axis const& mValues;
  Area const& mArea;
  double mLast;
  std::string mPath;
  std::string mY;  ///< where the path is
};

class Plot {
 public:
  Plot(std::ostream& out, Chart const& chart)
      : mOut(out), mChart(chart), mNames(NamesOfPlot(chart.name)), mValues(ValueAxis(chart)) {
    double const from = chart.extent.start.seconds();
    double const to = chart.extent.end.seconds();
    // The samples of a single moment stand in the middle.
    mTimes = from < to ? MakeAxis(from, to, kMostTicksAcross, false)
                       : MakeAxis(from - 0.5, from + 0.5, kMostTicksAcross, false);
    mArea.left = kEdge + 32 + LabelWidth(mValues);
    // Half of a label may stand beyond the end of its axis.
    mArea.right = kWidth - std::max({kEdge, LabelWidth(mTimes) / 2 + 4, kEdge + LegendWidth()});
  }

  void Write() {
    mOut << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Number(kWidth) << "\" height=\"" << Number(kHeight)
         << "\" viewBox=\"0 0 " << Number(kWidth) << ' ' << Number(kHeight)
         << "\" role=\"img\" font-family=\"Helvetica, Arial, 'DejaVu Sans', sans-serif\" font-size=\"13\""
            " fill=\"#333\">\n"
         << "<title>" << Shown(mNames.title, kLongestTitle) << "</title>\n"
         << "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n"
         << "<text x=\"" << Number(mArea.left) << "\" y=\"38\" font-size=\"18\" font-weight=\"bold\" fill=\"#111\">"
         << Shown(mNames.title, kLongestTitle) << "</text>\n";
    WriteTimeAxis();
    WriteValueAxis();
    for (std::size_t i = 0; i != mChart.curves.size(); ++i) {
      WriteCurve(i);
    }
    WriteLegend();
    mOut << "</svg>\n";
  }

 private:
  static Axis ValueAxis(Chart const& chart) {
    bool isFirst = true;
    double min = 0;
    double max = 0;
    for (Curve const& curve : chart.curves) {
      if (!curve.IsEmpty()) {
        min = isFirst ? curve.Min() : std::min(min, curve.Min());
        max = isFirst ? curve.Max() : std::max(max, curve.Max());
        isFirst = false;
      }
    }
    return MakeAxis(min, max, kMostTicksUp, true);
  }

  static double LabelWidth(Axis const& axis) {
    std::size_t widest = 0;
    for (Tick const& tick : axis.ticks) {
      widest = std::max(widest, Columns(tick.label));
    }
    return kLetter * static_cast<double>(widest);
  }

  double LegendWidth() const {
    std::size_t longest = 0;
    for (std::string const& name : mChart.elements) {
      longest = std::max(longest, std::min(Columns(name), kLongestName + 1));
    }
    return mChart.isArray ? 16 + kLegendMark + 8 + kLetter * static_cast<double>(longest) : 0;
  }

  double X(double seconds) const { return mArea.left + (mArea.right - mArea.left) * mTimes.Share(seconds); }

  void WriteTimeAxis() {
    mOut << "<g text-anchor=\"middle\">\n";
    for (Tick const& tick : mTimes.ticks) {
      std::string const x = Number(X(tick.value));
      mOut << "<path d=\"M" << x << ' ' << Number(kTop) << 'V' << Number(kBottom) << "\" stroke=\"#eee\"/>"
           << "<path d=\"M" << x << ' ' << Number(kBottom) << "v5\" stroke=\"#666\"/>"
           << "<text x=\"" << x << "\" y=\"" << Number(kBottom + 20) << "\">" << tick.label << "</text>\n";
    }
    mOut << "<text x=\"" << Number((mArea.left + mArea.right) / 2) << "\" y=\"" << Number(kHeight - 18)
         << "\" font-size=\"14\">time [s]</text>\n</g>\n";
  }

  void WriteValueAxis() {
    mOut << "<g text-anchor=\"end\">\n";
    for (Tick const& tick : mValues.ticks) {
      double const y = kBottom - (kBottom - kTop) * mValues.Share(tick.value);
      mOut << "<path d=\"M" << Number(mArea.left) << ' ' << Number(y) << 'H' << Number(mArea.right)
           << "\" stroke=\"#ddd\"/>"
           << "<text x=\"" << Number(mArea.left - 9) << "\" y=\"" << Number(y + 4.5) << "\">" << tick.label
           << "</text>\n";
    }
    double const middle = (kTop + kBottom) / 2;
    mOut << "<path d=\"M" << Number(mArea.left) << ' ' << Number(kTop) << 'V' << Number(kBottom) << 'H'
         << Number(mArea.right) << "\" fill=\"none\" stroke=\"#666\"/>\n"
         << "<text text-anchor=\"middle\" font-size=\"14\" transform=\"translate(" << Number(kEdge) << ' '
         << Number(middle) << ") rotate(-90)\">" << Shown(mNames.axis, kLongestLabel) << "</text>\n</g>\n";
  }

  static std::string Stroke(std::size_t curve) {
    std::size_t const round = curve / std::size(kColours);
    std::string const dashes = kDashes[round % std::size(kDashes)];
    return std::string("stroke=\"") + kColours[curve % std::size(kColours)] + '"' +
           (dashes.empty() ? "" : " stroke-dasharray=\"" + dashes + '"');
  }

  void WriteDots(std::size_t curve, std::string const& path) {
    mOut << "<path d=\"" << path << "\" fill=\"none\" stroke=\"" << kColours[curve % std::size(kColours)]
         << "\" stroke-width=\"5\" stroke-linecap=\"round\"/>\n";
  }

  void WriteCurve(std::size_t i) {
    Curve const& curve = mChart.curves[i];
    if (curve.IsEmpty()) {
      return;
    }
    PathMaker maker(curve, mValues, mArea);
    if (mChart.join != eJoin::kDots) {
      mOut << "<path d=\"" << maker.Line(mChart.join) << "\" fill=\"none\" " << Stroke(i)
           << " stroke-width=\"1.6\" stroke-linejoin=\"round\"/>\n";
    }
    std::ptrdiff_t const used = std::count_if(curve.Columns().begin(), curve.Columns().end(),
                                              [](CurveColumn const& column) { return column.isUsed; });
    if (mChart.join == eJoin::kDots || used <= kFewSamples) {
      WriteDots(i, maker.Dots());
    }
  }

  void WriteLegend() {
    double const left = mArea.right + 16;
    double y = kTop + 8;
    std::size_t const shown = mChart.elements.size() > kMostNames ? kMostNames - 1 : mChart.elements.size();
    for (std::size_t i = 0; i != shown; ++i, y += kLegendLine) {
      std::string const start =
          'M' + Number(left + (mChart.join == eJoin::kDots ? kLegendMark / 2 : 0)) + ' ' + Number(y);
      if (mChart.join == eJoin::kDots) {
        WriteDots(i, start + "h0");
      } else {
        mOut << "<path d=\"" << start << 'h' << Number(kLegendMark) << "\" " << Stroke(i) << " stroke-width=\"3\"/>\n";
      }
      WriteLegendText(left, y, Shown(mChart.elements[i], kLongestName));
    }
    if (shown < mChart.elements.size()) {
      WriteLegendText(left, y, std::to_string(mChart.elements.size() - shown) + " more");
    }
  }

  void WriteLegendText(double left, double y, std::string const& text) {
    mOut << "<text x=\"" << Number(left + kLegendMark + 8) << "\" y=\"" << Number(y + 4.5) << "\">" << text
         << "</text>\n";
  }

  std::ostream& mOut;
  Chart const& mChart;
  PlotNames mNames;
  Axis mValues;
  Axis mTimes;
  Area mArea{};
};

}  // namespace

std::string XmlText(std::string_view text) {
  std::string const printable = Printable(text);
  std::string xml;
  for (std::size_t i = 0; i < printable.size(); ++i) {
    switch (printable[i]) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      default:
        // U+FFFE and U+FFFF are no characters of XML.
        if (printable.compare(i, 3, "\xEF\xBF\xBE") == 0 || printable.compare(i, 3, "\xEF\xBF\xBF") == 0) {
          xml += '?';
          i += 2;
        } else {
          xml += printable[i];
        }
    }
  }
  return xml;
}

PlotNames NamesOfPlot(std::string const& displayName) {
  std::size_t const opening = displayName.rfind('[');
  bool const hasUnit = opening != std::string::npos && opening + 2 < displayName.size() && displayName.back() == ']';
  std::size_t const end = hasUnit ? displayName.find_last_not_of(' ', opening - 1) : std::string::npos;
  if (!hasUnit || opening == 0 || end == std::string::npos) {
    return {displayName, displayName};
  }
  return {displayName.substr(0, end + 1), displayName};
}

void WriteSvgPlot(std::ostream& out, Chart const& chart) {
  Plot(out, chart).Write();
}

}  // namespace senmark_tool
