/// Turns a JSON file into the system's format: objects and arrays become groups; strings, numbers and booleans
/// become static nodes.
///
/// Nulls and containers without anything else vanish. There is no time in such a file, so no dynamic data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "JsonIterator.h"
#include "SK_ConverterHandlerBase.h"
#include "SK_LongNames.h"
#include "senmark/ITdjsonGroup_v1.h"

namespace ns_sensor {

/// Whether the file begins with a bracket, behind white space. Its last byte does not count, so a file of one
/// byte is refused. Leaves a note of the kind of bracket for the conversion, which must come before the next
/// check of another file. Codes of `SK_FileMapper`.
bool JSON_CheckFormat(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);

std::shared_ptr<SK_ConverterHandlerBase> JSONConverter_CTor(std::string& uid,
                                                            SK_NAMESPACE_INT::SK_PathInfo const& file);

class JsonConverter : public SK_ConverterHandlerBase {
 public:
  using Group = std::shared_ptr<SK_PLUGIN::ITdjsonGroup_v1>;

  using SK_ConverterHandlerBase::SK_ConverterHandlerBase;
  /// Has the writer forget the file.
  ~JsonConverter() override;
  JsonConverter(JsonConverter const&) = delete;
  JsonConverter& operator=(JsonConverter const&) = delete;

  /// False if there is nothing to write; the file then has its head alone. Code 1506 for invalid JSON, and the
  /// codes of `SK_FileMapper` and of the writer.
  bool convertToTDJSON() override;

  /// Adds every item that is left, and what is in it. Whether anything was added.
  ///
  /// The names of nested arrays grow with the depth: more of them than `SK_LongNames` lets pass end in
  /// `std::bad_alloc`.
  bool AppendItems(Group const& group, std::shared_ptr<JsonIterator>& items);

  /// Add the current item; always true.
  bool AddDoubleData(Group const& group, std::shared_ptr<JsonIterator> const& item);
  bool AddStringData(Group const& group, std::shared_ptr<JsonIterator> const& item);
  bool AddBooleanData(Group const& group, std::shared_ptr<JsonIterator> const& item);
  /// Add a group for the current item and everything in it, unless nothing comes of that; whether they did. A
  /// container without items takes no match name, any other does.
  bool AddArrayData(Group const& group, std::shared_ptr<JsonIterator> const& item);
  bool AddObjectData(Group const& group, std::shared_ptr<JsonIterator> const& item);

  /// "matchName" and the next number. The numbers can have gaps: one is taken before it is known whether its
  /// group will be written.
  std::string GetNewMatchName();

 private:
  struct OpenGroup;

  bool OpenContainer(std::vector<OpenGroup>& chain, SK_PLUGIN::ITdjsonGroup_v1& parent, JsonIterator const& item,
                     bool isArray);
  bool AddContainer(SK_PLUGIN::ITdjsonGroup_v1& parent, JsonIterator const& item, bool isArray);
  bool WalkChain(std::vector<OpenGroup>& chain);
  bool AddLeaf(OpenGroup const& open, std::uint8_t kind);

  std::uint32_t mMatchNameCounter = 0;
  SK_LongNames mNames;  ///< those of nodes that live
};

}  // namespace ns_sensor
