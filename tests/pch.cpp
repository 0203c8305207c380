// Names the precompiled headers of the suites; holds nothing itself.
