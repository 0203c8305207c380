/// Turns a message literal into the text that is shown. There are no translations: the text is the part
/// of the literal behind its "=". The locale is recorded and decides nothing.
#pragma once

#include <atomic>
#include <string>

namespace ns_sensor {

/// The locale that is taken when none was set up.
inline constexpr char const* SKEnglishUSCode = "en_US";

}  // namespace ns_sensor

namespace SK_NAMESPACE_INT {

class SK_Localizer {
 public:
  /// Sets up the one instance, unless it is set up already. Safe from any thread. Always true.
  static bool Initialize(std::string const& locale);

  /// Lets the next `Initialize` set up a new instance. The old one is not freed, since another thread
  /// may be building a message with it.
  static bool Terminate();

  /// The instance; set up with `SKEnglishUSCode` if need be, so that errors before any initialisation
  /// have their texts.
  static SK_Localizer* GetInstance();

  std::string GetLocaleId() const;

  /// The text in UTF-16: for a literal that begins with "$$$/" what stands behind its first "=", or
  /// nothing without one; any other literal whole. Bad UTF-8 ends the text.
  std::basic_string<unsigned short> GetLocalizedString(char const* literal) const;

 private:
  SK_Localizer(std::string const& locale, SK_Localizer* replaced);
  static SK_Localizer* CheckedInstance(char const* function);

  std::string mLocaleId;
  [[maybe_unused]] SK_Localizer* mReplaced;  // the instance before this one, kept reachable; null for the first

  static std::atomic<SK_Localizer*> mLocalizer;
  static std::atomic<bool> mIsIntialized;  // the name is fixed
};

}  // namespace SK_NAMESPACE_INT
