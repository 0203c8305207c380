/// What one walk over an outline carries from node to node.
#pragma once

#include <locale>
#include <vector>

#include "SK_MatchNames.h"
#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

struct SK_OutlineWalk {
  explicit SK_OutlineWalk(SK_MatchNames::eAccuracy accuracy) : matchNames(accuracy) {}

  std::locale locale;  ///< the global one, looked up once
  std::ctype<char> const& characters = std::use_facet<std::ctype<char>>(locale);
  SK_MatchNames matchNames;
  std::vector<JValue const*> dynamicNodes;  ///< those that have been met, in the order of the outline
};

}  // namespace SK_NAMESPACE_INT
