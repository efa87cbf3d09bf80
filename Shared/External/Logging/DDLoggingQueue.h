#pragma once

#include "Platform/Dispatch/DispatchQueue.h"

/// The log's own queue, on which messages go to the loggers. It stays for the life of the process.
const dispatch_queue_t& globalLoggingQueue();

/// Whether this is called from its work.
bool isOnGlobalLoggingQueue();
