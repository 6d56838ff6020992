#pragma once

#include <vector>

#include <boost/program_options/option.hpp>

namespace HBX::HBXProgramOptions {

/// Keeps program options somewhere and brings them back. 0, or -1 and nothing has changed.
class serializer { // NOLINT(cppcoreguidelines-special-member-functions)
public:
    using Options = std::vector<boost::program_options::basic_option<char>>;

    virtual ~serializer() = default;
    /// Brings the options back.
    virtual int read(Options& options) = 0;
    /// Keeps them, in place of what was kept.
    virtual int write(Options& options) = 0;
};

} // namespace HBX::HBXProgramOptions
