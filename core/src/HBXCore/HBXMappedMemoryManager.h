#pragma once

#include <cstddef>
#include <string>

#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <HBXCommon/HBXExport.h>
#include <HBXCore/HBXMemoryMappedFile.h>
#include <HBXCore/HBXSharedMemoryManager.h>

namespace HBX {

/// One mapping of a cache file with the heap in it. The virtual operations are what a test lets fail.
class HBX_EXPORT HBXMappedMemoryManager : public boost::intrusive_ref_counter<HBXMappedMemoryManager> {
public:
    /// @param reservation  address space to set aside, in bytes.
    HBXMappedMemoryManager(std::string name, std::size_t reservation)
        : HBXMappedMemoryManager(std::move(name), reservation, std::chrono::seconds(60)) {}
    /// Not in place, so that there is one table of the virtual operations, and the usual ones are found in it
    /// without a call.
    virtual ~HBXMappedMemoryManager();

    /// Maps the file; 0 or -1 with the thread's error message.
    virtual int map(std::size_t size) { return file_.map(name_, size, kSharedMapping) != nullptr ? 0 : -1; }
    /// Maps the file of another manager, at least `size` bytes of it.
    virtual int remap(std::size_t size, const HBXMappedMemoryManager& previous) {
        return file_.remap(size, nullptr, &previous.file_) != nullptr ? 0 : -1;
    }
    /// Waits for the lock that all processes share; 0 or -1.
    virtual int lock() { return file_.lock(false); }
    /// Makes the file longer; 0 or -1 with the error message.
    virtual int grow(std::size_t size) { return file_.grow(size); }
    /// Sees every block before it is filled.
    virtual void prepareBlock(void* /*memory*/, std::size_t /*size*/) {}

    /// What it is made of; the memory is null until `map`.
    const std::string& name() const { return name_; }
    HBXMemoryMappedFile& file() { return file_; }
    const HBXMemoryMappedFile& file() const { return file_; }
    char* memory() const { return static_cast<char*>(file_.getMemory()); }
    HBXSharedMemoryManager heap() const { return HBXSharedMemoryManager(memory()); }

    /// Lists that read this mapping. Under the lock; the last one of a mapping that was replaced ends it.
    std::size_t openLists = 0;

protected:
    HBXMappedMemoryManager(std::string name, std::size_t reservation, std::chrono::milliseconds patience)
        : name_(std::move(name)), file_(reservation, patience) {}

private:
    std::string name_;
    HBXMemoryMappedFile file_;
};

} // namespace HBX
