#include "JsonParser.h"

#include <rapidjson/memorystream.h>

#include "JsonArrayIterator.h"
#include "JsonObjectIterator.h"
#include "SK_Error.h"
#include "SK_FileMapper.h"

namespace ns_sensor {

JsonParser::JsonParser(std::string const& path) {
  SK_NAMESPACE_INT::SK_FileMapper const file(path);
  // Gives a NUL at its end instead of reading the byte there, which need not be mapped.
  rapidjson::MemoryStream text(file.GetFilePointer(), file.GetFileSize());
  // Iterative: nesting takes memory and not the stack of the thread. The values are those of the recursive way.
  mDocument.ParseStream<rapidjson::kParseIterativeFlag>(text);
  if (mDocument.HasParseError()) {
    SK_NAMESPACE_INT::ThrowError({kConversionFailed, SK_Message::kConversionFailure, -1, -1});
  }
}

std::shared_ptr<JsonIterator> JsonParser::GetDomIterator(bool isArray) const {
  if (isArray) {
    return std::make_shared<JsonArrayIterator>("dataOutline", mDocument);
  }
  return std::make_shared<JsonObjectIterator>(mDocument);
}

}  // namespace ns_sensor
