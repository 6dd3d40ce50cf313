#include "Workbench/step/Buffer.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace workbench::step {

void PreferLargePages(void* memory, size_t size) {
    constexpr uintptr_t page = 4096;
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(memory) + page - 1) / page * page;
    const uintptr_t end = (reinterpret_cast<uintptr_t>(memory) + size) / page * page;
    if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

Buffer::Buffer(size_t size) : size(size), capacity(size + margin) {
    void* memory = mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::system_error(errno, std::generic_category());
    PreferLargePages(memory, capacity);
    data = static_cast<char*>(memory);
}

Buffer::~Buffer() {
    munmap(data, capacity);
}

bool Buffer::Fill(int descriptor, const Progress& progress) {
    constexpr size_t portion = 8 << 20;
    size_t filled = 0;
    while (filled < size) {
        const ssize_t got = read(descriptor, data + filled, std::min(portion, size - filled));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw std::system_error(errno, std::generic_category());
        if (got == 0) break;  // it became shorter since its size was asked
        filled += static_cast<size_t>(got);
        if (progress && !progress(static_cast<double>(filled) / static_cast<double>(size))) return false;
    }
    size = filled;
    return true;
}

}  // namespace workbench::step
