#pragma once

#include <algorithm>
#include <pty.h>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

namespace HBX {

/// A terminal that nobody sits at.
class Terminal {
public:
    Terminal() { EXPECT_EQ(openpty(&master_, &slave_, nullptr, nullptr, nullptr), 0); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        close(slave_);
        close(master_);
    }

    std::string name() const { return ttyname(slave_); }

    /// What programs wrote to it.
    std::string shown() const {
        std::string text(65536, '\0');
        const ssize_t size = ::read(master_, text.data(), text.size());
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return text;
    }

private:
    int master_ = -1;
    int slave_ = -1; ///< open all the time, so that what was written stays
};

} // namespace HBX
