// What the kit writes, byte for byte and as a host reads it; and for everything that it keeps out of a file, what the
// writer alone makes of it.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>

#include "FailingCalls.h"
#include "KitFile.h"
#include "SK_NumberAnalysis.h"
#include "SK_Utils.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

using kit::ArrayGroup;
using kit::Frame;
using kit::Instant;
using kit::Output;
using kit::StreamFormat;
using kit::TimeBase;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

StreamFormat AsGiven() {
  StreamFormat format;
  format.order = kit::eOrder::kAsGiven;
  return format;
}

class KitOutput : public KitFile {
 protected:
  // A file that the writer writes without the kit: one stream, filled by `add`, and what `finish` adds to the root.
  struct Raw {
    SK_PLUGIN::TDJSONWriter_API const& writer;
    void* key;
    SK_PLUGIN::ITdjsonRoot_v1& root;
    SK_PLUGIN::SK_PluginResult result;

    template <typename Interface>
    kit::detail::Held<Interface> Hold(void* object) {
      return kit::detail::Held<Interface>(object);
    }
    kit::detail::Held<SK_PLUGIN::ITdjsonDynamicDataNum_v1> Stream(char const* matchName = "t") {
      void* object = nullptr;
      writer.Static_CreateDynamicDataNum(key, &object, 1, &result);
      auto node = Hold<SK_PLUGIN::ITdjsonDynamicDataNum_v1>(object);
      node->setDynamicDataInfo("T", matchName, matchName, 0, 1, 0, "", &result);
      node->setNumberPattern(~0ULL, ~0ULL, 0, &result);
      double const largest = std::numeric_limits<double>::max();
      node->setNumberRange(largest, -largest, largest, -largest, &result);
      return node;
    }
  };
  int WriteRaw(unsigned utcDigits, std::function<void(Raw&)> const& fill) const {
    auto const& tables = mTables.Get();
    int key = 0;
    void* object = nullptr;
    unsigned char existed = 0;
    SK_PLUGIN::SK_PluginResult result;
    tables.mTdjsonWriterAPI->Static_CreateRoot(&key, mPath.c_str(), nullptr, &object, &existed, 1, &result);
    kit::detail::Held<SK_PLUGIN::ITdjsonRoot_v1> const root(object);
    root->setUTCTimeInfo(utcDigits, 1, &result);
    root->writeVersionToFile(&result);
    Raw raw{*tables.mTdjsonWriterAPI, &key, *root.get(), {}};
    fill(raw);
    root->commit(&raw.result);
    tables.mHandleMemoryAPI->Static_RemoveConverterFromMap(&key, &result);
    return raw.result.mErrorCode;
  }

  std::string Samples(std::string const& id) const {
    std::string all;
    for (senmark::Sample const& sample : Open().samples(id).all()) {
      all += std::to_string(sample.time.value) + '/' + std::to_string(sample.time.scale) + '=';
      if (auto const* const number = std::get_if<double>(&sample.value)) {
        std::string text;
        SK_PLUGIN::removeTrailingZeroes(text, *number);
        all += text;
      } else if (auto const* const text = std::get_if<std::string>(&sample.value)) {
        all += *text;
      } else {
        for (double const element : std::get<std::vector<double>>(sample.value)) {
          all += std::to_string(element) + ",";
        }
      }
      all += ' ';
    }
    return all;
  }
};

TEST_F(KitOutput, WritesEveryKindOfNode) {
  std::string const bytes = Write([](Output& output) {
    output.setTimeBase(TimeBase::gmt(3));
    output.setCreator("Strap \"7\"");
    output.addSyncFrame("run.mp4", -3);
    StreamFormat rate;
    rate.unit = "1/min";
    kit::NumberStream& numbers = output.top().numberStream("Heart rate", rate);
    kit::Group& group = output.top().group("2nd group");
    StreamFormat point;
    point.isPoint = true;
    point.holds = true;
    kit::ArrayStream& arrays = group.arrayStream("Position", {"x", "y"}, point);
    StreamFormat events;
    events.marksEvents = true;
    kit::TextStream& texts = group.textStream("Notes", events);
    group.number("Mass", 71.5, {"kg", 1, false});
    group.numbers("Offset", {1, -2, 0.25}, {}, {"a", "b", "c"}, true);
    group.text("Who", "Ada");
    group.flag("Valid", true);
    numbers.add(Instant{1714559400, 900000000}, 71.5);
    numbers.add(Instant{1714559400, 250000000}, 70.00001);
    arrays.add(Instant{1714559400, 250000000}, {1, -20});
    texts.add(Instant{1714559401, 0}, "go");
  });
  EXPECT_EQ(
      bytes,
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,)"
      R"("utcInfo":{"precisionLength":3,"isGMT":true},"videoSyncTimeList":[{"fileName":"run.mp4","frameNumber":-3}]},)"
      R"("dataDynamicSamples":[{"sampleSetID":"Heartrate","samples":[)"
      R"({"time":"2024-05-01T10:30:00.250Z","value":"70.0"},{"time":"2024-05-01T10:30:00.900Z","value":"71.5"}]},)"
      R"({"sampleSetID":"Position","samples":[{"time":"2024-05-01T10:30:00.250Z","value":["+01","-20"]}]},)"
      R"({"sampleSetID":"Notes","samples":[)"
      R"({"time":"2024-05-01T10:30:01.000Z","value":{"length":"2","str":"go"}}]}],)"
      R"("creator":"Strap \"7\"","dataOutline":[{"objectType":"dataDynamic","matchName":"Heartrate",)"
      R"("displayName":"Heart rate [1/min]","sampleSetID":"Heartrate","interpolation":"linear",)"
      R"("hasExpectedFrequencyB":false,"sampleCount":2,"dataType":{"type":"numberString","numberStringProperties":{)"
      R"("pattern":{"isSigned":false,"digitsDecimal":1,"digitsInteger":2},)"
      R"("range":{"occurring":{"min":70,"max":71.5},"legal":{"min":70,"max":71.5}}}}},)"
      R"({"objectType":"dataGroup","matchName":"n2ndgroup","displayName":"2nd group","children":[)"
      R"({"objectType":"dataDynamic","matchName":"Position","displayName":"Position","sampleSetID":"Position",)"
      R"("interpolation":"hold","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{)"
      R"("type":"numberStringArray","numberArrayProperties":{"pattern":{"isSigned":true,"digitsDecimal":0,)"
      R"("digitsInteger":2},"arrayRanges":{"ranges":[{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}},)"
      R"({"occurring":{"min":-20,"max":-20},"legal":{"min":-20,"max":-20}}]},"arraySize":2,)"
      R"("arrayDisplayNames":["x","y"],"isPoint":true}}},)"
      R"({"objectType":"dataDynamic","matchName":"Notes","displayName":"Notes","sampleSetID":"Notes",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"paddedString",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":2,"eventMarkerB":true}}},)"
      R"({"objectType":"dataStatic","matchName":"Mass","displayName":"Mass [kg]","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":1,"digitsInteger":2},)"
      R"("range":{"occurring":{"min":71.5,"max":71.5},"legal":{"min":71.5,"max":71.5}}}},"value":71.5},)"
      R"({"objectType":"dataStatic","matchName":"Offset","displayName":"Offset","dataType":{"type":"numberArray",)"
      R"("numberArrayProperties":{"pattern":{"isSigned":true,"digitsDecimal":2,"digitsInteger":1},)"
      R"("arrayRanges":{"ranges":[{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}},)"
      R"({"occurring":{"min":-2,"max":-2},"legal":{"min":-2,"max":-2}},)"
      R"({"occurring":{"min":0.25,"max":0.25},"legal":{"min":0.25,"max":0.25}}]},"arraySize":3,)"
      R"("arrayDisplayNames":["a","b","c"],"isPoint":true}},"value":[1,-2,0.25]},)"
      R"({"objectType":"dataStatic","matchName":"Who","displayName":"Who","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,"eventMarkerB":false}},"value":"Ada"},)"
      R"({"objectType":"dataStatic","matchName":"Valid","displayName":"Valid","dataType":{"type":"boolean"},)"
      R"("value":true}]}]})");
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, WritesFramesAndWhatDoesNotChange) {
  EXPECT_EQ(Write([](Output& output) { output.top().flag("On", false); }),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"dataOutline":[{"objectType":"dataStatic",)"
            R"("matchName":"On","displayName":"On","dataType":{"type":"boolean"},"value":false}]})");
  EXPECT_EQ(ReadError(), 0);
  std::string const bytes = Write([](Output& output) {
    output.setTimeBase(TimeBase::frames(60000, 2002, true));
    auto& stream = output.top().numberStream("T", AsGiven());
    stream.add(Frame{1799}, 1);
    stream.add(Frame{1800}, 2);
  });
  EXPECT_NE(bytes.find(R"("timecodeInfo":{"frameRate":{"value":30000,"scale":1001},"dropFrame":true})"),
            std::string::npos);
  EXPECT_NE(bytes.find(R"([{"time":"00:00:59:29","value":"1"},{"time":"00:01:00:02","value":"2"}])"),
            std::string::npos);
  EXPECT_EQ(Samples("T"), "0/1=1 1001/30000=2 ");
}

TEST_F(KitOutput, TheWriterTakesSamplesInAnyOrder) {
  EXPECT_EQ(WriteRaw(1,
                     [](Raw& raw) {
                       auto node = raw.Stream();
                       for (int const second : {5, 1, 9}) {
                         EXPECT_TRUE(node->addSampleUTC(2024, 5, 1, 0, 0, second, 'Z', 0, 0, 0, second, &raw.result));
                       }
                       node->commit(&raw.result);
                       raw.root.addDynamicData(node.get(), &raw.result);
                     }),
            0);
  // One of them is not found by its time.
  EXPECT_THROW(Samples("t"), senmark::Error);
}

TEST_F(KitOutput, SamplesAreSortedOrRefused) {
  for (std::size_t const memory : {Output::kSortMemory, std::size_t{0}, std::size_t{600}}) {
    Write(
        [](Output& output) {
          output.setTimeBase(TimeBase::gmt(1));
          auto& stream = output.top().numberStream("T");
          for (int const second : {5, 1, 9}) {
            stream.add(Instant{second, 0}, second);
          }
          // Behind those of the same time that came before.
          stream.add(Instant{5, 0}, 6);
        },
        memory);
    EXPECT_EQ(Samples("T"), "0/1=1 4/1=5 4/1=6 8/1=9 ");
  }
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::gmt(1));
              auto& stream = output.top().numberStream("T", AsGiven());
              stream.add(Instant{5, 0}, 5);
              stream.add(Instant{5, 0}, 5);
              stream.add(Instant{4, 999999999}, 5);  // the same in the file's resolution
              stream.add(Instant{4, 900000000}, 5);
            }),
            "1507 T: a sample that is earlier than the one before it");
}

