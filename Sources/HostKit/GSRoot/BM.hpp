#pragma once

#include "Definitions.hpp"

inline constexpr GSFlags ALLOCATE_CLEAR = 1;
inline constexpr GSFlags REALLOC_MOVEABLE = 2;

// Null when memory runs out. The action code is of no meaning here.
GSHandle BMAllocateHandle(GSSize size, GSFlags flags = ALLOCATE_CLEAR, short actionCode = 0);
GSSize BMGetHandleSize(GSHandle handle);

// Frees the handle and sets it to null; a null handle is left alone.
void BMKillHandle(GSHandle* handle);

GSPtr BMAllocatePtr(GSSize size, GSFlags flags = ALLOCATE_CLEAR, short actionCode = 0);

// Grows or shrinks a block, or makes one from null. Null when memory runs out: the old block stays then.
GSPtr BMReallocPtr(GSPtr block, GSSize size, GSFlags flags = REALLOC_MOVEABLE, short actionCode = 0);
void BMKillPtr(GSPtr* block);

namespace hostkit {

// Handles that were allocated and not killed yet.
Int64 LiveHandles();

}  // namespace hostkit
