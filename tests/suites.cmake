# Every suite by name, in the order of the alphabet.
senmark_suite(SK_JsonNumber)
senmark_suite(SK_JsonRandomDocuments)
senmark_suite(SK_TdjsonParserUtils)