TEST_F(KitOutput, ManyStreamsAreSortedOnTheDisk) {
  constexpr int kStreams = 40;
  constexpr int kSamples = 500;
  std::mt19937 random(5);
  std::vector<int> order(kSamples);
  for (int i = 0; i != kSamples; ++i) {
    order[static_cast<std::size_t>(i)] = i;
  }
  std::shuffle(order.begin(), order.end(), random);
  auto const fill = [&](Output& output, bool inOrder) {
    output.setTimeBase(TimeBase::frames(25));
    std::vector<kit::NumberStream*> streams;
    std::vector<kit::TextStream*> texts;
    for (int i = 0; i != kStreams; ++i) {
      streams.push_back(&output.top().numberStream("N"));
      texts.push_back(&output.top().textStream("T"));
    }
    for (int i = 0; i != kSamples; ++i) {
      int const frame = inOrder ? i : order[static_cast<std::size_t>(i)];
      for (std::size_t stream = 0; stream != kStreams; ++stream) {
        streams[stream]->add(Frame{frame}, frame + 0.25 * static_cast<double>(stream));
        texts[stream]->add(Frame{frame}, std::string(static_cast<std::size_t>(frame % 60) + 1, 'a'));
      }
    }
  };
  std::string const expected = Write([&](Output& output) { fill(output, true); });
  EXPECT_TRUE(Write([&](Output& output) { fill(output, false); }, 50000) == expected);
  EXPECT_TRUE(Write([&](Output& output) { fill(output, false); }) == expected);
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, ARejectedSampleIsAFailure) {
  EXPECT_EQ(WriteRaw(1,
                     [](Raw& raw) {
                       auto node = raw.Stream();
                       EXPECT_TRUE(node->addSampleUTC(2024, 5, 1, 0, 0, 0, 'Z', 0, 0, 0, 1, &raw.result));
                       // Lost without a word: three digits for a year, and a time of the other kind.
                       EXPECT_FALSE(node->addSampleUTC(999, 5, 1, 0, 0, 0, 'Z', 0, 0, 0, 1, &raw.result));
                       EXPECT_FALSE(node->addSampleSMPTE(0, 0, 0, 0, 1, &raw.result));
                       node->commit(&raw.result);
                       raw.root.addDynamicData(node.get(), &raw.result);
                     }),
            0);
  auto const refusal = [this](TimeBase const& base, auto const& time) {
    return FailureOf([&](Output& output) {
      output.setTimeBase(base);
      auto& stream = output.top().numberStream("T", AsGiven());
      stream.add(time, 1);
    });
  };
  EXPECT_EQ(refusal(TimeBase::gmt(1), *kit::ParseInstant("0001-01-01")), "1507 T: a year that has not four digits");
  EXPECT_EQ(refusal(TimeBase::gmt(1), *kit::ParseInstant("0999-12-31T23:59:59.94Z")),
            "1507 T: a year that has not four digits");
  EXPECT_EQ(refusal(TimeBase::gmt(1), *kit::ParseInstant("0999-12-31T23:59:59.95Z")), "none");
  EXPECT_EQ(refusal(TimeBase::gmt(1), *kit::ParseInstant("9999-12-31T23:59:59.94Z")), "none");
  EXPECT_EQ(refusal(TimeBase::gmt(1), *kit::ParseInstant("9999-12-31T23:59:59.95Z")),
            "1507 T: a year that has not four digits");
  EXPECT_EQ(refusal(TimeBase::gmt(1), Frame{1}), "1507 T: a frame in a file with moments in GMT");
  EXPECT_EQ(refusal(TimeBase::frames(25), Instant{}), "1507 T: a moment in GMT in a file with time codes");
  EXPECT_EQ(refusal(TimeBase::frames(25), Frame{25 * 86400 - 1}), "none");
  EXPECT_EQ(refusal(TimeBase::frames(25), Frame{25 * 86400}), "1507 frame 2160000 is not within a day");
  EXPECT_EQ(refusal(TimeBase::frames(25), Frame{-1}), "1507 frame -1 is not within a day");
}

