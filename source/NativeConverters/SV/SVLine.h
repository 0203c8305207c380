/// Lines of a table of separated values. A line break between quotes belongs to its line.
#pragma once

#include <string>

namespace ns_sensor {

class SK_InputBytes;
class SVUnitInput;

/// Replaces `line` with the next line, without its end and with all its quotes. The end is CR, LF or LF CR;
/// CR LF gives an empty line behind the line, which means nothing in a table. At the end of the input the
/// line is empty.
void GetMBLine(SK_InputBytes& input, std::string& line);

/// The same in UTF-8, without byte-order marks of either order outside of quotes. Raises code 1 for a
/// surrogate without the other of its pair.
void GetWCLine(SVUnitInput& input, std::string& line);

}  // namespace ns_sensor
