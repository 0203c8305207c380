# Every suite by name, in the order of the alphabet.

senmark_suite(SK_ConversionInfo)
senmark_suite(SK_Records)
senmark_suite(SK_TdjsonValidator support/OutlineRows.cpp)
senmark_suite(SK_TdjsonValidatorChecks support/OutlineRows.cpp)
senmark_suite(SK_TdjsonValidator_v1 support/OutlineRows.cpp)
senmark_suite(SK_TdjsonValidator_v2 support/OutlineRows.cpp)
senmark_suite(SK_Utils)
