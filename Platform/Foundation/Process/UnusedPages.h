#pragma once

/// Gives back the memory that the start, or an open menu, has used and what follows does not: free
/// parts of the heap, and pages of libraries and of mapped files that were only read. Those that
/// are still wanted come back from the system's own copy when they are next touched, without
/// reading the disk.
void returnUnusedPages();
