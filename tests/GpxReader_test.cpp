// GPX as a series of points and of what stands around them.
#include "GpxReader.h"

#include <gtest/gtest.h>

#include <sstream>

namespace senmark_gpx {
namespace {

/// Keeps what it gets as lines of text.
class Recorder : public GpxSink {
 public:
  explicit Recorder(GpxFields const& fields) : mFields(fields) {}

  void document(std::string_view version, std::string_view creator) override {
    mLog << "document " << version << " by " << creator << '\n';
  }
  void property(std::string const& title, std::string_view text) override { mLog << title << " = " << text << '\n'; }
  void bounds(Bounds const& bounds) override {
    mLog << "bounds " << bounds[0] << ' ' << bounds[1] << ' ' << bounds[2] << ' ' << bounds[3] << '\n';
  }
  void beginTrack() override { mLog << "track\n"; }
  void endTrack() override { mLog << "end of track\n"; }
  void beginSegment() override { mLog << "segment\n"; }
  void endSegment() override { mLog << "end of segment\n"; }
  void beginRoute() override { mLog << "route\n"; }
  void endRoute() override { mLog << "end of route\n"; }
  void point(ePoint kind, Point const& point) override {
    mLog << "wrt"[static_cast<int>(kind)] << ' ' << point.latitude << ' ' << point.longitude;
    if (point.elevation) {
      mLog << " ele=" << *point.elevation;
    }
    if (point.time) {
      mLog << " time=" << point.time->seconds << '+' << point.time->nanoseconds << " (" << point.timeText << ')';
    }
    for (auto const& [field, text] : point.texts) {
      mLog << ' ' << mFields[field].name << '=' << text;
    }
    for (auto const& [field, number] : point.numbers) {
      mLog << ' ' << mFields[field].name << '=' << number;
    }
    mLog << '\n';
  }

  std::string Log() const { return mLog.str(); }

