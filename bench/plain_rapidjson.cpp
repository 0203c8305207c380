#include "plain_rapidjson.h"

#define RAPIDJSON_NAMESPACE plain_rapidjson
#define RAPIDJSON_NAMESPACE_BEGIN namespace plain_rapidjson {
#define RAPIDJSON_NAMESPACE_END }
#include <rapidjson/document.h>

std::size_t ParseWithPlainRapidJson(std::string const& text) {
  plain_rapidjson::Document document;
  document.Parse(text.data(), text.size());
  return document.HasParseError() ? 0 : document.GetAllocator().Size();
}
