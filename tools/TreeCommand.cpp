#include "Command.h"
#include "JsonWriter.h"
#include "NodeText.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

void PrintNode(std::ostream& out, senmark::Node const& node, int depth) {
  out << std::string(2 * static_cast<std::size_t>(depth), ' ') << Printable(node.matchName);
  if (node.displayName != node.matchName) {
    out << " \"" << Printable(node.displayName) << '"';
  }
  out << "  " << NameOf(node.kind);
  if (node.fixed) {
    out << ", " << NameOf(node.fixed->type);
  }
  if (node.dynamic) {
    out << ", " << NameOf(node.dynamic->type) << ", " << node.dynamic->sampleCount << " samples, id "
        << Printable(node.dynamic->sampleSetId);
  }
  out << '\n';
}

/// Closes what deeper nodes have left open: each open group is an object in an array of children.
void CloseGroups(JsonWriter& json, int& open, int depth) {
  for (; open > depth; --open) {
    json.EndArray();
    json.EndObject();
  }
}

}  // namespace

int RunTree(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  senmark::File const file = manager.open(request.file);
  if (!request.asJson) {
    file.walk([&](senmark::Node const& node, int depth) { PrintNode(out, node, depth); });
    return kFine;
  }
  JsonWriter json(out);
  json.BeginArray(JsonWriter::eLayout::kLines);
  int open = 0;
  file.walk([&](senmark::Node const& node, int depth) {
    CloseGroups(json, open, depth);
    json.BeginObject();
    WriteNodeMembers(json, node);
    if (node.kind == senmark::eNodeKind::kGroup) {
      json.Key("children");
      json.BeginArray(JsonWriter::eLayout::kLines);
      ++open;
    } else {
      json.EndObject();
    }
  });
  json.CloseAll();
  return kFine;
}

}  // namespace senmark_tool
