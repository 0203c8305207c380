// Headers that take long to compile and that most of the library includes. No file may rely on it: each
// includes what it uses.
#pragma once

#include <boost/variant.hpp>

#include <memory>
#include <string>
#include <vector>

#include "SK_RapidJson.h"
