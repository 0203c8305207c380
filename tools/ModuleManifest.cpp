#include "ModuleManifest.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <limits>
#include <utility>

#include "ManifestConverters.h"
#include "MeantWord.h"
#include "PlacedJson.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

using eKind = PlacedValue::eKind;

/// Levels of nesting that the manifest uses.
constexpr std::size_t kDepth = 6;
/// Bytes of a signature that the library compares at most.
constexpr std::int64_t kMaxLength = 1024;

std::vector<std::string> const kTopKeys = {"converter"};
std::vector<std::string> const kConverterKeys = {"identifier",      "name",         "version",
                                                 "force_converter", "check_format", "extensions"};
std::vector<std::string> const kNameKeys = {"localeID", "value"};
std::vector<std::string> const kSignatureKeys = {"byte_seq", "length", "offset"};

/// Extensions that the library has converters of its own for.
std::vector<std::string> const kNativeExtensions = {"bvh", "csv", "json", "tsv", "txt"};

std::string Quoted(std::string const& text) {
  return '"' + text + '"';
}

bool Contains(std::vector<std::string> const& list, std::string const& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

bool IsUpper(char byte) {
  return byte >= 'A' && byte <= 'Z';
}

bool IsLower(char byte) {
  return byte >= 'a' && byte <= 'z';
}

/// Whether a locale is written as hosts write it: en_US.
bool LooksLikeLocale(std::string const& id) {
  return id.size() >= 5 && IsLower(id[0]) && IsLower(id[1]) && id[2] == '_' && IsUpper(id[3]) && IsUpper(id[4]);
}

bool IsAmericanEnglish(std::string const& id) {
  return id.compare(0, 5, "en_US") == 0;
}

bool IsNumber(PlacedValue const& value) {
  return value.kind == eKind::kInteger || value.kind == eKind::kOtherNumber;
}

}  // namespace

ModuleManifest::ModuleManifest(std::string text, std::string where) : mText(std::move(text)), mWhere(std::move(where)) {
  CheckText();
  PlacedJson const json = ReadPlacedJson(mText, kDepth);
  if (json.error) {
    bool const hasMark = mText.compare(0, 3, "\xEF\xBB\xBF") == 0;
    Add(eSeverity::kError, json.error->offset,
        hasMark && json.error->offset < 3
            ? "the file begins with a byte order mark, which is no JSON"
            : "this is no JSON: " + json.error->text + " The library reads no manifest behind this one, either.");
    return;
  }
  CheckConverters(json.root);
  if (mFindings.HasErrors()) {
    mFindings.Note(mWhere,
                   "the library stops at the first error: converters from there on are not used, and neither are "
                   "modules that it would read after this one");
  }
}

void ModuleManifest::CheckText() {
  std::size_t const end = mText.find('\0');
  if (end != std::string::npos) {
    Add(eSeverity::kWarning, end, "a byte of 0 ends the text: what follows is not read");
  }
  std::string_view const read = std::string_view(mText).substr(0, end);
  for (std::size_t offset = 0; offset < read.size();) {
    std::size_t const length = Utf8Length(read.substr(offset));
    if (length == 0) {
      Add(eSeverity::kWarning, offset, "from here on this is no UTF-8; hosts cannot show such a text");
      return;
    }
    offset += length;
  }
}

void ModuleManifest::CheckConverters(PlacedValue const& root) {
  if (!CheckKeys(root, "the manifest", kTopKeys)) {
    return;
  }
  PlacedValue const* const converters = root.Find("converter");
  if (converters == nullptr) {
    Add(eSeverity::kError, root, "\"converter\" is missing, the array of the module's converters");
  } else if (converters->kind != eKind::kArray) {
    Add(eSeverity::kError, *converters, "\"converter\" has to be an array, even of one converter");
  } else if (converters->children.empty()) {
    Add(eSeverity::kError, *converters, "no converter: the module offers nothing");
  } else {
    for (PlacedValue const& converter : converters->children) {
      CheckConverter(converter);
    }
  }
}

