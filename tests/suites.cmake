# Every suite by name, in the order of the alphabet.
senmark_suite(Layout)
