#include "SK_JsonError.h"

#include "SK_TdjsonParserUtils.h"

namespace SK_NAMESPACE_INT {

void ThrowJsonError(char const* literal, char const* p, char const* base, SK_ReplacementValue const& value1,
                    SK_ReplacementValue const& value2) {
  ThrowError({ns_sensor::kJsonSyntax, literal, SK_TdjsonParserUtils::GetOffset(p, base), -1}, value1, value2);
}

void ThrowJsonTypeError(char const* p, char const* base, SK_JsonName const& name, char const* expectedType) {
  ThrowJsonError(SK_Message::kInvalidPropertyType, p, base, Quoted(name.GetText()), std::string(expectedType));
}

}  // namespace SK_NAMESPACE_INT
