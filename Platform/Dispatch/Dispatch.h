#pragma once

/// Work on queues, after a time, in groups, and when something happens.

#include "Platform/Dispatch/DispatchFunctions.h"
#include "Platform/Dispatch/DispatchGroup.h"
#include "Platform/Dispatch/DispatchQueue.h"
#include "Platform/Dispatch/DispatchSemaphore.h"
#include "Platform/Dispatch/DispatchSource.h"
