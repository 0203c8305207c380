#include "Foretelling.h"

#include <algorithm>

#include "FilePiece.h"
#include "Surveyor.h"
#include "TableWriter.h"

namespace senmark_series {

namespace {

constexpr std::uint64_t kPieces = 8;
constexpr std::uint64_t kPieceSize = std::uint64_t{32} << 10;

/// Texts are cut at the same places, if at all.
bool AreCutAlike(ColumnSurvey const& foretold, ColumnSurvey const& found) {
  std::size_t const limit = LongestText(foretold);
  std::size_t const foundLimit = LongestText(found);
  return limit == foundLimit || found.longest <= std::min(limit, foundLimit);
}

/// A column that has samples is foretold to have them, of the same kind.
bool IsAsForetold(Survey const& foretold, Survey const& found, std::size_t column) {
  eColumnKind const kind = found.kindOf(column);
  return foretold.hasSamples(column) && foretold.kindOf(column) == kind &&
         (kind == eColumnKind::kNumber || AreCutAlike(foretold.columns[column], found.columns[column]));
}

}  // namespace

std::optional<Survey> ForetellSurvey(kit::Input const& input, Layout const& layout) {
  std::uint64_t const size = input.size();
  std::uint64_t const pieces = std::clamp<std::uint64_t>(size / kPieceSize, 1, kPieces);
  Surveyor surveyor(layout);
  try {
    for (std::uint64_t i = 0; i != pieces; ++i) {
      // The last one ends with the file.
      std::uint64_t const offset = i == 0 ? 0 : (size - kPieceSize) * i / (pieces - 1) & ~std::uint64_t{1};
      kit::Instant time;
      ForEachRowOfPiece(input, layout, offset, kPieceSize, [&](Row const& row) { surveyor.take(row, time); });
    }
    return surveyor.survey();
  } catch (kit::Failure const&) {
    // If that is not because of the choice of pieces, going over the whole file tells it.
    return std::nullopt;
  }
}

bool HasComeTrue(Survey const& foretold, Survey const& found) {
  bool isTrue = foretold.layout.time.order == found.layout.time.order && foretold.digits == found.digits &&
                (found.isOrdered || !foretold.isOrdered);
  for (std::size_t i = 0; i != found.columns.size() && isTrue; ++i) {
    isTrue = found.hasSamples(i) ? IsAsForetold(foretold, found, i) : !foretold.hasSamples(i);
  }
  return isTrue;
}

bool MayComeTrue(Survey const& foretold, Survey const& soFar) {
  // Digits grow with the times that need them, and shrink with the extent.
  unsigned const within = DigitsWithin(soFar.last.seconds - soFar.first.seconds);
  bool isLikely = soFar.neededDigits <= foretold.neededDigits && std::max(within, 1U) >= foretold.digits;
  for (std::size_t i = 0; i != soFar.columns.size() && isLikely; ++i) {
    isLikely = !soFar.hasSamples(i) || IsAsForetold(foretold, soFar, i);
  }
  return isLikely;
}

}  // namespace senmark_series
