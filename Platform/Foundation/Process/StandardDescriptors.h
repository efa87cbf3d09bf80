#pragma once

/// Takes those of the descriptors 0, 1 and 2 that the process was started without, so that reading
/// and writing them fails. Called by a program before anything else: else the first file or socket
/// that it opens gets such a number, and whatever is printed lands there.
void openMissingStandardDescriptors();