 private:
  GpxFields const& mFields;
  std::ostringstream mLog;
};

std::string Read(std::string const& document, eDetail detail = eDetail::kAll) {
  GpxFields fields;
  Recorder recorder(fields);
  GpxReader reader(recorder, fields, detail);
  XmlParser(reader).feed(document, true);
  return recorder.Log();
}

/// What becomes of a track point with this in it.
std::string ReadPoint(std::string const& content) {
  std::string const log = Read("<gpx xmlns='urn:gpx' xmlns:x='urn:x'><trk><trkseg><trkpt lat='1' lon='2'>" + content +
                               "</trkpt></trkseg></trk></gpx>");
  std::size_t const start = log.find("t 1 2") + 5;
  return log.substr(start, log.find('\n', start) - start);
}

TEST(GpxReader, FollowsTheOrderOfTheFile) {
  EXPECT_EQ(Read("<gpx version='1.1' creator='me'><wpt lat='1' lon='2'/><rte><rtept lat='3' lon='4'/></rte>"
                 "<trk><trkseg><trkpt lat='5' lon='6'/></trkseg><trkseg/></trk><trk/></gpx>"),
            "document 1.1 by me\nw 1 2\nroute\nr 3 4\nend of route\ntrack\nsegment\nt 5 6\nend of segment\nsegment\n"
            "end of segment\nend of track\ntrack\nend of track\n");
}

TEST(GpxReader, PropertiesOfTheFileStandInBothPlaces) {
  std::string const expected =
      "Name = n\nDescription = d e\nAuthor = a\nEmail = m@x\nURL = u\nURL name = l\nTime = t\nKeywords = k\n"
      "bounds 1 2 3 4\n";
  std::string const content =
      "<name> n </name><desc><![CDATA[d]]> e</desc><author>a</author><email>m@x</email><url>u</url><urlname>l</urlname>"
      "<time>t</time><keywords>k</keywords><bounds minlat='1' minlon='2' maxlat='3' maxlon='4'/>";
  EXPECT_EQ(Read("<gpx>" + content + "</gpx>"), "document  by \n" + expected);
  EXPECT_EQ(Read("<gpx><metadata>" + content + "</metadata></gpx>"), "document  by \n" + expected);
}

TEST(GpxReader, PropertiesWithinOthersHaveLongerNames) {
  EXPECT_EQ(
      Read("<gpx><metadata><author><name>a</name><email id='i' domain='d.org'/><link href='h'><text>t</text></link>"
           "</author><copyright author='c'><year>1</year><license>l</license></copyright><link href='g'/>"
           "<extensions><q/><r>s<!-- more --></r><v><w>5</w><w>6</w>lost</v></extensions><name> </name></metadata>"
           "</gpx>"),
      "document  by \nAuthor name = a\nAuthor email = i@d.org\nAuthor link = h\nAuthor link text = t\n"
      "Copyright author = c\nCopyright year = 1\nCopyright license = l\nLink = g\nr = s\nv w = 5\nv w = 6\n");
}

TEST(GpxReader, PropertiesOfTracksAndRoutes) {
  EXPECT_EQ(Read("<gpx><trk><name>n</name><cmt>c</cmt><desc>d</desc><src>s</src><number>1</number><type>t</type>"
                 "<trkseg><extensions><lost>1</lost></extensions></trkseg></trk><rte><name>r</name></rte></gpx>"),
            "document  by \ntrack\nName = n\nComment = c\nDescription = d\nSource = s\nNumber = 1\nType = t\nsegment\n"
            "end of segment\nend of track\nroute\nName = r\nend of route\n");
}

TEST(GpxReader, PartsOfPoints) {
  struct Row {
    char const* content;
    char const* read;
  };
  Row const rows[] = {
      {"", ""},
      {"<ele>3.5</ele><time>1970-01-01T00:00:01.5Z</time>", " ele=3.5 time=1+500000000 (1970-01-01T00:00:01.5Z)"},
      {"<ele/><time/>", ""},
      {"<ele>NaN</ele><time> </time>", ""},
      {"<ele/><ele>1</ele><ele>2</ele>", " ele=1"},
      {"<time/><time>1970-01-01T00:00:01Z</time><time>1970-01-01T00:00:02Z</time>", " time=1+0 (1970-01-01T00:00:01Z)"},
      {"<x:ele>4</x:ele>", " ele=4"},
      {"<extensions><ele>4</ele><time>5</time><name>6</name></extensions>", " ele=4 time=5 name=6"},
      {"<speed>1</speed><course>2</course><magvar>3</magvar><geoidheight>4</geoidheight><sat>5</sat><hdop>6</hdop>"
       "<vdop>7</vdop><pdop>8</pdop><ageofdgpsdata>9</ageofdgpsdata><dgpsid>10</dgpsid>",
       " Speed=1 Course=2 Magnetic variation=3 Geoid height=4 Satellites=5 HDOP=6 VDOP=7 PDOP=8 DGPS age=9 "
       "DGPS station=10"},
      {"<name>n</name><cmt>c</cmt><desc>d</desc><src>s</src><sym>y</sym><type>t</type><fix>3d</fix><name>m</name>",
       " Name=n Comment=c Description=d Source=s Symbol=y Type=t Fix=3d"},
      {"<name/><name>later</name>", " Name=later"},
      {"<link href='h'><text>5</text></link>", ""},
      {"<extensions><x:TrackPointExtension><x:hr>60</x:hr><x:cad>70</x:cad></x:TrackPointExtension></extensions>",
       " Heart rate=60 Cadence=70"},
      {"<extensions><power>200</power><x:power>300</x:power><PowerInWatts>1</PowerInWatts></extensions>", " Power=200"},
      {"<extensions><power>none</power><x:power>300</x:power></extensions>", " Power=300"},
      {"<extensions><hr>x</hr><hr/><a>1e16</a><b>-1e16</b><c>9e15</c></extensions>", " c=9e+15"},
      {"<speed>1</speed><extensions><speed>2</speed></extensions>", " Speed=1"},
      {"<x:temp>20</x:temp><hr>5</hr>", " Temperature=20 Heart rate=5"},
      {"<x:speed>fast</x:speed><hr>high</hr>", ""},
      {"<extensions>5<x:a>1</x:a>6</extensions>", " a=1"},
      {"<extensions><x:a>1<!-- 2 --><![CDATA[3]]></x:a></extensions>", " a=13"},
      {"<extensions><x:a v='1'/><x:b><x:c/>7</x:b></extensions>", ""},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(ReadPoint(row.content), row.read) << row.content;
  }
}

TEST(GpxReader, EachPointBeginsAnew) {
  EXPECT_EQ(
      Read("<gpx><wpt lat='1' lon='2'><ele>1</ele><time>1970-01-01T00:00:00Z</time><name>n</name><sat>1</sat></wpt>"
           "<wpt lat='3' lon='4'/><wpt lat='5' lon='6'><sat>2</sat></wpt></gpx>"),
      "document  by \nw 1 2 ele=1 time=0+0 (1970-01-01T00:00:00Z) Name=n Satellites=1\nw 3 4\n"
      "w 5 6 Satellites=2\n");
}

TEST(GpxReader, TimesAloneAreFewer) {
  EXPECT_EQ(Read("<gpx version='1.0'><name>n</name><bounds minlat='1' minlon='2' maxlat='3' maxlon='4'/>"
                 "<wpt><ele>1</ele><time>1970-01-01T00:00:00Z</time><name>n</name><sat>x</sat>"
                 "<extensions><time>x</time></extensions></wpt><trk><name>n</name></trk></gpx>",
                 eDetail::kTimes),
            "document 1.0 by \nw 0 0 ele=1 time=0+0 (1970-01-01T00:00:00Z)\ntrack\nend of track\n");
}

TEST(GpxReader, LongTextsAreCut) {
  std::string const longText(GpxReader::kLongestText + 1000, 'x');
  std::string const log =
      Read("<gpx><name>" + longText + "</name><wpt lat='1' lon='2'><name>" + longText + "</name></wpt></gpx>");
  std::size_t const start = log.find("Name = ") + 7;
  EXPECT_EQ(log.find('\n', start) - start, 64996U);
  EXPECT_EQ(log.substr(log.find("w 1 2")), "w 1 2 Name=" + std::string(255, 'x') + "\n");
  // Of a number nothing may be missing.
  std::string const longNumber(GpxReader::kLongestText, '1');
  EXPECT_EQ(ReadPoint("<extensions><a>" + longNumber + "</a></extensions>"), "");
  EXPECT_EQ(ReadPoint("<extensions><a>0." + longNumber + "</a></extensions>"), "");
}

struct Refused {
  char const* document;
  char const* message;
  std::int64_t offset;
  std::int64_t line;
};

TEST(GpxReader, WhatIsNoGpxIsRefusedWithItsPlace) {
  Refused const rows[] = {
      {"<kml/>", "the root element is no gpx", 0, 1},
      {"<gpx>\n<wpt lon='2'/></gpx>", "without the attribute lat", 6, 2},
      {"<gpx>\n<wpt lat='2'/></gpx>", "without the attribute lon", 6, 2},
      {"<gpx><wpt lat='' lon='2'/></gpx>", "no degrees: lat=\"\"", 5, 1},
      {"<gpx><wpt lat='1,5' lon='2'/></gpx>", "no degrees: lat=\"1,5\"", 5, 1},
      {"<gpx><wpt lat='90.1' lon='2'/></gpx>", "no degrees: lat=\"90.1\"", 5, 1},
      {"<gpx><wpt lat='NaN' lon='2'/></gpx>", "no degrees: lat=\"NaN\"", 5, 1},
      {"<gpx><wpt lat='90' lon='-180.1'/></gpx>", "no degrees: lon=\"-180.1\"", 5, 1},
      {"<gpx><bounds minlat='1' minlon='2' maxlat='3'/></gpx>", "without the attribute maxlon", 5, 1},
      {"<gpx><wpt lat='1' lon='2'>\n<ele>high</ele></wpt></gpx>", "no number: high", 36, 2},
      {"<gpx><wpt lat='1' lon='2'>\n<ele>1e16</ele></wpt></gpx>", "no number: 1e16", 36, 2},
      {"<gpx><wpt lat='1' lon='2'>\n<time>noon</time></wpt></gpx>", "no time: noon", 37, 2},
      {"<gpx><wpt lat='1' lon='2'><hdop>x</hdop></wpt></gpx>", "no number: x", 33, 1},
  };
  for (Refused const& row : rows) {
    try {
      Read(row.document);
      ADD_FAILURE() << row.document;
    } catch (kit::Failure const& failure) {
      EXPECT_STREQ(failure.what(), row.message);
      EXPECT_EQ(failure.offset(), row.offset) << row.document;
      EXPECT_EQ(failure.line(), row.line) << row.document;
    }
  }
  EXPECT_NO_THROW(Read("<gpx><wpt lat='-90' lon='180'/><wpt lat='90' lon='-180'/></gpx>"));
}

}  // namespace
}  // namespace senmark_gpx
