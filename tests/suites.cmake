# Every suite by name, in the order of the alphabet.
senmark_suite(SK_FileIO support/FailingCalls.cpp)
senmark_suite(SK_FileMapper support/FailingCalls.cpp)
senmark_suite(SK_Mutex)
senmark_suite(SK_TempFileHandler support/FailingCalls.cpp)
senmark_suite(SK_UnicodeConversion)
senmark_suite(SK_UnicodeUtils)
