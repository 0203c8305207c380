# Every suite by name, in the order of the alphabet.
senmark_suite(SK_RelativeTimeReader)
senmark_suite(SK_TimeFormat)
senmark_suite(SK_TimeUtils)
senmark_suite(SK_TimeUtilsText)
senmark_suite(SK_UtilsTime)
