/// A JSON file as a document in memory.
#pragma once

#include <memory>
#include <string>

#include "SK_RapidJson.h"

namespace ns_sensor {

class JsonIterator;

class JsonParser {
 public:
  /// Reads the whole file; its mapping ends here. The text ends at its first NUL byte, or with the file.
  /// Code 1506 for invalid JSON, and the codes of `SK_FileMapper`.
  explicit JsonParser(std::string const& path);

  /// Over the top level, which is to be an array or not as `isArray` says; code 19 if it is something else.
  /// This object must outlive the iterator.
  std::shared_ptr<JsonIterator> GetDomIterator(bool isArray) const;

 private:
  SK_NAMESPACE_INT::JDocument mDocument;
};

}  // namespace ns_sensor
