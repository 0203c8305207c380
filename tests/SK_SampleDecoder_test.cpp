// The fast way and the full way to read a sample, fed with the same bytes.

#include "SK_SampleDecoder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "SK_Exception.h"
#include "SK_SampleJsonReader.h"
#include "ScratchSamples.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::ArrayWidths;
using senmark_test::Milliseconds;
using senmark_test::NumberWidths;
using senmark_test::PaddedWidths;
using senmark_test::ThirtyFrames;
using senmark_test::TimeFirst;
using senmark_test::ValueFirst;

/// Sample `i` of a block with all bits of its numbers.
std::string Describe(SK_SampleBlock const& block, std::uint64_t i) {
  std::string text = std::to_string(block.Time(i).value) + "/" + std::to_string(block.Time(i).scale) + " kind " +
                     std::to_string(block.ValueType(i)) + ":";
  if (block.ValueType(i) == ns_sensor::kStringValue) {
    return text + std::string(static_cast<char const*>(block.ValuePointer(i)), block.ValueSize(i));
  }
  std::uint64_t const count = block.ValueType(i) == ns_sensor::kNumberValue ? 1 : block.ValueSize(i);
  for (std::uint64_t element = 0; element < count; ++element) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, static_cast<double const*>(block.ValuePointer(i)) + element, sizeof(bits));
    text += " " + std::to_string(bits);
  }
  return text;
}

/// One kind of samples: how they look and how wide they are.
struct Kind {
  char const* name;
  SK_TimeFormat format;
  eTDJSONVersion version;
  SK_DynamicSampleInfo widths;
  std::string sample;
};

class SampleReaders {
 public:
  explicit SampleReaders(Kind const& kind) : mKind(kind), mInfo(kind.widths) {
    mInfo.mSampleSize += 20U + kind.format.GetTimeStrLength();
  }

  /// What the fast way makes of a text of one sample; empty when it leaves it to the other. Alone and as one of many
  /// a sample may be read by different means.
  std::string ReadFast(std::string const& text) {
    std::string const alone = ReadCopies(text, 1);
    EXPECT_EQ(ReadCopies(text, 5), alone) << text;
    return alone;
  }

  std::string ReadFully(std::string const& text) {
    auto const buffer = CopyOf(text);
    char const* const end = buffer.get() + text.size();
    SK_SampleBlock block;
    EXPECT_TRUE(block.Start(ValueTypeOf(mInfo), 1, NumbersPerSample(mInfo)));
    try {
      char const* const next =
          SK_SampleJsonReader(mInfo, mKind.format, mKind.version).Read(buffer.get(), end, "sample", block);
      return next == end ? Describe(block, 0) : "shorter than its width";
    } catch (ns_sensor::SK_Exception const& error) {
      return std::to_string(error.GetErrorCode()) + " " + error.GetLocalizedErrMsg();
    } catch (std::exception const& error) {
      return error.what();
    }
  }

  std::uint64_t Width() const { return mInfo.mSampleSize; }

 private:
  /// What became of the last of several copies; empty when not all were taken.
  std::string ReadCopies(std::string const& text, std::uint64_t copies) {
    std::string joined;
    for (std::uint64_t i = 0; i < copies; ++i) {
      joined += (i == 0 ? "" : ",") + text;
    }
    auto const buffer = CopyOf(joined);
    SK_SampleBlock block;
    EXPECT_TRUE(block.Start(ValueTypeOf(mInfo), copies, NumbersPerSample(mInfo)));
    SK_RelativeTimeReader timeReader(mKind.format);
    SK_SampleDecoder decoder(mInfo, timeReader, mKind.format.GetTimeStrLength(), mKind.version);
    try {
      std::uint64_t const taken = decoder.Decode(buffer.get(), copies, block);
      EXPECT_TRUE(taken == 0 || taken == copies) << taken;
      return taken == copies ? Describe(block, copies - 1) : "";
    } catch (ns_sensor::SK_Exception const&) {
      return "an error that is not for it to raise";
    } catch (std::exception const& error) {
      return error.what();
    }
  }

  static std::unique_ptr<char[]> CopyOf(std::string const& text) {
    auto buffer = std::make_unique<char[]>(text.size());
    std::memcpy(buffer.get(), text.data(), text.size());
    return buffer;
  }

  Kind const& mKind;
  SK_DynamicSampleInfo mInfo;
};

