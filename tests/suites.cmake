# Every suite by name, in the order of the alphabet.
senmark_suite(Docs)
senmark_suite(Layout)
