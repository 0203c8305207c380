/// The text of the outline, made from the tree of nodes in one walk, however deep that is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "SK_StaticRecords.h"
#include "SK_WriterNumberText.h"
#include "SerializerBuffer.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class TdjsonDynamicDataImpl;
class TdjsonGroupImpl;
class TdjsonStaticDataImpl;

/// What would be empty stays out: dynamic nodes that are dirty or claim no samples, and groups in which nothing
/// is left. A group's own text is therefore made only once something in it is written; nothing is ever taken back.
///
/// Every child but the first of its siblings has a comma in front, also when the first one stays out. Such a
/// file begins a list with a comma, which readers refuse; a converter adds first what will be written.
class SerializerOutline {
 public:
  /// Is called with at least `kPieceSize` bytes of text, takes them and empties the buffer.
  using TakePiece = std::function<void(SerializerBuffer& text)>;
  static constexpr std::size_t kPieceSize = std::size_t{1} << 20;

  /// Both must outlive the object. What the buffer holds already stays in front.
  SerializerOutline(SerializerBuffer& text, TakePiece takePiece);

  /// The key "dataOutline" and the array; what is left in the buffer at the end is the caller's to write.
  ///
  /// `SK_PluginException`: 2021 no children at all; 2000 nothing to write; 2001, 2002, 2003 a node that is null;
  /// 2016, 2020, 2023, 2026 what the writer does not know; 1034 a group inside itself.
  void serialize_Outline(TdjsonGroupImpl const& root);

 private:
  /// A group on the way from the root to the node in question.
  struct Level {
    TdjsonGroupImpl const* group;
    std::size_t nextChild;  ///< position among its children
    SK_StaticRecords::Reader records;
  };

  void Enter(TdjsonGroupImpl const& group);
  void Leave();
  void VisitNextChild();
  void VisitRecords(SK_StaticRecords::Reader& records, std::uint64_t count);
  void OpenLevels();
  void EndNode();

  void serialize_GroupNode(TdjsonGroupImpl const& group);
  void AppendGroupHead(std::string_view matchName, std::string_view displayName);
  void serialize_StaticDataNode(TdjsonStaticDataImpl const& node);
  void serialize_StaticDataNode(SK_StaticRecords::Record const& record);
  void serialize_DynamicDataNode(TdjsonDynamicDataImpl const& node);
  void AppendStaticHead(std::string_view matchName, std::string_view displayName, ns_sensor::eDataValueType type);
  // What stands behind the type of a static node.
  void AppendStaticNumber(ns_sensor::SK_NumberProperties const& properties, double value);
  void AppendStaticString(ns_sensor::SK_StringProperties const& properties, std::string_view value);
  void AppendStaticBool(bool value);
  void serialize_NumberProp(ns_sensor::SK_NumberProperties const& properties);
  void serialize_PaddedStringProp(ns_sensor::SK_StringProperties const& properties);
  void serialize_NumberArrayProp(ns_sensor::SK_NumberArrayProperties const& properties);
  void serialize_Pattern(ns_sensor::SK_NumberPattern const& pattern);
  void serialize_RangeElem(ns_sensor::SK_NumberRange const& range);
  /// The beginning of a node: text up to its names, the names, and text behind them.
  void AppendHead(std::string_view kind, std::string_view matchName, std::string_view displayName,
                  std::string_view next);
  void AppendNumber(double value);
  SK_WriterNumberText const& TextOf(double value);

  SerializerBuffer& mText;
  TakePiece mTakePiece;
  std::vector<Level> mLevels;   ///< the root first
  std::size_t mOpenLevels = 0;  ///< so many of them have their text
  double mLastNumber = 0;       ///< a node's value and its bounds are mostly one number
  SK_WriterNumberText mLastText{0.0};
};

}  // namespace SK_PLUGIN
