// The text form of data paths, which comes from hosts.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "FuzzCheck.h"
#include "SK_Exception.h"
#include "SK_Utils.h"

namespace {

using ns_sensor::SK_DataPath;
using ns_sensor::SK_PathSegment;
using senmark_fuzz::Require;
using SK_NAMESPACE_INT::SK_Utils;

/// The shortest text of a path. A name with a "]" has none: such a name ends its segment early.
bool WriteText(SK_DataPath const& path, std::string& text) {
  for (std::size_t i = 1; i < path.size(); ++i) {
    SK_PathSegment const& segment = path[i];
    if (segment.matchName.find(']') != std::string::npos) {
      return false;
    }
    text += segment.index == -1 ? "[\"" + segment.matchName + "\"]" : "[" + std::to_string(segment.index) + "]";
  }
  return true;
}

void RequireReadPath(std::string const& text, SK_DataPath const& path) {
  Require(path.size() >= 2);
  Require(text.back() == ']');
  for (std::size_t i = 1; i < path.size(); ++i) {
    Require(path[i].index == -1 || path[i].matchName.empty());
    Require(path[i].matchName.find('"') == std::string::npos);
  }
  std::string canonical;
  if (WriteText(path, canonical)) {
    SK_DataPath again;
    SK_Utils::DeSerialize(canonical, again);
    Require(again.size() == path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
      Require(again[i].matchName == path[i].matchName && again[i].index == path[i].index);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string const text(data, data + size);
  SK_DataPath path = {{"old", 7}};
  bool isRead = false;
  try {
    SK_Utils::DeSerialize(text, path);
    isRead = true;
  } catch (ns_sensor::SK_Exception const& error) {
    bool const isAboutBrackets =
        error.GetErrorCode() == ns_sensor::kPathMismatch || error.GetErrorCode() == ns_sensor::kPathBracketMissing;
    Require(text.empty() ? error.GetErrorCode() == ns_sensor::kInvalidArgument : isAboutBrackets);
    Require(error.GetFileOffset() == -1 && error.GetFileLineNo() == -1);
  } catch (std::invalid_argument const&) {
  } catch (std::out_of_range const&) {
  }
  Require(!path.empty() && path[0].matchName == "dataOutline" && path[0].index == -1);
  if (isRead) {
    RequireReadPath(text, path);
  }
  return 0;
}
