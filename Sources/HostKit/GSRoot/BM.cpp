#include "BM.hpp"

#include <atomic>
#include <cstdlib>

namespace {

// A handle points to the first member, so the size lies beside it.
struct Block {
    char* data;
    GSSize size;
};

std::atomic<Int64> liveHandles = 0;

Block* BlockOf(GSHandle handle) {
    return reinterpret_cast<Block*>(handle);
}

}  // namespace

GSHandle BMAllocateHandle(GSSize size, GSFlags flags, short) {
    if (size < 0) return nullptr;
    auto* block = static_cast<Block*>(std::malloc(sizeof(Block)));
    if (block == nullptr) return nullptr;
    *block = {BMAllocatePtr(size, flags), size};
    if (block->data == nullptr) {
        std::free(block);
        return nullptr;
    }
    ++liveHandles;
    return &block->data;
}

GSSize BMGetHandleSize(GSHandle handle) {
    return handle == nullptr ? 0 : BlockOf(handle)->size;
}

void BMKillHandle(GSHandle* handle) {
    if (handle == nullptr || *handle == nullptr) return;
    std::free(**handle);
    std::free(BlockOf(*handle));
    *handle = nullptr;
    --liveHandles;
}

GSPtr BMAllocatePtr(GSSize size, GSFlags flags, short) {
    if (size < 0) return nullptr;
    const auto bytes = size == 0 ? 1 : static_cast<std::size_t>(size);
    return static_cast<GSPtr>((flags & ALLOCATE_CLEAR) != 0 ? std::calloc(1, bytes) : std::malloc(bytes));
}

GSPtr BMReallocPtr(GSPtr block, GSSize size, GSFlags, short) {
    if (size < 0) return nullptr;
    return static_cast<GSPtr>(std::realloc(block, size == 0 ? 1 : static_cast<std::size_t>(size)));
}

void BMKillPtr(GSPtr* block) {
    if (block == nullptr) return;
    std::free(*block);
    *block = nullptr;
}

namespace hostkit {

Int64 LiveHandles() {
    return liveHandles;
}

}  // namespace hostkit
