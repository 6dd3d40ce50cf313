#pragma once

#include <cstddef>

/// Collects the body of an answer: `size` bytes with a zero behind them, or null before the first arrive.
struct ResponseBuffer {
    ResponseBuffer() = default;
    ~ResponseBuffer();
    ResponseBuffer(const ResponseBuffer&) = delete;
    ResponseBuffer& operator=(const ResponseBuffer&) = delete;

    char* memory = nullptr;
    std::size_t size = 0;
};

/// libcurl's write callback; `userp` is a ResponseBuffer. Returns the number of bytes taken, or 0, which ends
/// the transfer with an error, when there is no memory for them.
std::size_t cb(void* contents, std::size_t size, std::size_t nmemb, void* userp);