SK_TimeFormat DropFrame() {
  SK_TimeFormat format;
  format.SetSMPTEInfo({30000, 1001}, 1);
  format.SetSMPTEBaseTime({1001, 30000});
  return format;
}

std::vector<Kind> Kinds() {
  constexpr eTDJSONVersion k1 = kTdjsonVersion1;
  constexpr eTDJSONVersion k2 = kTdjsonVersion2;
  std::string const frames = "00:01:02:03";
  std::string const date = "2020-03-04T05:06:07.089Z";
  return {
      {"Number", ThirtyFrames(), k2, NumberWidths(5), TimeFirst(frames, R"("+01.5")")},
      {"NumberValueFirst", ThirtyFrames(), k1, NumberWidths(5), ValueFirst(frames, R"("-01.5")")},
      {"NumberUnsigned", Milliseconds(), k2, NumberWidths(3), TimeFirst(date, R"("086")")},
      {"NumberOfManyDecimals", Milliseconds(), k2, NumberWidths(20), TimeFirst(date, R"("-02.6906000000000001")")},
      {"NumberOfTwoChunks", Milliseconds(), k2, NumberWidths(12), TimeFirst(date, R"("0.1234567891")")},
      {"NumberTooLongForTheFastWay", ThirtyFrames(), k2, NumberWidths(9), TimeFirst(frames, R"("123456789")")},
      {"NumberWithEscape", ThirtyFrames(), k2, NumberWidths(2), TimeFirst(frames, R"("\/")")},
      {"DropFrame", DropFrame(), k1, NumberWidths(3), TimeFirst("00:01:00:02", R"("1.5")")},
      {"Array", ThirtyFrames(), k2, ArrayWidths(5, 3), TimeFirst(frames, R"(["+01.5","-02.5","+00.0"])")},
      {"ArrayOfOne", Milliseconds(), k1, ArrayWidths(4, 1), TimeFirst(date, R"(["1.25"])")},
      {"ArrayValueFirst", Milliseconds(), k2, ArrayWidths(4, 2), ValueFirst(date, R"(["1.25","2.50"])")},
      {"Text1", ThirtyFrames(), k1, PaddedWidths(6, 1, k1), TimeFirst(frames, R"({"length":3,"str":"a b   "})")},
      {"Text1TwoDigits", ThirtyFrames(), k1, PaddedWidths(12, 2, k1),
       TimeFirst(frames, R"({"length":12,"str":"twelve bytes"})")},
      {"Text1Escaped", ThirtyFrames(), k1, PaddedWidths(6, 1, k1), TimeFirst(frames, R"({"length":5,"str":"a\"bc "})")},
      {"Text1ValueFirst", Milliseconds(), k1, PaddedWidths(2, 1, k1), ValueFirst(date, R"({"length":2,"str":"ab"})")},
      {"Text2", Milliseconds(), k2, PaddedWidths(10, 2, k2), TimeFirst(date, R"({"length":"03","str":"Fog       "})")},
      {"Text2Utf8", ThirtyFrames(), k2, PaddedWidths(4, 1, k2),
       TimeFirst(frames, "{\"length\":\"4\",\"str\":\"\xC3\xA9\xC3\xA8\"}")},
      {"Text2ValueFirst", ThirtyFrames(), k2, PaddedWidths(4, 1, k2),
       ValueFirst(frames, R"({"length":"2","str":"ab  "})")},
      {"Text2StringFirst", ThirtyFrames(), k2, PaddedWidths(4, 1, k2),
       TimeFirst(frames, R"({"str":"ab  ","length":"2"})")},
      {"Text2Empty", ThirtyFrames(), k2, PaddedWidths(0, 1, k2), TimeFirst(frames, R"({"length":"0","str":""})")},
  };
}

class SampleDecoder : public testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(Kinds, SampleDecoder, testing::ValuesIn(Kinds()),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_P(SampleDecoder, TakesTheFixedLayoutAndLeavesTheRest) {
  SampleReaders readers(GetParam());
  ASSERT_EQ(GetParam().sample.size(), readers.Width());
  std::string const fast = readers.ReadFast(GetParam().sample);
  std::string const name = GetParam().name;
  bool const isLeft = name == "NumberTooLongForTheFastWay" || name == "NumberWithEscape" || name == "Text1Escaped" ||
                      name == "Text2StringFirst";
  EXPECT_EQ(fast, isLeft ? "" : readers.ReadFully(GetParam().sample));
}

TEST_P(SampleDecoder, GivesWhatTheFullReaderGivesForEveryByteAtEveryPlace) {
  SampleReaders readers(GetParam());
  for (std::size_t at = 0; at < GetParam().sample.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string text = GetParam().sample;
      text[at] = static_cast<char>(byte);
      std::string const fast = readers.ReadFast(text);
      if (!fast.empty()) {
        ASSERT_EQ(fast, readers.ReadFully(text)) << text;
      }
    }
  }
}

