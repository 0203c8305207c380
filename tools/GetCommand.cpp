#include "Command.h"
#include "JsonWriter.h"
#include "NodeText.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

/// The text form that the library takes. Names may also be given as on a file system, "arm/hand".
std::string PathText(std::string const& path) {
  if (path.empty() || path[0] == '[') {
    return path;
  }
  std::string text;
  for (std::size_t begin = 0; begin <= path.size();) {
    std::size_t const end = std::min(path.find('/', begin), path.size());
    if (end != begin) {
      text += "[\"" + path.substr(begin, end - begin) + "\"]";
    }
    begin = end + 1;
  }
  return text;
}

/// A path that leads nowhere is the user's mistake: the file has been opened and is in order.
senmark::Node FindNode(senmark::File const& file, std::string const& path) {
  senmark::Result<senmark::Node> node = senmark::attempt([&] { return file.node(path); });
  if (!node) {
    throw UsageError(node.error().message() + " (code " + std::to_string(node.error().code()) + ")");
  }
  return std::move(node).value();
}

void Print(std::ostream& out, char const* name, std::string const& value) {
  out << std::string(name) << std::string(16 - std::char_traits<char>::length(name), ' ') << value << '\n';
}

std::string LimitsText(std::optional<senmark::MinMax> const& limits) {
  return limits ? NumberText(limits->min) + " to " + NumberText(limits->max) : "-";
}

std::string RangeText(senmark::NumberRange const& range) {
  return "occurring " + LimitsText(range.occurring) + ", legal " + LimitsText(range.legal);
}

std::string DigitsText(std::optional<std::uint64_t> const& digits) {
  return digits ? std::to_string(*digits) : "-";
}

void PrintPattern(std::ostream& out, senmark::NumberPattern const& pattern) {
  Print(out, "digits",
        DigitsText(pattern.digitsInteger) + " before the point, " + DigitsText(pattern.digitsDecimal) + " behind it, " +
            (pattern.isSigned ? "with sign" : "without sign"));
}

struct PropertiesPrinter {
  std::ostream& out;

  void operator()(std::monostate) const {}
  void operator()(senmark::NumberProperties const& number) const {
    PrintPattern(out, number.pattern);
    Print(out, "range", RangeText(number.range));
  }
  void operator()(senmark::NumberArrayProperties const& array) const {
    PrintPattern(out, array.pattern);
    Print(out, "array", std::to_string(array.arraySize) + " numbers" + (array.isPoint ? ", a point" : ""));
    for (std::size_t i = 0; i != std::max(array.displayNames.size(), array.ranges.size()); ++i) {
      std::string const name = i < array.displayNames.size() ? Printable(array.displayNames[i]) : "-";
      Print(out, i == 0 ? "elements" : "", name + (i < array.ranges.size() ? ": " + RangeText(array.ranges[i]) : ""));
    }
  }
  void operator()(senmark::StringProperties const& text) const {
    Print(out, "text",
          std::to_string(text.maxLength) + " bytes, length of " + std::to_string(text.lengthDigits) + " digits" +
              (text.marksEvents ? ", marks events" : ""));
  }
};

void PrintDynamic(std::ostream& out, senmark::DynamicData const& data) {
  Print(out, "type", NameOf(data.type));
  std::visit(PropertiesPrinter{out}, data.properties);
  Print(out, "sample set", Printable(data.sampleSetId));
  Print(out, "samples", std::to_string(data.sampleCount));
  Print(out, "extent", data.extent ? TimeText(data.extent->start) + " to " + TimeText(data.extent->end) : "-");
  Print(out, "interpolation", NameOf(data.interpolation));
  Print(out, "regular", data.hasExpectedFrequency ? "yes" : "no");
  if (!data.expectedMaxInterSampleDuration.empty()) {
    Print(out, "largest gap", Printable(data.expectedMaxInterSampleDuration));
  }
}

void PrintNode(std::ostream& out, senmark::File const& file, senmark::Node const& node) {
  Print(out, "path", Printable(node.path));
  Print(out, "kind", NameOf(node.kind));
  Print(out, "match name", Printable(node.matchName));
  Print(out, "display name", Printable(node.displayName));
  if (node.fixed) {
    Print(out, "type", NameOf(node.fixed->type));
    std::visit(PropertiesPrinter{out}, node.fixed->properties);
    Print(out, "value", ValueText(node.fixed->value));
  }
  if (node.dynamic) {
    PrintDynamic(out, *node.dynamic);
  }
  if (node.kind == senmark::eNodeKind::kGroup) {
    for (senmark::ChildPath const& child : file.children(node.path)) {
      Print(out, child.index == 0 ? "children" : "", Printable(child.matchName));
    }
  }
}

}  // namespace

int RunGet(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  senmark::File const file = manager.open(request.file);
  senmark::Node const node = FindNode(file, PathText(request.path));
  if (!request.asJson) {
    PrintNode(out, file, node);
    return kFine;
  }
  JsonWriter json(out);
  json.BeginObject();
  WriteNodeMembers(json, node);
  if (node.kind == senmark::eNodeKind::kGroup) {
    json.Key("children");
    json.BeginArray();
    for (senmark::ChildPath const& child : file.children(node.path)) {
      json.String(child.matchName);
    }
    json.EndArray();
  }
  json.CloseAll();
  return kFine;
}

}  // namespace senmark_tool