TEST_F(KitOutput, NumbersWithoutATextAreRefusedOrGaps) {
  auto const writeRaw = [this](double value) {
    WriteRaw(1, [&](Raw& raw) {
      auto node = raw.Stream();
      EXPECT_TRUE(node->addSampleUTC(2024, 5, 1, 0, 0, 0, 'Z', 0, 0, 0, value, &raw.result));
      node->commit(&raw.result);
      raw.root.addDynamicData(node.get(), &raw.result);
      EXPECT_EQ(raw.result.mErrorCode, 0);
    });
  };
  writeRaw(1e-5);
  EXPECT_NE(ReadError(), 0);
  writeRaw(1.5e20);
  EXPECT_EQ(Samples("t"), "0/1=150 ");
  writeRaw(kNan);
  EXPECT_EQ(Samples("t"), "0/1=nan ");
  for (double const value : {1e16, kNan, kInfinity, -kInfinity}) {
    for (bool const keepsGaps : {false, true}) {
      auto const failure = [&](auto const& add) {
        return FailureOf([&](Output& output) {
          output.setTimeBase(TimeBase::frames(25));
          StreamFormat format;
          format.keepsGaps = keepsGaps;
          add(output.top(), format);
          output.top().flag("more", true);
        });
      };
      bool const isGap = keepsGaps && !std::isfinite(value);
      std::string const text = std::isfinite(value) ? "a number of 1e16 or more" : "NaN or infinity";
      std::string const expected = isGap ? "none" : "1507 " + text;
      EXPECT_EQ(failure([&](auto& top, auto& format) { top.numberStream("T", format).add(Frame{0}, value); }),
                expected);
      EXPECT_EQ(failure([&](auto& top, auto& format) {
                  top.arrayStream("T", {"a", "b"}, format).add(Frame{0}, {1, value});
                }),
                expected);
      EXPECT_EQ(failure([&](auto& top, auto& format) { top.number("T", value, format); }), expected);
      EXPECT_EQ(failure([&](auto& top, auto& format) { top.numbers("T", {1, value}, format); }), expected);
    }
  }
  Write([](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    StreamFormat format;
    format.keepsGaps = true;
    auto& numbers = output.top().numberStream("T", format);
    auto& arrays = output.top().arrayStream("A", {"a", "b"}, format);
    ArrayGroup many(output.top(), "M", {"p", "q", "r", "s"}, format);
    for (int i = 0; i != 3; ++i) {
      double const value = i == 1 ? kNan : i;
      numbers.add(Frame{i}, value);
      arrays.add(Frame{i}, {1, value});
      many.add(Frame{i}, {value, 1, 2, 3});
    }
    EXPECT_EQ(numbers.count(), 2U);
  });
  EXPECT_EQ(Samples("T"), "0/1=0 2/25=2 ");
  EXPECT_EQ(Samples("A"), "0/1=1.000000,0.000000, 2/25=1.000000,2.000000, ");
  EXPECT_EQ(Samples("p"), "0/1=0 2/25=2 ");
  EXPECT_EQ(Samples("q"), "0/1=1 1/25=1 2/25=1 ");
}

// Millions of doubles are held against the writer's text elsewhere; here they go through a file.
TEST_F(KitOutput, NumbersComeBackAsTheyWereRounded) {
  std::mt19937_64 random(11);
  std::vector<double> values;
  for (int i = 0; i != 20000; ++i) {
    double const exponent = static_cast<double>(random() % 21) - 6;
    values.push_back((static_cast<double>(random() % 2000001) / 1e6 - 1) * std::pow(10.0, exponent));
  }
  for (unsigned const decimals : {0U, 1U, 4U, 9U, 15U}) {
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::frames(1000));
      StreamFormat format = AsGiven();
      format.decimals = decimals;
      auto& stream = output.top().numberStream("T", format);
      for (std::size_t i = 0; i != values.size(); ++i) {
        stream.add(Frame{static_cast<std::int64_t>(i)}, values[i]);
      }
    });
    std::vector<senmark::Sample> const samples = Open().samples("T").all().collect();
    ASSERT_EQ(samples.size(), values.size());
    for (std::size_t i = 0; i != values.size(); ++i) {
      double const rounded = kit::Rounded(values[i], decimals);
      double const read = std::get<double>(samples[i].value);
      // Sixteen digits, and what the arithmetic of doubles leaves open.
      double const half = rounded == 0 ? 0 : 0.5 * std::pow(10.0, std::floor(std::log10(std::fabs(rounded))) - 15);
      ASSERT_NEAR(read, rounded, half + std::fabs(rounded) * std::numeric_limits<double>::epsilon());
      if (std::fabs(rounded) * std::pow(10.0, decimals) < 1e15) {
        ASSERT_EQ(read, rounded);
      }
    }
  }
}

TEST_F(KitOutput, AFileWithoutDigitsOfSecondsCannotBeRead) {
  EXPECT_EQ(WriteRaw(0,
                     [](Raw& raw) {
                       auto node = raw.Stream();
                       EXPECT_TRUE(node->addSampleUTC(2024, 5, 1, 0, 0, 0, 'Z', 0, 0, 0, 1, &raw.result));
                       node->commit(&raw.result);
                       raw.root.addDynamicData(node.get(), &raw.result);
                     }),
            0);
  EXPECT_NE(ReadError(), 0);
  for (unsigned digits = 1; digits <= 9; ++digits) {
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::gmt(digits));
      auto& stream = output.top().numberStream("T");
      stream.add(Instant{0, 0}, 1);
      stream.add(Instant{1, 0}, 2);
    });
    EXPECT_EQ(Samples("T"), "0/1=1 1/1=2 ") << digits;
  }
}

TEST_F(KitOutput, MomentsAreRoundedToTheFilesDigits) {
  std::string const bytes = Write([](Output& output) {
    output.setTimeBase(TimeBase::gmt(1));
    auto& stream = output.top().numberStream("T");
    for (char const* time : {"2024-12-31T23:59:59.94Z", "2024-12-31T23:59:59.95Z", "2024-02-28T23:59:59.99-00:30"}) {
      stream.add(*kit::ParseInstant(time), 1);
    }
  });
  EXPECT_NE(
      bytes.find(R"([{"time":"2024-02-29T00:30:00.0Z","value":"1"},{"time":"2024-12-31T23:59:59.9Z","value":"1"},)"
                 R"({"time":"2025-01-01T00:00:00.0Z","value":"1"}])"),
      std::string::npos)
      << bytes;
}

TEST_F(KitOutput, ClocksOfAllZonesAreComparable) {
  // In a file in GMT a clock of another zone is lost without a word; in any other the reader would compare the clocks.
  EXPECT_EQ(WriteRaw(1,
                     [](Raw& raw) {
                       auto node = raw.Stream();
                       EXPECT_FALSE(node->addSampleUTC(2024, 5, 1, 12, 0, 0, '+', 2, 0, 0, 1, &raw.result));
                     }),
            2021);
  Write([](Output& output) {
    output.setTimeBase(TimeBase::gmt(1));
    auto& stream = output.top().numberStream("T");
    stream.add(*kit::ParseInstant("2024-05-01T12:00:00+02:00"), 1);
    stream.add(*kit::ParseInstant("2024-05-01T10:00:01Z"), 2);
    stream.add(*kit::ParseInstant("2024-05-01T03:00:02-07:00"), 3);
  });
  EXPECT_EQ(Samples("T"), "0/1=1 1/1=2 2/1=3 ");
}

TEST_F(KitOutput, NamesThatReadersRefuse) {
  WriteRaw(1, [](Raw& raw) {
    for (int i = 0; i != 2; ++i) {
      void* object = nullptr;
      raw.writer.Static_CreateStaticDataBool(raw.key, &object, "same", "Same", 1, 1, &raw.result);
      auto node = raw.Hold<SK_PLUGIN::ITdjsonStaticDataBool_v1>(object);
      raw.root.addStaticData(node.get(), &raw.result);
    }
    EXPECT_EQ(raw.result.mErrorCode, 0);
  });
  EXPECT_EQ(ReadError(), ns_sensor::kDuplicateMatchName);
  std::mt19937 random(2);
  Write([&](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    for (int i = 0; i != 300; ++i) {
      std::string name(random() % 5, '\0');
      for (char& character : name) {
        character = i % 2 == 0 ? static_cast<char>(random()) : "ax2\""[random() % 4];
      }
      kit::Group& group = i % 3 == 0 ? output.top().group(name) : output.top();
      group.numberStream(name).add(Frame{i}, i);
      group.number(name, i);
      group.text(name, name + "x");
      group.flag(name, true);
      group.numbers(name, {1, 2}, {}, {name, name});
      group.arrayStream(name, {name}).add(Frame{i}, {1.0});
    }
  });
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, DisplayNamesKeepTheText) {
  Write([](Output& output) {
    StreamFormat speed;
    speed.unit = "m/s";
    output.top().number("left \"hand\"_2", 1, speed);
    output.top().group("J\xC3\xBCrgen\n").flag("on\\off", true);
  });
  std::vector<std::string> names;
  Open().walk([&](senmark::Node const& node, int) { names.push_back(node.displayName + '|' + node.matchName); });
  EXPECT_EQ(names,
            (std::vector<std::string>{"left \"hand\"_2 [m/s]|lefthand2", "J\xC3\xBCrgen\n|Jrgen", "on\\off|onoff"}));
}

