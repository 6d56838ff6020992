#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include <HBXMessage/internal/CopyBytes.h>

namespace HBX::internal {

/// A growing array of bytes whose content is never initialised before it is written. Writers ensure room once
/// for several pieces and then store without further checks.
class ByteBuffer {
public:
    ByteBuffer() = default;
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;
    ByteBuffer(ByteBuffer&& other) noexcept { swap(other); }
    ByteBuffer& operator=(ByteBuffer&& other) noexcept {
        swap(other);
        return *this;
    }
    void swap(ByteBuffer& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }
    ~ByteBuffer() { std::free(data_); }

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    [[nodiscard]] char* data() { return data_; }
    [[nodiscard]] const char* data() const { return data_; }
    [[nodiscard]] std::string_view view() const { return {data_, size_}; }
    void clear() { size_ = 0; }

    /// Room for `count` more bytes; returns where they go. They count only after `advance`.
    char* ensure(std::size_t count) {
        if (capacity_ - size_ < count) [[unlikely]] {
            grow(count);
        }
        return data_ + size_;
    }
    [[nodiscard]] bool hasRoom(std::size_t count) const { return capacity_ - size_ >= count; }
    void advance(std::size_t count) { size_ += count; }
    void truncate(std::size_t size) { size_ = size; }

    void append(std::string_view bytes) {
        copyBytes(ensure(bytes.size()), bytes);
        size_ += bytes.size();
    }
    void append(char byte) {
        *ensure(1) = byte;
        ++size_;
    }

    /// Hands the bytes (from malloc) to the caller.
    char* release() {
        size_ = capacity_ = 0;
        return std::exchange(data_, nullptr);
    }

private:
    void grow(std::size_t count) {
        std::size_t capacity = capacity_ < 256 ? 512 : capacity_ * 2;
        if (capacity < size_ + count) {
            capacity = size_ + count;
        }
        auto* data = static_cast<char*>(std::realloc(data_, capacity));
        if (data == nullptr) {
            throw std::bad_alloc();
        }
        data_ = data;
        capacity_ = capacity;
    }

    char* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace HBX::internal
