/// Finds out what a misspelt word was meant to be.
#pragma once

#include <string>
#include <vector>

namespace senmark_tool {

/// The known word that differs least, upper and lower case aside; empty if none is like it.
std::string MeantWord(std::string const& word, std::vector<std::string> const& known);

}  // namespace senmark_tool