TEST_F(KitOutput, MoreThanThreeNumbersBecomeAGroup) {
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::frames(25));
              output.top().arrayStream("T", {"a", "b", "c", "d"});
            }),
            "1507 T: an array has one to three elements");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::frames(25));
              output.top().arrayStream("T", {});
            }),
            "1507 T: an array has one to three elements");
  Write([](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    StreamFormat format;
    format.unit = "N";
    ArrayGroup three(output.top(), "Three", {"x", "y", "z"}, format);
    ArrayGroup four(output.top(), "Four", {"p", "q", "r", "s"}, format);
    three.add(Frame{0}, {1, 2, 3});
    four.add(Frame{0}, {1, 2, 3, 4});
    output.top().numbers("Static", {1, 2, 3, 4}, format);
    output.top().numbers("Named", {1, 2, 3, 4}, format, {"k", "l", "m", "n"});
  });
  std::string tree;
  Open().walk([&](senmark::Node const& node, int depth) {
    tree += std::string(static_cast<std::size_t>(depth), '>') + node.displayName + ' ';
  });
  EXPECT_EQ(tree,
            "Three [N] Four >p [N] >q [N] >r [N] >s [N] Static >Static 0 [N] >Static 1 [N] >Static 2 [N] >Static 3 [N] "
            "Named >k [N] >l [N] >m [N] >n [N] ");
  EXPECT_EQ(Samples("Three"), "0/1=1.000000,2.000000,3.000000, ");
  EXPECT_EQ(Samples("s"), "0/1=4 ");
}

TEST_F(KitOutput, AnotherNumberOfElementsIsRefused) {
  auto const failure = [this](std::size_t elements, std::size_t values) {
    return FailureOf([&](Output& output) {
      output.setTimeBase(TimeBase::frames(25));
      ArrayGroup(output.top(), "T", std::vector<std::string>(elements, "e"))
          .add(Frame{0}, std::vector<double>(values, 1));
    });
  };
  EXPECT_EQ(failure(2, 2), "none");
  EXPECT_EQ(failure(5, 5), "none");
  EXPECT_EQ(failure(2, 3), "1507 T: another number of elements than the stream has");
  EXPECT_EQ(failure(3, 2), "1507 T: another number of elements than the stream has");
  EXPECT_EQ(failure(5, 4), "1507 another number of elements than the streams are");
  EXPECT_EQ(FailureOf([](Output& output) { output.top().numbers("T", {}); }),
            "1507 T: an array without numbers, or with another number of names");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.top().numbers("T", {1, 2}, {}, {"a"});
            }),
            "1507 T: an array without numbers, or with another number of names");
}

TEST_F(KitOutput, WhatIsEmptyLeavesNoCommaBehind) {
  // The writer's own file begins its outline with a comma, which is no JSON.
  EXPECT_EQ(WriteRaw(1,
                     [](Raw& raw) {
                       auto empty = raw.Stream("empty");
                       auto node = raw.Stream("full");
                       node->addSampleUTC(2024, 5, 1, 0, 0, 0, 'Z', 0, 0, 0, 1, &raw.result);
                       empty->commit(&raw.result);
                       node->commit(&raw.result);
                       raw.root.addDynamicData(empty.get(), &raw.result);
                       raw.root.addDynamicData(node.get(), &raw.result);
                     }),
            0);
  EXPECT_NE(mFolder.Read(mPath).find(R"("dataOutline":[,)"), std::string::npos);
  std::string const bytes = Write([](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    output.top().numberStream("Empty");
    kit::Group& group = output.top().group("None");
    group.textStream("Empty");
    group.group("None").group("None");
    kit::Group& some = output.top().group("Some");
    some.group("None");
    some.text("No text", "");
    some.numberStream("Full").add(Frame{0}, 1);
  });
  EXPECT_NE(
      bytes.find(R"("dataOutline":[{"objectType":"dataGroup","matchName":"Some","displayName":"Some","children":[)"
                 R"({"objectType":"dataDynamic","matchName":"Full")"),
      std::string::npos)
      << bytes;
  EXPECT_EQ(bytes.find("Empty"), std::string::npos);
  EXPECT_EQ(bytes.find("None"), std::string::npos);
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, AFileWithoutSamplesPromisesNone) {
  EXPECT_EQ(Write([](Output& output) {
              output.setTimeBase(TimeBase::frames(25));
              output.top().numberStream("Empty");
              output.top().flag("On", true);
            }),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"dataOutline":[{"objectType":"dataStatic",)"
            R"("matchName":"On","displayName":"On","dataType":{"type":"boolean"},"value":true}]})");
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, AFileWithoutAnythingIsRefused) {
  EXPECT_EQ(FailureOf([](Output&) {}), "1507 nothing to write: the input has no data");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::frames(25));
              output.top().group("G").numberStream("Empty");
            }),
            "1507 nothing to write: the input has no data");
}

TEST_F(KitOutput, TextsThatReadersRefuse) {
  // In the outline a control character ends the reading.
  WriteRaw(1, [](Raw& raw) {
    void* object = nullptr;
    raw.writer.Static_CreateStaticDataBool(raw.key, &object, "name", "na\x01me", 1, 1, &raw.result);
    auto node = raw.Hold<SK_PLUGIN::ITdjsonStaticDataBool_v1>(object);
    raw.root.addStaticData(node.get(), &raw.result);
    EXPECT_EQ(raw.result.mErrorCode, 0);
  });
  EXPECT_NE(ReadError(), 0);
  std::string every;
  for (int byte = 0; byte != 256; ++byte) {
    every += static_cast<char>(byte);
  }
  Write([&](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    output.setCreator(every);
    StreamFormat format;
    format.unit = every;
    output.top().text(every, every);
    output.top().numbers(every, {1}, format, {every});
    output.top().group(every).textStream("T", format).add(Frame{0}, every);
    output.top().arrayStream(every, {every}, format).add(Frame{0}, {1.0});
  });
  EXPECT_EQ(ReadError(), 0);
  senmark::File const file = Open();
  EXPECT_EQ(file.info().creator, kit::Utf8(every));
  EXPECT_EQ(std::get<std::string>(file.samples("T").all().collect().at(0).value), kit::SampleText(every));
  bool isThere = false;
  file.walk([&](senmark::Node const& node, int) {
    if (node.fixed && node.fixed->type == senmark::eValueType::kString) {
      isThere = node.displayName == kit::Utf8(every) && std::get<std::string>(node.fixed->value) == kit::Utf8(every);
    }
  });
  EXPECT_TRUE(isThere);
}

