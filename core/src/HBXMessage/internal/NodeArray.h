#pragma once

#include <cstring>
#include <memory>
#include <utility>

#include <HBXMessage/internal/Node.h>

namespace HBX::internal {

/// A growing array of nodes whose slots are not initialised before they are used.
class NodeArray {
public:
    explicit NodeArray(std::size_t size) : nodes_(allocate(size)), size_(size) {}

    Node& operator[](std::size_t index) { return nodes_[index]; }
    const Node& operator[](std::size_t index) const { return nodes_[index]; }
    Node* data() { return nodes_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }

    /// Keeps the nodes that are there.
    void grow(std::size_t size) {
        std::unique_ptr<Node[]> larger = allocate(size);
        std::memcpy(larger.get(), nodes_.get(), size_ * sizeof(Node));
        nodes_ = std::move(larger);
        size_ = size;
    }

private:
    static std::unique_ptr<Node[]> allocate(std::size_t size) {
        return std::make_unique_for_overwrite<Node[]>(size);
    }

    std::unique_ptr<Node[]> nodes_;
    std::size_t size_;
};

} // namespace HBX::internal
