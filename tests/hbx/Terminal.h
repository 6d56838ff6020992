#pragma once

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace HBX {

/// A terminal that nobody sits at.
class Terminal {
public:
    Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
        EXPECT_GE(master_, 0);
        EXPECT_EQ(grantpt(master_) + unlockpt(master_), 0);
        slave_ = open(name().c_str(), O_RDWR | O_NOCTTY);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        close(slave_);
        close(master_);
    }

    std::string name() const { return ptsname(master_); }

    /// What programs wrote to it.
    std::string shown() const {
        std::string text(65536, '\0');
        const ssize_t size = ::read(master_, text.data(), text.size());
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return text;
    }

private:
    int master_;
    int slave_; ///< open all the time, so that what was written stays
};

} // namespace HBX
