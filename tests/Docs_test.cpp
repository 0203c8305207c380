// What the documents quote is what stands in the files: examples that are compiled and run as tests, and data
// that the library opens. So no quotation goes stale.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string ReadWhole(fs::path const& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Excerpts of a file stand less deeply indented in a document.
std::string WithoutIndentation(std::string const& text) {
  std::istringstream lines(text);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    std::size_t const first = line.find_first_not_of(' ');
    result += (first == std::string::npos ? "" : line.substr(first)) + '\n';
  }
  return result;
}

// One fenced block of a document; `source` is empty for a block that is no quotation.
struct Block {
  std::string language;
  std::string source;
  std::string text;
};

std::vector<Block> BlocksOf(std::string const& document) {
  std::string const fence = "```";
  std::string const mark = "<!-- quoted: ";
  std::vector<Block> blocks;
  std::string source;
  bool inside = false;
  std::istringstream lines(document);
  for (std::string line; std::getline(lines, line);) {
    if (inside) {
      inside = line != fence;
      if (inside) {
        blocks.back().text += line + '\n';
      }
    } else if (line.compare(0, mark.size(), mark) == 0) {
      source = line.substr(mark.size(), line.find(" -->") - mark.size());
    } else if (line.compare(0, fence.size(), fence) == 0) {
      blocks.push_back({line.substr(fence.size()), source, {}});
      source.clear();
      inside = true;
    }
  }
  EXPECT_FALSE(inside) << "a block without its end";
  EXPECT_EQ(source, "") << "a mark without its block";
  return blocks;
}

// A document without its fenced blocks.
std::string ProseOf(std::string const& document) {
  std::string prose;
  bool inside = false;
  std::istringstream lines(document);
  for (std::string line; std::getline(lines, line);) {
    bool const isFence = line.compare(0, 3, "```") == 0;
    inside = inside != isFence;
    if (!inside && !isFence) {
      prose += line + '\n';
    }
  }
  return prose;
}

std::vector<fs::path> Documents() {
  std::vector<fs::path> documents{fs::path(SENMARK_SOURCE_DIR) / "README.md"};
  for (fs::directory_entry const& entry : fs::directory_iterator(fs::path(SENMARK_SOURCE_DIR) / "docs")) {
    if (entry.path().extension() == ".md") {
      documents.push_back(entry.path());
    }
  }
  return documents;
}

TEST(Docs, QuotationsEqualTheirFiles) {
  std::size_t quotations = 0;
  for (fs::path const& document : Documents()) {
    for (Block const& block : BlocksOf(ReadWhole(document))) {
      if (block.source.empty()) {
        continue;
      }
      ++quotations;
      std::string const file = ReadWhole(fs::path(SENMARK_SOURCE_DIR) / block.source);
      EXPECT_NE(WithoutIndentation(file).find(WithoutIndentation(block.text)), std::string::npos)
          << document << " quotes what does not stand in " << block.source << ":\n"
          << block.text;
    }
  }
  EXPECT_GE(quotations, 4U);
}

TEST(Docs, NoCodeThatIsNoQuotation) {
  for (fs::path const& document : Documents()) {
    for (Block const& block : BlocksOf(ReadWhole(document))) {
      if (block.language == "cpp") {
        EXPECT_NE(block.source, "") << document << " shows code that nothing compiles:\n" << block.text;
      }
    }
  }
}

TEST(Docs, TheExampleOfAModuleHasFewerThanSixtyLines) {
  std::string const source = ReadWhole(fs::path(SENMARK_SOURCE_DIR) / "examples/module/beats.cpp");
  EXPECT_LT(std::count(source.begin(), source.end(), '\n'), 60);
}

TEST(Docs, LinksLeadToFiles) {
  for (fs::path const& document : Documents()) {
    std::string const text = ProseOf(ReadWhole(document));
    for (std::size_t at = text.find("]("); at != std::string::npos; at = text.find("](", at + 1)) {
      std::string const target = text.substr(at + 2, text.find_first_of(")#", at) - at - 2);
      if (!target.empty() && target.find("://") == std::string::npos) {
        EXPECT_TRUE(fs::exists(document.parent_path() / target)) << document << " links to " << target;
      }
    }
  }
}

TEST(Docs, FilesThatAreNamedExist) {
  std::size_t named = 0;
  for (fs::path const& document : Documents()) {
    std::istringstream pieces(ProseOf(ReadWhole(document)));
    bool isCode = false;
    for (std::string piece; std::getline(pieces, piece, '`'); isCode = !isCode) {
      bool const isPath =
          piece.find('/') != std::string::npos &&
          piece.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./-") ==
              std::string::npos;
      std::string const top = piece.substr(0, piece.find('/'));
      if (isCode && isPath && fs::exists(fs::path(SENMARK_SOURCE_DIR) / top) && top.compare(0, 5, "build") != 0) {
        ++named;
        EXPECT_TRUE(fs::exists(fs::path(SENMARK_SOURCE_DIR) / piece)) << document << " names " << piece;
      }
    }
  }
  EXPECT_GE(named, 10U);
}

}  // namespace
