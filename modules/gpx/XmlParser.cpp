#include "XmlParser.h"

#include <algorithm>
#include <new>
#include <utility>

namespace senmark_gpx {

namespace {

/// Stands between the namespace of a name and its local part, in which it cannot occur.
constexpr char kAfterSpace = '\n';
constexpr char kAfterPrefix = ':';

class RootFinder : public XmlHandler {
 public:
  void start(XmlName const& name, XmlAttributes const& /*attributes*/) override {
    if (!mHasBegun) {
      root.emplace(name.local());
    }
    mHasBegun = true;
  }
  void end(XmlName const& /*name*/) override {}
  void text(std::string_view /*text*/) override {}
  void doctype(std::string_view name) override { root.emplace(name.substr(name.rfind(':') + 1)); }

  std::optional<std::string> root;

 private:
  bool mHasBegun = false;
};

}  // namespace

std::string_view XmlName::space() const {
  char const* const separator = mSeparator == kAfterSpace ? std::strrchr(mWhole, mSeparator) : nullptr;
  return separator == nullptr ? std::string_view()
                              : std::string_view(mWhole, static_cast<std::size_t>(separator - mWhole));
}

std::optional<std::string_view> XmlAttributes::find(std::string_view name) const {
  for (char const* const* pair = mPairs; *pair != nullptr; pair += 2) {
    if (name == *pair) {
      return pair[1];
    }
  }
  return std::nullopt;
}

XmlParser::XmlParser(XmlHandler& handler, eXmlNames names)
    : mHandler(handler), mSeparator(names == eXmlNames::kSpaces ? kAfterSpace : kAfterPrefix) {
  XmlMemory::Use const use(mMemory);
  char const separator[] = {kAfterSpace, '\0'};
  mExpat = XML_ParserCreate_MM(nullptr, XmlMemory::Functions(), names == eXmlNames::kSpaces ? separator : nullptr);
  if (mExpat == nullptr) {
    throw std::bad_alloc();
  }
  XML_SetUserData(mExpat, this);
  XML_SetElementHandler(mExpat, Start, End);
  XML_SetCharacterDataHandler(mExpat, Text);
  XML_SetStartDoctypeDeclHandler(mExpat, Doctype);
  XML_SetEntityDeclHandler(mExpat, EntityDeclaration);
}

XmlParser::~XmlParser() {
  XmlMemory::Use const use(mMemory);
  XML_ParserFree(mExpat);
}

void XmlParser::feed(std::string_view bytes, bool isLast) {
  XmlMemory::Use const use(mMemory);
  XML_Status const status =
      XML_Parse(mExpat, bytes.data(), static_cast<int>(bytes.size()), isLast ? XML_TRUE : XML_FALSE);
  if (mFailure) {
    std::rethrow_exception(mFailure);
  }
  if (status != XML_STATUS_OK) {
    XML_Error const error = XML_GetErrorCode(mExpat);
    if (error != XML_ERROR_NO_MEMORY) {
      throw FailureHere(XML_ErrorString(error));
    }
    if (!mMemory.isExhausted()) {
      throw std::bad_alloc();
    }
    throw FailureHere("names and tags take more than " + std::to_string(XmlMemory::kLimit >> 20) + " MiB");
  }
  mFed += static_cast<std::int64_t>(bytes.size());
  // What is not finished is looked at again with every piece that follows.
  if (!isLast && mFed - XML_GetCurrentByteIndex(mExpat) > kLongestTag) {
    throw FailureHere("a tag, comment or declaration of more than " + std::to_string(kLongestTag) + " bytes");
  }
}

kit::Failure XmlParser::FailureHere(std::string const& message) const {
  // An empty document has no place at all.
  return kit::Failure(message, std::max<std::int64_t>(XML_GetCurrentByteIndex(mExpat), 0),
                      static_cast<std::int64_t>(XML_GetCurrentLineNumber(mExpat)));
}

template <typename Work>
void XmlParser::Run(Work&& work) noexcept {
  // Some handlers are still called behind the stop.
  if (mFailure) {
    return;
  }
  try {
    try {
      work();
    } catch (kit::Failure const& failure) {
      kit::Failure const here = FailureHere(failure.what());
      throw failure.at(here.offset(), here.line());
    }
  } catch (...) {
    mFailure = std::current_exception();
    XML_StopParser(mExpat, XML_FALSE);
  }
}

void XmlParser::Start(void* parser, char const* name, char const** attributes) {
  auto& self = *static_cast<XmlParser*>(parser);
  self.Run([&] {
    if (++self.mDepth > kDeepest) {
      throw kit::Failure("more than " + std::to_string(kDeepest) + " elements within each other");
    }
    self.mHandler.start(XmlName(name, self.mSeparator), XmlAttributes(attributes));
  });
}

void XmlParser::End(void* parser, char const* name) {
  auto& self = *static_cast<XmlParser*>(parser);
  self.Run([&] {
    --self.mDepth;
    self.mHandler.end(XmlName(name, self.mSeparator));
  });
}

void XmlParser::Text(void* parser, char const* text, int size) {
  auto& self = *static_cast<XmlParser*>(parser);
  self.Run([&] { self.mHandler.text(std::string_view(text, static_cast<std::size_t>(size))); });
}

void XmlParser::Doctype(void* parser, char const* root, char const* /*system*/, char const* /*publicId*/,
                        int /*hasInternalSubset*/) {
  auto& self = *static_cast<XmlParser*>(parser);
  self.Run([&] { self.mHandler.doctype(root); });
}

void XmlParser::EntityDeclaration(void* parser, char const* name, int /*isParameter*/, char const* /*value*/,
                                  int /*size*/, char const* /*base*/, char const* /*system*/, char const* /*publicId*/,
                                  char const* /*notation*/) {
  // What an entity stands for may be any amount of text, or a file elsewhere.
  static_cast<XmlParser*>(parser)->Run([&] { throw kit::Failure(std::string("an entity is declared: ") + name); });
}

void ParseXml(kit::Input const& input, XmlHandler& handler, eXmlNames names) {
  constexpr std::size_t kPiece = std::size_t{64} << 10;
  kit::Bytes bytes(input, kPiece);
  XmlParser parser(handler, names);
  for (std::string_view piece = bytes.next(); !piece.empty(); piece = bytes.next()) {
    parser.feed(piece, false);
  }
  parser.feed({}, true);
}

std::optional<std::string> FindRoot(std::string_view head) {
  RootFinder finder;
  try {
    XmlParser(finder).feed(head, false);
  } catch (kit::Failure const&) {
    // It may have begun before what is wrong.
  }
  return finder.root;
}

}  // namespace senmark_gpx
