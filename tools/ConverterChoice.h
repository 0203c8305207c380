/// Which converter the library takes for a file, and why.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ModuleDiscovery.h"
#include "NativeConverters.h"
#include "senmark/Host.h"

namespace senmark_tool {

/// The library asks the converter for the file's extension first, then all of modules, then its own, each kind in the
/// order of their extensions.
enum class eTurn : std::uint8_t { kExtension, kModules, kNative };

/// A converter that is asked whether it takes the file.
struct AskedConverter {
  eTurn turn = eTurn::kExtension;
  std::string extension;          ///< for which it is asked; not always that of the file
  ServingConverter serving = {};  ///< both null if it is one of the library's own
  std::string name;               ///< for people
  bool takes = false;
  std::string reason;  ///< why it takes the file or does not
  bool fails = false;  ///< the question has no answer: opening the file ends here
};

struct ConverterChoice {
  std::string path;       ///< full
  std::string extension;  ///< as the library sees it
  eOwnFormat format = eOwnFormat::kNo;
  std::vector<AskedConverter> asked;  ///< in order, up to the one that takes the file; none for the own format
  std::string error;                  ///< what opening the file comes to before it is converted; empty: no error

  /// Null if none takes it.
  AskedConverter const* Taker() const;
  /// Whether something takes the file.
  bool IsTaken() const { return error.empty(); }
};

/// Runs check functions of modules in processes of their own.
ConverterChoice ChooseConverter(senmark::Senmark const& manager, ModuleDiscovery const& modules,
                                std::string const& file);

/// How a converter is called in what the program tells, like `"GPX tracks" (org.gpx) of gpx.tdx`.
std::string ConverterText(ServingConverter const& serving);
std::string ConverterText(AskedConverter const& asked);

}  // namespace senmark_tool
