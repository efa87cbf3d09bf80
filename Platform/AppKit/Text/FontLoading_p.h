#pragma once

// For the platform's own sources only.

/// Waits for what a `FontLoading` has begun, and takes it over. Called before anything else
/// that has to do with fonts, which would do all of that work once more. Main thread only.
void finishLoadingFonts();
