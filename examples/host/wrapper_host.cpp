// Prints the tree of a data file and the first hour of one of its sample sets, through the wrapper.
//
//   wrapper_host FILE SAMPLE_SET_ID
#include <cstddef>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "senmark/Host.h"

namespace {

struct Printer {
  void operator()(double number) const { std::cout << ' ' << number; }
  void operator()(std::string const& text) const { std::cout << ' ' << text; }
  void operator()(std::vector<double> const& numbers) const {
    for (double number : numbers) {
      std::cout << ' ' << number;
    }
  }
  void operator()(bool flag) const { std::cout << (flag ? " true" : " false"); }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: wrapper_host FILE SAMPLE_SET_ID\n";
    return 2;
  }
  std::string const path = argv[1];
  std::string const id = argv[2];
  try {
    senmark::Senmark manager(senmark::Library::Linked());
    senmark::File file = manager.open(path);
    file.walk([](senmark::Node const& node, int depth) {
      std::cout << std::string(static_cast<std::size_t>(2 * depth), ' ') << node.displayName << '\n';
    });
    for (senmark::Sample const& sample : file.samples(id).within({0, 1}, {3600, 1})) {
      std::cout << sample.time.seconds() << " s:";
      std::visit(Printer{}, sample.value);
      std::cout << '\n';
    }
  } catch (senmark::Error const& error) {
    std::cerr << "error " << error.code() << " at byte " << error.offset() << ": " << error.message() << '\n';
    return 1;
  }
  return 0;
}
