#include "SerializerArraySample.h"

#include "SerializerNumberParts.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             NumberField const& field) {
  AppendTime(out, time);
  out.Put('[');
  // As splitting at the commas gives them: behind a comma at the end there is no further element.
  for (bool isFirst = true; !value.empty(); isFirst = false) {
    AppendElement(out, value, field, !isFirst);
    value.remove_prefix(value.empty() ? 0 : 1);
  }
  out.Put("]}");
}

}  // namespace SK_PLUGIN
