/// Writes a table in one pass, by what a part of it foretells, and anew in two passes if that was refused or failed.
/// The bytes, or the error with its place, are those of two passes alone.
///
/// The first byte of the input tells how large that part is, the rest is the table.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FileGuess.h"
#include "FuzzCheck.h"
#include "FuzzFolder.h"
#include "HostTables.h"
#include "TableWriter.h"

namespace {

namespace kit = senmark::kit;
using namespace senmark_series;
using senmark_fuzz::FuzzFolder;
using senmark_fuzz::Require;

constexpr std::size_t kLargestTable = 64 * 1024;
constexpr char kTable[] = "table.csv";
constexpr char kPart[] = "part.csv";
constexpr char kOutput[] = "output.tdjson";

template <typename Call>
std::string FailureOf(Call&& call) {
  try {
    call();
    return std::string();
  } catch (kit::Failure const& failure) {
    return std::to_string(failure.code()) + ' ' + std::to_string(failure.offset()) + ' ' +
           std::to_string(failure.line()) + ' ' + failure.what();
  }
}

std::optional<Layout> LayoutOf(kit::Input const& input) {
  std::optional<Layout> layout;
  std::vector<std::string> whyNot;
  FailureOf([&] { layout = GuessFile(input, Sidecar(), whyNot); });
  return layout && !layout->isJsonLines && layout->columns.size() <= kStreamsAtOnce ? layout : std::nullopt;
}

std::optional<Survey> Foretell(kit::Input const& part, Layout const& layout) {
  std::optional<Survey> survey;
  FailureOf([&] { survey = SurveyFile(part, layout); });
  return survey;
}

/// The failure, or the bytes of the file.
using Result = std::pair<std::string, std::string>;

template <typename Write>
Result ResultOf(FuzzFolder const& folder, SK_PLUGIN::HostAPI const& api, Write&& write) {
  Result result;
  result.first = FailureOf([&] {
    kit::Output output(api, folder.Path(kOutput));
    write(output);
    output.finish();
  });
  if (result.first.empty()) {
    result.second = folder.Read(kOutput);
  }
  folder.Remove(kOutput);
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static FuzzFolder folder;
  static senmark_test::HostTables const tables;
  folder.StartInput();
  if (size < 2 || size > kLargestTable) {
    return 0;
  }
  std::size_t const tableSize = size - 1;
  kit::Input const input(folder.Write(kTable, data + 1, tableSize), "csv", "");
  kit::Input const part(folder.Write(kPart, data + 1, tableSize * (data[0] + 1) / 256), "csv", "");
  if (std::optional<Layout> const layout = LayoutOf(input)) {
    if (std::optional<Survey> const foretold = Foretell(part, *layout)) {
      auto const writeInTwo = [&](kit::Output& output) { WriteTable(input, SurveyFile(input, *layout), output); };
      Result const expected = ResultOf(folder, tables.Get(), writeInTwo);
      Require(expected == ResultOf(folder, tables.Get(), [&](kit::Output& output) {
                bool isWritten = false;
                FailureOf([&] { isWritten = WriteForetoldTable(input, *layout, *foretold, output); });
                if (!isWritten) {
                  output.restart();
                  writeInTwo(output);
                }
              }));
    }
  }
  folder.Remove(kTable);
  folder.Remove(kPart);
  folder.RequireNothingLeft({});
  return 0;
}