void ModuleManifest::CheckConverter(PlacedValue const& value) {
  if (!CheckKeys(value, "a converter", kConverterKeys)) {
    return;
  }
  Converter converter;
  CheckIdentifier(value, converter);
  CheckNames(value);
  CheckVersion(value);
  CheckForce(value);
  CheckSignatures(value, converter);
  CheckExtensions(value, converter);
  CheckAgainstOthers(value, converter);
  mConverters.push_back(std::move(converter));
}

void ModuleManifest::CheckIdentifier(PlacedValue const& value, Converter& converter) {
  PlacedValue const* const identifier = RequireText(value, "identifier");
  if (identifier != nullptr && identifier->text.empty()) {
    Add(eSeverity::kError, *identifier, "\"identifier\" must not be empty");
  } else if (identifier != nullptr) {
    converter.identifier = identifier->text;
    if (identifier->text.find('\0') != std::string::npos) {
      Add(eSeverity::kWarning, *identifier, "the module is told the identifier only up to the byte of 0 in it");
    }
  }
}

void ModuleManifest::CheckNames(PlacedValue const& value) {
  PlacedValue const* const names = value.Find("name");
  if (names == nullptr || names->kind != eKind::kArray) {
    Add(eSeverity::kWarning, names == nullptr ? value : *names,
        names == nullptr ? "no \"name\": hosts show an empty one"
                         : "\"name\" is no array and so ignored: hosts show an empty name");
    return;
  }
  std::vector<std::string> locales;
  bool hasFallback = false;
  for (PlacedValue const& name : names->children) {
    if (!CheckKeys(name, "an entry of \"name\"", kNameKeys)) {
      continue;
    }
    PlacedValue const* const locale = RequireText(name, "localeID");
    PlacedValue const* const text = RequireText(name, "value");
    if (locale == nullptr) {
      continue;
    }
    if (Contains(locales, locale->text)) {
      Add(eSeverity::kWarning, *locale, Quoted(locale->text) + " is there already; the first one counts");
    } else if (!LooksLikeLocale(locale->text)) {
      Add(eSeverity::kWarning, *locale, Quoted(locale->text) + " fits no host: locales are written like \"en_US\"");
    }
    locales.push_back(locale->text);
    hasFallback = hasFallback || IsAmericanEnglish(locale->text);
    if (text != nullptr && text->text.empty()) {
      Add(eSeverity::kWarning, *text, "hosts show an empty name");
    }
  }
  if (!hasFallback) {
    Add(eSeverity::kWarning, *names, "no name for \"en_US\": hosts of other languages show an empty one");
  }
}

void ModuleManifest::CheckVersion(PlacedValue const& value) {
  PlacedValue const* const version = value.Find("version");
  if (version == nullptr) {
    Add(eSeverity::kError, value, "\"version\" is missing, a number");
  } else if (!IsNumber(*version)) {
    Add(eSeverity::kError, *version, "\"version\" has to be a number, without quotes");
  }
}

void ModuleManifest::CheckForce(PlacedValue const& value) {
  PlacedValue const* const force = value.Find("force_converter");
  if (force != nullptr && force->kind != eKind::kBool) {
    Add(eSeverity::kWarning, *force, "\"force_converter\" is neither true nor false and so ignored");
  }
}

void ModuleManifest::CheckSignatures(PlacedValue const& value, Converter& converter) {
  PlacedValue const* const signatures = value.Find("check_format");
  if (signatures == nullptr) {
    return;
  }
  if (signatures->kind != eKind::kArray) {
    Add(eSeverity::kWarning, *signatures,
        "\"check_format\" is no array and so ignored: the code of the module is loaded for every file");
    return;
  }
  converter.hasSignature = !signatures->children.empty();
  for (PlacedValue const& signature : signatures->children) {
    CheckSignature(signature);
  }
}

