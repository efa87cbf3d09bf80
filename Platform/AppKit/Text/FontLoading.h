#pragma once

/// Begins to read what fonts the machine has and to load the interface's, on a thread of its own: a
/// program that does so first of all finds both when it comes to its first text. Main thread only.
void beginLoadingFonts();
