#pragma once

#include <HBXCommon/HBXAbort.h>

#include <memory>
#include <utility>

#include <pthread.h>

namespace HBX {

/// A value of its own for every thread, and for every object of this class. A thread's value begins as T() at
/// its first use and is destroyed when the thread ends.
/// Meant for objects of static lifetime: the destructor destroys the value of the calling thread, while
/// values of other threads that still run are lost. Keys of the system are used instead of thread_local,
/// because they stay usable in static destructors of the main thread. There are 1024 keys in a process.
template <class T>
class HBXTLS {
public:
    HBXTLS() {
        if (pthread_key_create(&key_, [](void* value) { delete static_cast<T*>(value); }) != 0)
            abort("HBXCommon", "core/src/HBXCommon/HBXTLS", __LINE__, "HBX::HBXTLS::HBXTLS",
                  "HBX::HBXTLS::HBXTLS");
    }
    ~HBXTLS() {
        delete static_cast<T*>(pthread_getspecific(key_));
        pthread_key_delete(key_);
    }
    HBXTLS(const HBXTLS&) = delete;
    HBXTLS& operator=(const HBXTLS&) = delete;

    /// The calling thread's value; valid until the thread ends.
    T& get() const {
        if (void* value = pthread_getspecific(key_))
            return *static_cast<T*>(value);
        return create();
    }

    /// Replaces the calling thread's value.
    void set(T value) const { get() = std::move(value); }

private:
    T& create() const {
        auto value = std::make_unique<T>();
        if (pthread_setspecific(key_, value.get()) != 0)
            abort("HBXCommon", "core/src/HBXCommon/HBXTLS", __LINE__, "HBX::HBXTLS::get", "HBX::HBXTLS::get");
        return *value.release();
    }

    pthread_key_t key_{};
};

} // namespace HBX