void ModuleManifest::CheckSignature(PlacedValue const& value) {
  if (!CheckKeys(value, "an entry of \"check_format\"", kSignatureKeys)) {
    return;
  }
  PlacedValue const* const bytes = RequireText(value, "byte_seq");
  PlacedValue const* const length = RequireInteger(value, "length");
  PlacedValue const* const offset = RequireInteger(value, "offset");
  if (offset != nullptr && offset->integer < 0) {
    Add(eSeverity::kWarning, *offset, "no file has bytes before its start: the converter takes none");
  }
  if (length == nullptr) {
    return;
  }
  using Limits = std::numeric_limits<std::int32_t>;
  if (length->integer > Limits::max() || length->integer < Limits::min()) {
    Add(eSeverity::kError, *length, "\"length\" has to be an integer of 32 bits");
  } else if (length->integer <= 0) {
    Add(eSeverity::kWarning, *length, "a signature of no length fits nothing: the converter takes no file");
  } else {
    if (length->integer > kMaxLength) {
      Add(eSeverity::kWarning, *length, "the length is cut to 1024 bytes, the most that are compared");
    }
    if (bytes != nullptr) {
      CheckBytes(*bytes, std::min(length->integer, kMaxLength));
    }
  }
}

void ModuleManifest::CheckBytes(PlacedValue const& bytes, std::int64_t length) {
  std::string const& text = bytes.text;
  auto const count = static_cast<std::size_t>(length);
  bool const isMarked = text.compare(0, 2, "0x") == 0;
  if (text.empty()) {
    Add(eSeverity::kWarning, bytes, "an empty signature fits nothing: the converter takes no file");
  } else if (text.compare(0, 2, "0X") == 0) {
    Add(eSeverity::kWarning, bytes, "this is compared as text: hexadecimal begins with \"0x\", in lower case");
  } else if (isMarked && text.size() == 2 + 2 * count) {
    bool const areDigits =
        std::all_of(text.begin() + 2, text.end(), [](unsigned char digit) { return std::isxdigit(digit) != 0; });
    if (!areDigits) {
      Add(eSeverity::kWarning, bytes, "there are other characters than hexadecimal digits: no file will fit as meant");
    }
  } else if (isMarked) {
    Add(eSeverity::kWarning, bytes,
        "this is compared as text: hexadecimal would have " + std::to_string(2 + 2 * count) +
            " characters, \"0x\" and two for each byte" +
            (text.size() < count ? "; and it is shorter than its length, so that no file ever fits" : ""));
  } else if (text.size() < count) {
    Add(eSeverity::kWarning, bytes,
        "its " + std::to_string(text.size()) + " bytes are fewer than its length of " + std::to_string(count) +
            ": no file ever fits");
  } else if (text.size() > count) {
    Add(eSeverity::kWarning, bytes, "only the first " + Counted(count, "byte") + " of it are compared");
  }
}

void ModuleManifest::CheckExtensions(PlacedValue const& value, Converter& converter) {
  PlacedValue const* const extensions = value.Find("extensions");
  if (extensions == nullptr) {
    Add(eSeverity::kError, value, "\"extensions\" is missing, an array with at least one");
  } else if (extensions->kind != eKind::kArray) {
    Add(eSeverity::kError, *extensions, "\"extensions\" has to be an array, even of one");
  } else if (extensions->children.empty()) {
    Add(eSeverity::kError, *extensions, "at least one extension is needed");
  } else {
    for (PlacedValue const& element : extensions->children) {
      if (element.kind != eKind::kString) {
        Add(eSeverity::kError, element, "an extension has to be a string");
        continue;
      }
      std::string const extension = CheckExtension(element);
      if (Contains(converter.extensions, extension)) {
        Add(eSeverity::kNote, element, "the extension " + Quoted(extension) + " is there already");
      } else {
        converter.extensions.push_back(extension);
      }
    }
  }
}

