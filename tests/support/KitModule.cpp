// A module made with the kit. What it does, and what goes wrong with it, is asked of it by the first line of its input.
#include <stdlib.h>

#include <new>
#include <stdexcept>

#include "senmark/Module.h"

namespace {

namespace kit = senmark::kit;

/// Ends as `how` tells, if it tells an end.
void EndBy(std::string_view how) {
  if (how == "failure") {
    throw kit::Failure("text of the failure", 12, 3, 1777);
  }
  if (how == "plain failure") {
    throw kit::Failure("text of the failure");
  }
  if (how == "no memory") {
    throw std::bad_alloc();
  }
  if (how == "exception") {
    throw std::runtime_error("text of the exception");
  }
  if (how == "number") {
    throw 7;
  }
}

class KitModule : public kit::Converter {
 public:
  KitModule() {
    char const* const how = ::getenv("SENMARK_KIT_MODULE_CONSTRUCTOR");
    EndBy(how == nullptr ? "" : how);
  }

  bool accepts(kit::Input const& input) override {
    std::string const head = input.head(64);
    if (head.compare(0, 4, "KIT ") != 0) {
      return false;
    }
    EndBy(Word(head, "accepts: "));
    return true;
  }

  void convert(kit::Input const& input, kit::Output& output) override {
    std::string const head = input.head(64);
    EndBy(Word(head, "before: "));
    output.setTimeBase(kit::TimeBase::frames(25));
    output.top().text("Extension", input.extension());
    output.top().text("Uid", input.uid());
    kit::NumberStream& numbers = output.top().numberStream("Numbers");
    kit::ArrayGroup many(output.top(), "Many", {"a", "b", "c", "d"});
    kit::TextStream& texts = output.top().group("Group").textStream("Texts");
    kit::Lines lines(input);
    std::string_view line;
    while (lines.next(line)) {
      if (lines.number() == 1) {
        continue;
      }
      kit::Frame const frame{100 - lines.number()};
      numbers.add(frame, static_cast<double>(line.size()));
      many.add(frame, {1, 2, 3, 4});
      texts.add(frame, line);
    }
    EndBy(Word(head, "behind: "));
  }

  void explain(kit::Input const& input, kit::Explanation& explanation) override {
    explanation.add("the extension is " + input.extension());
    EndBy(Word(input.head(64), "explain: "));
    kit::Converter::explain(input, explanation);
  }

 private:
  /// The rest of the first line behind `key`.
  static std::string_view Word(std::string const& head, std::string const& key) {
    std::size_t const at = head.find(key);
    if (at == std::string::npos) {
      return {};
    }
    std::string_view const rest = std::string_view(head).substr(at + key.size());
    return rest.substr(0, rest.find('\n'));
  }
};

}  // namespace

SENMARK_MODULE(KitModule)
