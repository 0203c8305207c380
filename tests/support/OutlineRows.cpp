#include "OutlineRows.h"

#include <rapidjson/pointer.h>

#include "SK_TdjsonValidator_v1.h"
#include "SK_TdjsonValidator_v2.h"

namespace senmark_test {

using SK_NAMESPACE_INT::JDocument;
using SK_NAMESPACE_INT::JValue;

namespace {

std::string Range() {
  return R"({"occurring":{"min":1,"max":2},"legal":{"min":0,"max":9}})";
}

std::string NumberType(std::string const& type) {
  return R"("dataType":{"type":")" + type +
         R"(","numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":3,"digitsDecimal":2},"range":)" +
         Range() + "}}";
}

std::string TextType(std::string const& type) {
  return R"("dataType":{"type":")" + type +
         R"(","paddedStringProperties":{"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":false}})";
}

std::string ArrayType(std::string const& type) {
  return R"("dataType":{"type":")" + type +
         R"(","numberArrayProperties":{"pattern":{"isSigned":false,"digitsInteger":3,"digitsDecimal":2},)"
         R"("arraySize":2,"arrayDisplayNames":["X","Y"],"arrayRanges":{"ranges":[)" +
         Range() + "," + Range() + R"(]},"isPoint":true}})";
}

std::string Node(std::string const& kind, std::string const& displayName, std::string const& matchName,
                 std::string const& rest) {
  return R"({"objectType":")" + kind + R"(","displayName":")" + displayName + R"(","matchName":")" + matchName +
         R"(",)" + rest + "}";
}

std::string DynamicFields(std::string const& sampleSetID) {
  return R"(,"sampleSetID":")" + sampleSetID +
         R"(","interpolation":"linear","hasExpectedFrequencyB":true,"sampleCount":5,)"
         R"("expectedMaxInterSampleDuration":"1.5")";
}

/// What differs between the versions in an outline of the same shape.
struct Vocabulary {
  std::string staticNumber, number, staticText, text, staticArray, array, dynamicArray;
};

std::string Outline(Vocabulary const& v, std::string const& furtherNodes) {
  std::string const number = NumberType(v.staticNumber) + R"(,"value":)" + v.number;
  std::string const arm =
      Node("dataGroup", "Arm", "arm", R"("children":[)" + Node("dataStatic", "Bone", "bone", number) + "]");
  std::string const leg = Node("dataStatic", "Leg", "leg", number);
  return "[" + Node("dataStatic", "Speed", "speed", number) + "," +
         Node("dataStatic", "Note", "note", TextType(v.staticText) + R"(,"value":)" + v.text) + "," +
         Node("dataStatic", "Point", "point", ArrayType(v.staticArray) + R"(,"value":)" + v.array) + "," +
         Node("dataDynamic", "Track", "track", NumberType("numberString") + DynamicFields("id1")) + "," +
         Node("dataDynamic", "Marks", "marks", TextType("paddedString") + DynamicFields("id2")) + "," +
         Node("dataDynamic", "Hand", "hand", ArrayType(v.dynamicArray) + DynamicFields("id3")) + "," +
         Node("dataGroup", "Body", "body", R"("children":[)" + arm + "," + leg + "]") + furtherNodes + "]";
}

Vocabulary const kVersion1 = {"numberString", R"("1.50")",          "paddedString", R"({"length":2,"str":"ok"})",
                              "numberArray",  R"(["1.00","2.00"])", "numberArray"};
Vocabulary const kVersion2 = {"number", "1.5", "string", R"("ok")", "numberArray", "[1,2.5]", "numberStringArray"};

}  // namespace

std::string ValidOutline(int version) {
  return version == 1 ? Outline(kVersion1, "")
                      : Outline(kVersion2, "," + Node("dataStatic", "Flag", "flag",
                                                      R"("dataType":{"type":"boolean"},"value":true)"));
}

JDocument Parsed(std::string const& json) {
  JDocument document;
  document.Parse(json.c_str());
  EXPECT_FALSE(document.HasParseError()) << json;
  return document;
}

JDocument Edited(std::string const& json, std::vector<Edit> const& edits) {
  JDocument document = Parsed(json);
  for (Edit const& edit : edits) {
    rapidjson::GenericPointer<JValue> const pointer(edit.pointer);
    if (edit.json == nullptr) {
      EXPECT_TRUE(pointer.Erase(document)) << edit.pointer;
    } else {
      pointer.Set(document, JValue(Parsed(edit.json), document.GetAllocator()));
    }
  }
  return document;
}

void ValidateOutline(int version, JValue const& outline) {
  if (version == 1) {
    SK_NAMESPACE_INT::SK_TdjsonValidator_v1().ValidateOutline(outline, nullptr, nullptr);
  } else {
    SK_NAMESPACE_INT::SK_TdjsonValidator_v2().ValidateOutline(outline, nullptr, nullptr);
  }
}

}  // namespace senmark_test
