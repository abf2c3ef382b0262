// The program that owns the tests' precompiled header; it has no tests.
