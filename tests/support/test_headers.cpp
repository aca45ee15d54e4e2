// Carries the precompiled headers of the tests.
