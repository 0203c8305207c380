#include "FileGuess.h"

#include <algorithm>

#include "FilePiece.h"

namespace senmark_series {

namespace {

/// The start that is looked at; more if its lines are long.
constexpr std::size_t kHeadSizes[] = {std::size_t{64} << 10, std::size_t{512} << 10, kLongestRow};
constexpr std::ptrdiff_t kEnoughLines = 16;

constexpr std::size_t kPieceSize = std::size_t{64} << 10;

Head ReadHead(kit::Input const& input, std::size_t size) {
  Head head;
  head.bytes = input.head(size + 1);
  head.isWhole = head.bytes.size() <= size;
  head.bytes.resize(std::min(head.bytes.size(), size));
  return head;
}

/// True if it is a guess.
bool ChooseEncoding(Head& head, Sidecar const& sidecar) {
  ByteOrderMark const mark = MarkOf(head.bytes);
  head.encoding = mark.encoding;
  if (mark.size != 0) {
    return false;
  }
  if (sidecar.encoding) {
    head.encoding = *sidecar.encoding;
    return false;
  }
  Utf8Check check;
  head.encoding = check.feed(head.bytes) ? eEncoding::kUtf8 : eEncoding::kWindows1252;
  return head.encoding == eEncoding::kUtf8;
}

bool IsUtf16(eEncoding encoding) {
  return encoding == eEncoding::kUtf16Little || encoding == eEncoding::kUtf16Big;
}

bool HoldsAt(kit::Input const& input, Layout const& layout, std::uint64_t offset) {
  std::size_t good = 0;
  std::size_t bad = 0;
  ForEachRowOfPiece(input, layout, offset, kPieceSize, [&](Row const& row) {
    bool const hasTime =
        TimeOf(row, layout.time, eDateOrder::kDayFirst) || TimeOf(row, layout.time, eDateOrder::kMonthFirst);
    ++(hasTime ? good : bad);
  });
  // A piece may begin inside of a text of several lines.
  return bad <= good;
}

}  // namespace

std::optional<Layout> GuessFile(kit::Input const& input, Sidecar const& sidecar, std::vector<std::string>& whyNot) {
  Head head;
  for (std::size_t const size : kHeadSizes) {
    head = ReadHead(input, size);
    if (head.isWhole || std::count(head.bytes.begin(), head.bytes.end(), '\n') >= kEnoughLines) {
      break;
    }
  }
  bool const isGuess = ChooseEncoding(head, sidecar);
  if (!IsUtf16(head.encoding) && head.bytes.find('\0') != std::string::npos) {
    whyNot.emplace_back("it holds zero bytes, which no text does");
    return std::nullopt;
  }
  std::optional<Layout> layout = GuessLayout(head, input.extension(), sidecar, whyNot);
  if (layout) {
    layout->isEncodingGuessed = isGuess;
  }
  return layout;
}

bool HoldsFurtherOn(kit::Input const& input, Layout const& layout) {
  std::uint64_t const size = input.size();
  // Whole units of UTF-16.
  std::uint64_t const end = (size - std::min<std::uint64_t>(size, kPieceSize)) & ~std::uint64_t{1};
  std::uint64_t const middle = size / 2 & ~std::uint64_t{1};
  return HoldsAt(input, layout, middle) && HoldsAt(input, layout, end);
}

}  // namespace senmark_series