TEST_F(KitOutput, TextsOfSamplesMayHoldWhatStandsBetweenThem) {
  // Two quotes with a blank between them are enough.
  WriteRaw(1, [](Raw& raw) {
    void* object = nullptr;
    raw.writer.Static_CreateDynamicDataString(raw.key, &object, 1, &raw.result);
    auto node = raw.Hold<SK_PLUGIN::ITdjsonDynamicDataString_v1>(object);
    node->setDynamicDataInfo("T", "t", "t", 0, 1, 0, "", &raw.result);
    node->setStringProperties(0, 0, 0, &raw.result);
    EXPECT_TRUE(node->addSampleUTC(2024, 5, 1, 0, 0, 0, 'Z', 0, 0, 0, "\"a b\"", &raw.result));
    node->commit(&raw.result);
    raw.root.addDynamicData(node.get(), &raw.result);
    EXPECT_EQ(raw.result.mErrorCode, 0);
  });
  EXPECT_NE(ReadError(), 0);
  constexpr char kCharacters[] = "\"[]{}\\,:' \t\nab0\xFF";
  std::mt19937 random(17);
  for (int file = 0; file != 200; ++file) {
    std::vector<std::string> texts(5);
    for (std::string& text : texts) {
      text.resize(random() % 8 + 1);
      for (char& character : text) {
        character = kCharacters[random() % (sizeof kCharacters - 1)];
      }
    }
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::frames(25));
      auto& stream = output.top().textStream("T");
      for (std::size_t i = 0; i != texts.size(); ++i) {
        stream.add(Frame{static_cast<std::int64_t>(i)}, texts[i]);
      }
      output.top().textStream("U").add(Frame{7}, "behind");
    });
    std::vector<senmark::Sample> const samples = Open().samples("T").all().collect();
    ASSERT_EQ(samples.size(), texts.size());
    for (std::size_t i = 0; i != texts.size(); ++i) {
      ASSERT_EQ(std::get<std::string>(samples[i].value), kit::SampleText(texts[i]));
    }
    ASSERT_EQ(Samples("U"), "7/25=behind ");
  }
}

// Short texts go another way than long ones, and so do those in which nothing changes.
TEST_F(KitOutput, TextsOfEveryLengthComeBack) {
  for (kit::eOrder const order : {kit::eOrder::kSorted, kit::eOrder::kAsGiven}) {
    StreamFormat format;
    format.order = order;
    std::vector<std::string> texts;
    for (std::size_t length = 1; length <= 2 * kit::detail::kShortText; ++length) {
      std::string text(length, static_cast<char>('a' + length % 26));
      texts.push_back(text);
      text.back() = "\"\\\n\xFF~"[length % 5];
      texts.push_back(text);
    }
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::gmt(3));
      auto& stream = output.top().textStream("T", format);
      for (std::size_t i = 0; i != texts.size(); ++i) {
        Instant const instant{static_cast<std::int64_t>(i), 0};
        if (i % 2 == 0) {
          stream.add(output.moment(instant), std::string_view(texts[i]));
        } else {
          stream.add(instant, std::string_view(texts[i]));
        }
      }
    });
    std::vector<senmark::Sample> const samples = Open().samples("T").all().collect();
    ASSERT_EQ(samples.size(), texts.size());
    for (std::size_t i = 0; i != texts.size(); ++i) {
      ASSERT_EQ(std::get<std::string>(samples[i].value), kit::SampleText(texts[i])) << i;
    }
  }
}

TEST_F(KitOutput, TextsHaveALongestLength) {
  auto const failure = [this](std::string const& text) {
    return FailureOf([&](Output& output) {
      output.setTimeBase(TimeBase::frames(25));
      auto& stream = output.top().textStream("T");
      stream.add(Frame{1}, text);
      stream.add(Frame{0}, "first");
      stream.add(Frame{2}, "last");
    });
  };
  EXPECT_EQ(failure(std::string(65535, 'a')), "none");
  EXPECT_EQ(Samples("T"), "0/1=first 1/25=" + std::string(65535, 'a') + " 2/25=last ");
  EXPECT_EQ(failure(std::string(65536, 'a')), "1507 T: a text of more than 65535 bytes");
  // Two bytes for each in the file.
  EXPECT_EQ(failure(std::string(32767, '\n')), "none");
  EXPECT_EQ(Samples("T"), "0/1=first 1/25=" + std::string(32767, '\n') + " 2/25=last ");
  EXPECT_EQ(failure(std::string(32768, '\n')), "1507 T: a text of more than 65535 bytes");
  // Three bytes for each.
  EXPECT_EQ(failure(std::string(21845, '\0')), "none");
  EXPECT_EQ(failure(std::string(21846, '\0')), "1507 T: a text of more than 65535 bytes");
  EXPECT_EQ(failure(""), "1507 T: an empty text");
  Write([](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    StreamFormat format;
    format.keepsGaps = true;
    auto& stream = output.top().textStream("T", format);
    stream.add(Frame{0}, "");
    stream.add(Frame{1}, "a");
  });
  EXPECT_EQ(Samples("T"), "0/1=a ");
  // What does not change may be longer.
  Write([](Output& output) { output.top().text("T", std::string(200000, '"')); });
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, AMomentIsWorkedOutOnceForManyStreams) {
  auto const fill = [](Output& output, bool once) {
    output.setTimeBase(TimeBase::gmt(2));
    auto& numbers = output.top().numberStream("N");
    auto& texts = output.top().textStream("T");
    for (Instant const instant : {Instant{5, 999000000}, Instant{5, 123456789}, Instant{-1, 5000000}}) {
      if (once) {
        kit::Moment const moment = output.moment(instant);
        numbers.add(moment, 1);
        texts.add(moment, "a");
      } else {
        numbers.add(instant, 1);
        texts.add(instant, "a");
      }
    }
  };
  std::string const bytes = Write([&](Output& output) { fill(output, true); });
  EXPECT_EQ(bytes, Write([&](Output& output) { fill(output, false); }));
  EXPECT_NE(bytes.find("1970-01-01T00:00:06.00Z"), std::string::npos);
  EXPECT_EQ(FailureOf([](Output& output) { output.moment({0, 0}); }), "1507 a moment in GMT in a file that has none");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::frames(25));
              output.moment({0, 0});
            }),
            "1507 a moment in GMT in a file that has none");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::gmt(1));
              output.moment({253402300799, 960000000});
            }),
            "1507 a year that has not four digits");
}

// One file for each way of saying what the numbers are and when.
TEST_F(KitOutput, NumbersByTheirDigitsAreThoseOfTheirDoubles) {
  enum class eTime { kFrame, kInstant, kMoment };
  std::mt19937 random(4);
  std::vector<kit::Decimal> numbers;
  for (unsigned i = 0; i != 400; ++i) {
    numbers.push_back({static_cast<std::int64_t>(random() % 2000000) - 1000000, i % 9});
  }
  numbers.push_back({0, 3});
  numbers.push_back({kit::Decimal::kDigitsEnd - 1, 15});
  auto const fill = [&](Output& output, eTime kind, StreamFormat const& format, bool byDigits) {
    output.setTimeBase(kind == eTime::kFrame ? TimeBase::frames(25) : TimeBase::gmt(3));
    auto& stream = output.top().numberStream("N", format);
    auto& other = output.top().numberStream("Other", format);
    auto const add = [&](auto const& time, kit::Decimal const& number) {
      double const value = static_cast<double>(number.digits) / std::pow(10.0, number.decimals);
      for (kit::NumberStream* one : {&stream, &other}) {
        if (byDigits) {
          one->add(time, number);
        } else {
          one->add(time, value);
        }
      }
    };
    for (std::size_t i = 0; i != numbers.size(); ++i) {
      // Sorted streams get theirs the other way round. Over a midnight.
      auto const at = static_cast<std::int64_t>(format.order == kit::eOrder::kAsGiven ? i : numbers.size() - i);
      Instant const instant{86300 + at, static_cast<std::int32_t>(at * 1999999)};
      if (kind == eTime::kFrame) {
        add(Frame{at}, numbers[i]);
      } else if (kind == eTime::kInstant) {
        add(instant, numbers[i]);
      } else {
        add(output.moment(instant), numbers[i]);
      }
    }
    EXPECT_EQ(stream.count(), numbers.size());
  };
  for (unsigned const decimals : {0U, 4U, 15U}) {
    for (StreamFormat format : {StreamFormat(), AsGiven()}) {
      format.decimals = decimals;
      std::string expectedAtInstants;
      for (eTime const kind : {eTime::kFrame, eTime::kInstant, eTime::kMoment}) {
        std::string const expected = Write([&](Output& output) { fill(output, kind, format, false); });
        EXPECT_TRUE(Write([&](Output& output) { fill(output, kind, format, true); }) == expected) << decimals;
        EXPECT_EQ(ReadError(), 0);
        // A moment is an instant.
        if (kind == eTime::kInstant) {
          expectedAtInstants = expected;
        } else if (kind == eTime::kMoment) {
          EXPECT_TRUE(expected == expectedAtInstants) << decimals;
        }
      }
    }
  }
}

