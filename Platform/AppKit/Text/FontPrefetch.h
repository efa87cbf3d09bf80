#pragma once

/// Begins to read what fonts the machine has, on a thread of its own: a program that does so first
/// of all has them when it comes to its first text. Main thread only, as all of these.
void prefetchFonts();

/// For whoever asks for fonts: two that read them at once would both do all of the work.
void waitForPrefetchedFonts();
