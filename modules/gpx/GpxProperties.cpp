#include "GpxProperties.h"

#include <utility>

#include "GpxText.h"

namespace senmark_gpx {

namespace {

constexpr std::pair<std::string_view, std::string_view> kTitles[] = {
    {"name", "Name"},        {"cmt", "Comment"}, {"desc", "Description"},  {"src", "Source"},          {"link", "Link"},
    {"number", "Number"},    {"type", "Type"},   {"author", "Author"},     {"email", "Email"},         {"url", "URL"},
    {"urlname", "URL name"}, {"time", "Time"},   {"keywords", "Keywords"}, {"copyright", "Copyright"},
};

}  // namespace

std::string TitleOf(std::string_view parent, std::string_view localName) {
  std::string title(parent);
  if (!parent.empty()) {
    title.append(" ").append(localName);
  } else {
    title = localName;
    for (auto const& [element, known] : kTitles) {
      if (element == localName) {
        title = known;
      }
    }
  }
  title.resize(CutText(title, kLongestName).size());
  return title;
}

AttributeProperty PropertyOfAttributes(std::string_view localName, std::string const& title,
                                       XmlAttributes const& attributes) {
  auto const value = [&](std::string_view name) {
    return std::string(Trimmed(attributes.find(name).value_or(std::string_view())));
  };
  if (localName == "link") {
    return {title, value("href")};
  }
  if (localName == "copyright") {
    return {TitleOf(title, "author"), value("author")};
  }
  if (localName == "email" && attributes.find("id") && attributes.find("domain")) {
    return {title, value("id") + '@' + value("domain")};
  }
  return {};
}

}  // namespace senmark_gpx