TEST_F(KitOutput, NumbersByTheirDigitsAreRefusedLikeOthers) {
  auto const failure = [&](auto const& add) {
    return FailureOf([&](Output& output) {
      output.setTimeBase(TimeBase::gmt(1));
      add(output, output.top().numberStream("N", AsGiven()));
    });
  };
  kit::Decimal const number{15, 1};
  EXPECT_EQ(failure([&](Output& output, kit::NumberStream& stream) {
              stream.add(output.moment({5, 0}), number);
              stream.add(output.moment({5, 0}), number);
              stream.add(output.moment({4, 0}), number);
            }),
            "1507 N: a sample that is earlier than the one before it");
  EXPECT_EQ(failure([&](Output& output, kit::NumberStream& stream) {
              stream.add(output.moment({5, 0}), number);
              stream.finish();
              stream.add(output.moment({6, 0}), number);
            }),
            "1507 N: a sample behind the end of the stream");
  EXPECT_EQ(failure([&](Output&, kit::NumberStream& stream) { stream.add(Frame{1}, number); }),
            "1507 N: a frame in a file with moments in GMT");
}

TEST_F(KitOutput, TheOrderOfSamplesBeginsWithTheFirst) {
  auto const fill = [](std::initializer_list<Instant> instants) {
    return [instants](Output& output) {
      output.setTimeBase(TimeBase::gmt(1));
      auto& stream = output.top().numberStream("T", AsGiven());
      for (Instant const& instant : instants) {
        stream.add(output.moment(instant), kit::Decimal{1, 0});
      }
    };
  };
  std::string const refusal = "1507 T: a sample that is earlier than the one before it";
  EXPECT_EQ(FailureOf(fill({{-5, 0}, {-5, 0}, {-4, 900000000}, {0, 0}, {0, 100000000}})), "none");
  EXPECT_EQ(FailureOf(fill({{-5, 0}, {-6, 900000000}})), refusal);
  EXPECT_EQ(FailureOf(fill({{0, 0}, {-1, 900000000}})), refusal);
  EXPECT_EQ(FailureOf(fill({{0, 500000000}, {0, 400000000}})), refusal);
}

TEST_F(KitOutput, ASampleThatFailsIsNotHeldAgainstTheNext) {
  Write([this](Output& output) {
    output.setTimeBase(TimeBase::gmt(1));
    auto& stream = output.top().numberStream("T", AsGiven());
    Output finer(mTables.Get(), mFolder.Path("finer.tdjson"));
    finer.setTimeBase(TimeBase::gmt(9));
    stream.add(output.moment({1, 0}), kit::Decimal{1, 0});
    EXPECT_THROW(stream.add(finer.moment({2, 123456789}), kit::Decimal{2, 0}), kit::Failure);
    stream.add(output.moment({3, 0}), kit::Decimal{3, 0});
    EXPECT_EQ(stream.count(), 2U);
  });
  EXPECT_EQ(Samples("T"), "0/1=1 2/1=3 ");
}

TEST_F(KitOutput, KeysAreRoundedToAnyDigits) {
  std::int64_t unit = 1000000000;
  for (unsigned digits = 1; digits <= 9; ++digits) {
    unit /= 10;
    TimeBase const base = TimeBase::gmt(digits);
    std::mt19937 random(digits);
    for (int i = 0; i != 2000; ++i) {
      // Around the middle between two fractions, and around the ends of the second.
      std::int64_t const middle = static_cast<std::int64_t>(random() % 1000000000) / unit * unit + unit / 2;
      std::int64_t const wanted[] = {middle, 999999999 - unit / 2, 0, 999999999};
      auto const nanoseconds =
          std::clamp<std::int64_t>(wanted[i % 4] + static_cast<std::int64_t>(random() % 5) - 2, 0, 999999999);
      kit::detail::SampleKey const key = kit::detail::KeyOf(Instant{7, static_cast<std::int32_t>(nanoseconds)}, base);
      std::int64_t const units = 7 * (1000000000 / unit) + (nanoseconds + unit / 2) / unit;
      ASSERT_EQ(key.major, units / (1000000000 / unit)) << nanoseconds << ' ' << digits;
      ASSERT_EQ(key.minor, units % (1000000000 / unit)) << nanoseconds << ' ' << digits;
    }
  }
}

TEST_F(KitOutput, AClockShowsEachSecondOfADay) {
  kit::detail::Clock clock;
  for (std::int64_t second = -86400; second != 2 * 86400; ++second) {
    kit::detail::ClockTime const time = clock.at({second, 5});
    kit::CivilTime const civil = kit::MakeCivilTime({second, 0});
    ASSERT_TRUE(time.year == civil.year && time.month == civil.month && time.day == civil.day) << second;
    ASSERT_TRUE(time.hour == civil.hour && time.minute == civil.minute && time.second == civil.second) << second;
    ASSERT_EQ(time.fraction, 5);
  }
}

TEST_F(KitOutput, StreamsMayBeWrittenBeforeTheEnd) {
  std::string const bytes = Write([](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    auto& early = output.top().numberStream("Early");
    auto& late = output.top().numberStream("Late");
    auto& none = output.top().numberStream("None");
    early.add(Frame{1}, 2);
    late.add(Frame{0}, 3);
    early.add(Frame{0}, 1);
    early.finish();
    early.finish();
    none.finish();
    late.add(Frame{1}, 4);
  });
  EXPECT_EQ(Samples("Early"), "0/1=1 1/25=2 ");
  EXPECT_EQ(Samples("Late"), "0/1=3 1/25=4 ");
  EXPECT_EQ(bytes.find("None"), std::string::npos);
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::frames(25));
              auto& stream = output.top().numberStream("N");
              stream.finish();
              stream.add(Frame{0}, 1);
            }),
            "1507 N: a sample behind the end of the stream");
}

TEST_F(KitOutput, GroupsAreAsDeepAsReadersTake) {
  auto const fill = [](Output& output, unsigned depth) {
    output.setTimeBase(TimeBase::frames(25));
    kit::Group* group = &output.top();
    for (unsigned i = 0; i != depth; ++i) {
      group = &group->group("G");
    }
    group->arrayStream("A", {"x"}).add(Frame{0}, {1.0});
    group->numbers("N", {1, 2});
  };
  Write([&](Output& output) { fill(output, kit::Group::kDeepest); });
  EXPECT_EQ(ReadError(), 0);
  EXPECT_EQ(FailureOf([&](Output& output) { fill(output, kit::Group::kDeepest + 1); }),
            "1507 G: a group within " + std::to_string(kit::Group::kDeepest) + " others");
  // One more by the writer alone, made of the file that is as deep as allowed: it is refused.
  std::string bytes = Write([&](Output& output) { fill(output, kit::Group::kDeepest); });
  std::string const outline = R"("dataOutline":[)";
  std::size_t const start = bytes.find(outline) + outline.size();
  bytes.insert(bytes.size() - 2, "]}");
  bytes.insert(start, R"({"objectType":"dataGroup","matchName":"more","displayName":"More","children":[)");
  mFolder.Write("file.tdjson", bytes);
  EXPECT_NE(ReadError(), 0);
}

