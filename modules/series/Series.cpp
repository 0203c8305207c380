#include "Series.h"

#include <algorithm>
#include <iterator>

#include "FileGuess.h"
#include "Foretelling.h"
#include "Report.h"
#include "Survey.h"
#include "TableWriter.h"

namespace senmark_series {

namespace {

/// A file up to this size is read whole before it is accepted.
constexpr std::uint64_t kSmallFile = std::uint64_t{1} << 20;

bool HasOwnExtension(kit::Input const& input) {
  static constexpr std::string_view kExtensions[] = {"csv", "tsv", "txt", "log", "jsonl", "ndjson"};
  return std::find(std::begin(kExtensions), std::end(kExtensions), input.extension()) != std::end(kExtensions);
}

/// What a file is, as far as it takes to accept it.
bool IsSeries(kit::Input const& input, std::vector<std::string>& whyNot) {
  std::optional<Layout> const layout = GuessFile(input, Sidecar(), whyNot);
  if (!layout) {
    return false;
  }
  if (input.size() <= kSmallFile) {
    SurveyFile(input, *layout);
  } else if (!HoldsFurtherOn(input, *layout)) {
    whyNot.emplace_back("further on, its rows tell no times as they do at its start");
    return false;
  }
  return true;
}

Layout RequireLayout(kit::Input const& input, Sidecar const& sidecar) {
  std::vector<std::string> whyNot;
  std::optional<Layout> layout = GuessFile(input, sidecar, whyNot);
  if (!layout) {
    throw kit::Failure("no table with times: " + whyNot.front());
  }
  return std::move(*layout);
}

/// `kOne` if the table is written, else what it takes.
ePasses ConvertForetold(kit::Input const& input, Layout const& layout, kit::Output& output) {
  std::optional<Survey> const foretold = ForetellSurvey(input, layout);
  if (!foretold) {
    return ePasses::kTwo;
  }
  try {
    if (WriteForetoldTable(input, layout, *foretold, output)) {
      return ePasses::kOne;
    }
  } catch (kit::Failure const&) {
    // If it does not come of what was foretold, it comes again.
  }
  return ePasses::kBegunAnew;
}

void ExplainTable(kit::Input const& input, Sidecar const& sidecar, kit::Explanation& explanation) {
  std::vector<std::string> whyNot;
  std::optional<Layout> const layout = GuessFile(input, sidecar, whyNot);
  if (!layout) {
    explanation.add("declined: it is no table with times");
    for (std::string const& reason : whyNot) {
      explanation.add(reason);
    }
    return;
  }
  try {
    ReportSurvey(SurveyFile(input, *layout), explanation);
  } catch (kit::Failure const&) {
    explanation.add("it looked like this at its start:");
    ReportLayout(*layout, explanation);
    throw;
  }
}

}  // namespace

bool Accepts(kit::Input const& input) {
  std::optional<Sidecar> sidecar;
  try {
    sidecar = ReadSidecar(input);
  } catch (kit::Failure const&) {
    return true;
  }
  std::vector<std::string> whyNot;
  return sidecar || (HasOwnExtension(input) && IsSeries(input, whyNot));
}

ePasses Convert(kit::Input const& input, kit::Output& output, std::uint64_t foretoldFrom) {
  std::optional<Sidecar> const sidecar = ReadSidecar(input);
  Layout const layout = RequireLayout(input, sidecar.value_or(Sidecar()));
  // What a sidecar asks for may hold for few rows.
  bool const mayForetell = !sidecar && !layout.isJsonLines && layout.columns.size() <= kStreamsAtOnce;
  ePasses passes = ePasses::kTwo;
  if (mayForetell && input.size() >= foretoldFrom) {
    passes = ConvertForetold(input, layout, output);
  }
  if (passes == ePasses::kOne) {
    return passes;
  }
  if (passes == ePasses::kBegunAnew) {
    output.restart();
  }
  WriteTable(input, SurveyFile(input, layout), output);
  return passes;
}

void Explain(kit::Input const& input, kit::Explanation& explanation) {
  try {
    std::optional<Sidecar> const sidecar = ReadSidecar(input);
    if (!sidecar && !HasOwnExtension(input)) {
      explanation.add("declined: its extension is none of csv, tsv, txt, log, jsonl and ndjson");
      return;
    }
    if (sidecar) {
      explanation.add("with the sidecar " + SidecarPath(input.path()));
    }
    ExplainTable(input, sidecar.value_or(Sidecar()), explanation);
  } catch (kit::Failure const& failure) {
    std::string text = std::string("refused: ") + failure.what();
    if (failure.line() >= 0) {
      text += ", line " + std::to_string(failure.line());
    }
    explanation.add(text);
  }
}

}  // namespace senmark_series