std::string ModuleManifest::CheckExtension(PlacedValue const& value) {
  std::string extension = LowerCase(value.text);
  if (extension != value.text) {
    Add(eSeverity::kNote, value, "extensions are compared in lower case: this one counts as " + Quoted(extension));
  }
  if (extension.empty()) {
    Add(eSeverity::kNote, value, "an empty extension stands for files without any");
  } else if (extension.front() == '.') {
    Add(eSeverity::kWarning, value,
        "the point does not belong to the extension: write " + Quoted(extension.substr(1)) +
            ", or no file has this one");
  } else if (extension.find_first_of("./\\ \t") != std::string::npos) {
    Add(eSeverity::kWarning, value, "no file has this extension: it is what follows the last point of the name");
  } else if (extension == "tdjson") {
    Add(eSeverity::kWarning, value, "files of this name are the library's own: no converter is asked for them");
  } else if (Contains(kNativeExtensions, extension)) {
    Add(eSeverity::kNote, value,
        "the library has a converter of its own for " + Quoted(extension) +
            "; the module is asked first, and hosts show the name of the library's");
  }
  return extension;
}

void ModuleManifest::CheckAgainstOthers(PlacedValue const& value, Converter const& converter) {
  for (Converter const& other : mConverters) {
    if (!converter.identifier.empty() && converter.identifier == other.identifier) {
      Add(eSeverity::kWarning, *value.Find("identifier"),
          Quoted(converter.identifier) + " names another converter of this module, too: they cannot be told apart");
      continue;
    }
    for (std::string const& extension : converter.extensions) {
      if (Contains(other.extensions, extension)) {
        Add(eSeverity::kWarning, *value.Find("extensions"),
            Quoted(extension) + " goes to the converter " + Quoted(other.identifier) + ", which comes before this one");
      }
    }
  }
}

bool ModuleManifest::CheckKeys(PlacedValue const& value, std::string const& what,
                               std::vector<std::string> const& known) {
  if (value.kind != eKind::kObject) {
    Add(eSeverity::kError, value, what + " has to be an object");
    return false;
  }
  std::vector<std::string> seen;
  for (PlacedValue const& member : value.children) {
    if (!Contains(known, member.key)) {
      std::string const meant = MeantWord(member.key, known);
      Add(eSeverity::kWarning, member.keyOffset,
          Quoted(member.key) + " means nothing to the library" +
              (meant.empty() ? std::string() : "; is " + Quoted(meant) + " meant?"));
    } else if (Contains(seen, member.key)) {
      Add(eSeverity::kWarning, member.keyOffset, Quoted(member.key) + " is there already; the first one counts");
    }
    seen.push_back(member.key);
  }
  return true;
}

PlacedValue const* ModuleManifest::RequireText(PlacedValue const& object, std::string const& key) {
  PlacedValue const* const value = object.Find(key);
  if (value != nullptr && value->kind == eKind::kString) {
    return value;
  }
  Add(eSeverity::kError, value == nullptr ? object : *value,
      value == nullptr ? Quoted(key) + " is missing, a string" : Quoted(key) + " has to be a string");
  return nullptr;
}

PlacedValue const* ModuleManifest::RequireInteger(PlacedValue const& object, std::string const& key) {
  PlacedValue const* const value = object.Find(key);
  if (value != nullptr && value->kind == eKind::kInteger) {
    return value;
  }
  Add(eSeverity::kError, value == nullptr ? object : *value,
      value == nullptr ? Quoted(key) + " is missing, an integer"
                       : Quoted(key) + " has to be an integer, without quotes or a point");
  return nullptr;
}

void ModuleManifest::Add(eSeverity severity, std::uint64_t offset, std::string text) {
  mFindings.Add({severity, mWhere, PlaceOf(mText, offset), std::move(text)});
}

void ModuleManifest::Add(eSeverity severity, PlacedValue const& value, std::string text) {
  Add(severity, value.offset, std::move(text));
}

}  // namespace senmark_tool