TEST_F(KitOutput, RatesAreReadBack) {
  struct Row {
    unsigned value;
    unsigned scale;
    std::int64_t frames;
    char const* code;
    char const* time;
  };
  Row const rows[] = {
      {1, 2, 100, "00:01:40:00", "200/1"},
      {999, 10, 105, "00:00:01:05", "350/333"},
      {100, 1, 105, "00:00:01:005", "21/20"},
      {120000, 1001, 121, "00:00:01:001", "121121/120000"},
      {1000, 1, 86399999, "23:59:59:999", "86399999/1000"},
      {24000, 1001, 25, "00:00:01:01", "1001/960"},
      {99, 1, 98, "00:00:00:98", "98/99"},
      {199, 2, 99, "00:00:00:99", "198/199"},
  };
  for (Row const& row : rows) {
    std::string const bytes = Write([&](Output& output) {
      output.setTimeBase(TimeBase::frames(row.value, row.scale));
      auto& stream = output.top().numberStream("T");
      stream.add(Frame{row.frames}, 2);
      stream.add(Frame{0}, 1);
    });
    EXPECT_NE(bytes.find(std::string(R"("time":")") + row.code + '"'), std::string::npos) << row.code;
    EXPECT_EQ(Samples("T"), std::string("0/1=1 ") + row.time + "=2 ");
  }
}

// The comments at `TimeBase` tell how long times are exact.
TEST_F(KitOutput, LongFilesKeepTheirTimesForAsLongAsIsTold) {
  auto const isExact = [this](unsigned digits, std::int64_t seconds) {
    std::int64_t const unit = TimeBase::gmt(digits).fractionUnit();
    // One unit, which no fraction shortens.
    Instant const start{0, 0};
    Instant const end{seconds, static_cast<std::int32_t>(unit)};
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::gmt(digits));
      auto& stream = output.top().numberStream("T");
      stream.add(start, 1);
      stream.add(end, 2);
    });
    senmark::Time const time = Open().samples("T").all().collect().at(1).time;
    std::int64_t const perSecond = 1000000000 / unit;
    return static_cast<std::int64_t>(time.value) * perSecond ==
           (seconds * perSecond + 1) * static_cast<std::int64_t>(time.scale);
  };
  constexpr std::int64_t kDay = 86400;
  EXPECT_TRUE(isExact(3, 24 * kDay));
  EXPECT_FALSE(isExact(3, 25 * kDay));
  EXPECT_TRUE(isExact(6, 34 * 60));
  EXPECT_FALSE(isExact(6, 35 * 60));
  EXPECT_TRUE(isExact(9, 1));
  EXPECT_FALSE(isExact(9, 2));

  auto const wholeSeconds = [this](std::int64_t seconds) {
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::gmt(6));
      auto& stream = output.top().numberStream("T");
      stream.add(Instant{0, 0}, 1);
      stream.add(Instant{seconds, 0}, 2);
    });
    return Samples("T");
  };
  EXPECT_EQ(wholeSeconds(68 * 365 * kDay), "0/1=1 " + std::to_string(68 * 365 * kDay) + "/1=2 ");
  EXPECT_THROW(wholeSeconds(69 * 365 * kDay), senmark::Error);

  auto const isExactFrame = [this](unsigned value, unsigned scale, std::int64_t frame) {
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::frames(value, scale));
      auto& stream = output.top().numberStream("T");
      stream.add(Frame{0}, 1);
      stream.add(Frame{frame}, 2);
    });
    senmark::Time const time = Open().samples("T").all().collect().at(1).time;
    return static_cast<std::int64_t>(time.value) * value == frame * scale * static_cast<std::int64_t>(time.scale);
  };
  EXPECT_TRUE(isExactFrame(1000, 1, 86399999));
  EXPECT_TRUE(isExactFrame(30000, 1001, 19 * 3600 * 30 - 1));
  EXPECT_FALSE(isExactFrame(30000, 1001, 20 * 3600 * 30 - 1));
}

TEST_F(KitOutput, QuestionsAreExactUpToFourDigits) {
  for (unsigned digits = 1; digits <= 6; ++digits) {
    std::int64_t const unit = TimeBase::gmt(digits).fractionUnit();
    std::int64_t const perSecond = 1000000000 / unit;
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::gmt(digits));
      auto& stream = output.top().numberStream("T");
      stream.add(Instant{0, 0}, 1);
      stream.add(Instant{0, static_cast<std::int32_t>((perSecond - 1) * unit)}, 2);
      stream.add(Instant{1, 0}, 3);
    });
    senmark::Time const asked{static_cast<std::int32_t>(perSecond - 1), static_cast<std::uint32_t>(perSecond)};
    auto const found = Open().samples("T").covering(asked, asked).collect();
    bool const isFound = found.size() == 1 && std::get<double>(found[0].value) == 2;
    EXPECT_EQ(isFound, digits <= 4) << digits;
  }
}

TEST_F(KitOutput, TheTimeBaseComesFirst) {
  EXPECT_EQ(FailureOf([](Output& output) { output.top().numberStream("T"); }),
            "1507 T: a stream in a file without a time base");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::gmt(3));
              output.top().numberStream("T");
              output.setTimeBase(TimeBase::gmt(4));
            }),
            "1507 the time base comes after the first stream");
  EXPECT_EQ(FailureOf([](Output& output) {
              output.setTimeBase(TimeBase::gmt(3));
              output.top().numberStream("T");
              output.addSyncFrame("a.mp4", 1);
            }),
            "1507 a sync time comes after the first stream");
  for (char const* name : {"a\"b", "a\\b", "a\nb"}) {
    EXPECT_EQ(FailureOf([&](Output& output) { output.addSyncFrame(name, 1); }),
              "1507 the name of a video holds a quote, a backslash or a control character");
  }
}

TEST_F(KitOutput, AFailureLeavesNothingBehind) {
  std::size_t const open = CountOpenDescriptors();
  for (int i = 0; i != 3; ++i) {
    EXPECT_EQ(FailureOf([](Output& output) {
                output.setTimeBase(TimeBase::frames(25));
                auto& stream = output.top().numberStream("T", AsGiven());
                stream.add(Frame{5}, 1);
                stream.add(Frame{4}, 1);
              }),
              "1507 T: a sample that is earlier than the one before it");
  }
  EXPECT_EQ(CountOpenDescriptors(), open);
  EXPECT_EQ(mFolder.TempNames(), "");
  // The address is the same, and the root a new one.
  Write([](Output& output) { output.top().flag("On", true); });
  EXPECT_EQ(ReadError(), 0);
}

/// Streams of both orders with more samples than memory takes, a set that is in the file, and nodes of all kinds.
void FillForNothing(Output& output) {
  output.setTimeBase(TimeBase::frames(25));
  output.setCreator("nobody");
  output.addSyncFrame("nothing.mp4", 1);
  kit::Group& group = output.top().group("Inner");
  auto& sorted = group.textStream("Sorted");
  auto& given = output.top().textStream("T", AsGiven());
  auto& done = output.top().numberStream("T", AsGiven());
  std::string const text(60000, 'a');
  for (int i = 0; i != 40; ++i) {
    sorted.add(Frame{40 - i}, text);
    given.add(Frame{i}, text);
    done.add(Frame{i}, i);
  }
  done.finish();
  group.flag("On", true);
  output.top().number("Mass", 3);
}

void FillInEarnest(Output& output) {
  output.setTimeBase(TimeBase::gmt(3));
  auto& late = output.top().numberStream("T");
  auto& given = output.top().textStream("T", AsGiven());
  output.top().group("Inner").flag("On", false);
  for (int i = 0; i != 50; ++i) {
    late.add(Instant{50 - i, 0}, i);
    given.add(Instant{i, 0}, "x");
  }
}

