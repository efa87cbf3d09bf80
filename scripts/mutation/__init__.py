"""Small faults put into the sources on purpose, and whether the tests notice."""
