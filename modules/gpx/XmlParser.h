/// XML in pieces, in bounded memory, without entities.
#pragma once

#include <expat.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "XmlMemory.h"
#include "senmark/Module.h"

namespace senmark_gpx {

namespace kit = senmark::kit;

/// The name of an element, valid during the call that gives it.
class XmlName {
 public:
  /// whole: with `separator` before the local part, where there is something else.
  XmlName(char const* whole, char separator) : mWhole(whole), mSeparator(separator) {}

  std::string_view local() const {
    char const* const separator = std::strrchr(mWhole, mSeparator);
    return separator == nullptr ? mWhole : separator + 1;
  }
  /// Of the namespace; empty: none, or they are not looked at.
  std::string_view space() const;

 private:
  char const* mWhole;
  char mSeparator;
};

/// The attributes of one element, valid during the call that gives them.
class XmlAttributes {
 public:
  /// pairs: names and values in turn, then null.
  explicit XmlAttributes(char const* const* pairs) : mPairs(pairs) {}

  /// The value of an attribute that is in no namespace.
  std::optional<std::string_view> find(std::string_view name) const;

 private:
  char const* const* mPairs;
};

/// Takes what a parser meets. What it throws ends the parsing; a `kit::Failure` without a place gets that of the tag.
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;

  virtual void start(XmlName const& name, XmlAttributes const& attributes) = 0;
  virtual void end(XmlName const& name) = 0;
  /// UTF-8; the text of one element may come in several pieces.
  virtual void text(std::string_view text) = 0;
  /// The document says which root element it has.
  virtual void doctype(std::string_view /*root*/) {}
};

enum class eXmlNames : std::uint8_t {
  kSpaces,  ///< by their namespaces
  kLocal,   ///< without their prefixes, which may mean anything: faster
};

class XmlParser {
 public:
  /// Elements within each other.
  static constexpr unsigned kDeepest = 100;
  /// Bytes that wait for the end of their tag, comment or declaration.
  static constexpr std::int64_t kLongestTag = std::int64_t{1} << 20;

  /// handler: must live as long as the parser.
  explicit XmlParser(XmlHandler& handler, eXmlNames names = eXmlNames::kSpaces);
  ~XmlParser();
  XmlParser(XmlParser const&) = delete;
  XmlParser& operator=(XmlParser const&) = delete;

  /// The next bytes of the document; isLast with the last of them, which may be none.
  ///
  /// Errors: `kit::Failure` with its byte and line for what is not well-formed, for elements that are too deep, tags
  /// that are too long and names that take too much memory, and for a declaration of an entity.
  void feed(std::string_view bytes, bool isLast);

 private:
  static void XMLCALL Start(void* parser, char const* name, char const** attributes);
  static void XMLCALL End(void* parser, char const* name);
  static void XMLCALL Text(void* parser, char const* text, int size);
  static void XMLCALL Doctype(void* parser, char const* root, char const* system, char const* publicId,
                              int hasInternalSubset);
  static void XMLCALL EntityDeclaration(void* parser, char const* name, int isParameter, char const* value, int size,
                                        char const* base, char const* system, char const* publicId,
                                        char const* notation);

  template <typename Work>
  void Run(Work&& work) noexcept;
  kit::Failure FailureHere(std::string const& message) const;

  XmlHandler& mHandler;
  XmlMemory mMemory;
  char mSeparator;
  XML_Parser mExpat;
  unsigned mDepth = 0;
  std::int64_t mFed = 0;
  std::exception_ptr mFailure;  ///< of the handler: no exception may pass through the parser
};

/// Parses the whole file. Errors: as `XmlParser::feed`, and those of `kit::Bytes`.
void ParseXml(kit::Input const& input, XmlHandler& handler, eXmlNames names = eXmlNames::kSpaces);

/// The local name of the root element, if it begins or is declared within these first bytes of a document.
std::optional<std::string> FindRoot(std::string_view head);

}  // namespace senmark_gpx