TEST_P(SampleDecoder, GivesWhatTheFullReaderGivesForGeneratedSamples) {
  SampleReaders readers(GetParam());
  std::mt19937 random(9);
  std::string const alphabet = "0123456789+-.,:\"\\{}[]TZaelmrstuv /\t\x7F\xC3";
  int taken = 0;
  for (int i = 0; i < 30000; ++i) {
    std::string text = GetParam().sample;
    // Other digits keep most samples in the layout; the rest is changed, moved, taken out and put in.
    for (char& c : text) {
      c = c >= '0' && c <= '9' && random() % 3 == 0 ? static_cast<char>('0' + random() % 10) : c;
    }
    for (auto changes = random() % 3; changes != 0; --changes) {
      std::size_t const at = random() % text.size();
      char const byte = alphabet[random() % alphabet.size()];
      switch (random() % 4) {
        case 0:
          text[at] = byte;
          break;
        case 1:
          text.insert(at, 1, byte);
          break;
        case 2:
          text.erase(at, 1);
          break;
        default:
          std::swap(text[at], text[random() % text.size()]);
      }
    }
    text.resize(readers.Width(), alphabet[random() % alphabet.size()]);
    std::string const fast = readers.ReadFast(text);
    if (!fast.empty()) {
      ASSERT_EQ(fast, readers.ReadFully(text)) << text;
      ++taken;
    }
  }
  if (readers.ReadFast(GetParam().sample).empty()) {
    EXPECT_LT(taken, 30000);
  } else {
    EXPECT_GT(taken, 2000);
  }
}

TEST(SampleDecoderRun, StopsAtTheFirstSampleThatIsNotInTheLayout) {
  Kind const kind = {"", ThirtyFrames(), kTdjsonVersion2, NumberWidths(4), ""};
  SK_DynamicSampleInfo info = kind.widths;
  info.mSampleSize += 20 + 11;
  std::string text;
  for (int i = 0; i < 200; ++i) {
    text += i == 0 ? "" : ",";
    text += TimeFirst("00:00:00:01", i == 150 ? R"("1e+1")" : R"("1.25")");
  }
  SK_SampleBlock block;
  ASSERT_TRUE(block.Start(ns_sensor::kNumberValue, 200, 1));
  SK_RelativeTimeReader timeReader(kind.format);
  SK_SampleDecoder decoder(info, timeReader, 11, kTdjsonVersion2);
  EXPECT_EQ(decoder.Decode(text.data(), 200, block), 150U);
  EXPECT_EQ(block.Filled(), 150U);
  EXPECT_EQ(decoder.Decode(text.data(), 0, block), 0U);
}

TEST(SampleDecoderRun, RefusesWidthsThatFitNoLayout) {
  std::string const sample = TimeFirst("00:00:00:01", R"(["1.25","1.25"])");
  struct Widths {
    std::uint64_t numberLength;
    std::uint64_t arraySize;
    std::uint64_t sampleSize;
  };
  std::uint64_t const size = sample.size();
  for (Widths const& widths :
       {Widths{6, 3, size}, Widths{0, 2, size}, Widths{2, 2, size}, Widths{~0ULL, 2, size}, Widths{6, 0, size},
        Widths{6, ~0ULL, size}, Widths{6, 2, 31}, Widths{6, 2, 32}, Widths{6, 2, 0}}) {
    SK_DynamicSampleInfo info = ArrayWidths(4, 2);
    info.mNumberLength = widths.numberLength;
    info.mArraySize = widths.arraySize;
    info.mSampleSize = widths.sampleSize;
    SK_SampleBlock block;
    ASSERT_TRUE(block.Start(ns_sensor::kNumberArrayValue, 1, 4));
    SK_RelativeTimeReader timeReader(ThirtyFrames());
    EXPECT_EQ(SK_SampleDecoder(info, timeReader, 11, kTdjsonVersion2).Decode(sample.data(), 1, block), 0U);
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
