#pragma once

#include "SK_TdjsonValidator.h"

namespace SK_NAMESPACE_INT {

/// The rules for nodes in format version 1.
class SK_TdjsonValidator_v1 : public SK_TdjsonValidator {};

}  // namespace SK_NAMESPACE_INT
