#include "plain_rapidjson.h"

#define RAPIDJSON_NAMESPACE plain_rapidjson
#define RAPIDJSON_NAMESPACE_BEGIN namespace plain_rapidjson {
#define RAPIDJSON_NAMESPACE_END }
#include <rapidjson/document.h>

#include "OpeningHost.h"

std::size_t ParseWithPlainRapidJson(std::string const& text) {
  plain_rapidjson::Document document;
  document.Parse(text.data(), text.size());
  return document.HasParseError() ? 0 : document.GetAllocator().Size();
}

double SecondsToParseWithPlainRapidJson(std::string const& text) {
  plain_rapidjson::Document document;
  Stopwatch const watch;
  document.Parse(text.data(), text.size());
  return document.HasParseError() ? -1 : watch.Seconds();
}
