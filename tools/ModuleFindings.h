/// What is found at a converter module, in the order in which its writer is to read it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace senmark_tool {

enum class eSeverity : std::uint8_t {
  kNote,     ///< worth knowing
  kWarning,  ///< taken as it is, but surely not meant so
  kError,    ///< refused, or wrong in a way that a host meets
};

/// A byte of a text.
struct TextPlace {
  std::uint64_t offset = 0;  ///< from the start of the text, in bytes
  std::uint64_t line = 1;    ///< from 1
  std::uint64_t column = 1;  ///< from 1, in bytes from the start of the line
};

struct Finding {
  eSeverity severity = eSeverity::kNote;
  std::string where;  ///< a path in the folder of the module, or the kind of work that was tried
  std::optional<TextPlace> place;
  std::string text;
};

class ModuleFindings {
 public:
  void Error(std::string where, std::string text) { Add({eSeverity::kError, std::move(where), {}, std::move(text)}); }
  void Warning(std::string where, std::string text) {
    Add({eSeverity::kWarning, std::move(where), {}, std::move(text)});
  }
  void Note(std::string where, std::string text) { Add({eSeverity::kNote, std::move(where), {}, std::move(text)}); }
  void Add(Finding finding) { mFindings.push_back(std::move(finding)); }

  std::vector<Finding> const& All() const { return mFindings; }
  std::size_t Count(eSeverity severity) const;
  bool HasErrors() const { return Count(eSeverity::kError) != 0; }

  /// A line for each finding, and a line that sums them up. `module`: what the summary speaks of.
  void Print(std::ostream& out, std::string const& module) const;
  /// The same as one JSON object.
  void WriteJson(std::ostream& out, std::string const& module) const;

 private:
  std::vector<Finding> mFindings;
};

/// "1 error", "2 errors".
std::string Counted(std::size_t count, std::string const& what);

}  // namespace senmark_tool
