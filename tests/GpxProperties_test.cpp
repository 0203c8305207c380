// Names of what a file, a track or a route tells of itself.
#include "GpxProperties.h"

#include <gtest/gtest.h>

namespace senmark_gpx {
namespace {

TEST(GpxProperties, TitlesAreForPeople) {
  struct Row {
    char const* parent;
    char const* element;
    char const* title;
  };
  Row const rows[] = {
      {"", "name", "Name"},
      {"", "cmt", "Comment"},
      {"", "desc", "Description"},
      {"", "src", "Source"},
      {"", "link", "Link"},
      {"", "number", "Number"},
      {"", "type", "Type"},
      {"", "author", "Author"},
      {"", "email", "Email"},
      {"", "url", "URL"},
      {"", "urlname", "URL name"},
      {"", "time", "Time"},
      {"", "keywords", "Keywords"},
      {"", "copyright", "Copyright"},
      {"", "DisplayColor", "DisplayColor"},
      {"Author", "name", "Author name"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(TitleOf(row.parent, row.element), row.title);
  }
}

TEST(GpxProperties, TitlesHaveALimit) {
  std::string const name(200, 'x');
  EXPECT_EQ(TitleOf(name, name), (name + ' ' + name).substr(0, 255));
  EXPECT_EQ(TitleOf("", std::string(254, 'x') + "\u00E9"), std::string(254, 'x'));
}

TEST(GpxProperties, AttributesTellSome) {
  char const* const pairs[] = {"href", " h ", "author", "a", "id", "i", "domain", "d", nullptr};
  XmlAttributes const all(pairs);
  EXPECT_EQ(PropertyOfAttributes("link", "T", all).value, "h");
  EXPECT_EQ(PropertyOfAttributes("link", "T", all).title, "T");
  EXPECT_EQ(PropertyOfAttributes("copyright", "T", all).value, "a");
  EXPECT_EQ(PropertyOfAttributes("copyright", "T", all).title, "T author");
  EXPECT_EQ(PropertyOfAttributes("email", "T", all).value, "i@d");
  EXPECT_EQ(PropertyOfAttributes("name", "T", all).value, "");
  XmlAttributes const none(pairs + 8);
  for (char const* const element : {"link", "copyright", "email"}) {
    EXPECT_EQ(PropertyOfAttributes(element, "T", none).value, "");
  }
}

}  // namespace
}  // namespace senmark_gpx
