#include "transfer/ResponseBuffer.hpp"

#include <cstdlib>
#include <cstring>

ResponseBuffer::~ResponseBuffer() {
    std::free(memory);
}

std::size_t cb(void* contents, std::size_t size, std::size_t nmemb, void* userp) {
    auto& buffer = *static_cast<ResponseBuffer*>(userp);
    const std::size_t count = size * nmemb;

    auto* const grown = static_cast<char*>(std::realloc(buffer.memory, buffer.size + count + 1));
    if (grown == nullptr) return 0;

    buffer.memory = grown;
    std::memcpy(buffer.memory + buffer.size, contents, count);
    buffer.size += count;
    buffer.memory[buffer.size] = '\0';
    return count;
}