TEST_F(KitOutput, RestartedItIsAsNew) {
  constexpr std::size_t kSortMemory = 600;
  std::string const expected = Write(FillInEarnest, kSortMemory);
  for (int const restarts : {1, 2, 3}) {
    EXPECT_EQ(Write(
                  [&](Output& output) {
                    std::size_t const open = CountOpenDescriptors();
                    for (int i = 0; i != restarts; ++i) {
                      FillForNothing(output);
                      EXPECT_NE(CountOpenDescriptors(), open);
                      EXPECT_GT(fs::file_size(mPath), 1000U);
                      output.restart();
                      EXPECT_EQ(CountOpenDescriptors(), open);
                      EXPECT_EQ(mFolder.TempNames(), "");
                      EXPECT_EQ(fs::file_size(mPath), 0U);
                    }
                    FillInEarnest(output);
                  },
                  kSortMemory),
              expected)
        << restarts;
  }
  // Also before anything was said.
  EXPECT_EQ(Write(
                [](Output& output) {
                  output.restart();
                  FillInEarnest(output);
                },
                kSortMemory),
            expected);
  EXPECT_EQ(ReadError(), 0);
}

/// Samples go to the disk just when they would without what was there before.
TEST_F(KitOutput, ARestartGivesMemoryForSortingBack) {
  std::string const text(60000, 'a');
  Output output(mTables.Get(), mPath, std::size_t{3} << 20);
  auto const descriptorsFor = [&](int samples) {
    std::size_t const open = CountOpenDescriptors();
    output.setTimeBase(TimeBase::frames(25));
    auto& stream = output.top().textStream("T");
    for (int i = 0; i != samples; ++i) {
      stream.add(Frame{i}, text);
    }
    return CountOpenDescriptors() - open;
  };
  constexpr int kFit = 30;
  for (int round = 0; round != 4; ++round) {
    EXPECT_EQ(descriptorsFor(kFit), 0U) << round;
    output.restart();
  }
  EXPECT_EQ(descriptorsFor(2 * kFit), 1U);
}

TEST_F(KitOutput, RestartedAfterAFailureItIsAsNew) {
  std::string const expected = Write(FillInEarnest);
  auto const early = [](Output& output) {
    output.setTimeBase(TimeBase::frames(25));
    auto& stream = output.top().numberStream("T", AsGiven());
    stream.add(Frame{5}, 1);
    stream.add(Frame{4}, 1);
  };
  auto const nothing = [](Output& output) { output.finish(); };
  std::function<void(Output&)> const kFailing[] = {early, nothing};
  for (auto const& fail : kFailing) {
    EXPECT_EQ(Write([&](Output& output) {
                EXPECT_THROW(fail(output), kit::Failure);
                output.restart();
                FillInEarnest(output);
              }),
              expected);
  }
  // In the writer and in the kit, wherever the disk is full.
  for (std::size_t const memory : {Output::kSortMemory, std::size_t{600}}) {
    for (int const call : {1, 2, 3, 5, 8, 13}) {
      EXPECT_EQ(Write(
                    [&](Output& output) {
                      std::size_t const open = CountOpenDescriptors();
                      {
                        FailingCall const failing(kWrite, ENOSPC, call);
                        EXPECT_THROW(
                            {
                              FillForNothing(output);
                              output.finish();
                            },
                            kit::Failure);
                      }
                      output.restart();
                      EXPECT_EQ(CountOpenDescriptors(), open);
                      EXPECT_EQ(mFolder.TempNames(), "");
                      FillInEarnest(output);
                    },
                    memory),
                expected)
          << call;
    }
  }
}

/// A converter may take no notice of it and go on to the end.
TEST_F(KitOutput, ARestartThatFailsCanBeTriedAgainAndLeavesNothingToFinish) {
  std::string const expected = Write(FillInEarnest);
  static bool isFailing;
  static SK_PLUGIN::HostAPI const* host;
  isFailing = false;
  host = &mTables.Get();
  SK_PLUGIN::TDJSONWriter_API writer = *host->mTdjsonWriterAPI;
  writer.Static_CreateRoot = [](void* key, char const* path, SK_PLUGIN::SetErrorProc setError, void** root,
                                unsigned char* existed, unsigned version, void* result) {
    if (isFailing) {
      host->mHandleExceptionAPI->Static_SetPluginErrorObj(result, ns_sensor::kNoMemory, -1, -1);
      return;
    }
    host->mTdjsonWriterAPI->Static_CreateRoot(key, path, setError, root, existed, version, result);
  };
  SK_PLUGIN::HostAPI api = *host;
  api.mTdjsonWriterAPI = &writer;
  {
    Output output(api, mPath);
    FillForNothing(output);
    isFailing = true;
    EXPECT_THROW(output.restart(), kit::Failure);
    EXPECT_THROW(output.finish(), kit::Failure);
    EXPECT_THROW(output.restart(), kit::Failure);
    isFailing = false;
    output.restart();
    FillInEarnest(output);
    output.finish();
  }
  EXPECT_EQ(mFolder.Read(mPath), expected);
}

TEST_F(KitOutput, ARestartEmptiesTheFileThatWasBegun) {
  mFolder.Write("file.tdjson", "of another");
  {
    Output output(mTables.Get(), mPath);
    output.restart();
    EXPECT_EQ(mFolder.Read(mPath), "of another");
    output.setTimeBase(TimeBase::gmt(1));
    output.top().numberStream("T");
    output.restart();
    EXPECT_EQ(mFolder.Read(mPath), "");
    // The time base is gone, too.
    EXPECT_THROW(output.top().numberStream("T"), kit::Failure);
    EXPECT_THROW(output.moment(Instant{}), kit::Failure);
  }
  // What fails after a restart leaves no more than that.
  EXPECT_EQ(mFolder.Read(mPath), "");
  // The file may be gone.
  Write([&](Output& output) {
    FillForNothing(output);
    fs::remove(mPath);
    output.restart();
    FillInEarnest(output);
  });
  EXPECT_EQ(ReadError(), 0);
}

TEST_F(KitOutput, TwoAtOnceDoNotMeet) {
  std::string const otherPath = mFolder.Path("other.tdjson");
  {
    Output other(mTables.Get(), otherPath);
    other.setTimeBase(TimeBase::frames(30));
    auto& stream = other.top().numberStream("Other", AsGiven());
    stream.add(Frame{0}, 1);
    Write([&](Output& output) {
      output.setTimeBase(TimeBase::frames(25));
      auto& inner = output.top().numberStream("Inner", AsGiven());
      inner.add(Frame{0}, 2);
      stream.add(Frame{1}, 3);
    });
    other.finish();
  }
  EXPECT_EQ(Samples("Inner"), "0/1=2 ");
  mPath = otherPath;
  EXPECT_EQ(Samples("Other"), "0/1=1 1/30=3 ");
}

TEST_F(KitOutput, AFullDiskIsAFailureOfTheWriter) {
  auto const fill = [](Output& output, kit::eOrder order) {
    output.setTimeBase(TimeBase::frames(25));
    StreamFormat format;
    format.order = order;
    auto& stream = output.top().textStream("T", format);
    std::string const text(60000, 'a');
    for (int i = 0; i != 100; ++i) {
      stream.add(Frame{i}, text);
    }
  };
  for (kit::eOrder const order : {kit::eOrder::kSorted, kit::eOrder::kAsGiven}) {
    std::size_t const open = CountOpenDescriptors();
    FailingCall const failing(kWrite, ENOSPC, 3);
    std::string const failure = FailureOf([&](Output& output) { fill(output, order); });
    EXPECT_TRUE(failing.HasFailed());
    EXPECT_EQ(failure.substr(0, 5), "1034 ") << failure;
    EXPECT_EQ(CountOpenDescriptors(), open);
    EXPECT_EQ(mFolder.TempNames(), "");
  }
  EXPECT_EQ(FailureOf([&](Output& output) { fill(output, kit::eOrder::kSorted); }), "none");
}

TEST_F(KitOutput, AnOutputThatCannotBeWrittenIsAFailure) {
  mPath = mFolder.Path("no/such/folder/file.tdjson");
  std::string const failure = FailureOf([](Output& output) { output.top().flag("On", true); });
  EXPECT_EQ(failure.substr(0, 2), "10") << failure;
}

}  // namespace
}  // namespace senmark_test
